#include "views/runlengthpicture.h"

#include <algorithm>

namespace zet::ZETShow {

namespace {

constexpr unsigned fillBit = 0x8000;
constexpr unsigned longBit = 0x4000;
constexpr unsigned mediumBit = 0x2000;
constexpr unsigned lengthBits = 0x1f00;

// The bytes that are still to be read. Reading past the end gives 0 and marks the stream as broken.
class Reader {
public:
    explicit Reader(std::span<const std::uint8_t> bytes) : _rest(bytes) {}

    bool isAtEnd() const { return _rest.empty(); }
    bool isBroken() const { return _broken; }
    std::span<const std::uint8_t> bytes(std::size_t count) {
        _broken = _broken || count > _rest.size();
        if (_broken) return {};
        const auto taken = _rest.first(count);
        _rest = _rest.subspan(count);
        return taken;
    }
    unsigned byte() {
        const auto taken = bytes(1);
        return taken.empty() ? 0 : taken.front();
    }
    unsigned word() {
        const unsigned low = byte();
        return low + (byte() << 8);
    }

private:
    std::span<const std::uint8_t> _rest;
    bool _broken = false;
};

std::size_t tokenLength(unsigned word, Reader& reader) {
    const unsigned high = word & lengthBits;
    if (word & mediumBit) return high + reader.byte();
    if (word & longBit) {
        const unsigned low = reader.byte();
        return ((high + reader.byte()) << 8) + low;
    }
    return high >> 8;
}

// False if the token is cut short or doesn't fit into `size` bytes.
bool unpackToken(Reader& reader, std::vector<std::uint8_t>& out, std::size_t size) {
    const unsigned word = reader.word();
    const std::size_t length = tokenLength(word, reader);
    const auto value = static_cast<std::uint8_t>(word & 0xff);
    if (reader.isBroken() || length > size - out.size()) return false;
    if (word & fillBit) {
        out.insert(out.end(), length, value);
        return true;
    }
    if (length == 0) return false;
    const auto following = reader.bytes(length - 1);
    out.push_back(value);
    out.insert(out.end(), following.begin(), following.end());
    return !reader.isBroken();
}

}  // namespace

const std::uint8_t* PlanarPicture::plane(int index) const {
    const int ySize = width * height;
    return bytes.data() + (index == 0 ? 0 : index == 1 ? ySize : ySize + ySize / 4);
}

PlanarPicture unpackPicture(std::span<const std::uint8_t> stream) {
    Reader reader(stream);
    const unsigned width = reader.word();
    const unsigned height = reader.word();
    if (width % 2 != 0 || height % 2 != 0) return {};
    const std::size_t size = std::size_t{width} * height * 3 / 2;
    PlanarPicture picture = {static_cast<int>(width), static_cast<int>(height), {}};
    while (!reader.isAtEnd()) {
        if (!unpackToken(reader, picture.bytes, size)) return {};
    }
    return picture.bytes.size() == size ? picture : PlanarPicture();
}

std::vector<std::uint8_t> toRgba(const PlanarPicture& picture) {
    const int width = picture.width;
    const int height = picture.height;
    // A chroma sample lies in the middle of four pixels: a pixel takes three quarters of the nearer one in each
    // direction.
    const auto chromaAt = [&](int plane, int x, int y) {
        const int farX = std::clamp(x % 2 == 0 ? x / 2 - 1 : x / 2 + 1, 0, width / 2 - 1);
        const int farY = std::clamp(y % 2 == 0 ? y / 2 - 1 : y / 2 + 1, 0, height / 2 - 1);
        const std::uint8_t* const samples = picture.plane(plane);
        const auto at = [&](int column, int row) { return static_cast<float>(samples[row * (width / 2) + column]); };
        const float nearRow = 0.75f * at(x / 2, y / 2) + 0.25f * at(farX, y / 2);
        const float farRow = 0.75f * at(x / 2, farY) + 0.25f * at(farX, farY);
        return 0.75f * nearRow + 0.25f * farRow - 127.5f;
    };
    const auto level = [](float value) { return static_cast<std::uint8_t>(std::clamp(value, 0.0f, 255.0f) + 0.5f); };
    std::vector<std::uint8_t> rgba;
    rgba.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const float luma = 1.1643f * (static_cast<float>(picture.plane(0)[y * width + x]) - 0.0625f * 255.0f);
            const float u = chromaAt(1, x, y);
            const float v = chromaAt(2, x, y);
            rgba.insert(rgba.end(), {level(luma + 1.5958f * v), level(luma - 0.39173f * u - 0.81290f * v),
                                     level(luma + 2.017f * u), 255});
        }
    }
    return rgba;
}

}  // namespace zet::ZETShow
