#pragma once

#include <cstdint>
#include <functional>
#include <ostream>
#include <vector>

#include "zet/records.h"

namespace zet::test {

/// 0 to 255 each.
struct Color {
    double r = 0;
    double g = 0;
    double b = 0;
};

inline std::ostream& operator<<(std::ostream& out, const Color& color) {
    return out << '(' << color.r << ' ' << color.g << ' ' << color.b << ')';
}

bool near(const Color& a, const Color& b, double tolerance);

/// Bytes of the three planes at one place.
struct Yuv {
    int y = 0;
    int u = 0;
    int v = 0;
};

/// Its colour by the module's default matrix: R = Y + 1.13983 V, G = Y - 0.39465 U - 0.58060 V, B = Y + 2.03211 U,
/// with U and V from 127.5, each held within 0 to 255.
Color toColor(double y, double u, double v);
inline Color toColor(const Yuv& yuv) {
    return toColor(yuv.y, yuv.u, yuv.v);
}

/// Pixels from the top left corner.
struct Picture {
    Picture() = default;
    Picture(int w, int h) : width(w), height(h), pixels(static_cast<std::size_t>(w) * static_cast<std::size_t>(h)) {}
    Color& at(int x, int y) { return pixels[static_cast<std::size_t>(y * width + x)]; }
    const Color& at(int x, int y) const { return pixels[static_cast<std::size_t>(y * width + x)]; }

    int width = 0;
    int height = 0;
    std::vector<Color> pixels;
};

/// A frame with planes of its own.
class Frame {
public:
    /// Paints each pixel; chroma is taken at the top left pixel of each 2 by 2. `lineSize` of 0 is the width.
    Frame(int width, int height, const std::function<Yuv(int x, int y)>& paint, int lineSize = 0);
    /// One colour everywhere.
    Frame(int width, int height, const Yuv& yuv) : Frame(width, height, [yuv](int, int) { return yuv; }) {}

    /// The colour that bilinear sampling of the planes gives at (u, v): 0 to 1, origin at the top left corner.
    Color sample(double u, double v) const;

    YUV420PData record;

private:
    std::vector<std::uint8_t> _y, _u, _v;
};

/// A smooth frame in which every place has a colour of its own.
Frame smoothFrame(int width, int height, int lineSize = 0);

}  // namespace zet::test
