#pragma once

#include <string>

#include "media/image.h"

namespace zetplay {

/// Throws `Failure` with the path and the cause; then a file of that name stays as it was, and no new one is left.
void writePng(const std::string& path, const Image& image);
/// The same for bytes that are written as they are.
void writeBytes(const std::string& path, const std::vector<std::uint8_t>& bytes);

}  // namespace zetplay
