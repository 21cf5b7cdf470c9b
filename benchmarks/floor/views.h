#pragma once

#include <vector>

#include "floor/mat4.h"
#include "floor/mesh.h"
#include "worker/picture.h"

namespace bench {

struct Rect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// One draw of a view at rest, in the order in which they are made.
struct Draw {
    Rect viewport;         // GL pixels of the window
    Mesh (*mesh)();        // draws with the same function share the mesh
    const char* vertex;    // GLSL; null for the plain one
    const char* fragment;  // GLSL, its `main`: see views.cpp
    Mat4 matrix;           // of the vertices
    Mat4 light{};          // the map's: the matrix of the pane whose part is lit up
};

/// How a view at rest is drawn, with all its numbers known beforehand.
struct View {
    std::vector<Draw> draws;
    bool depth = false;   // the near side hides the far one
    bool covers = false;  // the whole window: nothing to clear
};

View makeView(int number, Size window, Size frame);

}  // namespace bench
