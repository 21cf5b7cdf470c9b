#pragma once

#include <array>
#include <string>
#include <vector>

#include "media/source.h"
#include "vec3.h"

namespace zetplay {

enum class Surface { floor, ceiling, north, east, south, west };
constexpr std::size_t surfaceCount = 6;

/// A place on a surface, in metres. On a wall `along` runs to the right as a person inside sees it, from the wall's
/// left end, and `height` up from the floor. On floor and ceiling `along` is x and `height` is y.
struct Place {
    Surface surface = Surface::floor;
    float along = 0;
    float height = 0;
};

/// A rectangle of one colour on a surface; `middle` is its centre.
struct Panel {
    Place middle;
    float width = 0;
    float height = 0;
    Colour colour;
};

/// A line of lettering on a surface; `middle` is its centre.
struct Sign {
    Sign(const Place& where, float letters, std::string words, Colour paint);
    /// Metres from the point to the edge of the lettering; negative inside a stroke.
    float distance(float along, float height) const;
    /// Index of the letter of the text there, or nearest to it.
    std::size_t cell(float along) const;

    Place middle;
    float letterHeight;
    std::string text;
    Colour colour;
    float width;
};

/// A box in the room.
struct Furniture {
    Vec3 low;
    Vec3 high;
    Colour colour;
};

/// Where the camera hangs; the three directions are unit vectors, at right angles to each other.
struct CameraPose {
    Vec3 eye;
    Vec3 forward;
    Vec3 right;  ///< to the right edge of the picture
    Vec3 up;     ///< to the top edge of the picture
};

/// The room in front of the synthetic camera, with all in it that doesn't move. Fixed after construction; any thread.
class SyntheticRoom {
public:
    explicit SyntheticRoom(Mount mount);

    const CameraPose& pose() const { return _pose; }
    /// What the camera sees in the direction, a unit vector.
    Colour look(Vec3 direction) const;
    /// Where the direction meets floor, wall or ceiling, and how bright a white surface is there.
    Place meet(Vec3 direction, float& brightness) const;
    Vec3 pointAt(const Place& place) const;
    /// The places of the clocks; their text is the longest that a clock shows.
    const std::vector<Sign>& clocks() const { return _clocks; }

private:
    struct Wall {
        Colour colour;
        std::vector<Panel> panels;
        std::vector<Sign> signs;
    };

    void furnishForCeiling();
    void furnishForWall();
    void addDoor(Surface surface, float along);
    void addMetreMarks(Surface surface);
    void addClock(const Place& middle, float letterHeight);
    Wall& wall(Surface surface) { return _walls[static_cast<std::size_t>(surface)]; }
    float widthOf(Surface surface) const;
    float leave(Vec3 direction, Surface& surface) const;
    Place placeOf(Surface surface, Vec3 point) const;
    Colour paintAt(const Place& place) const;
    float brightnessAt(Vec3 point, Vec3 normal) const;

    Vec3 _low;   ///< the room's corner to the south-west, on the floor
    Vec3 _high;  ///< the corner to the north-east, at the ceiling
    CameraPose _pose;
    std::array<Wall, surfaceCount> _walls;
    std::vector<Furniture> _furniture;
    std::vector<Sign> _clocks;
    float _dado = 0;  ///< height of the walls' darker lower part
};

}  // namespace zetplay
