// Records from outside, set on the bus in any order and form, in every view; lens regions and faces of frames. The
// numbers that are drawn must stay finite.

#include <fuzzer/FuzzedDataProvider.h>

#include <bit>
#include <cmath>
#include <cstdlib>
#include <memory>

#include "overlay/facelayout.h"
#include "render/lensregion.h"
#include "render/render.h"
#include "views/commonmotion.h"
#include "views/cylindersidemotion.h"
#include "views/cylinderspheremotion.h"
#include "views/halfspheremotion.h"
#include "views/multiviewmapmotion.h"
#include "views/multiviewmotion.h"
#include "views/walloneview180motion.h"
#include "views/wallthreeviewmotion.h"
#include "views/walltwoviewmotion.h"
#include "zet/records.h"

namespace {

using namespace zet::ZETShow;

void expect(bool holds) {
    if (!holds) std::abort();
}

template <typename... Number>
void expectFinite(Number... numbers) {
    expect((std::isfinite(static_cast<float>(numbers)) && ...));
}

void expectFinite(const MatrixState& matrices) {
    for (const float number : matrices._viewMatrix) expectFinite(number);
}

// A layout and a frame of each view, as its drawing asks for them.

void draw(CommonMotion& motion, int width, int height) {
    motion._surfaceWidth = width;
    motion._surfaceHeight = height;
    motion.step();
    expectFinite(motion._panX, motion._panY, motion._scale);
    expect(motion._scale >= 1.0f && motion._scale <= 4.0f);
}

void draw(HalfSphereMotion& motion, int width, int height) {
    motion._size.changeTo(width, height);
    motion.step();
    expectFinite(motion.remoteness(), motion.parallaxEyeZ(), motion._yaw, motion._travel);
}

void draw(CylinderSideMotion& motion, int, int) {
    motion.step();
    expectFinite(motion._eyeZ, motion._cut, motion._pan);
}

void draw(CylinderSphereMotion& motion, int, int) {
    motion.step();
    expectFinite(motion._eyeZ, motion._liftY, motion._shownSpin, motion._shownTilt);
}

void draw(MultiViewMotion& motion, int width, int height) {
    if (motion._size.changeTo(width, height)) motion.layoutPanes();
    if (!motion._size._sized) return;
    for (int p = 0; p < MultiViewMotion::paneCount; ++p) {
        MatrixState matrices;
        motion.updatePaneCamera(p, matrices);
        expectFinite(matrices);
    }
}

void draw(MultiViewMapMotion& motion, int width, int height) {
    motion._size.changeTo(width, height);
    motion.step();
    MatrixState matrices;
    motion.updateDetailCamera(matrices);
    expectFinite(matrices);
}

void draw(WallThreeViewMotion& motion, int width, int height) {
    if (motion._size.changeTo(width, height)) motion.layoutPanes();
    for (const int p : {0, 2}) {
        if (motion._aspect <= 0.0f) return;
        MatrixState matrices;
        motion.updatePaneCamera(p, matrices);
        expectFinite(matrices);
    }
}

void draw(WallTwoViewMotion& motion, int width, int height) {
    motion._size.changeTo(width, height);
    MatrixState matrices;
    motion.updateDetailCamera(matrices);
    expectFinite(matrices);
}

void draw(WallZoom& motion, int width, int height) {
    motion._size.changeTo(width, height);
    if (!motion._size._sized) return;
    motion.step();
    MatrixState matrices;
    motion.updateCamera(matrices);
    expectFinite(matrices);
    expectFinite(motion._stretch.x, motion._stretch.z);
}

/// Nothing is drawn here: a view's part in the bus, without its GL.
struct Drawing final : Render {
    using Render::Render;
    int init(const ColorTransform&) override { return 0; }
    int render(int, int, const Frame&) override { return 0; }
};

float anyFloat(FuzzedDataProvider& data) {
    // Near the surface, which is where gestures do most, or any bits.
    if (data.ConsumeBool()) return static_cast<float>(data.ConsumeIntegralInRange(-2000, 2000)) / 2.0f;
    return std::bit_cast<float>(data.ConsumeIntegral<std::uint32_t>());
}

/// A record by its address, or as much of it as a block holds.
template <typename Record>
void set(zet::DisplayConfig& bus, std::int64_t id, const Record& record, FuzzedDataProvider& data) {
    if (data.ConsumeBool()) {
        bus.setConfig(id, &record);
        return;
    }
    const int size = data.ConsumeIntegralInRange(0, static_cast<int>(sizeof record));
    bus.setConfig(id, zet::SizeHelp{&record, size});
}

void setAny(zet::DisplayConfig& bus, FuzzedDataProvider& data) {
    const float x = anyFloat(data);
    const float y = anyFloat(data);
    switch (data.ConsumeIntegralInRange(0, 8)) {
        case 0:
            set(bus, zet::DCFG_TOUCH_DOWN, zet::TouchPoint{x, y}, data);
            break;
        case 1:
            set(bus, zet::DCFG_TOUCH_UP, zet::TouchPoint{x, y}, data);
            break;
        case 2:
            set(bus, zet::DCFG_DOUBLE_TAP, zet::TouchPoint{x, y}, data);
            break;
        case 3:
            set(bus, zet::DCFG_DRAG, zet::DragPoints{x, y, anyFloat(data), anyFloat(data)}, data);
            break;
        case 4:
            set(bus, zet::DCFG_FLING, zet::Fling{x, y}, data);
            break;
        case 5:
            set(bus, zet::DCFG_AUTO_ROTATE, zet::AutoRotate{data.ConsumeBool(), x}, data);
            break;
        case 6:
            set(bus, zet::DCFG_SCENE_BACKDROP, zet::SceneBackdrop{data.ConsumeBool(), data.ConsumeBool()}, data);
            break;
        case 7:
            bus.setConfig(zet::DCFG_OPENING_FLIGHT, data.ConsumeIntegral<int>());
            break;
        default:
            bus.setConfig(zet::DCFG_PINCH, x);
    }
}

template <typename View, typename... Arguments>
void play(FuzzedDataProvider& data, const Arguments&... arguments) {
    zet::DisplayConfig bus;
    // What was set before a view is made is replayed to it.
    for (int before = data.ConsumeIntegralInRange(0, 2); before > 0; --before) setAny(bus, data);
    const auto motion = std::make_shared<View>(arguments...);
    const Drawing drawing(&bus, nullptr, motion);
    int width = 640;
    int height = 480;
    for (int steps = 0; data.remaining_bytes() > 0 && steps < 500; ++steps) {
        setAny(bus, data);
        if (data.ConsumeIntegralInRange(0, 7) == 0) {
            width = data.ConsumeIntegralInRange(0, 20000);
            height = data.ConsumeIntegralInRange(0, 20000);
        }
        for (int frames = data.ConsumeIntegralInRange(0, 3); frames > 0; --frames) {
            motion->stepFling();
            draw(*motion, width, height);
        }
    }
}

void frame(FuzzedDataProvider& data) {
    const int width = data.ConsumeIntegralInRange(1, 32768);
    const int height = data.ConsumeIntegralInRange(1, 32768);
    const int lineSize = data.ConsumeIntegralInRange(width, 32768);
    int lens[4];
    for (int& number : lens) number = data.ConsumeIntegral<int>();
    const RegionMap map =
        mapOntoRegion(findLensRegion(lens, width, height, lineSize, data.ConsumeBool()), width, height);
    expectFinite(map.centreX, map.centreY, map.halfWidth, map.halfHeight);

    FaceInfo face;
    for (int* const number : {&face.gender, &face.x, &face.y, &face.width, &face.height})
        *number = data.ConsumeIntegral<int>();
    face.age = data.ConsumeIntegral<unsigned>();
    face.name = data.ConsumeRandomLengthString(31);
    const FaceBox box(face, width, height);
    const FaceLines lines(face, box, data.ConsumeIntegral<int>());
    expectFinite(box.left, box.top, box.width, box.height, lines.x, lines.y);
    expect(lines.count >= 0 && lines.count <= 3);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzedDataProvider data(bytes, size);
    switch (data.ConsumeIntegralInRange(0, 11)) {
        case 0:
            play<CommonMotion>(data);
            break;
        case 1:
            play<HalfSphereMotion>(data);
            break;
        case 2:
            play<CylinderSideMotion>(data);
            break;
        case 3:
            play<MultiViewMotion>(data);
            break;
        case 4:
            play<MultiViewMapMotion>(data);
            break;
        case 5:
            play<CylinderSphereMotion>(data, drumPose);
            break;
        case 6:
            play<CylinderSphereMotion>(data, bowlPose);
            break;
        case 7:
            play<WallThreeViewMotion>(data);
            break;
        case 8:
            play<WallTwoViewMotion>(data);
            break;
        case 9:
            play<WallZoom>(data, wallOneZoom);
            break;
        case 10:
            play<WallOneView180Motion>(data);
            break;
        default:
            frame(data);
    }
    return 0;
}
