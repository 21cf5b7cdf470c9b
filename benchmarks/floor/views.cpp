// The eleven views by hand. What is constant in a pose at rest is a constant here; what is linear on a triangle is
// computed at its vertices.
//
// A fragment stage reads `at`, the vertex's two numbers, and calls `picture(place)`, texture coordinates, or
// `lens(place)`, -1 to 1 in the square of the lens circle.

#include "floor/views.h"

#include <algorithm>
#include <cmath>

#include "zet/rendermode.h"

namespace bench {

namespace {

const char* const wholePicture = "void main() { gl_FragColor = picture(at); }";

const char* const wholeLens = "void main() { gl_FragColor = lens(at); }";

// From the angle to the lens: the radius falls evenly with `at.t`.
#define EVEN "0.998 * (1.0 - at.t / 1.570795)"
#define UP "vec2(sin(at.s), -cos(at.s))"
#define DOWN "vec2(-sin(at.s), cos(at.s))"

const char* const evenDown = "void main() { gl_FragColor = lens(" EVEN " * " DOWN "); }";

// At the far rest half of a cosine, half of an even fall, drawn in towards the pole.
const char* const farBowl =
    "void main() { gl_FragColor = "
    "lens((1.0 - 0.2 * at.t) * 0.499 * (cos(at.t) + 1.0 - at.t / 1.570795) * " DOWN "); }";

const char* const drawnInUp = "void main() { gl_FragColor = lens((1.0 - 0.2 * at.t) * " EVEN " * " UP "); }";

// `at` is the angle and the radius.
const char* const polar = "void main() { gl_FragColor = lens(at.t * vec2(cos(at.s), sin(at.s))); }";

const char* const lightVertex = R"(
attribute vec4 position;
attribute vec2 numbers;
uniform mat4 matrix;
uniform mat4 light;
varying vec2 at;
varying vec4 lit;
void main() {
    gl_Position = matrix * position;
    lit = light * position;
    at = numbers;
})";

// Inside the other pane's clip space; points behind its camera are mirrored to the front.
const char* const litUp =
    "varying vec4 lit;\n"
    "void main() {\n"
    "    vec3 far = abs(lit.xyz);\n"
    "    float light = max(max(far.x, far.y), far.z) <= abs(lit.w) ? 0.3 : 0.0;\n"
    "    gl_FragColor = clamp(lens(" EVEN " * " DOWN
    "), 0.0, 1.0) + light;\n"
    "}";

// The vertex's place is in the light's place here.
const char* const cutAbove =
    "varying vec4 lit;\n"
    "void main() {\n"
    "    gl_FragColor = lit.z + abs(lit.y) > 4.8 ? vec4(0.0, 0.0, 0.0, 1.0) : lens(" EVEN " * " UP
    ");\n"
    "}";

const char* const ellipse = R"(
void main() {
    bool outside = abs(at.t) >= 1.0 || dot(at * at, vec2(0.25 / 0.079102, 1.0)) > 2.8224;
    gl_FragColor = outside ? vec4(0.0, 0.0, 0.0, 1.0) : lens(at);
})";

// `at` is the latitude from the top and the longitude from the right.
const char* const globe = R"(
void main() {
    vec2 s = sin(at);
    vec2 c = cos(at);
    float z = s.s * s.t;
    vec2 away = vec2(s.s * c.t, -c.s);
    gl_FragColor = lens(acos(min(z, 1.0)) / 1.57079635 * inversesqrt(max(dot(away, away), 1e-12)) * away);
})";

constexpr float pi = 3.1415927f;

Mesh flatQuad() {
    return quad(1, 1, 0, 1, 1, 0);
}

// Angle and radius along the strip, cut open at 2.035 radians.
Mesh strip() {
    const float end = 1.5708f - 2.035f;
    const float rim = 1.0f - 0.00179f;
    return quad(6, 1.15f, end - 6.2832f, rim - 0.8f, end, rim);
}

Mesh globeQuad() {
    return quad(1.65f, 1, 0, pi, pi, 0);
}

Mesh sphereDome() {
    return dome(sphere);
}

Mesh pressedDome() {
    return dome(pressedSphere);
}

float aspect(Size window) {
    return static_cast<float>(window.width) / static_cast<float>(window.height);
}

// The two panes of a view with a lit map. Such views differ only in the matrices.
View mapAndDetail(Size window, const Mat4& detail, const Mat4& map) {
    const bool flat = window.width / 2 > window.height;
    const int margin = flat ? window.height / 75 : window.width / 150;
    const int side = flat ? window.height - 2 * margin : (window.width - 2 * margin) / 2;
    const int x = flat ? (window.width - 2 * side) / 2 : margin;
    const int y = flat ? margin : (window.height - side) / 2;
    return {{{{x + side, y, side, side}, sphereDome, nullptr, evenDown, detail},
             {{x, y, side, side}, sphereDome, lightVertex, litUp, map, detail}}};
}

View onePane(Size window, Mesh (*mesh)(), const char* fragment, const Mat4& matrix) {
    return {{{{0, 0, window.width, window.height}, mesh, nullptr, fragment, matrix}}};
}

View flat(Size window, Size frame) {
    const float ratio = aspect(window) / aspect(frame);
    View view = onePane(window, flatQuad, wholePicture, scaling(std::min(1 / ratio, 1.0f), std::min(ratio, 1.0f), 1));
    view.covers = std::fabs(ratio - 1.0f) < 1e-3f;
    return view;
}

View fourPanes(Size window) {
    const int width = window.width / 2;
    const int height = window.height / 2;
    const Mat4 before = frustum(1, 1, 1.5f, 25) * translation(0, 0, -2) * turnZ(180) * turnX(55.0705986f) *
                        translation(0, 2.2072f, 1.0399932f);
    const struct {
        int x, y;
        float turn;
    } quarters[] = {{0, 0, 180}, {0, height, 270}, {width, height, 0}, {width, 0, 90}};
    View view;
    for (const auto& [x, y, turn] : quarters) {
        view.draws.push_back({{x, y, width, height}, sphereDome, nullptr, drawnInUp, before * turnZ(-turn)});
    }
    return view;
}

View map(Size window) {
    const Mat4 lens = frustum(1, 1, 1, 25);
    return mapAndDetail(window,
                        lens * translation(0, 0, -2) * turnZ(180) * turnX(45.560596f) *
                            translation(0, 1.8790853f, 1.3989465f) * turnZ(180),
                        lens * translation(0, 0, -6.2f));
}

View shape(Size window, Mesh (*mesh)(), float eye, float lift, float tilt) {
    View view = onePane(window, mesh, wholeLens,
                        frustum(aspect(window), 1, 3, 33) * translation(0, 0, -eye) * turnZ(180) *
                            translation(0, lift, 0) * turnX(-tilt) * turnZ(180));
    view.depth = true;
    return view;
}

View wallThree(Size window) {
    const int width = window.width / 2;
    const int height = window.height / 2;
    const auto wide = static_cast<float>((width - 1) / (height - 1));
    const Mat4 before = frustum(wide, 1, 1.5f, 25) * translation(0, 0, 1.0486f - 2.0f);
    const Mat4 panorama = frustum(0.9f, 0.9f, 1, 30) * translation(0, 0, -1) * turnZ(-90);
    return {{{{0, 0, window.width, height - 1}, globeQuad, nullptr, globe, panorama},
             {{0, height + 1, width - 1, height - 1}, pressedDome, nullptr, evenDown, before * turnY(-50.4f)},
             {{width + 1, height + 1, width - 1, height - 1}, pressedDome, nullptr, evenDown, before * turnY(50.4f)}}};
}

View wallTwo(Size window) {
    const Mat4 lens = frustum(1, 1, 1.5f, 25);
    return mapAndDetail(window, lens * translation(0, 0, -2), lens * translation(0, 0, -9.2f));
}

View wallOne(Size window) {
    View view = onePane(window, sphereDome, cutAbove,
                        frustum(aspect(window), 1, 1, 30) * translation(0, 0, -6) * turnZ(180) * scaling(1, 1, 1.25f));
    view.draws[0].vertex = lightVertex;
    return view;
}

}  // namespace

View makeView(int number, Size window, Size frame) {
    const Mat4 wide = frustum(aspect(window), 1, 1, 25);
    switch (static_cast<zet::RenderMode>(number)) {
        case zet::RENDER_MODE_HALF_SPHERE:
            return onePane(window, pressedDome, farBowl, wide * translation(0, 0, -6.1f));
        case zet::RENDER_MODE_PANORAMA:
            return onePane(window, strip, polar, frustum(aspect(window), 1, 1, 20) * translation(0, 0, -2));
        case zet::RENDER_MODE_FOUR_PANE:
            return fourPanes(window);
        case zet::RENDER_MODE_MAP:
            return map(window);
        case zet::RENDER_MODE_DRUM:
            return shape(
                window, [] { return dome(drum); }, 22.2f, 0.15242944f, 180 + 118.307f);
        case zet::RENDER_MODE_BOWL:
            return shape(
                window, [] { return dome(bowl); }, 20.05f, 0.32396417f, 180 + 126.06f);
        case zet::RENDER_MODE_WALL_THREE:
            return wallThree(window);
        case zet::RENDER_MODE_WALL_TWO:
            return wallTwo(window);
        case zet::RENDER_MODE_WALL_ONE:
            return wallOne(window);
        case zet::RENDER_MODE_WALL_180:
            return onePane(
                window, [] { return dome(underPicture); }, ellipse,
                wide * translation(0, 0, -6.4f) * turnZ(180) * scaling(1, 1, 0));
        case zet::RENDER_MODE_FLAT:
            break;
    }
    return flat(window, frame);
}

}  // namespace bench
