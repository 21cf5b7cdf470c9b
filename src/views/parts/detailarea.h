#pragma once

#include <GLES2/gl2.h>

#include "views/parts/camera.h"

namespace zet::ZETShow {

// Two square panes side by side: on the left, pane 1, the whole dome as on a map, and on the right, pane 0, a detail of
// it. What the detail shows is lit up on the map: each of its pixels is sent through the detail's camera.

/// Reads a_position, a_texCoord, u_mapMatrix and u_mapMatrixRect, the detail's combined matrix; leaves v_texCoord and
/// vPositionRect.
extern const char* const detailVertexStage;

/// `vec4 lightUp(vec3 rgb)`: the pixel, brightened where `mode` is 1.0 and the detail shows its place. Reads
/// vPositionRect and the uniforms of `DetailArea`.
extern const char* const detailLight;

/// The two panes, and the uniforms of the light.
struct DetailArea {
    static constexpr int detailPane = 0;
    static constexpr int mapPane = 1;

    /// Two squares in the middle of the surface, as large as a narrow margin allows. Render thread.
    void layoutPanes(int width, int height);
    /// Keeps the matrix through which the detail was seen. Render thread.
    void setDetailMatrix(const float* mvp);
    /// A program built with the pieces above; where one lacks a name, only the light is lost. Render thread.
    void fetchLocations(GLuint program);
    /// For drawing `pane` with the program in use; `near` and `far` are the detail's planes. Render thread.
    void send(int pane, float near, float far) const;

    PaneRect _paneRects[2];
    float _rectMatrix[16] = {};

    GLint _mapMatrixRectLoc = -1;
    GLint _modeLoc = -1;
    GLint _viewportXLoc = -1;
    GLint _viewportYLoc = -1;
    GLint _viewportWidthLoc = -1;
    GLint _viewportHeightLoc = -1;
    GLint _projectNearLoc = -1;
    GLint _projectFarLoc = -1;
};

}  // namespace zet::ZETShow
