#pragma once

#include <string>

namespace zetplay {

/// The whole of a file. Throws `Failure` with the path and the cause.
std::string readText(const std::string& path);

}  // namespace zetplay
