#pragma once

namespace zet::ZETShow {

/// A part of the surface, GL pixels, origin at the bottom left corner.
struct Viewport {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

}  // namespace zet::ZETShow
