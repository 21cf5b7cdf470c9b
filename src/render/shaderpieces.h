#pragma once

// The GLSL that all programs of a frame share. `FrameProgram` puts `frameDeclarations`, the colours' constants,
// `planeSampling` and `lensSampling` in front of what the view adds.

namespace zet::ZETShow {

/// Reads a_position, a_texCoord and u_mapMatrix; leaves v_texCoord.
extern const char* const frameVertexStage;

/// Declares y_texture, uv_texture, region and v_texCoord.
extern const char* const frameDeclarations;

/// Reads the constants levels (weight and offset of Y, middle of U and V) and weights (V in red, U and V in green, U in
/// blue). `vec4 samplePlanes(vec2 texCoord)`: the colour there in the planes' textures (0 to 1, origin at the first
/// row).
extern const char* const planeSampling;

/// `vec4 sampleLens(vec2 place)`: the colour at a place of the lens region, -1 to 1 from its left to its right and from
/// its top to its bottom. Not clamped: a view's own lookup stays within these bounds.
extern const char* const lensSampling;

}  // namespace zet::ZETShow
