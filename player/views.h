#pragma once

#include <optional>
#include <string_view>

namespace zetplay {

inline constexpr int viewCount = 11;

/// The views that the player treats differently from the others.
inline constexpr int flatView = 0;
inline constexpr int halfSphereView = 1;
inline constexpr int wallTwoView = 8;

/// "flat", "half-sphere", …; empty for a number that no view has.
std::string_view viewName(int view);
/// A number from 0 to 10 or a name.
std::optional<int> viewFromText(std::string_view text);

}  // namespace zetplay
