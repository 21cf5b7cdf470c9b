#pragma once

#include <EGL/egl.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "config/relaxed.h"
#include "display/condition.h"
#include "display/framereader.h"
#include "render/frame.h"
#include "render/renderthread.h"
#include "zet/displayconfigkit.h"
#include "zet/rendermode.h"

namespace zet::ZETShow {

class Render;

/// What the player holds: one render thread with its EGL objects, the current frame and the view that draws it.
///
/// Commands arrive over the bus on the setters' threads; what touches EGL, GL or the frame is posted to the render
/// thread, which holds `_mutex` whenever it isn't waiting. Lock order: a slot of the bus, `_mutex`, a condition's own.
class Display final : public DisplayConfigKit, public RenderThread {
public:
    Display(DisplayConfig* config, GlobalConfiger* global);
    /// Any thread but the render thread.
    ~Display() override;

    int postTask(const std::function<int()>& task) override;

private:
    using Observer = int (Display::*)(DisplayConfig&, DisplayConfigUserData&);

    // display.cpp: life and observers
    void observe(std::int64_t id, unsigned mask, Observer observer);
    int onRenderModeChange(DisplayConfig&, DisplayConfigUserData& delivery);   // Setter's thread.
    int onWindowInstance(DisplayConfig&, DisplayConfigUserData& delivery);     // Setter's thread.
    int onRenderRequest(DisplayConfig&, DisplayConfigUserData&);               // Any thread.
    int onRenderYUV420PData(DisplayConfig&, DisplayConfigUserData& delivery);  // Setter's thread.
    int onGetSnap(DisplayConfig&, DisplayConfigUserData& delivery);            // Setter's thread.
    int onFrameColor(DisplayConfig&, DisplayConfigUserData& delivery);         // Setter's thread.

    // displaythread.cpp: the render thread's body and its waits
    int run();
    void renderLoop();
    void drawOwed();
    void waitForPace();
    void waitForWork();
    void runTasks();
    bool hasTask() const { return !_tasks.empty(); }
    bool drawIsOwed() const { return _frameReady || _redrawCount > 0; }

    // displayegl.cpp. Render thread.
    int init();
    int unInit();
    int makeCurrent();
    int swapBuffers();
    int windowTask(const DisplayConfigUserData& delivery);
    void dropSurface();
    /// What GL holds of view and frame.
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
    /// Works the lens region out as the mode in force wants it.
    void findRegion();
    int drawFrame();
    bool drawPicture();

    // displaysnap.cpp. Render thread.
    int snapTask(const DisplayConfigUserData& delivery);
    /// Draws anew where the window has another size than at the last draw: the picture in it has not.
    void matchSurface();
    void finishPicture(const SnapData& snap, bool topRowFirst);

    static constexpr int drawsPerRequest = 30;

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
    std::vector<std::function<int()>> _tasks;  // what is queued or being run: emptied when all have run
    Condition _taskDoneCond;
    Condition::Clock::time_point _lastDraw;
    std::uint32_t _drawCount = 0;  // pictures shown

    // The frame and its view. Render thread.
    int _surfaceWidth = 0;  // pixels, as of the last draw
    int _surfaceHeight = 0;
    int _renderMode = RENDER_MODE_FLAT;         // as it was set: no view may have it
    std::unique_ptr<std::uint8_t[]> _uvBuffer;  // U and V interleaved
    int _uvBufferSize = 0;                      // bytes in use by the last frame
    bool _refusing = false;                     // the last frame was refused, and that has been said
    Frame _frame;
    std::unique_ptr<FrameReader> _reader;  // made at the first snapshot, gone with the window
    std::shared_ptr<Render> _render;

    // EGL. Render thread, except that a setter writes `_window`.
    EGLDisplay _eglDisplay = nullptr;
    EGLSurface _eglSurface = nullptr;
    EGLConfig _eglConfig = nullptr;
    EGLContext _eglContext = nullptr;
    bool _eglInitialized = false;  // this display counts as a user of `_eglDisplay`
    Relaxed<void*> _window = nullptr;
};

}  // namespace zet::ZETShow
