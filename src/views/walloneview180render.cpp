// What a person sees: from far, the frame as it is, flat and upright in the middle of a black surface, its left and
// right rounded off by an ellipse. As the camera comes nearer, by a double tap or by pinches, the picture bends into a
// dome, and in the end the camera is inside it and looks about. A lifted finger lets the view creep back towards
// the middle; by itself it can sweep from side to side.

#include "views/walloneview180render.h"

#include <cmath>

namespace zet::ZETShow {

namespace {

// The ellipse (16/9 s)^2 + t^2 = 1.68^2, drawn for a 16:9 frame, cuts off its left and right edges and its corners.
const char* const mainStep = R"(
void main() {
    bool outside = abs(v_texCoord.t) >= 1.0 || dot(v_texCoord * v_texCoord, vec2(0.25 / 0.079102, 1.0)) > 2.8224;
    gl_FragColor = outside ? vec4(0.0, 0.0, 0.0, 1.0) : sampleLens(v_texCoord);
}
)";

constexpr float frameStretch = 1.6f;  // the frame is this much wider than high on the dome

// The frame laid on the dome straight along its axis. The dome is drawn turned by a half circle.
MeshVertex underFlatFrame(double a, double b) {
    const auto r = static_cast<float>(std::cos(b));
    const float stretched = frameStretch * r;
    MeshVertex point = onSphere(a, b);
    point.texCoord[0] = static_cast<float>(r * std::sin(a));
    point.texCoord[1] = static_cast<float>(-stretched * std::cos(a));
    return point;
}

}  // namespace

WallOneView180Render::WallOneView180Render(DisplayConfig* config, RenderThread* thread,
                                           const std::shared_ptr<WallOneView180Motion>& motion)
    : Render(config, thread, motion), _motion(*motion) {}

int WallOneView180Render::init(const ColorTransform& color) {
    glClearColor(0, 0, 0, 1);
    glDisable(GL_DEPTH_TEST);
    return _dome.init(_program, color, underFlatFrame, {mainStep});
}

int WallOneView180Render::render(int surfaceWidth, int surfaceHeight, const Frame& frame) {
    if (!_dome.fitTo(_motion._size, surfaceWidth, surfaceHeight)) return -1;
    glClear(GL_COLOR_BUFFER_BIT);
    _motion.step();
    setViewport({0, 0, _motion._size._lastWidth, _motion._size._lastHeight});
    _dome.draw(_program, frame, _motion);
    return 0;
}

}  // namespace zet::ZETShow
