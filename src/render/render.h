#pragma once

#include <GLES2/gl2.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "config/door.h"
#include "config/relaxed.h"
#include "render/frame.h"
#include "render/program.h"
#include "render/viewport.h"
#include "zet/displayconfigkit.h"
#include "zet/globalconfiger.h"

namespace zet::ZETShow {

class Display;

/// What a view answers to a gesture that it doesn't know; no redraw follows.
inline constexpr int RENDER_NOT_HANDLED = -1118208;

/// Base of the views: the operations through which the display drives one, what they hear from the bus, and inertia.
///
/// Made, drawn and destroyed on the render thread with the context current. Gestures and settings arrive on their
/// setters' threads and change single numbers without a lock. Gesture coordinates are surface pixels, origin at the
/// top left corner.
class Render : public DisplayConfigKit {
public:
    Render(DisplayConfig* config, float touchScale, Display* display);
    ~Render() override;
    Render(const Render&) = delete;
    Render& operator=(const Render&) = delete;

    /// Draws `frame` into the window surface, whose size is in pixels; the display swaps. 0 on success. Render thread.
    virtual int render(int surfaceWidth, int surfaceHeight, const Frame& frame) = 0;

    // Gestures: 0 asks for a redraw. Setter's thread.
    virtual int onTouchDown(float x, float y);
    virtual int onTouchUp(float x, float y);
    virtual int onPinch(float factor);
    virtual int onDoubleTap(float x, float y);
    virtual int onDrag(float x1, float y1, float x2, float y2);

    /// Builds what needs GL and registers the view's own observers. 0 on success. Render thread.
    virtual int init() = 0;

    // Settings and inertia, in surface pixels a second; a view that has no use for one leaves it alone.
    virtual void setAutoRotate(bool enable, float speed);      // Setter's thread.
    virtual void onFling(float velocityX, float velocityY);    // Render thread, one frame of it before the draw.
    virtual void setOpeningFlight(bool on);                    // Setter's thread.
    virtual void setSceneBackdrop(bool backdrop, bool stars);  // Setter's thread.

    /// Builds `_program` and what else the view draws with. 0 on success. Render thread.
    virtual int createProgram() = 0;

    /// The part of the surface that was last drawn into, all 0 before the first draw. Render thread.
    const Viewport& viewport() const { return _viewport; }

    /// Slows the inertia by a frame and hands it to `onFling`, before each draw. Render thread.
    void stepFling();

    /// The view stands complete: from now on the bus reaches it, stored settings first. Render thread.
    void goLive();
    /// Nothing reaches the view any more once this has returned. Render thread, before the view's destructor begins.
    void retire();

protected:
    using Work = std::function<int(DisplayConfigUserData&)>;

    /// Runs `work` on the setter's thread at each delivery of `id`; a result of 0 asks for a redraw.
    void observe(std::int64_t id, unsigned mask, const Work& work);
    /// The same with `work` on the render thread, while the setter waits.
    void observeOnRenderThread(std::int64_t id, unsigned mask, const Work& work);

    /// Draws into this part of the surface from now on.
    void setViewport(const Viewport& viewport);
    void requestRender() { _config->setConfig(DCFG_RENDER_REQUEST, nullptr); }

    const float _touchScale;  // factor on the coordinates of gestures

    Display* const _display;
    GlobalConfiger* const _globalConfiger;

    // Inertia, surface pixels a second.
    Relaxed<int> _flingActive = 0;
    Relaxed<float> _flingVelocityX = 0.0f;
    Relaxed<float> _flingVelocityY = 0.0f;

    FrameProgram _program;  // the view's main one

private:
    struct PendingObserver {
        std::int64_t id;
        DisplayConfig::Callback callback;
        unsigned mask;
    };

    void registerGestureObservers();
    void registerSettingObservers();
    /// Scales the `count` coordinates of a gesture's record in place; false, with nothing changed, if one isn't finite.
    bool scaleGesturePoints(float* points, int count) const;
    int startFling(const Fling* fling);

    Viewport _viewport;
    const std::shared_ptr<Door> _door = std::make_shared<Door>();
    std::vector<PendingObserver> _pending;  // `observe` collects them here, `goLive` registers them
};

}  // namespace zet::ZETShow
