#pragma once

#include <cstdint>

#include "zet/records.h"

namespace zet {

/// Event mask of a registration, and event word of a delivery. An observer is called when the two share a bit.
enum DisplayConfigFlag : unsigned {
    DCFG_FLAG_VALUE = 0x01,   ///< a set; for observers of a setting
    DCFG_FLAG_EVENT = 0x02,   ///< a set too; for observers of an event, which counts also when its value is the same
    DCFG_FLAG_READ = 0x04,    ///< a `readConfig`: answer with the value in force
    DCFG_FLAG_REPLAY = 0x20,  ///< the stored value, delivered at a registration that comes after its set
};

/// One identifier from its low word: the 32-bit 0x9000nnnn, sign-extended.
constexpr std::int64_t displayConfigId(std::uint32_t lowWord) {
    return static_cast<std::int32_t>(lowWord);
}

struct NativeHandle;  ///< kind of an identifier whose value is a handle of the platform
struct WithoutValue;  ///< kind of an identifier that carries nothing

/// An identifier and the kind of its value: a number, `NativeHandle`, `WithoutValue`, or a record. By the kind the
/// compiler checks what is set. The record is const where the module only reads it. Converts to the bare number.
template <typename Value>
class ConfigId {
public:
    explicit constexpr ConfigId(std::int64_t number) : _number(number) {}  ///< as `displayConfigId` makes it
    constexpr operator std::int64_t() const { return _number; }            ///< the bare number

private:
    std::int64_t _number;
};

// Every identifier that the module observes or sets. A record may be given by its address or as a block. Where "the
// setter waits", the set returns when the render thread has done the work.

/// Native window handle, by value; null for none. The setter waits until the surface is ready.
inline constexpr ConfigId<NativeHandle> DCFG_WINDOW_INSTANCE{displayConfigId(0x90000001)};
/// `YUV420PData`. The setter waits until the planes are uploaded; then it may reuse the memory. Dropped while the last
/// frame has not been drawn yet.
inline constexpr ConfigId<const YUV420PData> DCFG_YUV_FRAME{displayConfigId(0x90000002)};
/// No value. Asks for 30 further draws of the current frame, counted from now; never waits for the render thread. The
/// module sets it too, on the render thread among others. Observers must only store a flag.
inline constexpr ConfigId<WithoutValue> DCFG_RENDER_REQUEST{displayConfigId(0x90000003)};
/// `TouchPoint`, surface pixels from the top left corner.
inline constexpr ConfigId<const TouchPoint> DCFG_TOUCH_DOWN{displayConfigId(0x90000004)};
/// `TouchPoint`, surface pixels from the top left corner.
inline constexpr ConfigId<const TouchPoint> DCFG_TOUCH_UP{displayConfigId(0x90000005)};
/// Float by value: a ratio. One step nearer above 1, otherwise one step back, whatever its size.
inline constexpr ConfigId<float> DCFG_PINCH{displayConfigId(0x90000006)};
/// `TouchPoint`, surface pixels from the top left corner.
inline constexpr ConfigId<const TouchPoint> DCFG_DOUBLE_TAP{displayConfigId(0x90000007)};
/// `DragPoints`, surface pixels from the top left corner.
inline constexpr ConfigId<const DragPoints> DCFG_DRAG{displayConfigId(0x90000008)};
/// Set by the module on the render thread: its EGL context by value once it is made, null before it is destroyed.
/// Observers must not set or read anything on the bus.
inline constexpr ConfigId<NativeHandle> DCFG_GL_CONTEXT{displayConfigId(0x9000000b)};
/// Int by value: the view, a `RenderMode`; any other number shows none. The setter waits until the view is made.
inline constexpr ConfigId<std::int32_t> DCFG_RENDER_MODE{displayConfigId(0x9000000c)};
/// `SnapData`. The setter waits until the picture is in its buffer.
inline constexpr ConfigId<SnapData> DCFG_SNAP{displayConfigId(0x9000000e)};
/// Int by value: what is drawn beside a face, see `FaceOption`. Flat view.
inline constexpr ConfigId<std::int32_t> DCFG_FACE_OPTION{displayConfigId(0x90000010)};
/// `LensParam`. The setter waits until it is in force. Flat view.
inline constexpr ConfigId<const LensParam> DCFG_LENS_PARAM{displayConfigId(0x90000012)};
/// One block: an `OverlayRect`, followed by the NUL-terminated path of a BMP file. The setter waits until the file has
/// been read. Flat view.
inline constexpr ConfigId<const OverlayRect> DCFG_OVERLAY_IMAGE{displayConfigId(0x90000013)};
/// Uint32 by value, 0x00RRGGBB: the colour beside the picture. Flat view.
inline constexpr ConfigId<std::uint32_t> DCFG_CLEAR_COLOR{displayConfigId(0x90000014)};
/// Float by value: upper bound of the zoom, at most 4.0. Flat view.
inline constexpr ConfigId<float> DCFG_MAX_SCALE{displayConfigId(0x90000017)};
/// Float by value: the zoom; the value really applied is written back. `readConfig` reads it. Flat view.
inline constexpr ConfigId<float> DCFG_SCALE{displayConfigId(0x90000018)};
/// `AutoRotate`. Dewarping views.
inline constexpr ConfigId<const AutoRotate> DCFG_AUTO_ROTATE{displayConfigId(0x9000001a)};
/// `Fling`. Dewarping views.
inline constexpr ConfigId<const Fling> DCFG_FLING{displayConfigId(0x9000001b)};
/// Int by value, 0 or not: the opening flight of the half sphere.
inline constexpr ConfigId<std::int32_t> DCFG_OPENING_FLIGHT{displayConfigId(0x9000001c)};
/// `SceneBackdrop`: what is drawn behind the half sphere.
inline constexpr ConfigId<const SceneBackdrop> DCFG_SCENE_BACKDROP{displayConfigId(0x9000001d)};
/// Uint32 by value: degrees clockwise, 0, 90, 180 or 270, taken modulo 360. Flat view.
inline constexpr ConfigId<std::uint32_t> DCFG_ROTATION{displayConfigId(0x9000001e)};
/// Set by the module on the render thread, with the address of the `SnapData` to fill. The player's observer writes its
/// own copy of the frame into the buffer, top row first, and its size. It must not set or read anything on the bus.
inline constexpr ConfigId<SnapData> DCFG_FRAME_READ{displayConfigId(0x9000001f)};

// Identifiers beyond the common list.

/// `FrameColor`: how the colours of the frames are coded. In force from the next draw on, in all views and in both
/// kinds of snapshot. The setter waits; a redraw is asked for. A record with an unknown matrix is refused with a line
/// in the log, and the last one stays in force.
inline constexpr ConfigId<const FrameColor> DCFG_FRAME_COLOR{displayConfigId(0x90000101)};
/// Set by the module on the render thread after each swap that has shown a picture: uint32 by value, the pictures of
/// this display so far, redraws included. Displays that share a bus share this slot. Observers must not set or read
/// anything on the bus. The display's context is current: what has been drawn offscreen can be read with
/// `glReadPixels`, bottom row first.
inline constexpr ConfigId<std::uint32_t> DCFG_DRAWN{displayConfigId(0x90000102)};
/// The player's `wl_display`; null, the default, for X11. Set it before the window, which is a `wl_egl_window` then.
/// The setter waits: when a set of null returns, the module has released the last one and the window on it. The module
/// can't recognise a pointer that is no `wl_display`.
inline constexpr ConfigId<NativeHandle> DCFG_NATIVE_DISPLAY{displayConfigId(0x90000103)};
/// `OffscreenSize`: draw into memory of that size, without a window and without a display server. Frames, gestures,
/// modes, snapshots and notices are as with a window; another size keeps view and picture. The setter waits until the
/// surface is ready. Window or size, whichever was set last is in force; a null window ends either. A size that can't
/// be drawn changes nothing.
inline constexpr ConfigId<const OffscreenSize> DCFG_OFFSCREEN_SIZE{displayConfigId(0x90000104)};

}  // namespace zet
