#include "views/runlengthpicture.h"

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

}  // namespace zet::ZETShow
