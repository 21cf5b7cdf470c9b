#pragma once

// The GLSL that all programs of a frame share. `FrameProgram::build` puts `frameDeclarations`, `planeSampling` and
// `pictureSampling` in front of what the view adds.

namespace zet::ZETShow {

/// Reads a_position, a_texCoord and u_mapMatrix; leaves v_texCoord.
extern const char* const frameVertexStage;

/// Declares y_texture, uv_texture, colorMatrix, colorOffset, region and v_texCoord.
extern const char* const frameDeclarations;

/// `vec4 samplePlanes(vec2 tc)`: the colour at tc of the planes' textures (0 to 1, origin at the first row).
extern const char* const planeSampling;

/// `vec4 samplePicture(vec2 tc)`: the colour at tc of the lens region (0 to 1, origin at its top left corner), whose
/// edge goes on outside.
extern const char* const pictureSampling;

}  // namespace zet::ZETShow
