#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "source.h"

namespace zetplay {

/// YUV to RGBA by the picture's colours, as the module shows them: opaque, top row first, no padding. `rgba` holds
/// `width * height * 4` bytes.
void convertToRgba(const Picture& picture, std::uint8_t* rgba);

/// "MATRIX,RANGE", such as "709,limited"; "none" for the module's default.
std::optional<zet::FrameColor> parseFrameColor(std::string_view text);
constexpr const char* frameColorForm =
    "MATRIX,RANGE, such as 709,limited: 601, 709, 2020, 240m, fcc, 470bg or their number, and limited or full; or none";

}  // namespace zetplay
