#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zetplay {

/// "flat", "half-sphere", …; empty for a number that no view has.
std::string_view viewName(int view);
/// "0 to 10"
std::string viewNumbers();
/// All names in the order of their numbers, with ", " between.
std::string viewNames();
/// A number that a view has, or a name.
std::optional<int> viewFromText(std::string_view text);

}  // namespace zetplay
