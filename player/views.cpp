#include "views.h"

#include <algorithm>
#include <array>

#include "words.h"

namespace zetplay {

namespace {

constexpr std::array<std::string_view, viewCount> names = {"flat",     "half-sphere", "panorama", "four-pane",
                                                           "map",      "drum",        "bowl",     "wall-three",
                                                           "wall-two", "wall-one",    "wall-180"};

}  // namespace

std::string_view viewName(int view) {
    return view >= 0 && view < viewCount ? names[static_cast<std::size_t>(view)] : std::string_view{};
}

std::optional<int> viewFromText(std::string_view text) {
    const auto name = std::find(names.begin(), names.end(), text);
    if (name != names.end()) return static_cast<int>(name - names.begin());
    const auto number = parseNumber<int>(text);
    if (number && *number >= 0 && *number < viewCount) return number;
    return std::nullopt;
}

}  // namespace zetplay
