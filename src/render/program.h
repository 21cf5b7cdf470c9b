#pragma once

#include <GLES2/gl2.h>

#include <initializer_list>
#include <string>

#include "render/frame.h"

namespace zet::ZETShow {

// Render thread, with the context current.

/// Where all programs have their attributes a_position and a_texCoord.
inline constexpr GLuint positionAttribute = 0;
inline constexpr GLuint texCoordAttribute = 1;

/// A linked program's name, or 0 if a stage doesn't compile or the two don't link; the log says why.
GLuint buildProgram(const char* vertexSource, const char* fragmentSource);

/// A fragment stage: the precision that the GL allows, and `pieces` in their order.
std::string joinFragment(std::initializer_list<const char*> pieces);

/// Says in the log, once in the process, if the GL computes fragments in half precision only.
void checkFragmentPrecision();

/// A program that samples the frame, and the locations of what all such programs share.
struct FrameProgram {
    FrameProgram() = default;
    ~FrameProgram() { glDeleteProgram(name); }
    FrameProgram(const FrameProgram&) = delete;
    FrameProgram& operator=(const FrameProgram&) = delete;

    /// `pieces` are the view's own, in front of them come the declarations and `samplePicture`. 0, or -1 if the program
    /// doesn't build.
    int build(const char* vertexStage, std::initializer_list<const char*> pieces);
    /// Takes the program into use, with the frame's colours and lens region.
    void use(const Frame& frame) const;
    /// For the program in use: what a_position is multiplied with.
    void setMatrix(const float* matrix) const { glUniformMatrix4fv(mapMatrixLoc, 1, GL_FALSE, matrix); }
    GLint uniform(const char* uniformName) const { return glGetUniformLocation(name, uniformName); }

    GLuint name = 0;
    GLint mapMatrixLoc = -1;
    GLint colorMatrixLoc = -1;
    GLint colorOffsetLoc = -1;
    GLint regionLoc = -1;
};

}  // namespace zet::ZETShow
