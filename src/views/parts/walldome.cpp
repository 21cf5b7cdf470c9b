#include "views/parts/walldome.h"

#include "views/parts/camera.h"

namespace zet::ZETShow {

namespace {

const char* const vertexStage = R"(
attribute vec4 a_position;
attribute vec2 a_texCoord;
uniform mat4 u_mapMatrix;
uniform float xStretch;
uniform float zStretch;
varying vec2 v_texCoord;
varying vec3 v_place;
void main() {
    v_place = a_position.xyz * vec3(xStretch, 1.0, zStretch);
    gl_Position = u_mapMatrix * vec4(v_place, 1.0);
    v_texCoord = a_texCoord;
}
)";

constexpr float nearPlane = 1.0f;
constexpr float farPlane = 30.0f;

}  // namespace

int WallDome::init(FrameProgram& program, const ColorTransform& color, const DomeRule& rule,
                   std::initializer_list<const char*> pieces) {
    _mesh.load(makeDome(rule));
    return program.build(color, vertexStage, pieces, {"xStretch", "zStretch"});
}

bool WallDome::fitTo(SurfaceSize& size, int surfaceWidth, int surfaceHeight) {
    if (size.changeTo(surfaceWidth, surfaceHeight)) setFrustumByAspect(_matrices, size.aspect(), nearPlane, farPlane);
    return size._sized != 0;
}

void WallDome::draw(FrameProgram& program, const Frame& frame, const WallZoom& motion) {
    matrixIdentity(_matrices._modelMatrix);
    motion.updateCamera(_matrices);
    program.use(frame);
    program.setMatrix(_matrices.computeMvp());
    program.set(0, motion._stretch.x);
    program.set(1, motion._stretch.z);
    _mesh.bind();
    _mesh.draw();
}

}  // namespace zet::ZETShow
