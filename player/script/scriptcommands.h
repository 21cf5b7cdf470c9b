#pragma once

#include <functional>
#include <optional>
#include <string>

#include "session/session.h"

namespace zetplay {

/// A line without its number; nothing for an empty one. Throws `WrongUsage` with the cause.
std::optional<std::function<void(Session&)>> parseScriptLine(const std::string& line);

}  // namespace zetplay
