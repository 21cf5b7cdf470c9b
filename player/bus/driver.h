#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "bus/annotations.h"
#include "bus/drawwatch.h"
#include "media/source.h"
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
/// Frames are set and waited for on one thread, which may be another than that of all other operations. Values are
/// passed on unchecked.
class Driver {
public:
    /// With a size the module draws into memory.
    explicit Driver(std::optional<zet::OffscreenSize> size = std::nullopt);
    ~Driver();
    Driver(const Driver&) = delete;
    Driver& operator=(const Driver&) = delete;

    zet::GlobalConfiger& global() { return _global; }
    zet::DisplayConfig& bus() { return _bus; }

    /// X11 window id, 0 for none. Throws `Failure` if the module has no OpenGL ES context for it.
    void setWindow(std::uintptr_t handle);
    /// Draws into memory from now on. Throws `Failure` as `setWindow` does.
    void setOffscreenSize(zet::OffscreenSize size);
    /// What to do on the module's render thread behind each draw, with its context current; nothing at first. When this
    /// returns, what was to be done before is not done any more.
    void onDrawn(std::function<void()> act);

    /// Sets a frame on the bus, after its colours if they differ from the last frame's. Keeps its planes alive.
    void setFrame(const Picture& picture, const Annotations& annotations);
    /// Returns when the module has drawn what was set last, or when it can't draw.
    void waitDrawn();
    /// How many of the frames set have reached the screen. Any thread.
    std::int64_t framesDrawn() const { return _draws.framesDrawn(); }
    /// Returns when every draw owed at the call has been made. A view that asks for more draws may still be drawing.
    void settle();
    void requestRedraw();

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
    void setColor(zet::FrameColor color);
    Picture lastPicture() const;
    /// Answers `DCFG_FRAME_READ`. Render thread, while the player's waits in `snap`.
    void answerFrameRead(zet::SnapData& request);

    zet::DisplayConfig _bus;
    zet::GlobalConfiger _global;
    mutable std::mutex _pictureMutex;
    Picture _picture;        // set last
    zet::FrameColor _color;  // set last
    DrawWatch _draws;
    std::mutex _drawnMutex;  // held while `_drawn` runs
    std::function<void()> _drawn;
    bool _frameReadAnswered = false;
    std::atomic<bool> _hasWindow = false;
    std::atomic<bool> _hasContext = false;
    zet::DisplayConfigKit _observers;
    std::shared_ptr<zet::DisplayConfigKit> _display;  // destroyed first: its thread calls the observers
};

}  // namespace zetplay
