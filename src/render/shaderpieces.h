#pragma once

// The GLSL that all programs of a frame share. A fragment stage is joined from a precision line, `frameDeclarations`,
// what the view adds, `yuvSampling` and the view's main.

namespace zet::ZETShow {

/// Reads a_position, a_texCoord and u_mapMatrix; leaves v_texCoord.
extern const char* const frameVertexStage;

/// Declares y_texture, uv_texture, planeSize and v_texCoord.
extern const char* const frameDeclarations;

/// `vec4 samplePicture(vec2 tc)`: the picture at tc (0 to 1, origin at the first row), from one RGBA texture where
/// planeSize is 1, otherwise from full-range Y and interleaved UV. The matrix has the luma of ITU-R BT.601 with the
/// weights of analogue U and V (0.492 and 0.877), not those of JFIF (1.772 and 1.402 instead of 2.03211 and 1.13983).
extern const char* const yuvSampling;

}  // namespace zet::ZETShow
