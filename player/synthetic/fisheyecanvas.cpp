#include "synthetic/fisheyecanvas.h"

#include <algorithm>
#include <atomic>
#include <thread>

namespace zetplay {

namespace {

/// A colour as full-range BT.601, in steps of 8 bits; u and v are 0 for grey.
struct Yuv {
    float y = 0;
    float u = 0;
    float v = 0;
};

/// ITU-R BT.601, the weights of red, green and blue in Y.
constexpr Yuv toYuv(Colour colour) {
    const float y = 0.299f * colour.x + 0.587f * colour.y + 0.114f * colour.z;
    return {255 * y, 255 * (colour.z - y) / 1.772f, 255 * (colour.x - y) / 1.402f};
}

constexpr Yuv operator*(Yuv a, float factor) {
    return {a.y * factor, a.u * factor, a.v * factor};
}

/// What is painted over one pixel: `cover` 0 leaves it, 1 hides it.
struct Paint {
    float cover = 0;
    Yuv colour;
};

std::uint8_t toByte(float value) {
    return static_cast<std::uint8_t>(std::clamp(value + 0.5f, 0.0f, 255.0f));
}

void blend(std::uint8_t& sample, float cover, float value) {
    sample = toByte(static_cast<float>(sample) * (1 - cover) + value);
}

/// Paints four pixels, in rows, whose top left is (x, y), both even. The colour of each counts by its cover.
void paintBlock(const Planes& picture, int x, int y, const Paint (&paints)[4]) {
    float cover = 0;
    Yuv sum;
    for (int i = 0; i < 4; ++i) {
        const Paint& paint = paints[i];
        if (paint.cover <= 0) continue;
        const Yuv colour = paint.colour * paint.cover;
        blend(picture.y[static_cast<std::size_t>((y + i / 2) * picture.yLineSize + x + i % 2)], paint.cover, colour.y);
        cover += paint.cover;
        sum.u += colour.u;
        sum.v += colour.v;
    }
    if (cover <= 0) return;
    const auto chroma = static_cast<std::size_t>(y / 2 * picture.uvLineSize + x / 2);
    blend(picture.u[chroma], cover / 4, sum.u / 4 + 128 * cover / 4);
    blend(picture.v[chroma], cover / 4, sum.v / 4 + 128 * cover / 4);
}

/// A rectangle of pixels that grows to hold what is added to it.
struct Bounds {
    float left = 1e9f;
    float top = 1e9f;
    float right = -1e9f;
    float bottom = -1e9f;

    void add(FisheyeLens::Point point, float radius) {
        left = std::min(left, point.x - radius);
        top = std::min(top, point.y - radius);
        right = std::max(right, point.x + radius);
        bottom = std::max(bottom, point.y + radius);
    }
};

constexpr float pixelCentre(int pixel) {
    return static_cast<float>(pixel) + 0.5f;
}

constexpr bool isDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

/// Runs `visit(x, y)` for the top left pixel of each block of two by two that meets the bounds within the picture.
template <typename Visit>
void forBlocks(const FisheyeLens& lens, const Bounds& bounds, Visit visit) {
    const auto from = [](float edge) { return std::max(static_cast<int>(edge), 0) & ~1; };
    const auto to = [](float edge, int size) { return static_cast<int>(std::min(edge + 1, static_cast<float>(size))); };
    for (int y = from(bounds.top); y < to(bounds.bottom, lens.height()); y += 2) {
        for (int x = from(bounds.left); x < to(bounds.right, lens.width()); x += 2) visit(x, y);
    }
}

/// Runs `paintAt(direction)` for each pixel within bounds and circle, and paints what it returns.
template <typename PaintAt>
void paintWithin(const Planes& picture, const FisheyeLens& lens, const Bounds& bounds, PaintAt paintAt) {
    forBlocks(lens, bounds, [&](int x, int y) {
        Paint paints[4];
        for (int i = 0; i < 4; ++i) {
            Vec3 direction;
            if (lens.look(pixelCentre(x + i % 2), pixelCentre(y + i / 2), direction)) paints[i] = paintAt(direction);
        }
        paintBlock(picture, x, y, paints);
    });
}

/// Runs `work(from, to)` for all rows, on all processors. Each band has an even number of rows.
template <typename Work>
void forRows(int rows, Work work) {
    constexpr int band = 32;
    std::atomic<int> next = 0;
    const auto run = [&] {
        for (int from = next.fetch_add(band); from < rows; from = next.fetch_add(band)) {
            work(from, std::min(from + band, rows));
        }
    };
    std::vector<std::jthread> helpers(std::min(std::max(std::thread::hardware_concurrency(), 1U) - 1, 7U));
    for (std::jthread& helper : helpers) helper = std::jthread(run);
    run();
}

/// Pictures with fewer pixels than this get the fine look everywhere.
constexpr int smallPicture = 1000 * 1000;
/// In larger pictures only pixels get it that differ from a neighbour by more than this part of the whole range.
constexpr float smoothStep = 0.015f;

bool alike(Colour a, Colour b) {
    return std::fabs(a.x - b.x) < smoothStep && std::fabs(a.y - b.y) < smoothStep && std::fabs(a.z - b.z) < smoothStep;
}

}  // namespace

/// One ray through the point.
Colour FisheyeCanvas::lookOnce(float x, float y) const {
    Vec3 direction;
    if (!_lens.look(x, y, direction)) return {};
    const Colour colour = _room.look(direction);
    return {std::min(colour.x, 1.0f), std::min(colour.y, 1.0f), std::min(colour.z, 1.0f)};
}

/// The mean of a grid of rays through the pixel.
Colour FisheyeCanvas::lookFinely(int x, int y) const {
    constexpr int rays = 4;
    Colour sum;
    for (int i = 0; i < rays * rays; ++i) {
        sum = sum + lookOnce(static_cast<float>(x) + (static_cast<float>(i % rays) + 0.5f) / rays,
                             static_cast<float>(y) + (static_cast<float>(i / rays) + 0.5f) / rays);
    }
    return sum * (1.0f / (rays * rays));
}

void FisheyeCanvas::paintRoom(const Planes& picture) const {
    std::fill_n(picture.y, picture.yLineSize * _lens.height(), std::uint8_t{0});
    std::fill_n(picture.u, picture.uvLineSize * _lens.height() / 2, std::uint8_t{128});
    std::fill_n(picture.v, picture.uvLineSize * _lens.height() / 2, std::uint8_t{128});
    forRows(_lens.height(), [&](int from, int to) { paintRows(picture, from, to); });
}

/// First one ray for each pixel; then a fine look where neighbours differ.
void FisheyeCanvas::paintRows(const Planes& picture, int from, int to) const {
    const int width = _lens.width();
    const auto at = [=](int x, int y) { return static_cast<std::size_t>((y - from + 1) * (width + 2) + x + 1); };
    std::vector<Colour> look(at(width + 1, to) + 1);
    for (int y = from - 1; y <= to; ++y) {
        for (int x = -1; x <= width; ++x) look[at(x, y)] = lookOnce(pixelCentre(x), pixelCentre(y));
    }
    const bool small = width * _lens.height() < smallPicture;
    const auto finished = [&](int x, int y) {
        const Colour colour = look[at(x, y)];
        const bool smooth = alike(colour, look[at(x - 1, y)]) && alike(colour, look[at(x + 1, y)]) &&
                            alike(colour, look[at(x, y - 1)]) && alike(colour, look[at(x, y + 1)]);
        return smooth && !small ? colour : lookFinely(x, y);
    };
    for (int y = from; y < to; y += 2) {
        for (int x = 0; x < width; x += 2) {
            Paint paints[4];
            for (int i = 0; i < 4; ++i) paints[i] = {1, toYuv(finished(x + i % 2, y + i / 2))};
            paintBlock(picture, x, y, paints);
        }
    }
}

void FisheyeCanvas::paintShadow(const Planes& picture, Vec3 middle, float radius) const {
    constexpr float darkest = 0.45f;
    Bounds bounds;
    for (int i = 0; i < 8; ++i) {
        const float angle = static_cast<float>(i) * 0.785398f;
        const Vec3 rim = middle + Vec3{std::cos(angle), std::sin(angle), 0} * (radius * 1.1f);
        bounds.add(_lens.project(rim), 2);
    }
    const Vec3 eye = _lens.pose().eye;
    paintWithin(picture, _lens, bounds, [=](Vec3 direction) -> Paint {
        if (direction.z >= 0) return {};
        const Vec3 off = eye + direction * (-eye.z / direction.z) - middle;
        const float part = 1 - dot(off, off) / (radius * radius);
        return part > 0 ? Paint{darkest * part * part, {}} : Paint{};
    });
}

/// Each pixel takes the point of its ray that is nearest to the capsule's axis. The point's depth inside the capsule
/// gives the cover of the pixel; its direction from the axis gives the slope of the surface.
void FisheyeCanvas::paintCapsule(const Planes& picture, const Capsule& capsule) const {
    const Vec3 eye = _lens.pose().eye;
    Bounds bounds;
    for (int i = 0; i <= 4; ++i) {
        const Vec3 point = mix(capsule.from, capsule.to, static_cast<float>(i) / 4);
        if (length(point - eye) < 2 * capsule.radius) return;
        bounds.add(_lens.project(point), 1.05f * _lens.projectRadius(point, capsule.radius) + 2);
    }
    const Vec3 axis = capsule.to - capsule.from;
    const Vec3 start = eye - capsule.from;
    const float axisSquare = dot(axis, axis);
    const float axisStart = dot(axis, start);
    const float pixelAngle = 1 / _lens.pixelsPerRadian();
    const Yuv colour = toYuv(capsule.colour);
    paintWithin(picture, _lens, bounds, [=](Vec3 direction) -> Paint {
        const float axisRay = dot(axis, direction);
        const float startRay = dot(start, direction);
        const float denominator = axisSquare - axisRay * axisRay;
        const float along =
            denominator > 1e-6f ? std::clamp((axisStart - axisRay * startRay) / denominator, 0.0f, 1.0f) : 0.0f;
        const float distance = along * axisRay - startRay;
        const Vec3 off = start + direction * distance - axis * along;
        const float offSquare = dot(off, off);
        const float pixel = distance * pixelAngle;
        const float reach = capsule.radius + pixel / 2;
        if (distance < 0 || offSquare >= reach * reach) return {};
        const float cover = std::min(0.5f + (capsule.radius - std::sqrt(offSquare)) / pixel, 1.0f);
        const float facing = std::sqrt(std::max(0.0f, 1 - offSquare / (capsule.radius * capsule.radius)));
        const Vec3 normal = off * (1 / capsule.radius) - direction * facing;
        return {cover, colour * (0.55f + 0.25f * facing + 0.25f * std::max(0.0f, normal.z))};
    });
}

ClockFace::ClockFace(const FisheyeLens& lens, const SyntheticRoom& room, const Sign& sign) : _colour(sign.colour) {
    std::vector<Sign> digits(10, sign);
    for (std::size_t digit = 0; digit < digits.size(); ++digit) {
        for (char& letter : digits[digit].text) {
            if (isDigit(letter)) letter = static_cast<char>('0' + digit);
        }
    }
    Bounds bounds;
    constexpr int steps = 16;
    for (int i = 0; i <= steps; ++i) {
        const float along = (static_cast<float>(i) / steps - 0.5f) * (sign.width + sign.letterHeight / 2);
        for (const float height : {-0.6f, 0.6f}) {
            const Place edge{sign.middle.surface, sign.middle.along + along,
                             sign.middle.height + height * sign.letterHeight};
            bounds.add(lens.project(room.pointAt(edge)), 2);
        }
    }
    forBlocks(lens, bounds, [&](int x, int y) {
        const Block block = blockAt(lens, room, digits, x, y);
        const bool covers = std::any_of(block.pixels.begin(), block.pixels.end(), [](const Pixel& pixel) {
            return std::any_of(pixel.cover.begin(), pixel.cover.end(), [](std::uint8_t cover) { return cover > 0; });
        });
        if (covers) _blocks.push_back(block);
    });
}

/// How much the digits cover the four pixels from (x, y). In `digits[d]` every digit of the clock is d.
ClockFace::Block ClockFace::blockAt(const FisheyeLens& lens, const SyntheticRoom& room, const std::vector<Sign>& digits,
                                    int x, int y) {
    Block block{x, y, 0, {}};
    Place places[4];
    for (int i = 0; i < 4; ++i) {
        Vec3 direction;
        if (!lens.look(pixelCentre(x + i % 2), pixelCentre(y + i / 2), direction)) return block;
        places[i] = room.meet(direction, block.brightness);
        if (places[i].surface != digits[0].middle.surface) return block;
    }
    const auto between = [&](int a, int b) {
        return std::hypot(places[a].along - places[b].along, places[a].height - places[b].height);
    };
    const float metresPerPixel = (between(0, 1) + between(0, 2)) / 2;
    for (std::size_t i = 0; i < block.pixels.size(); ++i) {
        block.pixels[i].cell = static_cast<std::uint8_t>(digits[0].cell(places[i].along));
        for (std::size_t digit = 0; digit < digits.size(); ++digit) {
            const float distance = digits[digit].distance(places[i].along, places[i].height);
            block.pixels[i].cover[digit] = toByte(255 * (0.5f - distance / metresPerPixel));
        }
    }
    return block;
}

void ClockFace::paint(const Planes& picture, std::string_view text) const {
    const Yuv colour = toYuv(_colour);
    for (const Block& block : _blocks) {
        Paint paints[4];
        for (std::size_t i = 0; i < block.pixels.size(); ++i) {
            const Pixel& pixel = block.pixels[i];
            const char letter = text[std::min<std::size_t>(pixel.cell, text.size() - 1)];
            const auto digit = static_cast<std::size_t>(isDigit(letter) ? letter - '0' : 0);
            paints[i] = {static_cast<float>(pixel.cover[digit]) / 255, colour * block.brightness};
        }
        paintBlock(picture, block.x, block.y, paints);
    }
}

}  // namespace zetplay
