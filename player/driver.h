#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "annotations.h"
#include "source.h"
#include "zet/zet.h"

namespace zetplay {

/// What a snapshot is asked for; see `zet::SnapData`.
struct SnapRequest {
    bool sourceFrame = false;
    bool postProcess = false;
    int timeOffset = 0;  ///< milliseconds
    int bufferSize = 0;  ///< bytes
};

struct Snapshot {
    int width = 0;
    int height = 0;
    bool topRowFirst = false;
    std::vector<std::uint8_t> rgba;  ///< as the module delivered it, `width * height * 4` bytes
};

/// The bus, the display on it and the last frame: every command to the module goes through here.
///
/// All operations are called on one thread, the player's. Values are passed on unchecked.
class Driver {
public:
    Driver();
    ~Driver();
    Driver(const Driver&) = delete;
    Driver& operator=(const Driver&) = delete;

    zet::GlobalConfiger& global() { return _global; }
    zet::DisplayConfig& bus() { return _bus; }

    /// X11 window id, 0 for none. Throws `Failure` if the module has no OpenGL ES context for it.
    void setWindow(std::uintptr_t handle);

    /// Sets a frame on the bus. The driver keeps `picture` and leaves the memory of the last one in its place.
    void setFrame(Picture& picture, const Annotations& annotations);
    /// Sets the last frame again, if there was one.
    void setFrameAgain(const Annotations& annotations);
    /// Returns when the module has drawn what was set last.
    void waitDrawn();
    /// Returns when no redraw is owed any more. A view that asks for ever is left after a bounded number of draws.
    void settle();
    void requestRedraw();
    /// Whether somebody has asked for a redraw since the last call.
    bool takeRedrawRequest() { return _redrawAsked.exchange(false); }

    void setView(int mode);
    void touchDown(zet::TouchPoint point);
    void touchUp(zet::TouchPoint point);
    void doubleTap(zet::TouchPoint point);
    void drag(zet::DragPoints points);
    void pinch(float factor);
    void fling(zet::Fling velocity);

    void setAutoRotate(zet::AutoRotate setting);
    void setOpeningFlight(bool on);
    void setSceneBackdrop(bool backdrop, bool stars);
    void setRotation(std::uint32_t degrees);
    void setScale(float scale);
    void setMaxScale(float scale);
    void setClearColor(std::uint32_t rgb);
    void setFaceOption(int bits);
    void setLensParam(const zet::LensParam& lens);
    void setOverlayImage(const zet::OverlayRect& rect, const std::string& path);

    /// Nothing if no view answers.
    std::optional<float> readScale();
    /// Nothing if the module refuses: no picture yet, or the buffer is too small.
    std::optional<Snapshot> snap(const SnapRequest& request);
    /// Bytes that hold any snapshot of the last frame.
    int frameBytes() const;

private:
    using Clock = std::chrono::steady_clock;

    /// Answers `DCFG_FRAME_READ`. Render thread, while the player's waits in `snap`.
    void answerFrameRead(zet::SnapData& request);

    zet::DisplayConfig _bus;
    zet::GlobalConfiger _global;
    Picture _picture;
    Clock::time_point _frameTime;
    bool _frameReadAnswered = false;
    std::atomic<bool> _redrawAsked = false;
    std::atomic<bool> _hasContext = false;
    zet::DisplayConfigKit _observers;
    std::shared_ptr<zet::DisplayConfigKit> _display;  // goes first: its thread calls the observers
};

}  // namespace zetplay
