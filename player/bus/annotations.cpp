#include "bus/annotations.h"

#include <algorithm>

#include "text/words.h"

namespace zetplay {

namespace {

/// `count` integers; nothing if a piece isn't an integer or their number differs.
template <std::size_t count>
std::optional<std::array<int, count>> parseIntegers(const std::vector<std::string>& pieces) {
    if (pieces.size() < count) return std::nullopt;
    std::array<int, count> numbers{};
    for (std::size_t i = 0; i < count; ++i) {
        const auto number = parseNumber<int>(pieces[i]);
        if (!number) return std::nullopt;
        numbers[i] = *number;
    }
    return numbers;
}

std::optional<std::array<int, 4>> parseFour(std::string_view text) {
    const auto pieces = splitAtCommas(text);
    return pieces.size() == 4 ? parseIntegers<4>(pieces) : std::nullopt;
}

}  // namespace

std::optional<LensRegion> parseLens(std::string_view text) {
    return parseFour(text);
}

std::optional<zet::RectItem> parseRect(std::string_view text) {
    const auto numbers = parseFour(text);
    if (!numbers) return std::nullopt;
    const auto [x, y, width, height] = *numbers;
    return zet::RectItem{x, y, width, height, 0};
}

std::optional<zet::FaceItem> parseFace(std::string_view text) {
    const auto pieces = splitAtCommas(text, 7);
    if (pieces.size() != 7) return std::nullopt;
    const auto box = parseIntegers<5>(pieces);
    const auto age = parseNumber<std::uint32_t>(pieces[5]);
    if (!box || !age) return std::nullopt;
    const auto [x, y, width, height, gender] = *box;
    zet::FaceItem face;
    face.gender = gender;
    face.age = *age;
    face.x = x;
    face.y = y;
    face.width = width;
    face.height = height;
    if (!setName(face, pieces[6])) return std::nullopt;
    return face;
}

bool setName(zet::FaceItem& face, std::string_view name) {
    if (name.size() >= sizeof face.name) return false;
    std::fill(std::begin(face.name), std::end(face.name), '\0');
    std::copy(name.begin(), name.end(), face.name);
    return true;
}

}  // namespace zetplay
