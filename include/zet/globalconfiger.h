#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "zet/export.h"

namespace zet {

class IZETMediaPlayer;

/// Settings that all displays of a player share, as far as the display module reads them.
struct MVConfigerBaseData {
    std::atomic<int> rectZoom = 0;  ///< not 0: the flat view zooms to the first rectangle of a frame
};

/// What `GlobalConfiger::ErrorCallback` tells.
enum DisplayError : int {
    DISPLAY_ERROR_UNSUPPORTED = 3,  ///< "MERR_UNSUPPORTED": there is no EGL display
    DISPLAY_ERROR_EGL = 0x101,      ///< a call of EGL has failed: its name and error, as "eglInitialize: EGL_BAD_ALLOC"
    DISPLAY_ERROR_SIZE = 0x105,     ///< an `OffscreenSize` of 0 or less, or beyond what the GL draws
    DISPLAY_ERROR_WINDOW = 0x102,   ///< the handle names no window
    DISPLAY_ERROR_SERVER = 0x103,   ///< the display server is gone: set a window again when it is back
    DISPLAY_ERROR_STUCK = 0x104,    ///< the driver doesn't return from a call to a dead server: make a new display
};

/// Observer interface of the player-wide settings; the display module has no observer of its own.
class ZET_API GlobalConfigObserver {
public:
    virtual ~GlobalConfigObserver() = default;
    virtual void GlobalConfigObserverUpdate(unsigned int, void*) {}  ///< a setting has changed
};

/// The player-wide settings that `CreateZETDisplay` takes beside the bus. The player owns it and keeps it alive
/// longer than its displays. Any thread.
class ZET_API GlobalConfiger {
public:
    /// Tells of a failure that leaves the player without a picture: a `DisplayError`, the error's name, source file and
    /// line. On the render thread; `DISPLAY_ERROR_STUCK` on the thread that has given up waiting for it.
    using ErrorCallback = std::function<void(int code, const std::string& error, const std::string& file, int line)>;

    GlobalConfiger();
    ~GlobalConfiger();
    GlobalConfiger(const GlobalConfiger&) = delete;
    GlobalConfiger& operator=(const GlobalConfiger&) = delete;

    // What the player says.

    /// A regular file with a font that FreeType knows, for labels and timestamps; empty for none. Read at each snapshot
    /// with a timestamp, and once by each flat view, at its first faces.
    void setFontPath(const std::string& path);
    /// Base time of the timestamp in a snapshot, milliseconds since 1970-01-01 UTC; 0 for no timestamp.
    void setStartTime4WaterMarker(std::int64_t milliseconds);
    /// See `MVConfigerBaseData::rectZoom`.
    void setRectZoom(bool on);
    /// Who hears of an error; an empty one for nobody. Set it before the display is made: EGL starts at once.
    void setErrorCallback(const ErrorCallback& callback);
    /// Kept for the player; the display module never reads it.
    void setPlayer(IZETMediaPlayer* player);

    // What the module asks.

    /// Path of the font file, never null. The characters stay valid until the same thread asks again.
    char* GetFontPath();
    std::int64_t GetStartTime4WaterMarker();  ///< as it was set; 0 at first
    MVConfigerBaseData& GetConfigBaseData();  ///< may be read and changed at any time
    /// Hands an error to the player; 0 if the player listens, otherwise -1.
    int onErrorCallback(int code, const std::string& error, const std::string& file, int line);
    std::recursive_mutex& getMutex();  ///< guards all but the base data

private:
    struct Settings;

    std::unique_ptr<Settings> _settings;
};

}  // namespace zet
