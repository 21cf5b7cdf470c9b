// The display's life, and its observers: what happens on the threads of others.

#include "display/display.h"

#include "render/render.h"
#include "zet/zetdisplay.h"
#include "zet/zetlog.h"

namespace zet {

std::shared_ptr<DisplayConfigKit> CreateZETDisplay(DisplayConfig* config, GlobalConfiger* global) {
    if (!config) return nullptr;
    return {new ZETShow::Display(config, global), ZETShow::Display::release};
}

namespace ZETShow {

Display::Display(DisplayConfig* config, GlobalConfiger* global) : DisplayConfigKit(config), RenderThread(global) {
    ZETLog::instance().debug("Display::Display begin");
    _door->open();
    // Before the thread starts, which connects to it.
    observe(DCFG_NATIVE_DISPLAY, DCFG_FLAG_VALUE | DCFG_FLAG_REPLAY, &Display::onNativeDisplay);
    observe(DCFG_OFFSCREEN_SIZE, DCFG_FLAG_VALUE | DCFG_FLAG_REPLAY, &Display::onOffscreenSize);
    const bool isOffscreen = _wanted == Platform::Kind::offscreen;
    run();
    // The mode before the window: a replay of both makes the view for the right mode.
    observe(DCFG_RENDER_MODE, DCFG_FLAG_VALUE | DCFG_FLAG_REPLAY, &Display::onRenderModeChange);
    if (isOffscreen) postTask([this] { return offscreenTask(&_offscreenSize); });
    observe(DCFG_WINDOW_INSTANCE, DCFG_FLAG_VALUE | DCFG_FLAG_REPLAY, &Display::onWindowInstance);
    observe(DCFG_RENDER_REQUEST, DCFG_FLAG_EVENT, &Display::onRenderRequest);
    observe(DCFG_YUV_FRAME, DCFG_FLAG_EVENT, &Display::onRenderYUV420PData);
    observe(DCFG_FRAME_COLOR, DCFG_FLAG_VALUE | DCFG_FLAG_REPLAY, &Display::onFrameColor);
    observe(DCFG_SNAP, DCFG_FLAG_EVENT, &Display::onGetSnap);
    ZETLog::instance().debug("Display::Display end");
}

void Display::release(Display* display) {
    // What a stuck thread may still touch stays, until after the process's own end. It can be found here.
    static std::mutex mutex;
    static auto& stuck = *new std::vector<Display*>;
    if (display->end()) {
        delete display;
        return;
    }
    const std::lock_guard lock(mutex);
    stuck.push_back(display);
}

bool Display::end() {
    ZETLog::instance().debug("Display::~Display begin");
    bool ended = false;
    {
        std::unique_lock lock(_mutex);
        _exitRequested = 1;
        _paceCond.notifyOne();
        _idleCond.notifyOne();
        ended = waitForThread(lock, [this] { return !_threadEnded; });
    }
    if (ended) {
        _thread.join();
    } else {
        _thread.detach();
    }
    _taskDoneCond.notifyAll();
    unRegistAll();
    _door->close();  // threads just released from postTask are still inside
    ZETLog::instance().debug("Display::~Display end");
    return ended;
}

void Display::observe(std::int64_t id, unsigned mask, Observer observer) {
    const auto pass = [this, door = _door, observer](DisplayConfig& config, DisplayConfigUserData& delivery) {
        const Door::Pass inside(*door);
        return inside ? (this->*observer)(config, delivery) : 0;
    };
    regist(id, pass, mask);
}

int Display::onRenderModeChange(DisplayConfig&, DisplayConfigUserData& delivery) {
    ZETLog::instance().debug("Display::onRenderModeChange mode: %d", delivery.getInt());
    postTask([this, &delivery] { return modeTask(delivery); });
    return 0;
}

int Display::onWindowInstance(DisplayConfig&, DisplayConfigUserData& delivery) {
    ZETLog::instance().debug("Display::onWindowInstance begin surface: %p", delivery.getData());
    _window = delivery.getData();
    postTask([this, &delivery] { return windowTask(delivery); });
    ZETLog::instance().debug("Display::onWindowInstance end");
    return 0;
}

// The replay comes before the render thread exists.
int Display::onNativeDisplay(DisplayConfig&, DisplayConfigUserData& delivery) {
    void* const native = delivery.getData();
    if (delivery.getState() & int{DCFG_FLAG_REPLAY}) {
        _nativeDisplay = native;
        if (native) _wanted = Platform::Kind::wayland;
        return 0;
    }
    return postTask([this, native] { return nativeDisplayTask(native); });
}

int Display::onOffscreenSize(DisplayConfig&, DisplayConfigUserData& delivery) {
    const auto* const size = delivery.getRecord<const OffscreenSize>();
    if (delivery.getState() & int{DCFG_FLAG_REPLAY}) {
        if (!size) return 0;
        _offscreenSize = *size;
        _wanted = Platform::Kind::offscreen;
        return 0;
    }
    return postTask([this, size] { return offscreenTask(size); });
}

int Display::onRenderRequest(DisplayConfig&, DisplayConfigUserData&) {
    _redrawCount = drawsPerRequest;
    _idleCond.notifyOne();
    return 0;
}

int Display::onRenderYUV420PData(DisplayConfig&, DisplayConfigUserData& delivery) {
    // Two pointers: a callable this small is queued without an allocation.
    postTask([this, &delivery] { return frameTask(delivery); });
    return 0;
}

int Display::onFrameColor(DisplayConfig& config, DisplayConfigUserData& delivery) {
    bool redraw = false;
    postTask([&] {
        redraw = colorTask(delivery) == 0 && _frame.hasPlanes();
        return 0;
    });
    return redraw ? config.setConfig(DCFG_RENDER_REQUEST, nullptr) : 0;
}

int Display::onGetSnap(DisplayConfig&, DisplayConfigUserData& delivery) {
    ZETLog::instance().debug("Display::onGetSnap begin");
    postTask([this, &delivery] { return snapTask(delivery); });
    ZETLog::instance().debug("Display::onGetSnap end");
    return 0;
}

}  // namespace ZETShow

}  // namespace zet
