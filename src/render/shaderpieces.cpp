#include "render/shaderpieces.h"

namespace zet::ZETShow {

const char* const frameVertexStage = R"(
attribute vec4 a_position;
attribute vec2 a_texCoord;
uniform mat4 u_mapMatrix;
varying vec2 v_texCoord;
void main() {
    gl_Position = u_mapMatrix * a_position;
    v_texCoord = a_texCoord;
}
)";

const char* const frameDeclarations = R"(
uniform sampler2D y_texture;
uniform sampler2D uv_texture;
uniform vec4 region;
varying vec2 v_texCoord;
)";

const char* const planeSampling = R"(
vec4 samplePlanes(vec2 texCoord) {
    float y = texture2D(y_texture, texCoord).r * levels.x + levels.y;
    vec2 uv = texture2D(uv_texture, texCoord).ra - levels.z;
    return vec4(y + weights.x * uv.y, y + weights.y * uv.x + weights.z * uv.y, y + weights.w * uv.x, 1.0);
}
)";

const char* const lensSampling = R"(
vec4 sampleLens(vec2 place) {
    return samplePlanes(region.xy + place * region.zw);
}
)";

}  // namespace zet::ZETShow
