#include "views/parts/detailarea.h"

#include <algorithm>

namespace zet::ZETShow {

const char* const detailVertexStage = R"(
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

// What lies behind the detail's camera has a negative w: divided by its size, such a point stays in front of the near
// plane and out of the light.
const char* const detailLight = R"(
uniform float mode;
uniform float viewportX;
uniform float viewportY;
uniform float viewportWidth;
uniform float viewportHeight;
uniform float projectNear;
uniform float projectFar;
varying vec4 vPositionRect;
bool within(float value, float start, float length) {
    return value >= start && value <= start + length;
}
vec4 lightUp(vec3 rgb) {
    if (mode != 1.0) return vec4(rgb, 1.0);
    vec3 pos = vPositionRect.xyz / abs(vPositionRect.w);
    float x = viewportWidth / 2.0 * pos.x + viewportX + viewportWidth / 2.0;
    float y = viewportHeight / 2.0 * pos.y + viewportY + viewportHeight / 2.0;
    float z = (projectFar - projectNear) * pos.z / 2.0 + (projectFar + projectNear) / 2.0;
    bool shown = within(x, viewportX, viewportWidth) && within(y, viewportY, viewportHeight) &&
                 z >= projectNear && z <= projectFar;
    return vec4(rgb, 1.0) + (shown ? vec4(0.3, 0.3, 0.3, 1.0) : vec4(0.0));
}
)";

void DetailArea::layoutPanes(int width, int height) {
    const bool heightDecides = width / 2 > height;
    const int margin = heightDecides ? height / 75 : width / 150;
    const int side = heightDecides ? height - 2 * margin : (width - 2 * margin) / 2;
    const int x = heightDecides ? (width - 2 * side) / 2 : margin;
    const int y = heightDecides ? margin : (height - side) / 2;
    _paneRects[detailPane] = {x + side, y, side, side};
    _paneRects[mapPane] = {x, y, side, side};
}

void DetailArea::setDetailMatrix(const float* mvp) {
    std::copy_n(mvp, 16, _rectMatrix);
}

void DetailArea::fetchLocations(GLuint program) {
    _mapMatrixRectLoc = glGetUniformLocation(program, "u_mapMatrixRect");
    _modeLoc = glGetUniformLocation(program, "mode");
    _viewportXLoc = glGetUniformLocation(program, "viewportX");
    _viewportYLoc = glGetUniformLocation(program, "viewportY");
    _viewportWidthLoc = glGetUniformLocation(program, "viewportWidth");
    _viewportHeightLoc = glGetUniformLocation(program, "viewportHeight");
    _projectNearLoc = glGetUniformLocation(program, "projectNear");
    _projectFarLoc = glGetUniformLocation(program, "projectFar");
}

void DetailArea::send(int pane, float near, float far) const {
    const PaneRect& detail = _paneRects[detailPane];
    glUniformMatrix4fv(_mapMatrixRectLoc, 1, GL_FALSE, _rectMatrix);
    glUniform1f(_modeLoc, static_cast<float>(pane));
    glUniform1f(_viewportXLoc, static_cast<float>(detail.x));
    glUniform1f(_viewportYLoc, static_cast<float>(detail.y));
    glUniform1f(_viewportWidthLoc, static_cast<float>(detail.width));
    glUniform1f(_viewportHeightLoc, static_cast<float>(detail.height));
    glUniform1f(_projectNearLoc, near);
    glUniform1f(_projectFarLoc, far);
}

}  // namespace zet::ZETShow
