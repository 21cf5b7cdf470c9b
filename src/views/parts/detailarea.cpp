#include "views/parts/detailarea.h"

#include "render/shaderpieces.h"
#include "views/parts/dome.h"
#include "views/parts/lenspieces.h"

namespace zet::ZETShow {

namespace {

// u_detailMatrix is the combined matrix of the detail's camera; v_inDetail is where that camera sees the vertex, in its
// clip space.
const char* const mapVertexStage = R"(
attribute vec4 a_position;
attribute vec2 a_texCoord;
uniform mat4 u_mapMatrix;
uniform mat4 u_detailMatrix;
varying vec2 v_texCoord;
varying vec4 v_inDetail;
void main() {
    gl_Position = u_mapMatrix * a_position;
    v_texCoord = a_texCoord;
    v_inDetail = u_detailMatrix * a_position;
}
)";

const char* const domeColor = R"(
vec4 domeColor() {
    return sampleLens(lensPointOpposite(evenRadius(v_texCoord.t), v_texCoord.s));
}
)";

const char* const plainMain = R"(
void main() {
    gl_FragColor = domeColor();
}
)";

// Lit is what lies within the detail's clip volume: |x|, |y|, |z| <= w (OpenGL ES 2.0, section 2.13). Behind the camera
// w is negative; by its size such a point is before the near plane, and stays dark.
const char* const litMain = R"(
varying vec4 v_inDetail;
void main() {
    bool shown = all(lessThanEqual(abs(v_inDetail.xyz), vec3(abs(v_inDetail.w))));
    gl_FragColor = clamp(domeColor(), 0.0, 1.0) + (shown ? vec4(0.3, 0.3, 0.3, 0.0) : vec4(0.0));
}
)";

constexpr float paneAspect = 1.0f;  // panes are square
constexpr float farPlane = 25.0f;

}  // namespace

int DetailArea::init(FrameProgram& plain, const ColorTransform& color) {
    _dome.load(makeDome(onSphere));
    if (plain.build(color, frameVertexStage, {evenRadius, lensPointOpposite, domeColor, plainMain}) != 0) return -1;
    return _mapProgram.build(color, mapVertexStage, {evenRadius, lensPointOpposite, domeColor, litMain},
                             {"u_detailMatrix"});
}

void DetailArea::layOut(const SurfaceSize& surface, float nearPlane) {
    for (MatrixState* const matrices : {&_detailMatrices, &_mapMatrices}) {
        setFrustumByAspect(*matrices, paneAspect, nearPlane, farPlane);
        matrixIdentity(matrices->_modelMatrix);
    }
    const int width = surface._lastWidth;
    const int height = surface._lastHeight;
    const bool heightDecides = width / 2 > height;
    const int margin = heightDecides ? height / 75 : width / 150;
    const int side = heightDecides ? height - 2 * margin : (width - 2 * margin) / 2;
    const int x = heightDecides ? (width - 2 * side) / 2 : margin;
    const int y = heightDecides ? margin : (height - side) / 2;
    _detailPane = {x + side, y, side, side};
    _mapPane = {x, y, side, side};
}

void DetailArea::drawDetail(FrameProgram& plain, const Frame& frame) {
    plain.use(frame);
    plain.setMatrix(_detailMatrices.computeMvp());
    _dome.bind();
    _dome.draw();
}

void DetailArea::drawMap(const Frame& frame) {
    _mapProgram.use(frame);
    _mapProgram.setMatrix(_mapMatrices.computeMvp());
    _mapProgram.setMatrix(0, _detailMatrices._mvpMatrix);
    _dome.bind();
    _dome.draw();
}

}  // namespace zet::ZETShow
