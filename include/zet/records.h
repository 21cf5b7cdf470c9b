#pragma once

#include <cstdint>

namespace zet {

/// What `YUV420PData::aiItems` holds.
enum AiKind : int { AI_KIND_FACES = 1, AI_KIND_RECTS = 2 };

/// One face of a frame. Rectangles are pixels of the picture, origin at its top left corner.
struct FaceItem {
    std::int32_t reserved = 0;  ///< not read
    std::int32_t gender = 0;    ///< 0 female, anything else male
    std::uint32_t age = 0;      ///< years
    std::int32_t x = 0;         ///< left edge
    std::int32_t y = 0;         ///< top edge
    std::int32_t width = 0;     ///< to the right
    std::int32_t height = 0;    ///< downward
    char name[32] = {};         ///< printable ASCII, NUL-terminated
};
static_assert(sizeof(FaceItem) == 60);

/// One rectangle of a frame, in pixels of the picture, origin at its top left corner.
struct RectItem {
    std::int32_t x = 0;         ///< left edge
    std::int32_t y = 0;         ///< top edge
    std::int32_t width = 0;     ///< to the right
    std::int32_t height = 0;    ///< downward
    std::int32_t reserved = 0;  ///< not read
};
static_assert(sizeof(RectItem) == 20);

/// A decoded picture in planar YUV 4:2:0, top row first: value of `DCFG_YUV_FRAME`.
///
/// `DCFG_FRAME_COLOR` says how its colours are coded. Until that is set, it is shown with Y from 0 to 1 and U and V
/// from -0.5 to 0.5, in full range, as R = Y + 1.13983 V, G = Y - 0.39465 U - 0.58060 V, B = Y + 2.03211 U: the luma of
/// BT.601 with the weights of analogue U and V. By full-range BT.601 as JFIF defines it (1.402 and 1.772) reds would be
/// a little stronger and blues a little weaker.
///
/// Everything that it points to belongs to the setter and is read only until the set returns. `yLineSize` must be a
/// multiple of 4 and `uvLineSize` of 2. A record that breaks this, lacks a plane or is larger than the GL allows is
/// refused: the last picture stays. `height` is best even; an odd one needs (height + 1) / 2 rows of `u` and `v`.
struct YUV420PData {
    const std::uint8_t* y = nullptr;  ///< luma
    const std::uint8_t* u = nullptr;  ///< blue difference, half the size both ways
    const std::uint8_t* v = nullptr;  ///< red difference, half the size both ways
    int yLineSize = 0;                ///< bytes per line of `y`, at least `width`
    int uvLineSize = 0;               ///< bytes per line of `u` and of `v`, at least half of `width`, rounded up
    int reserved = 0;                 ///< not read
    int width = 0;                    ///< pixels
    int height = 0;                   ///< pixels
    int aiCount = 0;                  ///< items in `aiItems`, 0 for none
    const void* aiItems = nullptr;    ///< `FaceItem` or `RectItem`, by `aiKind`
    const int* aiKind = nullptr;      ///< an `AiKind`; read only if `aiCount` is not 0
    /// Four numbers: centre x, y and radius x, y of the lens circle, in 1/10000 of `width` (x) or `height` (y). Null:
    /// the largest square at the picture's top left corner is taken. `ShownPart` tells which part a view shows. The
    /// view of the rectangle takes the whole picture for null; the flat view ignores the region.
    const int* lensRegion = nullptr;
};

/// Matrix coefficients by the code points of ITU-T H.273, table 4, as decoders report them.
enum ColorMatrix : std::int32_t {
    COLOR_MATRIX_BT709 = 1,        ///< BT.709: what most cameras of 720 lines and more send
    COLOR_MATRIX_UNSPECIFIED = 2,  ///< the colours that `YUV420PData` tells, whatever the range
    COLOR_MATRIX_FCC = 4,          ///< the FCC's of 1953
    COLOR_MATRIX_BT470BG = 5,      ///< BT.601 of 625 lines, and JFIF
    COLOR_MATRIX_BT601 = 6,        ///< BT.601 of 525 lines: the same numbers
    COLOR_MATRIX_SMPTE240M = 7,    ///< SMPTE 240M
    COLOR_MATRIX_BT2020 = 9,       ///< BT.2020, non-constant luminance
};

/// Value of `DCFG_FRAME_COLOR`.
struct FrameColor {
    std::int32_t matrix = COLOR_MATRIX_UNSPECIFIED;  ///< a `ColorMatrix`
    std::int32_t fullRange = 0;  ///< 0 limited (Y 16 to 235, U and V 16 to 240), anything else full (0 to 255)
};

/// Value of `DCFG_SNAP`. In: what is asked for, and where to write it. Out: its size. If there is no such picture or it
/// doesn't fit, nothing is written: `width` and `height` stay as they were.
struct SnapData {
    int sourceFrame = 0;             ///< in: 0 what the window shows, anything else the frame itself
    std::uint8_t* buffer = nullptr;  ///< in: RGBA, `width * height * 4` bytes, rows without padding
    int bufferSize = 0;              ///< in: bytes
    int width = 0;                   ///< out: pixels; still 0, the default, after a refusal
    int height = 0;                  ///< out: pixels
    int postProcess = 0;             ///< in: 0 for bottom row first, else top row first with the timestamp burned in
    int timeOffset = 0;              ///< in: milliseconds added to the start time of the timestamp
};

/// Value of `DCFG_TOUCH_DOWN`, `DCFG_TOUCH_UP`, `DCFG_DOUBLE_TAP`: surface pixels, origin at the top left corner.
struct TouchPoint {
    float x = 0;  ///< to the right
    float y = 0;  ///< downward
};

/// Value of `DCFG_DRAG`, a step of a finger from the first point to the second: surface pixels, origin at the top left
/// corner.
struct DragPoints {
    float x1 = 0;  ///< from here, to the right
    float y1 = 0;  ///< downward
    float x2 = 0;  ///< to here, to the right
    float y2 = 0;  ///< downward
};

/// Value of `DCFG_FLING`: how fast the finger left, surface pixels per second.
struct Fling {
    float vx = 0;  ///< to the right
    float vy = 0;  ///< downward
};

/// Value of `DCFG_AUTO_ROTATE`.
struct AutoRotate {
    std::int32_t enable = 0;  ///< not 0 turns the rotation on
    float speed = 0;          ///< factor on the view's own speed, below 0 the other way round; some views ignore it
};

/// Value of `DCFG_SCENE_BACKDROP`: two truth values.
struct SceneBackdrop {
    std::int32_t backdrop = 0;  ///< the halo
    std::int32_t stars = 0;     ///< the stars
};

/// Value of `DCFG_LENS_PARAM`: radial and tangential distortion after D. C. Brown, "Decentering distortion of
/// lenses" (1966), in texture coordinates (0 to 1, origin at the top left corner), and margins of the picture.
struct LensParam {
    double k1 = 0;            ///< radial, second power of the radius; 0 switches the correction off, the margins stay
    double k2 = 0;            ///< radial, fourth power
    double k3 = 0;            ///< radial, sixth power
    double p1 = 0;            ///< tangential, down the picture
    double p2 = 0;            ///< tangential, across the picture
    double fx = 1;            ///< focal length across
    double fy = 1;            ///< focal length down
    double ox = 0.5;          ///< optical centre across
    double oy = 0.5;          ///< optical centre down
    double bottomMargin = 0;  ///< the shown part ends at 1 plus this; below 0 cuts, above 0 widens
    double leftMargin = 0;    ///< the shown part begins at this; above 0 cuts, below 0 widens
    double topMargin = 0;     ///< as `leftMargin`
    double rightMargin = 0;   ///< as `bottomMargin`
};
static_assert(sizeof(LensParam) == 104);

/// First part of the value of `DCFG_OVERLAY_IMAGE`, before the path. Shares of the picture, origin at its top left
/// corner.
struct OverlayRect {
    float x = 0;       ///< left edge
    float y = 0;       ///< top edge
    float width = 0;   ///< to the right
    float height = 0;  ///< downward
};

/// Option bits of `DCFG_FACE_OPTION`.
enum FaceOption : int { FACE_BOX = 1, FACE_GENDER = 2, FACE_AGE = 4, FACE_NAME = 8 };

/// Value of `DCFG_OFFSCREEN_SIZE`, in pixels.
struct OffscreenSize {
    std::int32_t width = 0;   ///< 1 to what the GL allows
    std::int32_t height = 0;  ///< as `width`
};

/// Whether `Record` is a setting. The bus keeps a copy of a setting for views that are made later.
template <typename Record>
inline constexpr bool isSetting = false;
template <typename Record>
inline constexpr bool isSetting<const Record> = isSetting<Record>;
template <>
inline constexpr bool isSetting<Fling> = true;
template <>
inline constexpr bool isSetting<AutoRotate> = true;
template <>
inline constexpr bool isSetting<SceneBackdrop> = true;
template <>
inline constexpr bool isSetting<LensParam> = true;
template <>
inline constexpr bool isSetting<FrameColor> = true;
template <>
inline constexpr bool isSetting<OffscreenSize> = true;

}  // namespace zet
