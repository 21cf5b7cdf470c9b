#include "worker/picture.h"

#include <cmath>

namespace bench {

namespace {

std::vector<std::uint8_t> waves(int width, int height, double across, double down, double phase) {
    std::vector<double> columns;
    for (int i = 0; i < width; ++i) {
        const double x = static_cast<double>(i) / width;
        columns.push_back(70.0 * std::sin(across * x * (1.0 + x) + phase));
    }
    std::vector<std::uint8_t> plane;
    plane.reserve(static_cast<std::size_t>(width * height));
    for (int row = 0; row < height; ++row) {
        const double factor = std::cos(down * row / height + phase);
        for (const double column : columns) plane.push_back(static_cast<std::uint8_t>(128.0 + column * factor));
    }
    return plane;
}

}  // namespace

Picture::Picture(Size pictureSize, int number)
    : size(pictureSize),
      y(waves(size.width, size.height, 60.0, 90.0, number)),
      u(waves(size.width / 2, size.height / 2, 17.0, 11.0, 1.0 + number)),
      v(waves(size.width / 2, size.height / 2, 13.0, 23.0, 2.0 + number)) {}

}  // namespace bench
