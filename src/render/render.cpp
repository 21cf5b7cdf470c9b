#include "render/render.h"

#include <cmath>
#include <optional>

#include "display/display.h"
#include "zet/zetlog.h"

namespace zet::ZETShow {

namespace {

constexpr unsigned eventMask = DCFG_FLAG_EVENT;
constexpr unsigned settingMask = DCFG_FLAG_VALUE | DCFG_FLAG_REPLAY;

constexpr double flingDecay = 0.9;      // of the velocity, a frame
constexpr float flingEnd = 0.5f;        // pixels a second: slower inertia stops
constexpr float flingThreshold = 0.1f;  // pixels a second: a slower fling starts nothing

}  // namespace

Render::Render(DisplayConfig* config, float touchScale, Display* display)
    : DisplayConfigKit(config), _touchScale(touchScale), _display(display), _globalConfiger(display->globalConfiger()) {
    registerGestureObservers();
    registerSettingObservers();
}

Render::~Render() {
    auto& log = ZETLog::instance();
    log.error("~Render");
    if (_program.isBuilt()) log.error("~Render _program");
}

int Render::onTouchDown(float, float) {
    return RENDER_NOT_HANDLED;
}

int Render::onTouchUp(float, float) {
    return RENDER_NOT_HANDLED;
}

int Render::onPinch(float) {
    return RENDER_NOT_HANDLED;
}

int Render::onDoubleTap(float, float) {
    return RENDER_NOT_HANDLED;
}

int Render::onDrag(float, float, float, float) {
    return RENDER_NOT_HANDLED;
}

void Render::setAutoRotate(bool, float) {}

void Render::onFling(float, float) {}

void Render::setOpeningFlight(bool) {}

void Render::setSceneBackdrop(bool, bool) {}

void Render::observe(std::int64_t id, unsigned mask, const Work& work) {
    const auto callback = [door = _door, work](DisplayConfig& config, DisplayConfigUserData& delivery) {
        int result = RENDER_NOT_HANDLED;
        {
            const Door::Pass inside(*door);
            if (inside) result = work(delivery);
        }
        // Outside the door and with nothing of the view, which may be gone by now: an observer of the request may wait
        // for the render thread, and that must not wait at the door for this one.
        return result == 0 ? config.setConfig(DCFG_RENDER_REQUEST, nullptr) : 0;
    };
    _pending.push_back({id, callback, mask});
}

void Render::observeOnRenderThread(std::int64_t id, unsigned mask, const Work& work) {
    const auto callback = [door = _door, display = _display, work](DisplayConfig& config,
                                                                   DisplayConfigUserData& delivery) {
        // The way to the render thread leads out of the view, which may die there while this thread waits, and into
        // the display, which may not: a view that lets somebody in has a display that stands.
        std::optional<Door::Pass> inside(std::in_place, *door);
        if (!*inside) return 0;
        const Door::Pass insideDisplay = display->enter();
        inside.reset();
        if (!insideDisplay) return 0;
        int result = RENDER_NOT_HANDLED;
        display->postTask([&] { return door->isOpen() ? result = work(delivery) : -1; });
        return result == 0 ? config.setConfig(DCFG_RENDER_REQUEST, nullptr) : 0;
    };
    _pending.push_back({id, callback, mask});
}

void Render::goLive() {
    _door->open();
    for (const PendingObserver& observer : _pending) {
        regist(observer.id, observer.callback, static_cast<int>(observer.mask));
    }
    _pending.clear();
}

void Render::retire() {
    _door->close();
    unRegistAll();
}

bool Render::scaleGesturePoints(float* points, int count) const {
    if (!points) return false;
    for (int i = 0; i < count; ++i) {
        if (!std::isfinite(points[i])) return false;
    }
    if (_touchScale == 1.0f) return true;  // nothing is written: the record may stand in read-only memory
    for (int i = 0; i < count; ++i) points[i] *= _touchScale;
    return true;
}

void Render::registerGestureObservers() {
    observe(DCFG_PINCH, eventMask, [this](DisplayConfigUserData& delivery) {
        const float factor = delivery.getFloat();
        return std::isfinite(factor) ? onPinch(factor) : RENDER_NOT_HANDLED;
    });
    observe(DCFG_DRAG, eventMask, [this](DisplayConfigUserData& delivery) {
        auto* const drag = delivery.getRecord<DragPoints>();
        if (!drag || !scaleGesturePoints(&drag->x1, 4)) return RENDER_NOT_HANDLED;
        return onDrag(drag->x1, drag->y1, drag->x2, drag->y2);
    });
    const auto observePoint = [this](std::int64_t id, int (Render::*operation)(float, float)) {
        observe(id, eventMask, [this, operation](DisplayConfigUserData& delivery) {
            auto* const point = delivery.getRecord<TouchPoint>();
            if (!point || !scaleGesturePoints(&point->x, 2)) return RENDER_NOT_HANDLED;
            return (this->*operation)(point->x, point->y);
        });
    };
    observePoint(DCFG_TOUCH_DOWN, &Render::onTouchDown);
    observePoint(DCFG_TOUCH_UP, &Render::onTouchUp);
    observePoint(DCFG_DOUBLE_TAP, &Render::onDoubleTap);
}

void Render::registerSettingObservers() {
    observe(DCFG_AUTO_ROTATE, settingMask, [this](DisplayConfigUserData& delivery) {
        const auto* const setting = delivery.getRecord<const AutoRotate>();
        if (!setting || !std::isfinite(setting->speed)) return RENDER_NOT_HANDLED;
        if (setting->enable) _flingActive = 0;
        setAutoRotate(setting->enable != 0, setting->speed);
        return RENDER_NOT_HANDLED;
    });
    observe(DCFG_FLING, settingMask, [this](DisplayConfigUserData& delivery) {
        if (delivery.getState() & DCFG_FLAG_REPLAY) return RENDER_NOT_HANDLED;  // a moment, not a setting
        return startFling(delivery.getRecord<const Fling>());
    });
    // The backdrop before the flight, which begins at a place of its own with each.
    observe(DCFG_SCENE_BACKDROP, settingMask, [this](DisplayConfigUserData& delivery) {
        const auto* const scene = delivery.getRecord<const SceneBackdrop>();
        if (scene) setSceneBackdrop(scene->backdrop != 0, scene->stars != 0);
        return RENDER_NOT_HANDLED;
    });
    observe(DCFG_OPENING_FLIGHT, settingMask, [this](DisplayConfigUserData& delivery) {
        setOpeningFlight(delivery.getInt() != 0);
        return RENDER_NOT_HANDLED;
    });
}

int Render::startFling(const Fling* fling) {
    if (!fling || !std::isfinite(fling->vx) || !std::isfinite(fling->vy)) return RENDER_NOT_HANDLED;
    if (std::fabs(fling->vx) <= flingThreshold && std::fabs(fling->vy) <= flingThreshold) return RENDER_NOT_HANDLED;
    _flingVelocityX = fling->vx;
    _flingVelocityY = fling->vy;
    _flingActive = 1;
    return RENDER_NOT_HANDLED;
}

void Render::stepFling() {
    if (!_flingActive) return;
    const auto slower = [](float velocity) { return static_cast<float>(velocity * flingDecay); };
    const float velocityX = _flingVelocityX.update(slower);
    const float velocityY = _flingVelocityY.update(slower);
    if (std::fabs(velocityX) < flingEnd && std::fabs(velocityY) < flingEnd) {
        _flingActive = 0;
        return;
    }
    onFling(velocityX, velocityY);
}

void Render::setViewport(const Viewport& viewport) {
    _viewport = viewport;
    glViewport(viewport.x, viewport.y, viewport.width, viewport.height);
}

}  // namespace zet::ZETShow
