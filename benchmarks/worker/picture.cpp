#include "worker/picture.h"

#include <cmath>

namespace bench {

namespace {

std::vector<std::uint8_t> waves(int width, int height, double across, double down, double phase) {
    std::vector<std::uint8_t> plane;
    plane.reserve(static_cast<std::size_t>(width * height));
    for (int row = 0; row < height; ++row) {
        for (int column = 0; column < width; ++column) {
            const double x = static_cast<double>(column) / width;
            const double y = static_cast<double>(row) / height;
            const double wave = std::sin(across * x * (1.0 + x) + phase) * std::cos(down * y + phase);
            plane.push_back(static_cast<std::uint8_t>(128.0 + 70.0 * wave));
        }
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
