// What a person sees: a solid shape that floats in the dark and carries the whole circle of the lens, to be spun and
// tilted by hand. The drum is an open cylinder with the picture on its outside, the horizon along its upper rim. The
// bowl is a half sphere seen from above, with the horizon along its rim: the far wall shows its inside, as a person in
// the bowl would see it. A pinch takes the camera a little nearer or further; a fling spins the shape.

#include "views/cylindersphererender.h"

#include <cmath>
#include "render/shaderpieces.h"

namespace zet::ZETShow {

namespace {

const char* const mainStep = R"(
void main() {
    gl_FragColor = sampleLens(v_texCoord);
}
)";

// How a shape differs from the other, and where the picture lies on it.
struct Shape {
    bool round;         // a half sphere, otherwise a straight wall
    float blend;        // weight of the sine profile in the radial mapping
    double zShift;      // along the axis, in radii
    float zScale;       // stretch along the axis
    float innerRadius;  // picture radius at the end of the mesh, as a part of the rim's
    float mirror;       // -1 shows the picture mirrored, as its other side
};

constexpr Shape drumShape = {
    .round = false,
    .blend = 0.6f,
    .zShift = -0.5,
    .zScale = 1.0619999f,
    .innerRadius = 0.1f,
    .mirror = 1.0f,
};

constexpr Shape bowlShape = {
    .round = true,
    .blend = 0.4f,
    .zShift = -0.35,
    .zScale = 1.1f,
    .innerRadius = 0.0f,
    .mirror = -1.0f,
};

constexpr float lensRadius = -0.998f;  // of the half texture; the sign turns the picture by 180 degrees
constexpr float nearPlane = 3.0f;
constexpr float farPlane = 33.0f;

// The picture's radius at angle `b` from the rim: between one that falls evenly and one that falls as the sine.
float pictureRadius(const Shape& shape, float b) {
    const float even = 1.0f + 2.0f * (shape.innerRadius - 1.0f) / Dome::_angleSpan * b;
    const float bySine = 1.0f - (1.0f - shape.innerRadius) * std::sin(b);
    return even * lensRadius * (1.0f - shape.blend) + bySine * lensRadius * shape.blend;
}

MeshVertex pointOn(const Shape& shape, double a, double b) {
    const double bulge = shape.round ? std::cos(b) : 1.0;
    const auto x = static_cast<float>(std::sin(a) * bulge);
    const auto y = static_cast<float>(std::cos(a) * bulge);
    const auto z = static_cast<float>(shape.zShift + std::sin(b));
    const float r = pictureRadius(shape, static_cast<float>(b));
    const float s = static_cast<float>(std::sin(a)) * r * shape.mirror;
    const float t = static_cast<float>(std::cos(a)) * r;
    return {{x * -Dome::_radius, y * -Dome::_radius, z * -Dome::_radius * shape.zScale}, {s, t}};
}

}  // namespace

CylinderSphereRender::CylinderSphereRender(DisplayConfig* config, RenderThread* thread,
                                           const std::shared_ptr<CylinderSphereMotion>& motion, Variant variant)
    : Render(config, thread, motion), _variant(variant), _motion(*motion) {}

int CylinderSphereRender::init(const ColorTransform& color) {
    glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
    glEnable(GL_DEPTH_TEST);  // the near side hides the far side
    const Shape& shape = _variant == Variant::bowl ? bowlShape : drumShape;
    _mesh.load(makeDome([&shape](double a, double b) { return pointOn(shape, a, b); }));
    return _program.build(color, frameVertexStage, {mainStep});
}

int CylinderSphereRender::render(int surfaceWidth, int surfaceHeight, const Frame& frame) {
    if (_size.changeTo(surfaceWidth, surfaceHeight)) setFrustumByAspect(_matrix, _size.aspect(), nearPlane, farPlane);
    if (!_size._sized) return 0;
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    setViewport({0, 0, surfaceWidth, surfaceHeight});
    draw(frame);
    return 0;
}

void CylinderSphereRender::draw(const Frame& frame) {
    _motion.step();
    placeCamera();
    _program.use(frame);
    _program.setMatrix(_matrix.computeMvp());
    _mesh.bind();
    _mesh.draw();
}

void CylinderSphereRender::placeCamera() {
    matrixIdentity(_matrix._modelMatrix);
    matrixLookAt(_matrix._viewMatrix, 0, 0, _motion._eyeZ, 0, 0, 0, 0, 1, 0);
    // The mesh has its axis along z and its rim towards the camera. Two half turns, together one about z; the tilt that
    // sets it upright; the spin about its own axis.
    _matrix.rotateView(180, 1, 0, 0);
    _matrix.rotateView(180, 0, 1, 0);
    matrixTranslate(_matrix._viewMatrix, 0, _motion._liftY, 0);
    _matrix.rotateView(180 - _motion._shownTilt, 1, 0, 0);
    _matrix.rotateView(180 - _motion._shownSpin, 0, 0, 1);
}

}  // namespace zet::ZETShow
