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
uniform int planeSize;
varying vec2 v_texCoord;
)";

const char* const yuvSampling = R"(
vec4 samplePicture(vec2 tc) {
    if (planeSize == 1) return texture2D(y_texture, tc);
    vec3 yuv = vec3(texture2D(y_texture, tc).r, texture2D(uv_texture, tc).ra - 0.5);
    return vec4(mat3(1.0, 1.0, 1.0, 0.0, -0.39465, 2.03211, 1.13983, -0.58060, 0.0) * yuv, 1.0);
}
)";

}  // namespace zet::ZETShow
