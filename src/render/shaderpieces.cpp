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
uniform mat3 colorMatrix;
uniform vec3 colorOffset;
uniform vec4 region;
varying vec2 v_texCoord;
)";

const char* const planeSampling = R"(
vec4 samplePlanes(vec2 tc) {
    vec3 yuv = vec3(texture2D(y_texture, tc).r, texture2D(uv_texture, tc).ra);
    return vec4(colorMatrix * (yuv - colorOffset), 1.0);
}
)";

const char* const pictureSampling = R"(
vec4 samplePicture(vec2 tc) {
    return samplePlanes(region.xy + clamp(tc, 0.0, 1.0) * region.zw);
}
)";

}  // namespace zet::ZETShow
