#pragma once

#include <array>
#include <string_view>

namespace zet {

/// The views, as `DCFG_RENDER_MODE` takes them.
enum RenderMode : int {
    RENDER_MODE_FLAT = 0,         ///< the frame as it is
    RENDER_MODE_HALF_SPHERE = 1,  ///< the inside of a bowl, whole from far, a look along its wall from near
    RENDER_MODE_PANORAMA = 2,     ///< the lens circle unrolled into a strip
    RENDER_MODE_FOUR_PANE = 3,    ///< four looks at the walls in a grid
    RENDER_MODE_MAP = 4,          ///< the whole circle beside a look along a wall
    RENDER_MODE_DRUM = 5,         ///< the picture on a drum
    RENDER_MODE_BOWL = 6,         ///< the picture on a bowl
    RENDER_MODE_WALL_THREE = 7,   ///< a look to the left, one to the right, a panorama below
    RENDER_MODE_WALL_TWO = 8,     ///< the whole circle beside a closer look
    RENDER_MODE_WALL_ONE = 9,     ///< one look at the lens circle, from far or near
    RENDER_MODE_WALL_180 = 10,    ///< one look at the frame, flat from far and bent when near
};

/// Where the lens must hang for a view to make sense.
enum class LensMounting {
    any,      ///< anywhere
    ceiling,  ///< on the ceiling, looking down
    wall,     ///< on a wall, looking ahead
};

/// The part of a frame that a view shows.
enum class ShownPart {
    frame,          ///< all of it
    lensSquare,     ///< the lens region, its longer side cut to the shorter one
    lensRectangle,  ///< the lens region as it is
};

/// What is known of a view without making one.
struct RenderModeInfo {
    RenderMode mode;        ///< its number on the bus
    std::string_view name;  ///< its everyday word, of small letters, digits and hyphens
    LensMounting mounting;  ///< for which lens
    ShownPart part;         ///< of the frame
};

/// Every view, at the index of its number.
inline constexpr std::array<RenderModeInfo, 11> renderModes{{
    {RENDER_MODE_FLAT, "flat", LensMounting::any, ShownPart::frame},
    {RENDER_MODE_HALF_SPHERE, "half-sphere", LensMounting::ceiling, ShownPart::lensSquare},
    {RENDER_MODE_PANORAMA, "panorama", LensMounting::ceiling, ShownPart::lensSquare},
    {RENDER_MODE_FOUR_PANE, "four-pane", LensMounting::ceiling, ShownPart::lensSquare},
    {RENDER_MODE_MAP, "map", LensMounting::ceiling, ShownPart::lensSquare},
    {RENDER_MODE_DRUM, "drum", LensMounting::ceiling, ShownPart::lensSquare},
    {RENDER_MODE_BOWL, "bowl", LensMounting::ceiling, ShownPart::lensSquare},
    {RENDER_MODE_WALL_THREE, "wall-three", LensMounting::wall, ShownPart::lensSquare},
    {RENDER_MODE_WALL_TWO, "wall-two", LensMounting::wall, ShownPart::lensSquare},
    {RENDER_MODE_WALL_ONE, "wall-one", LensMounting::wall, ShownPart::lensSquare},
    {RENDER_MODE_WALL_180, "wall-180", LensMounting::wall, ShownPart::lensRectangle},
}};

/// The view of a number; null for a number that no view has.
constexpr const RenderModeInfo* findRenderMode(int number) {
    for (const RenderModeInfo& info : renderModes) {
        if (info.mode == number) return &info;
    }
    return nullptr;
}

}  // namespace zet
