#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include "zet/records.h"

namespace zetplay {

/// Centre x, y and radius x, y of the lens circle in 1/10000 of the picture's width or height.
using LensRegion = std::array<int, 4>;

/// What a frame carries beside its pixels. The module takes faces or rectangles, never both.
struct Annotations {
    std::optional<LensRegion> lens;
    std::vector<zet::FaceItem> faces;
    std::vector<zet::RectItem> rects;
};

/// "CX,CY,RX,RY".
std::optional<LensRegion> parseLens(std::string_view text);
/// "X,Y,W,H,GENDER,AGE,NAME"; the name may hold commas and has at most 31 characters.
std::optional<zet::FaceItem> parseFace(std::string_view text);
/// "X,Y,W,H".
std::optional<zet::RectItem> parseRect(std::string_view text);

/// Copies `name` into the item; false if it does not fit.
bool setName(zet::FaceItem& face, std::string_view name);

}  // namespace zetplay
