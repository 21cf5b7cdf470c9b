#pragma once

#include <GLES2/gl2.h>

#include "render/matrix.h"
#include "render/mesh.h"
#include "views/halfspheremotion.h"
#include "views/starfield.h"

namespace zet::ZETShow {

/// Looks from `eyeZ` into the scene as `motion` has turned it. Render thread.
void lookIntoScene(MatrixState& matrices, const HalfSphereMotion& motion, float eyeZ);

/// What is behind the half sphere: a halo that revolves round it and stars that twinkle. Both fall away faster than
/// the bowl when the camera comes near. Render thread.
class HalfSphereScene {
public:
    HalfSphereScene() = default;
    /// With the context current.
    ~HalfSphereScene();
    HalfSphereScene(const HalfSphereScene&) = delete;
    HalfSphereScene& operator=(const HalfSphereScene&) = delete;

    /// -1 if the halo can't be drawn; a scene without stars is still one.
    int createPrograms();
    /// Unpacks the halo's picture into its texture.
    void loadPicture();
    void setFrustum(float aspect, float near, float far);

    // One frame each, with the scene posed as the bowl's last draw has left `motion`.
    void drawBack(const HalfSphereMotion& motion);
    void drawPoints(const HalfSphereMotion& motion);

private:
    struct Group {
        int count;
        float size;  // pixels
        int index;   // of its brightness
    };

    int createBackProgram();
    int createPointProgram();
    void drawGroup(const HalfSphereMotion& motion, const Group& group);

    static constexpr Group _groups[] = {{350, 2.0f, 0}, {100, 1.5f, 1}, {20, 3.0f, 2}, {10, 3.8f, 3}};

    // The halo.
    MatrixState _backMatrix;
    float _backAngle = 0.0f;  // degrees clockwise
    GLuint _backProgram = 0;
    GLuint _backTexture = 0;
    Mesh _backQuad;
    GLint _backMapMatrixLoc = -1;

    // The stars.
    StarField _stars;
    MatrixState _pointMatrix;
    int _pointFrame = 0;         // draws of the main group
    bool _pointsPlaced = false;  // the first frame is over, and the stars keep their places
    GLuint _pointProgram = 0;
    GLint _pointMapMatrixLoc = -1;
    GLint _pointSizeLoc = -1;
    GLint _pointLightLoc = -1;
};

}  // namespace zet::ZETShow
