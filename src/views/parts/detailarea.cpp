#include "views/parts/detailarea.h"

#include "render/shaderpieces.h"
#include "views/parts/dome.h"
#include "views/parts/lenspieces.h"

namespace zet::ZETShow {

namespace {

// Reads a_position, a_texCoord, u_mapMatrix and u_mapMatrixRect, the detail's combined matrix; leaves v_texCoord and
// the place that the detail's camera sees the vertex at.
const char* const mapVertexStage = R"(
attribute vec4 a_position;
attribute vec2 a_texCoord;
uniform mat4 u_mapMatrix;
uniform mat4 u_mapMatrixRect;
varying vec2 v_texCoord;
varying vec4 vPositionRect;
void main() {
    gl_Position = u_mapMatrix * a_position;
    v_texCoord = a_texCoord;
    vPositionRect = u_mapMatrixRect * a_position;
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

// Lit is what lies within the detail's clip volume. What lies behind its camera has a negative w: against the size of
// w, such a point is in front of the near plane and out of the light.
const char* const litMain = R"(
varying vec4 vPositionRect;
void main() {
    bool shown = all(lessThanEqual(abs(vPositionRect.xyz), vec3(abs(vPositionRect.w))));
    gl_FragColor = clamp(domeColor(), 0.0, 1.0) + (shown ? vec4(0.3, 0.3, 0.3, 0.0) : vec4(0.0));
}
)";

}  // namespace

int DetailArea::init(FrameProgram& plain, const ColorTransform& color) {
    _dome.load(makeDome(onSphere));
    if (plain.build(color, frameVertexStage, {evenRadius, lensPointOpposite, domeColor, plainMain}) != 0) return -1;
    return _mapProgram.build(color, mapVertexStage, {evenRadius, lensPointOpposite, domeColor, litMain},
                             {"u_mapMatrixRect"});
}

void DetailArea::layoutPanes(int width, int height) {
    const bool heightDecides = width / 2 > height;
    const int margin = heightDecides ? height / 75 : width / 150;
    const int side = heightDecides ? height - 2 * margin : (width - 2 * margin) / 2;
    const int x = heightDecides ? (width - 2 * side) / 2 : margin;
    const int y = heightDecides ? margin : (height - side) / 2;
    _detailPane = {x + side, y, side, side};
    _mapPane = {x, y, side, side};
}

void DetailArea::drawDetail(FrameProgram& plain, const Frame& frame, const float* detailMatrix) const {
    plain.use(frame);
    plain.setMatrix(detailMatrix);
    _dome.bind();
    _dome.draw();
}

void DetailArea::drawMap(const Frame& frame, const float* mapMatrix, const float* detailMatrix) {
    _mapProgram.use(frame);
    _mapProgram.setMatrix(mapMatrix);
    _mapProgram.setMatrix(0, detailMatrix);
    _dome.bind();
    _dome.draw();
}

}  // namespace zet::ZETShow
