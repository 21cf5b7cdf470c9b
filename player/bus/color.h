#pragma once

#include <cstdint>
#include "media/source.h"

namespace zetplay {

/// YUV to RGBA by the picture's colours, as the module shows them: opaque, top row first, no padding. `rgba` holds
/// `width * height * 4` bytes.
void convertToRgba(const Picture& picture, std::uint8_t* rgba);

}  // namespace zetplay
