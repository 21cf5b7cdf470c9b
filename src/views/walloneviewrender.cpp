// What a person sees: the round picture of a camera on a wall, upright in the middle of a black surface, as high as the
// surface, its top and bottom cut off by two straight edges. A double tap flies in until the picture fills the surface,
// and another flies back; a pinch does it by hand. Near, a drag looks about, and the view can sweep from side to side.
// The dome that carries the picture is deep when seen from far and flat when near.

#include "views/walloneviewrender.h"

#include "views/parts/lenspieces.h"

namespace zet::ZETShow {

namespace {

// Two planes cut off the dome's top and bottom. At the rim they are 0.8 of its radius, 6, from the axis; towards the
// pole they open by 0.8 for each unit of depth.
const char* const mainStep = R"(
varying vec3 v_place;
void main() {
    bool cut = 0.8 * v_place.z + abs(v_place.y) > 4.8;
    vec4 color = sampleLens(lensPoint(evenRadius(v_texCoord.t), v_texCoord.s));
    gl_FragColor = cut ? vec4(0.0, 0.0, 0.0, 1.0) : color;
}
)";

}  // namespace

WallOneViewRender::WallOneViewRender(DisplayConfig* config, RenderThread* thread,
                                     const std::shared_ptr<WallZoom>& motion)
    : Render(config, thread, motion), _motion(*motion) {}

int WallOneViewRender::init(const ColorTransform& color) {
    glClearColor(0, 0, 0, 1);
    glDisable(GL_DEPTH_TEST);
    return _dome.init(_program, color, onSphere, {evenRadius, lensPoint, mainStep});
}

int WallOneViewRender::render(int surfaceWidth, int surfaceHeight, const Frame& frame) {
    if (!_dome.fitTo(_motion._size, surfaceWidth, surfaceHeight)) return -1;
    glClear(GL_COLOR_BUFFER_BIT);
    _motion.step();
    setViewport({0, 0, _motion._size._lastWidth, _motion._size._lastHeight});
    _dome.draw(_program, frame, _motion);
    return 0;
}

}  // namespace zet::ZETShow
