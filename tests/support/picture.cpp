#include "support/picture.h"

#include <algorithm>
#include <cmath>

namespace zet::test {

bool near(const Color& a, const Color& b, double tolerance) {
    return std::abs(a.r - b.r) <= tolerance && std::abs(a.g - b.g) <= tolerance && std::abs(a.b - b.b) <= tolerance;
}

Color toColor(double y, double u, double v) {
    const auto byte = [](double value) { return std::clamp(value, 0.0, 255.0); };
    u -= 127.5;
    v -= 127.5;
    return {byte(y + 1.13983 * v), byte(y - 0.39465 * u - 0.58060 * v), byte(y + 2.03211 * u)};
}

Frame::Frame(int width, int height, const std::function<Yuv(int x, int y)>& paint, int lineSize) {
    record.width = width;
    record.height = height;
    record.yLineSize = lineSize != 0 ? lineSize : width;
    record.uvLineSize = record.yLineSize / 2;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < record.yLineSize; ++x) {
            const Yuv yuv = paint(x, y);
            _y.push_back(static_cast<std::uint8_t>(yuv.y));
            if (x % 2 != 0 || y % 2 != 0) continue;
            _u.push_back(static_cast<std::uint8_t>(yuv.u));
            _v.push_back(static_cast<std::uint8_t>(yuv.v));
        }
    }
    record.y = _y.data();
    record.u = _u.data();
    record.v = _v.data();
}

Color Frame::sample(double u, double v) const {
    const auto samplePlane = [=](const std::vector<std::uint8_t>& plane, int lineSize, int rows) {
        const double x = u * lineSize - 0.5, left = std::floor(x);
        const double y = v * rows - 0.5, top = std::floor(y);
        const auto texel = [&](double column, double row) {
            const int c = static_cast<int>(std::clamp(column, 0.0, lineSize - 1.0));
            const int r = static_cast<int>(std::clamp(row, 0.0, rows - 1.0));
            return static_cast<double>(plane[static_cast<std::size_t>(r * lineSize + c)]);
        };
        const double upper = std::lerp(texel(left, top), texel(left + 1, top), x - left);
        const double lower = std::lerp(texel(left, top + 1), texel(left + 1, top + 1), x - left);
        return std::lerp(upper, lower, y - top);
    };
    return toColor(samplePlane(_y, record.yLineSize, record.height),
                   samplePlane(_u, record.uvLineSize, record.height / 2),
                   samplePlane(_v, record.uvLineSize, record.height / 2));
}

Frame smoothFrame(int width, int height, int lineSize) {
    const auto paint = [=](int x, int y) {
        return Yuv{70 + 100 * x / width, 95 + 60 * y / height, 150 - 40 * x / width};
    };
    return Frame(width, height, paint, lineSize);
}

}  // namespace zet::test
