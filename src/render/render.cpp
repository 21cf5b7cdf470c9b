#include "render/render.h"

#include <algorithm>
#include <cmath>

#include "zet/zetlog.h"

namespace zet::ZETShow {

namespace {

constexpr unsigned eventMask = DCFG_FLAG_EVENT;
constexpr unsigned settingMask = DCFG_FLAG_VALUE | DCFG_FLAG_REPLAY;

bool areFinite(std::initializer_list<float> numbers) {
    return std::all_of(numbers.begin(), numbers.end(), [](float number) { return std::isfinite(number); });
}

}  // namespace

Render::Render(DisplayConfig* config, RenderThread* thread, const std::shared_ptr<Motion>& motion)
    : DisplayConfigKit(config), _thread(thread), _motion(motion) {
    observeGestures();
    observeSettings();
}

Render::~Render() {
    auto& log = ZETLog::instance();
    log.debug("~Render");
    if (_program.isBuilt()) log.debug("~Render _program");
}

void Render::observe(std::int64_t id, unsigned mask, const Work& work) {
    const auto callback = [work](DisplayConfig& config, DisplayConfigUserData& delivery) {
        return work(delivery) ? config.setConfig(DCFG_RENDER_REQUEST, nullptr) : 0;
    };
    regist(id, callback, mask);
}

void Render::observeOnRenderThread(std::int64_t id, unsigned mask, const Work& work) {
    const auto callback = [door = _thread->door(), thread = _thread, view = weak_from_this(), work](
                              DisplayConfig& config, DisplayConfigUserData& delivery) {
        bool redraw = false;
        {
            const Door::Pass inside(*door);
            if (!inside) return 0;
            // Views die on the render thread too, so that none dies between the question and the end of the work.
            thread->postTask([&] {
                redraw = !view.expired() && work(delivery);
                return 0;
            });
        }
        // Outside the door: an observer of the request may block, and the display's end waits for those inside.
        return redraw ? config.setConfig(DCFG_RENDER_REQUEST, nullptr) : 0;
    };
    regist(id, callback, mask);
}

void Render::observeGestures() {
    observe(DCFG_PINCH, eventMask, [motion = _motion](DisplayConfigUserData& delivery) {
        const float factor = delivery.getFloat();
        return std::isfinite(factor) && motion->pinch(factor);
    });
    observe(DCFG_DRAG, eventMask, [motion = _motion](DisplayConfigUserData& delivery) {
        const auto* const drag = delivery.getRecord<const DragPoints>();
        return drag && areFinite({drag->x1, drag->y1, drag->x2, drag->y2}) &&
               motion->drag(drag->x1, drag->y1, drag->x2, drag->y2);
    });
    const auto observePoint = [this](std::int64_t id, bool (Motion::*gesture)(float, float)) {
        observe(id, eventMask, [motion = _motion, gesture](DisplayConfigUserData& delivery) {
            const auto* const point = delivery.getRecord<const TouchPoint>();
            return point && areFinite({point->x, point->y}) && ((*motion).*gesture)(point->x, point->y);
        });
    };
    observePoint(DCFG_TOUCH_DOWN, &Motion::touchDown);
    observePoint(DCFG_TOUCH_UP, &Motion::touchUp);
    observePoint(DCFG_DOUBLE_TAP, &Motion::doubleTap);
}

void Render::observeSettings() {
    observe(DCFG_AUTO_ROTATE, settingMask, [motion = _motion](DisplayConfigUserData& delivery) {
        const auto* const setting = delivery.getRecord<const AutoRotate>();
        if (!setting || !std::isfinite(setting->speed)) return false;
        if (setting->enable) motion->stopFling();
        motion->setAutoRotate(setting->enable != 0, setting->speed);
        return false;
    });
    observe(DCFG_FLING, settingMask, [motion = _motion](DisplayConfigUserData& delivery) {
        if (delivery.getState() & int{DCFG_FLAG_REPLAY}) return false;  // a moment, not a setting
        const auto* const fling = delivery.getRecord<const Fling>();
        if (fling && areFinite({fling->vx, fling->vy})) motion->startFling(fling->vx, fling->vy);
        return false;
    });
    // The backdrop before the flight: where that begins depends on the backdrop.
    observe(DCFG_SCENE_BACKDROP, settingMask, [motion = _motion](DisplayConfigUserData& delivery) {
        const auto* const scene = delivery.getRecord<const SceneBackdrop>();
        if (scene) motion->setSceneBackdrop(scene->backdrop != 0, scene->stars != 0);
        return false;
    });
    observe(DCFG_OPENING_FLIGHT, settingMask, [motion = _motion](DisplayConfigUserData& delivery) {
        motion->setOpeningFlight(delivery.getInt() != 0);
        return false;
    });
}

void Render::setViewport(const Viewport& viewport) {
    _viewport = viewport;
    glViewport(viewport.x, viewport.y, viewport.width, viewport.height);
}

}  // namespace zet::ZETShow
