#include "synthetic/syntheticroom.h"

#include <algorithm>
#include <limits>

#include "synthetic/strokefont.h"

namespace zetplay {

namespace {

constexpr Colour white{0.96f, 0.96f, 0.94f};
constexpr Colour ink{0.13f, 0.15f, 0.19f};
constexpr Colour wood{0.52f, 0.35f, 0.22f};
constexpr Colour darkWood{0.34f, 0.22f, 0.14f};
constexpr Colour blue{0.36f, 0.58f, 0.83f};
constexpr Colour yellow{0.93f, 0.75f, 0.34f};
constexpr Colour red{0.86f, 0.42f, 0.38f};
constexpr Colour green{0.43f, 0.71f, 0.47f};
constexpr Colour signalRed{0.80f, 0.16f, 0.16f};
constexpr Colour clockFace{0.08f, 0.10f, 0.12f};
constexpr Colour clockDigits{0.45f, 1.0f, 0.80f};
constexpr const char* clockText = "00:00.00";

constexpr float skirting = 0.1f;

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
            const float side = inverse < 0 ? 1.0f : -1.0f;
            normal = {axis == 0 ? side : 0, axis == 1 ? side : 0, axis == 2 ? side : 0};
        }
        leave = std::min(leave, far);
    }
    return enter > 0 && enter < leave ? enter : std::numeric_limits<float>::infinity();
}

/// Darker towards an edge of the room that is `distance` away.
float nearEdge(float distance) {
    const float part = distance * 4;
    return 1 - 0.22f / (1 + part * part);
}

Colour tiles(float x, float y) {
    constexpr float side = 0.5f;
    constexpr float joint = 0.016f;
    const float column = std::floor(x / side);
    const float row = std::floor(y / side);
    if (x - column * side < joint || y - row * side < joint) return {0.52f, 0.50f, 0.47f};
    const bool dark = std::fmod(std::fabs(column + row), 2.0f) == 1.0f;
    return dark ? Colour{0.70f, 0.67f, 0.62f} : Colour{0.86f, 0.84f, 0.79f};
}

Colour ceilingSlabs(float x, float y) {
    constexpr float joint = 0.02f;
    return x - std::floor(x) < joint || y - std::floor(y) < joint ? white * 0.86f : white;
}

/// A compass under the camera: its red half points north.
Colour compass(float x, float y, Colour floor) {
    const float radius = std::sqrt(x * x + y * y);
    if (radius > 0.52f && radius < 0.58f) return ink;
    if (radius > 0.52f) return floor;
    if (std::fabs(x) < 0.13f * (1 - std::fabs(y) / 0.48f)) return y > 0 ? signalRed : ink;
    return white;
}

}  // namespace

Sign::Sign(const Place& where, float letters, std::string words, Colour paint)
    : middle(where), letterHeight(letters), text(std::move(words)), colour(paint), width(textWidth(text) * letters) {}

float Sign::distance(float along, float height) const {
    const float x = (along - middle.along + width / 2) / letterHeight;
    const float y = (height - middle.height) / letterHeight + 0.5f;
    return textDistance(text, x, y) * letterHeight;
}

std::size_t Sign::cell(float along) const {
    return textCell(text, (along - middle.along + width / 2) / letterHeight);
}

SyntheticRoom::SyntheticRoom(Mount mount) {
    wall(Surface::floor).colour = white;
    wall(Surface::ceiling).colour = white;
    wall(Surface::north).colour = blue;
    wall(Surface::east).colour = yellow;
    wall(Surface::south).colour = red;
    wall(Surface::west).colour = green;
    if (mount == Mount::ceiling) {
        furnishForCeiling();
    } else {
        furnishForWall();
    }
}

void SyntheticRoom::furnishForCeiling() {
    _low = {-3.5f, -3, 0};
    _high = {3.5f, 3, 3};
    _pose = {{0, 0, 2.98f}, {0, 0, -1}, {1, 0, 0}, {0, 1, 0}};
    _dado = 0.75f;
    const struct {
        Surface surface;
        const char* word;
    } words[] = {
        {Surface::north, "NORTH"}, {Surface::east, "EAST"}, {Surface::south, "SOUTH"}, {Surface::west, "WEST"}};
    for (const auto& [surface, word] : words) {
        wall(surface).signs.emplace_back(Place{surface, widthOf(surface) / 2, 1.9f}, 0.8f, word, white);
        addMetreMarks(surface);
    }
    addDoor(Surface::west, 0.7f);
    addClock({Surface::north, 3.5f, 1.08f}, 0.3f);
    addClock({Surface::floor, 0, -1.05f}, 0.3f);
    _furniture = {{{2.3f, 1.7f, 0}, {3.3f, 2.8f, 0.75f}, wood},
                  {{-3.4f, 1.9f, 0}, {-2.5f, 2.9f, 0.45f}, red},
                  {{2.6f, -2.9f, 0}, {3.4f, -2.1f, 1.1f}, {0.55f, 0.57f, 0.62f}}};
}

void SyntheticRoom::furnishForWall() {
    constexpr float eyeHeight = 1.6f;
    _low = {-3.5f, -2.4f, 0};
    _high = {3.5f, 2.6f, 2.9f};
    _pose = {{0, -2.38f, eyeHeight}, {0, 1, 0}, {1, 0, 0}, {0, 0, 1}};
    // A line at the height of the eye lies on the picture's horizontal diameter.
    for (const Surface surface : {Surface::north, Surface::east, Surface::west}) {
        const Place middle{surface, widthOf(surface) / 2, eyeHeight};
        wall(surface).panels.push_back({middle, widthOf(surface), 0.025f, signalRed});
        addMetreMarks(surface);
    }
    _dado = 0.75f;
    wall(Surface::west).signs.emplace_back(Place{Surface::west, 2.1f, 2.2f}, 0.6f, "LEFT", white);
    wall(Surface::north).signs.emplace_back(Place{Surface::north, 3.5f, 2.2f}, 0.6f, "AHEAD", white);
    wall(Surface::east).signs.emplace_back(Place{Surface::east, 2.9f, 2.2f}, 0.6f, "RIGHT", white);
    addDoor(Surface::north, 0.9f);
    addDoor(Surface::north, 6.1f);
    addDoor(Surface::west, 4.2f);
    addDoor(Surface::east, 0.8f);
    addClock({Surface::north, 3.5f, 1.18f}, 0.26f);
    addClock({Surface::floor, 0, -0.9f}, 0.26f);
    for (const float x : {-1.8f, 1.8f}) {
        for (const float y : {-1.0f, 1.0f}) {
            wall(Surface::ceiling).panels.push_back({{Surface::ceiling, x, y}, 0.62f, 0.62f, {1.25f, 1.25f, 1.2f}});
        }
    }
    _furniture = {{{1.6f, 1.7f, 0}, {2.5f, 2.55f, 0.8f}, wood}, {{-3.4f, -2.3f, 0}, {-2.6f, -1.4f, 0.45f}, red}};
}

/// A door covers the marks that were there.
void SyntheticRoom::addDoor(Surface surface, float along) {
    std::erase_if(wall(surface).signs, [=](const Sign& sign) { return std::fabs(sign.middle.along - along) < 0.6f; });
    wall(surface).panels.push_back({{surface, along, 1.06f}, 1.06f, 2.12f, white});
    wall(surface).panels.push_back({{surface, along, 1.02f}, 0.9f, 2.04f, wood});
    for (const float height : {0.55f, 1.5f})
        wall(surface).panels.push_back({{surface, along, height}, 0.62f, 0.72f, darkWood});
    wall(surface).panels.push_back({{surface, along + 0.37f, 1.03f}, 0.06f, 0.12f, yellow});
}

void SyntheticRoom::addMetreMarks(Surface surface) {
    for (int metre = 1; static_cast<float>(metre) < widthOf(surface); ++metre) {
        const float along = static_cast<float>(metre);
        wall(surface).panels.push_back({{surface, along, 1.5f}, 0.022f, 3, mix(wall(surface).colour, white, 0.35f)});
        wall(surface).signs.emplace_back(Place{surface, along, 0.42f}, 0.24f, std::to_string(metre), white);
    }
}

void SyntheticRoom::addClock(const Place& middle, float letterHeight) {
    Sign& clock = _clocks.emplace_back(middle, letterHeight, clockText, clockDigits);
    const float width = clock.width + letterHeight;
    wall(middle.surface).panels.push_back({middle, width + 0.06f, letterHeight * 1.9f + 0.06f, white});
    wall(middle.surface).panels.push_back({middle, width, letterHeight * 1.9f, clockFace});
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
        colour = colour * 0.72f;
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
    return upright && place.height < skirting ? white : colour;
}

/// A lamp under the middle of the ceiling, the light that the walls throw back, and dim corners.
float SyntheticRoom::brightnessAt(Vec3 point, Vec3 normal) const {
    const Vec3 lamp = {0, (_low.y + _high.y) / 2, _high.z - 0.4f};
    const Vec3 toLamp = lamp - point;
    const float distance = length(toLamp);
    const float facing = std::max(0.0f, dot(toLamp, normal)) / distance;
    const float direct = facing / (1 + 0.05f * distance * distance);
    float brightness = normal.z < 0 ? 0.92f : 0.76f + 0.36f * direct;
    if (normal.x == 0) brightness *= nearEdge(point.x - _low.x) * nearEdge(_high.x - point.x);
    if (normal.y == 0) brightness *= nearEdge(point.y - _low.y) * nearEdge(_high.y - point.y);
    if (normal.z == 0) brightness *= nearEdge(point.z - _low.z) * nearEdge(_high.z - point.z);
    return brightness;
}

}  // namespace zetplay
