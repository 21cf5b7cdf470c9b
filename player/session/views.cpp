#include "session/views.h"

#include <algorithm>

#include "text/words.h"
#include "zet/rendermode.h"

namespace zetplay {

std::string_view viewName(int view) {
    const zet::RenderModeInfo* const known = zet::findRenderMode(view);
    return known ? known->name : std::string_view{};
}

std::string viewNumbers() {
    return "0 to " + std::to_string(zet::renderModes.size() - 1);
}

std::string viewNames() {
    std::string names;
    for (const zet::RenderModeInfo& known : zet::renderModes) (names += names.empty() ? "" : ", ") += known.name;
    return names;
}

std::optional<int> viewFromText(std::string_view text) {
    const auto* const named = std::find_if(zet::renderModes.begin(), zet::renderModes.end(),
                                           [&](const zet::RenderModeInfo& known) { return known.name == text; });
    if (named != zet::renderModes.end()) return named->mode;
    const auto number = parseNumber<int>(text);
    return number && zet::findRenderMode(*number) ? number : std::nullopt;
}

}  // namespace zetplay
