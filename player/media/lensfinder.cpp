#include "media/lensfinder.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

namespace zetplay {

namespace {

// Precise to a thousandth of the radius, yet quick, and with noise averaged away.
constexpr int enoughPixels = 480;

// Luma of 0 to 255.
constexpr float brightestSurround = 64;
constexpr float leastContrast = 12;

constexpr int directions = 720;
// Directions in which the rim must divide light from dark. The sides of a square do so over less than 60 degrees.
constexpr int leastSupport = directions / 6;
// Least share of these among the directions in which light begins close to the rim.
constexpr double leastShare = 0.5;
// How many times as many these must be as the directions with light beyond the rim: a square's corners reach beyond it.
constexpr int supportOverLight = 3;

struct Point {
    double x, y;
};

double distance(const LensCircle& circle, Point point) {
    return std::hypot(point.x - circle.x, point.y - circle.y) - circle.radius;
}

/// The picture in which to search, and what counts as dark in it.
struct Field {
    int width;
    int height;
    std::vector<float> light;
    float dark = 0;

    float at(int x, int y) const {
        return light[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
    }
    bool lit(int x, int y) const { return at(x, y) > dark; }
    /// Half a pixel from the edge and more.
    bool inside(Point p) const { return p.x >= 0.5 && p.y >= 0.5 && p.x < width - 0.5 && p.y < height - 0.5; }
    /// Bilinear; for points inside.
    float sample(Point p) const {
        const int x = std::min(static_cast<int>(p.x - 0.5), width - 2);
        const int y = std::min(static_cast<int>(p.y - 0.5), height - 2);
        const auto right = static_cast<float>(p.x - 0.5 - x);
        const auto down = static_cast<float>(p.y - 0.5 - y);
        return std::lerp(std::lerp(at(x, y), at(x + 1, y), right), std::lerp(at(x, y + 1), at(x + 1, y + 1), right),
                         down);
    }
};

/// Replaces each number by the mean of it and its two neighbours.
void smoothLine(float* first, std::ptrdiff_t step, int count) {
    float before = *first;
    for (int i = 0; i < count; ++i, first += step) {
        const float here = *first;
        const float after = i + 1 < count ? first[step] : here;
        *first = (before + here + after) / 3;
        before = here;
    }
}

/// Takes two thirds of the noise away and leaves the edges where they are.
void smooth(Field& field) {
    float* const light = field.light.data();
    for (int y = 0; y < field.height; ++y) smoothLine(light + std::ptrdiff_t{y} * field.width, 1, field.width);
    for (int x = 0; x < field.width; ++x) smoothLine(light + x, field.width, field.height);
}

/// The brightest luma that still counts as surround; nothing if the picture's edges are dark nowhere. Assumes that at
/// least a quarter of them is surround. Then both quantiles lie within its noise, about a standard deviation apart.
std::optional<float> darkest(const Field& field) {
    std::vector<float> edge;
    for (int x = 0; x < field.width; ++x)
        for (const int y : {0, field.height - 1}) edge.push_back(field.at(x, y));
    for (int y = 0; y < field.height; ++y)
        for (const int x : {0, field.width - 1}) edge.push_back(field.at(x, y));
    const auto quantile = [&](std::size_t percent) {
        const auto place = edge.begin() + static_cast<std::ptrdiff_t>(edge.size() * percent / 100);
        std::nth_element(edge.begin(), place, edge.end());
        return *place;
    };
    const float level = quantile(20);
    if (level > brightestSurround) return std::nullopt;
    return level + std::max(leastContrast, 6 * (level - quantile(5)));
}

/// Where the surround ends, seen along the rows and columns from each of the four edges.
std::vector<Point> surroundEnds(const Field& field) {
    std::vector<Point> ends;
    const auto walk = [&](int x, int y, int stepX, int stepY, int steps) {
        // A lit edge of the picture tells nothing of the rim beyond it.
        if (field.lit(x, y)) return;
        for (int i = 1; i < steps; ++i) {
            x += stepX;
            y += stepY;
            if (!field.lit(x, y)) continue;
            ends.push_back({x + 0.5, y + 0.5});
            return;
        }
    };
    for (int y = 0; y < field.height; ++y) {
        walk(0, y, 1, 0, field.width);
        walk(field.width - 1, y, -1, 0, field.width);
    }
    for (int x = 0; x < field.width; ++x) {
        walk(x, 0, 0, 1, field.height);
        walk(x, field.height - 1, 0, -1, field.height);
    }
    return ends;
}

/// The circle through three points; its numbers are not finite if they lie on one line.
LensCircle through(Point a, Point b, Point c) {
    b = {b.x - a.x, b.y - a.y};
    c = {c.x - a.x, c.y - a.y};
    const double bb = b.x * b.x + b.y * b.y;
    const double cc = c.x * c.x + c.y * c.y;
    const double area = 2 * (b.x * c.y - b.y * c.x);
    const double x = (c.y * bb - b.y * cc) / area;
    const double y = (b.x * cc - c.x * bb) / area;
    return {a.x + x, a.y + y, std::hypot(x, y)};
}

bool plausible(const Field& field, const LensCircle& circle) {
    return circle.x > 0 && circle.y > 0 && circle.x < field.width && circle.y < field.height &&
           circle.radius > 0.2 * std::min(field.width, field.height) &&
           circle.radius < 0.75 * std::hypot(field.width, field.height);
}

/// Random sample consensus (Fischler and Bolles 1981): of circles through three of the points, the one that most of
/// them lie on. A dark room may put points inside it. Nothing puts points outside: each of them counts against it.
std::optional<LensCircle> consensus(const Field& field, const std::vector<Point>& points) {
    if (points.size() < 3) return std::nullopt;
    constexpr int rounds = 1000;
    std::minstd_rand random(1);  // the same circle in each run
    std::uniform_int_distribution<std::size_t> any(0, points.size() - 1);
    std::optional<LensCircle> best;
    int bestScore = 0;
    for (int i = 0; i < rounds; ++i) {
        const LensCircle circle = through(points[any(random)], points[any(random)], points[any(random)]);
        if (!plausible(field, circle)) continue;
        const double tolerance = std::max(1.5, 0.01 * circle.radius);
        int score = 0;
        for (const Point point : points) {
            const double off = distance(circle, point);
            score += std::abs(off) < tolerance ? 1 : off > 2 * tolerance ? -1 : 0;
        }
        if (score <= bestScore) continue;
        bestScore = score;
        best = circle;
    }
    return best;
}

/// What the picture shows close to a circle.
struct Rim {
    std::vector<Point> points;  ///< where light rises most steeply behind the dark
    int light = 0;              ///< directions in which there is light beyond the circle
};

/// Where the light rises most steeply from `from` to `to`; nothing where that is too close to an end of the line.
std::optional<int> steepestRise(const std::vector<float>& light, std::ptrdiff_t from, std::ptrdiff_t to) {
    // Over two samples to both sides, against noise.
    std::optional<int> steepest;
    float most = 0;
    for (std::size_t i = 2; i + 2 < light.size(); ++i) {
        const float rise = light[i + 2] - light[i - 2];
        const auto place = static_cast<std::ptrdiff_t>(i);
        if (place < from || place >= to || (steepest && rise <= most)) continue;
        steepest = static_cast<int>(i);
        most = rise;
    }
    return steepest;
}

/// Walks inward across the circle in all directions.
Rim rimNear(const Field& field, const LensCircle& circle) {
    constexpr double outer = 1.05, inner = 0.95;
    constexpr double step = 0.5;  // pixels
    const int steps = static_cast<int>((outer - inner) * circle.radius / step);
    // A lens ends in a soft edge that is this wide.
    const int soft = std::max(4, static_cast<int>(0.025 * circle.radius / step));
    Rim rim;
    std::vector<float> light;
    for (int i = 0; i < directions; ++i) {
        const double angle = 2 * std::numbers::pi * i / directions;
        const auto along = [&](double radius) {
            return Point{circle.x + radius * std::cos(angle), circle.y + radius * std::sin(angle)};
        };
        double start = outer * circle.radius;
        while (start > inner * circle.radius && !field.inside(along(start))) start -= step;
        light.clear();
        for (int k = 0; k < steps && field.inside(along(start - k * step)); ++k)
            light.push_back(field.sample(along(start - k * step)));
        const auto first = std::find_if(light.begin(), light.end(), [&](float l) { return l > field.dark; });
        if (first == light.begin()) {
            if (start > 1.02 * circle.radius) ++rim.light;
            continue;
        }
        if (first == light.end()) continue;
        const auto from = first - light.begin();
        if (const auto rise = steepestRise(light, from - 2, from + soft))
            rim.points.push_back(along(start - *rise * step));
    }
    return rim;
}

/// One Gauss-Newton step of a least-squares fit to the points' distances from the circle (Gander, Golub and Strebel
/// 1994, "Least-squares fitting of circles and ellipses"). Tukey's biweight gives points farther off than `reach` no
/// weight. Nothing where the points do not determine a circle.
std::optional<LensCircle> fitted(const LensCircle& circle, const std::vector<Point>& points, double reach) {
    double m[3][4] = {};  // the normal equations of the changes in x, y and radius, with the right side
    for (const Point point : points) {
        const double off = distance(circle, point);
        if (std::abs(off) >= reach) continue;
        const double weight = std::pow(1 - off * off / (reach * reach), 2);
        const double far = circle.radius + off;
        const double row[4] = {(point.x - circle.x) / far, (point.y - circle.y) / far, 1, off};
        for (int i = 0; i < 3; ++i)
            for (int k = 0; k < 4; ++k) m[i][k] += weight * row[i] * row[k];
    }
    // The matrix is positive definite unless the points are too few, so elimination needs no pivoting.
    for (int i = 0; i < 3; ++i) {
        if (!(m[i][i] > 1e-6)) return std::nullopt;
        for (int j = 0; j < 3; ++j) {
            if (j == i) continue;
            const double factor = m[j][i] / m[i][i];
            for (int k = i; k < 4; ++k) m[j][k] -= factor * m[i][k];
        }
    }
    return LensCircle{circle.x + m[0][3] / m[0][0], circle.y + m[1][3] / m[1][1], circle.radius + m[2][3] / m[2][2]};
}

/// Moves the circle onto the rim, from wide to narrow reach; nothing if too little of a rim shows.
std::optional<LensCircle> refined(const Field& field, LensCircle circle) {
    Rim rim;
    double reach = 0;
    for (const double share : {0.03, 0.02, 0.01, 0.006, 0.006}) {
        rim = rimNear(field, circle);
        reach = std::max(1.0, share * circle.radius);
        for (int i = 0; i < 4; ++i) {
            const auto better = fitted(circle, rim.points, reach);
            if (!better || !plausible(field, *better)) return std::nullopt;
            circle = *better;
        }
    }
    const auto support = std::count_if(rim.points.begin(), rim.points.end(),
                                       [&](Point point) { return std::abs(distance(circle, point)) < reach; });
    const bool plain = support >= leastSupport && support >= supportOverLight * rim.light &&
                       static_cast<double>(support) >= leastShare * static_cast<double>(rim.points.size());
    if (!plain) return std::nullopt;
    return circle;
}

}  // namespace

void LensFinder::add(const Picture& picture) {
    if (picture.width != _width || picture.height != _height) {
        _width = picture.width;
        _height = picture.height;
        _shrink = std::max(1, std::max(_width, _height) / enoughPixels);
        _light.assign(static_cast<std::size_t>(_width / _shrink) * static_cast<std::size_t>(_height / _shrink), 0);
    }
    const int columns = _width / _shrink;
    std::vector<int> sums(static_cast<std::size_t>(columns));
    auto light = _light.begin();
    for (int row = 0; row < _height / _shrink; ++row) {
        std::fill(sums.begin(), sums.end(), 0);
        for (int y = row * _shrink; y < (row + 1) * _shrink; ++y) {
            const std::uint8_t* luma =
                &picture.y[static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.yLineSize)];
            for (int& sum : sums)
                for (int i = 0; i < _shrink; ++i) sum += *luma++;
        }
        for (const int sum : sums) {
            const float luma = static_cast<float>(sum) / static_cast<float>(_shrink * _shrink);
            *light = std::max(*light, picture.color.fullRange ? luma : (luma - 16) * 255 / 219);
            ++light;
        }
    }
}

std::optional<LensCircle> LensFinder::find() const {
    if (_light.empty()) return std::nullopt;
    Field field{_width / _shrink, _height / _shrink, _light};
    if (std::min(field.width, field.height) < 16) return std::nullopt;
    smooth(field);
    const auto dark = darkest(field);
    if (!dark) return std::nullopt;
    field.dark = *dark;
    auto circle = consensus(field, surroundEnds(field));
    if (circle) circle = refined(field, *circle);
    if (!circle) return std::nullopt;
    return LensCircle{circle->x * _shrink, circle->y * _shrink, circle->radius * _shrink};
}

}  // namespace zetplay
