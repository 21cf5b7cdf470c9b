#include "synthetic/syntheticroom.h"

#include <algorithm>
#include <limits>

#include "synthetic/strokefont.h"

namespace zetplay {

namespace {

constexpr Colour WHITE{0.96F, 0.96F, 0.94F};
constexpr Colour INK{0.13F, 0.15F, 0.19F};
constexpr Colour WOOD{0.52F, 0.35F, 0.22F};
constexpr Colour DARK_WOOD{0.34F, 0.22F, 0.14F};
constexpr Colour BLUE{0.36F, 0.58F, 0.83F};
constexpr Colour YELLOW{0.93F, 0.75F, 0.34F};
constexpr Colour RED{0.86F, 0.42F, 0.38F};
constexpr Colour GREEN{0.43F, 0.71F, 0.47F};
constexpr Colour SIGNAL_RED{0.80F, 0.16F, 0.16F};
constexpr Colour CLOCK_FACE{0.08F, 0.10F, 0.12F};
constexpr Colour CLOCK_DIGITS{0.45F, 1.0F, 0.80F};
constexpr const char* CLOCK_TEXT = "00:00.00";

constexpr float SKIRTING = 0.1F;

Vec3 normalOf(Surface surface) {
    switch (surface) {
        case Surface::floor:
            return {0, 0, 1};
        case Surface::ceiling:
            return {0, 0, -1};
        case Surface::north:
            return {0, -1, 0};
        case Surface::east:
            return {-1, 0, 0};
        case Surface::south:
            return {0, 1, 0};
        default:
            return {1, 0, 0};
    }
}

/// Distance to a box along the ray, and the face met; infinity if it misses.
float meetBox(const Furniture& box, Vec3 eye, Vec3 direction, Vec3& normal) {
    const float from[] = {eye.x, eye.y, eye.z};
    const float step[] = {direction.x, direction.y, direction.z};
    const float low[] = {box.low.x, box.low.y, box.low.z};
    const float high[] = {box.high.x, box.high.y, box.high.z};
    float enter = 0;
    float leave = std::numeric_limits<float>::infinity();
    for (int axis = 0; axis < 3; ++axis) {
        const float inverse = 1 / step[axis];
        const float near = ((inverse < 0 ? high : low)[axis] - from[axis]) * inverse;
        const float far = ((inverse < 0 ? low : high)[axis] - from[axis]) * inverse;
        if (near > enter) {
            enter = near;
            const float side = inverse < 0 ? 1.0F : -1.0F;
            normal = {axis == 0 ? side : 0, axis == 1 ? side : 0, axis == 2 ? side : 0};
        }
        leave = std::min(leave, far);
    }
    return enter > 0 && enter < leave ? enter : std::numeric_limits<float>::infinity();
}

/// Darker towards an edge of the room that is `distance` away.
float nearEdge(float distance) {
    const float part = distance * 4;
    return 1 - 0.22F / (1 + part * part);
}

Colour tiles(float x, float y) {
    constexpr float side = 0.5F;
    constexpr float joint = 0.016F;
    const float column = std::floor(x / side);
    const float row = std::floor(y / side);
    if (x - column * side < joint || y - row * side < joint) return {0.52F, 0.50F, 0.47F};
    const bool dark = std::fmod(std::fabs(column + row), 2.0F) == 1.0F;
    return dark ? Colour{0.70F, 0.67F, 0.62F} : Colour{0.86F, 0.84F, 0.79F};
}

Colour ceilingSlabs(float x, float y) {
    constexpr float joint = 0.02F;
    return x - std::floor(x) < joint || y - std::floor(y) < joint ? WHITE * 0.86F : WHITE;
}

/// A compass under the camera: its red half points north.
Colour compass(float x, float y, Colour floor) {
    const float radius = std::sqrt(x * x + y * y);
    if (radius > 0.52F && radius < 0.58F) return INK;
    if (radius > 0.52F) return floor;
    if (std::fabs(x) < 0.13F * (1 - std::fabs(y) / 0.48F)) return y > 0 ? SIGNAL_RED : INK;
    return WHITE;
}

}  // namespace

Sign::Sign(const Place& where, float letters, std::string words, Colour paint)
    : middle(where), letterHeight(letters), text(std::move(words)), colour(paint), width(textWidth(text) * letters) {}

float Sign::distance(float along, float height) const {
    const float x = (along - middle.along + width / 2) / letterHeight;
    const float y = (height - middle.height) / letterHeight + 0.5F;
    return textDistance(text, x, y) * letterHeight;
}

std::size_t Sign::cell(float along) const {
    return textCell(text, (along - middle.along + width / 2) / letterHeight);
}

SyntheticRoom::SyntheticRoom(Mount mount) {
    wall(Surface::floor).colour = WHITE;
    wall(Surface::ceiling).colour = WHITE;
    wall(Surface::north).colour = BLUE;
    wall(Surface::east).colour = YELLOW;
    wall(Surface::south).colour = RED;
    wall(Surface::west).colour = GREEN;
    if (mount == Mount::ceiling) {
        furnishForCeiling();
    } else {
        furnishForWall();
    }
}

void SyntheticRoom::furnishForCeiling() {
    _low = {-3.5F, -3, 0};
    _high = {3.5F, 3, 3};
    _pose = {{0, 0, 2.98F}, {0, 0, -1}, {1, 0, 0}, {0, 1, 0}};
    _dado = 0.75F;
    const struct {
        Surface surface;
        const char* word;
    } words[] = {
        {Surface::north, "NORTH"}, {Surface::east, "EAST"}, {Surface::south, "SOUTH"}, {Surface::west, "WEST"}};
    for (const auto& [surface, word] : words) {
        wall(surface).signs.emplace_back(Place{surface, widthOf(surface) / 2, 1.9F}, 0.8F, word, WHITE);
        addMetreMarks(surface);
    }
    addDoor(Surface::west, 0.7F);
    addClock({Surface::north, 3.5F, 1.08F}, 0.3F);
    addClock({Surface::floor, 0, -1.05F}, 0.3F);
    _furniture = {{{2.3F, 1.7F, 0}, {3.3F, 2.8F, 0.75F}, WOOD},
                  {{-3.4F, 1.9F, 0}, {-2.5F, 2.9F, 0.45F}, RED},
                  {{2.6F, -2.9F, 0}, {3.4F, -2.1F, 1.1F}, {0.55F, 0.57F, 0.62F}}};
}

void SyntheticRoom::furnishForWall() {
    constexpr float eyeHeight = 1.6F;
    _low = {-3.5F, -2.4F, 0};
    _high = {3.5F, 2.6F, 2.9F};
    _pose = {{0, -2.38F, eyeHeight}, {0, 1, 0}, {1, 0, 0}, {0, 0, 1}};
    // A line at the height of the eye lies on the picture's horizontal diameter.
    for (const Surface surface : {Surface::north, Surface::east, Surface::west}) {
        const Place middle{surface, widthOf(surface) / 2, eyeHeight};
        wall(surface).panels.push_back({middle, widthOf(surface), 0.025F, SIGNAL_RED});
        addMetreMarks(surface);
    }
    _dado = 0.75F;
    wall(Surface::west).signs.emplace_back(Place{Surface::west, 2.1F, 2.2F}, 0.6F, "LEFT", WHITE);
    wall(Surface::north).signs.emplace_back(Place{Surface::north, 3.5F, 2.2F}, 0.6F, "AHEAD", WHITE);
    wall(Surface::east).signs.emplace_back(Place{Surface::east, 2.9F, 2.2F}, 0.6F, "RIGHT", WHITE);
    addDoor(Surface::north, 0.9F);
    addDoor(Surface::north, 6.1F);
    addDoor(Surface::west, 4.2F);
    addDoor(Surface::east, 0.8F);
    addClock({Surface::north, 3.5F, 1.18F}, 0.26F);
    addClock({Surface::floor, 0, -0.9F}, 0.26F);
    for (const float x : {-1.8F, 1.8F}) {
        for (const float y : {-1.0F, 1.0F}) {
            wall(Surface::ceiling).panels.push_back({{Surface::ceiling, x, y}, 0.62F, 0.62F, {1.25F, 1.25F, 1.2F}});
        }
    }
    _furniture = {{{1.6F, 1.7F, 0}, {2.5F, 2.55F, 0.8F}, WOOD}, {{-3.4F, -2.3F, 0}, {-2.6F, -1.4F, 0.45F}, RED}};
}

/// A door covers the marks that were there.
void SyntheticRoom::addDoor(Surface surface, float along) {
    std::erase_if(wall(surface).signs, [=](const Sign& sign) { return std::fabs(sign.middle.along - along) < 0.6F; });
    wall(surface).panels.push_back({{surface, along, 1.06F}, 1.06F, 2.12F, WHITE});
    wall(surface).panels.push_back({{surface, along, 1.02F}, 0.9F, 2.04F, WOOD});
    for (const float height : {0.55F, 1.5F})
        wall(surface).panels.push_back({{surface, along, height}, 0.62F, 0.72F, DARK_WOOD});
    wall(surface).panels.push_back({{surface, along + 0.37F, 1.03F}, 0.06F, 0.12F, YELLOW});
}

void SyntheticRoom::addMetreMarks(Surface surface) {
    for (int metre = 1; static_cast<float>(metre) < widthOf(surface); ++metre) {
        const float along = static_cast<float>(metre);
        wall(surface).panels.push_back({{surface, along, 1.5F}, 0.022F, 3, mix(wall(surface).colour, WHITE, 0.35F)});
        wall(surface).signs.emplace_back(Place{surface, along, 0.42F}, 0.24F, std::to_string(metre), WHITE);
    }
}

void SyntheticRoom::addClock(const Place& middle, float letterHeight) {
    Sign& clock = _clocks.emplace_back(middle, letterHeight, CLOCK_TEXT, CLOCK_DIGITS);
    const float width = clock.width + letterHeight;
    wall(middle.surface).panels.push_back({middle, width + 0.06F, letterHeight * 1.9F + 0.06F, WHITE});
    wall(middle.surface).panels.push_back({middle, width, letterHeight * 1.9F, CLOCK_FACE});
}

float SyntheticRoom::widthOf(Surface surface) const {
    return surface == Surface::east || surface == Surface::west ? _high.y - _low.y : _high.x - _low.x;
}

/// Distance from the eye to the room's inner side, which is met at `surface`.
float SyntheticRoom::leave(Vec3 direction, Surface& surface) const {
    const float far[] = {((direction.x > 0 ? _high.x : _low.x) - _pose.eye.x) / direction.x,
                         ((direction.y > 0 ? _high.y : _low.y) - _pose.eye.y) / direction.y,
                         ((direction.z > 0 ? _high.z : _low.z) - _pose.eye.z) / direction.z};
    if (far[2] <= far[0] && far[2] <= far[1]) {
        surface = direction.z > 0 ? Surface::ceiling : Surface::floor;
        return far[2];
    }
    if (far[0] <= far[1]) {
        surface = direction.x > 0 ? Surface::east : Surface::west;
        return far[0];
    }
    surface = direction.y > 0 ? Surface::north : Surface::south;
    return far[1];
}

Place SyntheticRoom::placeOf(Surface surface, Vec3 point) const {
    switch (surface) {
        case Surface::north:
            return {surface, point.x - _low.x, point.z};
        case Surface::east:
            return {surface, _high.y - point.y, point.z};
        case Surface::south:
            return {surface, _high.x - point.x, point.z};
        case Surface::west:
            return {surface, point.y - _low.y, point.z};
        default:
            return {surface, point.x, point.y};
    }
}

Vec3 SyntheticRoom::pointAt(const Place& place) const {
    switch (place.surface) {
        case Surface::north:
            return {_low.x + place.along, _high.y, place.height};
        case Surface::east:
            return {_high.x, _high.y - place.along, place.height};
        case Surface::south:
            return {_high.x - place.along, _low.y, place.height};
        case Surface::west:
            return {_low.x, _low.y + place.along, place.height};
        default:
            return {place.along, place.height, place.surface == Surface::floor ? _low.z : _high.z};
    }
}

Place SyntheticRoom::meet(Vec3 direction, float& brightness) const {
    Surface surface{};
    const Vec3 point = _pose.eye + direction * leave(direction, surface);
    brightness = brightnessAt(point, normalOf(surface));
    return placeOf(surface, point);
}

Colour SyntheticRoom::look(Vec3 direction) const {
    Surface surface{};
    float nearest = leave(direction, surface);
    const Furniture* box = nullptr;
    Vec3 boxNormal;
    for (const Furniture& furniture : _furniture) {
        Vec3 normal;
        const float distance = meetBox(furniture, _pose.eye, direction, normal);
        if (distance < nearest) {
            nearest = distance;
            box = &furniture;
            boxNormal = normal;
        }
    }
    const Vec3 point = _pose.eye + direction * nearest;
    if (box) return box->colour * brightnessAt(point, boxNormal);
    return paintAt(placeOf(surface, point)) * brightnessAt(point, normalOf(surface));
}

Colour SyntheticRoom::paintAt(const Place& place) const {
    const Wall& wall = _walls[static_cast<std::size_t>(place.surface)];
    Colour colour = wall.colour;
    if (place.surface == Surface::floor) {
        colour = tiles(place.along, place.height);
        if (_pose.forward.z < 0) colour = compass(place.along, place.height, colour);
    } else if (place.surface == Surface::ceiling) {
        colour = ceilingSlabs(place.along, place.height);
    } else if (place.height < _dado) {
        colour = colour * 0.72F;
    }
    for (const Panel& panel : wall.panels) {
        if (std::fabs(place.along - panel.middle.along) < panel.width / 2 &&
            std::fabs(place.height - panel.middle.height) < panel.height / 2) {
            colour = panel.colour;
        }
    }
    for (const Sign& sign : wall.signs) {
        if (sign.distance(place.along, place.height) < 0) colour = sign.colour;
    }
    const bool upright = place.surface != Surface::floor && place.surface != Surface::ceiling;
    return upright && place.height < SKIRTING ? WHITE : colour;
}

/// A lamp under the middle of the ceiling, the light that the walls throw back, and dim corners.
float SyntheticRoom::brightnessAt(Vec3 point, Vec3 normal) const {
    const Vec3 lamp = {0, (_low.y + _high.y) / 2, _high.z - 0.4F};
    const Vec3 toLamp = lamp - point;
    const float distance = length(toLamp);
    const float facing = std::max(0.0F, dot(toLamp, normal)) / distance;
    const float direct = facing / (1 + 0.05F * distance * distance);
    float brightness = normal.z < 0 ? 0.92F : 0.76F + 0.36F * direct;
    if (normal.x == 0) brightness *= nearEdge(point.x - _low.x) * nearEdge(_high.x - point.x);
    if (normal.y == 0) brightness *= nearEdge(point.y - _low.y) * nearEdge(_high.y - point.y);
    if (normal.z == 0) brightness *= nearEdge(point.z - _low.z) * nearEdge(_high.z - point.z);
    return brightness;
}

}  // namespace zetplay
