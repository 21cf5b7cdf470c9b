#pragma once

#include <string>

#include "media/image.h"

namespace zetplay {

/// Throws `Failure` with the path and the cause. Then an old file of that name is unchanged, and no new one is left.
void writePng(const std::string& path, const Image& image);
/// The same for bytes that are written as they are.
void writeBytes(const std::string& path, const std::vector<std::uint8_t>& bytes);

}  // namespace zetplay
