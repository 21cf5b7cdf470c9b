// Draws the halo behind the half sphere, packs it and writes it as a C++ source: halopicture FILE.cpp
//
// The picture is a thin arc of blue light on black, like the lit rim of an unseen dark globe: brightest at the right
// and the lower right, gone at the upper left, where what is left of it lies further inside. Across the arc the light
// rises slowly from the inside and falls sharply at the outside; a faint haze goes on beyond it.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <numbers>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int side = 480;  // pixels
constexpr double centreX = 239.0;
constexpr double centreY = 245.0;

// Light of the arc and of the broad glow inside it, in steps of 15 degrees clockwise from the right.
using Round = std::array<double, 24>;
constexpr Round arcLight = {77, 82, 76, 72, 67, 59, 53, 50, 49, 49, 49, 49, 40, 4, 1, 0, 1, 4, 28, 44, 55, 64, 70, 74};
constexpr Round glowLight = {3, 3, 3, 3, 4, 4, 5, 6, 6, 6, 6, 6, 8, 13, 13, 13, 13, 13, 9, 6, 5, 4, 4, 3};

constexpr double arcRadius = 185.0;  // pixels
constexpr double innerWidth = 12.0;  // over which the arc's light falls to 1/e
constexpr double outerWidth = 3.0;
constexpr double glowRadius = 153.0;
constexpr double glowWidth = 15.0;
constexpr double hazeLight = 4.3;  // just outside the arc where that is brightest
constexpr double hazeWidth = 56.0;
constexpr double hazeEnd = 300.0;  // radius

constexpr double brightest = 84.0;  // where the colour is full
constexpr double blue = 27.0;       // of U, above neutral
constexpr double unred = 29.0;      // of V, below neutral

double at(const Round& values, double degrees) {
    const double place = degrees / 15.0;
    const auto index = static_cast<std::size_t>(place);
    const double share = place - std::floor(place);
    const double smooth = share * share * (3.0 - 2.0 * share);
    return std::lerp(values[index % 24], values[(index + 1) % 24], smooth);
}

// At `distance` pixels outward from the arc's peak, where it is 1.
double acrossArc(double distance) {
    const auto fall = [](double d) { return 1.0 / (std::exp(-d / innerWidth) + std::exp(d / outerWidth)); };
    const double top = std::log(outerWidth / innerWidth) / (1.0 / outerWidth + 1.0 / innerWidth);
    return fall(distance + top) / fall(top);
}

double bell(double distance, double width) {
    return std::exp(-0.5 * distance * distance / width / width);
}

double haze(double distance) {
    if (distance < 0.0) return bell(distance, glowWidth);
    return distance < hazeEnd - arcRadius ? bell(distance, hazeWidth) : 0.0;
}

double light(double x, double y) {
    const double radius = std::hypot(x - centreX, y - centreY);
    const double turn = std::atan2(y - centreY, x - centreX) * 180.0 / std::numbers::pi;
    const double degrees = turn < 0.0 ? turn + 360.0 : turn;
    const double arc = at(arcLight, degrees);
    return arc * acrossArc(radius - arcRadius) + at(glowLight, degrees) * bell(radius - glowRadius, glowWidth) +
           hazeLight * (arc / brightest) * haze(radius - arcRadius);
}

std::uint8_t byteOf(double value) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 255.0)));
}

Bytes drawPicture() {
    Bytes picture;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) picture.push_back(byteOf(light(x + 0.5, y + 0.5)));
    }
    for (const double tint : {blue, -unred}) {
        for (int y = 0; y < side; y += 2) {
            for (int x = 0; x < side; x += 2) picture.push_back(byteOf(128.0 + tint * light(x + 1, y + 1) / brightest));
        }
    }
    return picture;
}

void appendWord(Bytes& stream, unsigned word) {
    stream.push_back(static_cast<std::uint8_t>(word & 0xff));
    stream.push_back(static_cast<std::uint8_t>(word >> 8));
}

void appendToken(Bytes& stream, bool fill, std::uint8_t value, std::size_t length) {
    const auto bits = static_cast<unsigned>(length);
    const unsigned kind = fill ? 0x8000u : 0u;
    if (length < 32) {
        appendWord(stream, kind | bits << 8 | value);
    } else {
        appendWord(stream, kind | 0x2000u | (bits & 0x1f00u) | value);
        stream.push_back(static_cast<std::uint8_t>(bits & 0xff));
    }
}

constexpr std::size_t longestToken = 0x1fff;
constexpr std::size_t shortestFill = 4;  // a shorter one inside a literal costs more than it saves

std::size_t runAt(const Bytes& bytes, std::size_t from) {
    std::size_t end = from;
    while (end < bytes.size() && bytes[end] == bytes[from] && end - from < longestToken) ++end;
    return end - from;
}

Bytes pack(const Bytes& picture) {
    Bytes stream;
    appendWord(stream, side);
    appendWord(stream, side);
    for (std::size_t from = 0; from < picture.size();) {
        std::size_t length = runAt(picture, from);
        const bool fill = length >= shortestFill;
        if (!fill) {
            while (from + length < picture.size() && length < longestToken &&
                   runAt(picture, from + length) < shortestFill) {
                ++length;
            }
        }
        appendToken(stream, fill, picture[from], length);
        if (!fill) {
            const auto first = picture.begin() + static_cast<std::ptrdiff_t>(from);
            stream.insert(stream.end(), first + 1, first + static_cast<std::ptrdiff_t>(length));
        }
        from += length;
    }
    return stream;
}

}  // namespace

int main(int argc, char** argv) {
    std::FILE* const file = argc == 2 ? std::fopen(argv[1], "w") : nullptr;
    if (!file) {
        std::fputs("halopicture: needs the name of a file that it can write\n", stderr);
        return 1;
    }
    std::fputs("#include \"views/halopicture.h\"\n\nnamespace {\n\nconst std::uint8_t stream[] = {", file);
    int column = 0;
    for (const std::uint8_t byte : pack(drawPicture())) std::fprintf(file, "%s%d,", column++ % 32 ? "" : "\n", byte);
    std::fputs("};\n\n}  // namespace\n\nconst std::span<const std::uint8_t> zet::ZETShow::haloPicture = stream;\n",
               file);
    return std::fclose(file) == 0 ? 0 : 1;
}
