#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "media/pictureplanes.h"
#include "synthetic/fisheyelens.h"
#include "synthetic/syntheticfigure.h"
#include "synthetic/syntheticroom.h"

namespace zetplay {

/// Paints what a `FisheyeLens` sees of a `SyntheticRoom` into pictures of the lens's size, as full-range BT.601.
class FisheyeCanvas {
public:
    FisheyeCanvas(const FisheyeLens& lens, const SyntheticRoom& room) : _lens(lens), _room(room) {}

    /// The whole room, black outside the circle; on all processors.
    void paintRoom(const Planes& picture) const;
    /// A round shadow on the floor.
    void paintShadow(const Planes& picture, Vec3 middle, float radius) const;
    /// A thing in the room that covers all that was painted before.
    void paintCapsule(const Planes& picture, const Capsule& capsule) const;

private:
    void paintRows(const Planes& picture, int from, int to) const;
    Colour lookOnce(float x, float y) const;
    Colour lookFinely(int x, int y) const;

    const FisheyeLens& _lens;
    const SyntheticRoom& _room;
};

/// The digits of one clock. Where each pixel that they can cover lies in the room is computed once.
class ClockFace {
public:
    ClockFace(const FisheyeLens& lens, const SyntheticRoom& room, const Sign& sign);

    /// Paints `text`, which must have digits where the sign's own text has digits.
    void paint(const Planes& picture, std::string_view text) const;

private:
    struct Pixel {
        std::uint8_t cell = 0;                    ///< letter of the text
        std::array<std::uint8_t, 10> cover = {};  ///< part of the pixel that each digit covers there, of 255
    };
    /// Two by two pixels with a common sample of colour.
    struct Block {
        int x = 0;
        int y = 0;
        float brightness = 0;
        std::array<Pixel, 4> pixels;
    };

    static Block blockAt(const FisheyeLens& lens, const SyntheticRoom& room, const std::vector<Sign>& digits, int x,
                         int y);

    Colour _colour;
    std::vector<Block> _blocks;
};

}  // namespace zetplay
