#pragma once

#include <EGL/egl.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "config/relaxed.h"
#include "display/condition.h"
#include "display/framereader.h"
#include "display/platform.h"
#include "render/frame.h"
#include "render/renderthread.h"
#include "zet/displayconfigkit.h"
#include "zet/rendermode.h"

namespace zet::ZETShow {

class Render;

/// The object that the player holds: one render thread with its EGL objects, the current frame and the view.
///
/// Commands arrive over the bus on the setters' threads; what touches EGL, GL or the frame is posted to the render
/// thread, which holds `_mutex` whenever it isn't waiting. Lock order: a slot of the bus, `_mutex`, a condition's own.
class Display final : public DisplayConfigKit, public RenderThread {
public:
    Display(DisplayConfig* config, GlobalConfiger* global);

    /// Ends a display. If its render thread is stuck in the driver, it stays in memory with what the driver may touch.
    /// Any thread but the render thread.
    static void release(Display* display);

    int postTask(const std::function<int()>& task) override;

private:
    using Observer = int (Display::*)(DisplayConfig&, DisplayConfigUserData&);

    // display.cpp: life and observers
    ~Display() override = default;
    /// False if the render thread can't be ended.
    bool end();
    void observe(std::int64_t id, unsigned mask, Observer observer);
    int onRenderModeChange(DisplayConfig&, DisplayConfigUserData& delivery);   // Setter's thread.
    int onWindowInstance(DisplayConfig&, DisplayConfigUserData& delivery);     // Setter's thread.
    int onRenderRequest(DisplayConfig&, DisplayConfigUserData&);               // Any thread.
    int onRenderYUV420PData(DisplayConfig&, DisplayConfigUserData& delivery);  // Setter's thread.
    int onGetSnap(DisplayConfig&, DisplayConfigUserData& delivery);            // Setter's thread.
    int onFrameColor(DisplayConfig&, DisplayConfigUserData& delivery);         // Setter's thread.
    int onNativeDisplay(DisplayConfig&, DisplayConfigUserData& delivery);      // Setter's thread.
    int onOffscreenSize(DisplayConfig&, DisplayConfigUserData& delivery);      // Setter's thread.

    // displaythread.cpp: the render thread's body and its waits
    int run();
    void renderLoop();
    void drawOwed();
    void waitForPace();
    void waitForWork();
    void runTasks();
    /// Waits until `blocked()` is false; false if the render thread is stuck in the driver.
    template <typename Blocked>
    bool waitForThread(std::unique_lock<std::recursive_mutex>& lock, const Blocked& blocked) {
        while (blocked() && !_gaveUp) {
            _taskDoneCond.waitWhileUntil(lock, Condition::Clock::now() + patience,
                                         [&] { return blocked() && !_gaveUp; });
            if (blocked() && !_gaveUp && isStuck()) giveUp();
        }
        return !_gaveUp;
    }
    bool isStuck() const;
    void giveUp();
    bool hasTask() const { return !_tasks.empty(); }
    bool drawIsOwed() const { return _frameReady || _redrawCount > 0; }

    // displayegl.cpp. Render thread.
    int init();
    int unInit();
    int makeCurrent();
    int swapBuffers();
    int windowTask(const DisplayConfigUserData& delivery);
    int offscreenTask(const OffscreenSize* size);
    int resizeOffscreen();
    int nativeDisplayTask(void* display);
    bool openPlatform();
    bool makeSurface();
    bool sizeIsDrawable(const OffscreenSize& size);
    /// Makes the surface current, and a view for it.
    int takeSurface();
    void dropSurface();
    void loseServer();
    void tell(int code, const char* what, int line);
    int tellEgl(const char* call, int line);
    /// Deletes what GL holds of view and frame.
    void dropPicture();

    // displayframe.cpp. Render thread.
    int frameTask(const DisplayConfigUserData& delivery);
    int modeTask(const DisplayConfigUserData& delivery);
    bool frameIsSound(const YUV420PData& frame);
    void uploadFrame(const YUV420PData& frame);
    void copyItems(const YUV420PData& frame);
    int colorTask(const DisplayConfigUserData& delivery);
    /// What the mode in force shows of the frame; the square for a mode that no view has.
    ShownPart shownPart() const;
    void findRegion();
    int drawFrame();
    bool drawPicture();

    // displaysnap.cpp. Render thread.
    int snapTask(const DisplayConfigUserData& delivery);
    /// Draws again if the window's size has changed since the last draw: its picture still has the old size.
    void matchSurface();
    void finishPicture(const SnapData& snap, bool topRowFirst);

    static constexpr int drawsPerRequest = 30;
    static constexpr std::chrono::milliseconds patience{250};  // for a swap to a server that is gone

    // The render thread and its mailbox: all but the atomics change only under `_mutex`.
    std::thread _thread;
    std::recursive_mutex _mutex;  // held by the render thread whenever it isn't waiting
    std::thread::id _renderThreadId;
    Condition _idleCond;
    Condition _paceCond;
    int _exitRequested = 0;
    int _threadEnded = 0;                      // no task runs from now on
    int _frameReady = 0;                       // a frame has been uploaded and not yet drawn
    std::atomic<int> _redrawCount = 0;         // draws owed without a new frame
    std::vector<std::function<int()>> _tasks;  // queued or running; emptied when all have run
    Condition _taskDoneCond;
    Condition::Clock::time_point _lastDraw;
    std::optional<Condition::Clock::time_point> _swapBegan;  // set during a swap, which runs without `_mutex`
    bool _gaveUp = false;                                    // the render thread won't come back
    std::uint32_t _drawCount = 0;                            // pictures shown

    // The frame and its view. Render thread.
    int _surfaceWidth = 0;  // pixels, as of the last draw
    int _surfaceHeight = 0;
    int _renderMode = RENDER_MODE_FLAT;         // as it was set; may be the number of no view
    std::unique_ptr<std::uint8_t[]> _uvBuffer;  // U and V interleaved
    int _uvBufferSize = 0;                      // bytes in use by the last frame
    bool _refusing = false;                     // the last frame was refused, and the log says so
    Frame _frame;
    std::unique_ptr<FrameReader> _reader;  // made at the first snapshot, freed with the window
    std::shared_ptr<Render> _render;

    // EGL. Render thread, except that a setter writes `_window`.
    EGLDisplay _eglDisplay = nullptr;
    EGLSurface _eglSurface = nullptr;
    EGLConfig _eglConfig = nullptr;
    EGLContext _eglContext = nullptr;
    Relaxed<void*> _window = nullptr;
    std::unique_ptr<Platform> _platform;
    Platform::Kind _wanted = Platform::Kind::x11;
    void* _nativeDisplay = nullptr;
    OffscreenSize _offscreenSize;
    bool _surfaceWanted = false;      // the player has given a window or a size
    EGLint _swapError = EGL_SUCCESS;  // of the last swap
    bool _failureTold = false;        // the missing surface has been reported since the last window or size
};

}  // namespace zet::ZETShow
