#include "overlay/bmpfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace zet::ZETShow {

namespace {

constexpr std::size_t leastSize = 45;

// Offsets of the little-endian header fields.
constexpr std::size_t bfSize = 2;
constexpr std::size_t bfOffBits = 10;
constexpr std::size_t biWidth = 18;
constexpr std::size_t biHeight = 22;
constexpr std::size_t biBitCount = 28;

std::uint32_t word(const std::uint8_t* bytes) {
    return static_cast<std::uint32_t>(bytes[0] | bytes[1] << 8 | bytes[2] << 16) | static_cast<std::uint32_t>(bytes[3])
                                                                                       << 24;
}

}  // namespace

BmpVerdict parseBmp(const std::uint8_t* file, std::size_t size, BmpPicture& picture) {
    if (size < leastSize || word(file + bfSize) != size) return BmpVerdict::foreign;
    const int bits = file[biBitCount] | file[biBitCount + 1] << 8;
    if (bits != 24 && bits != 32) return BmpVerdict::foreign;

    const std::uint64_t offset = word(file + bfOffBits);
    const std::uint64_t width = word(file + biWidth);
    const auto rows = static_cast<std::int64_t>(static_cast<std::int32_t>(word(file + biHeight)));
    const auto height = static_cast<std::uint64_t>(std::abs(rows));
    if (offset > size) return BmpVerdict::broken;
    // Divided, not multiplied: the product of the three could pass 64 bits.
    const std::uint64_t bytesPerPixel = static_cast<std::uint64_t>(bits) / 8;
    const std::uint64_t bytes = size - offset;
    if (bytes == 0 || bytes % bytesPerPixel != 0 || bytes / bytesPerPixel != width * height) return BmpVerdict::broken;
    if (width > INT_MAX || height > INT_MAX) return BmpVerdict::broken;
    picture = {static_cast<int>(width), static_cast<int>(height), bits, rows < 0, file + offset};
    return BmpVerdict::sound;
}

std::vector<std::uint8_t> readFile(const char* path) {
    // A pipe would hold up the thread until somebody writes. The open file is asked, not the path: that may name
    // another by now.
    const int opened = open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (opened < 0) return {};
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(fdopen(opened, "rb"), &std::fclose);
    if (!file) {
        close(opened);
        return {};
    }
    struct stat status = {};
    if (fstat(opened, &status) != 0 || !S_ISREG(status.st_mode)) return {};
    if (status.st_size <= 0 || status.st_size > INT_MAX) return {};
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(status.st_size));
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file.get()));
    return bytes;
}

}  // namespace zet::ZETShow
