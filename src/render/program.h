#pragma once

#include <GLES2/gl2.h>

#include <initializer_list>
#include <string>
#include <vector>

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

/// A program that samples the frame. The frame's colours are constants of it: it is built anew when they change.
class FrameProgram {
public:
    FrameProgram() = default;
    ~FrameProgram();
    FrameProgram(const FrameProgram&) = delete;
    FrameProgram& operator=(const FrameProgram&) = delete;

    /// The fragment stage is `pieces`, behind the declarations, `samplePlanes` and `sampleLens`. `uniforms` are floats
    /// of the view's own, which `set` then knows by their order. All texts are literals. 0, or -1 if it doesn't build.
    int build(const ColorTransform& color, const char* vertexStage, std::initializer_list<const char*> pieces,
              std::initializer_list<const char*> uniforms = {});
    /// Takes the program into use for `frame`.
    void use(const Frame& frame);
    /// For the program in use: what a_position is multiplied with.
    void setMatrix(const float* matrix) const { glUniformMatrix4fv(_mapMatrixLoc, 1, GL_FALSE, matrix); }
    /// For the program in use, each time: the view's own uniforms.
    void set(std::size_t uniform, float value) const { glUniform1f(_uniformLocs[uniform], value); }
    void setMatrix(std::size_t uniform, const float* matrix) const {
        glUniformMatrix4fv(_uniformLocs[uniform], 1, GL_FALSE, matrix);
    }
    bool isBuilt() const { return _name != 0; }

private:
    int buildFor(const ColorTransform& color);

    const char* _vertexStage = nullptr;
    std::vector<const char*> _pieces;
    std::vector<const char*> _uniforms;
    ColorTransform _color = defaultColor;  // the last one that a build was tried for

    GLuint _name = 0;
    GLint _mapMatrixLoc = -1;
    GLint _regionLoc = -1;
    std::vector<GLint> _uniformLocs;
};

}  // namespace zet::ZETShow
