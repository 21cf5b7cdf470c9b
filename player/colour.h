#pragma once

#include <cstdint>

#include "source.h"

namespace zetplay {

/// YUV to RGBA by the module's matrix, opaque, top row first, no padding. `rgba` holds `width * height * 4` bytes.
void convertToRgba(const Picture& picture, std::uint8_t* rgba);

}  // namespace zetplay
