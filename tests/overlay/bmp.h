#pragma once

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace zet::test {

using Bytes = std::vector<std::uint8_t>;

/// Little endian.
inline void put(Bytes& bytes, std::size_t offset, std::uint32_t value, std::size_t count = 4) {
    for (std::size_t i = 0; i < count; ++i) bytes.at(offset + i) = static_cast<std::uint8_t>(value >> 8 * i);
}

/// A BMP file of unpadded rows; a negative height stores the top row first. `paint` gives 0xaarrggbb of a pixel from
/// the top left corner.
inline Bytes makeBmp(int width, int height, int bits, const std::function<std::uint32_t(int x, int y)>& paint) {
    const int rows = std::abs(height);
    const auto pixelSize = static_cast<std::size_t>(bits / 8);
    Bytes file(54 + pixelSize * static_cast<std::size_t>(width * rows));
    put(file, 0, 'B' | 'M' << 8);
    put(file, 2, static_cast<std::uint32_t>(file.size()));
    put(file, 10, 54);
    put(file, 18, static_cast<std::uint32_t>(width));
    put(file, 22, static_cast<std::uint32_t>(height));
    put(file, 28, static_cast<std::uint32_t>(bits), 2);
    std::size_t end = 54;
    for (int row = 0; row < rows; ++row) {
        for (int x = 0; x < width; ++x, end += pixelSize) {
            put(file, end, paint(x, height < 0 ? row : rows - 1 - row), pixelSize);
        }
    }
    return file;
}

inline void save(const std::string& path, const Bytes& bytes) {
    std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
}

}  // namespace zet::test
