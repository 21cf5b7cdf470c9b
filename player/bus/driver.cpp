#include "bus/driver.h"

#include <chrono>
#include <utility>

#include "bus/color.h"

namespace zetplay {

namespace {

using namespace std::chrono_literals;

// For a draw that is sure to come unless the window is gone.
constexpr std::chrono::milliseconds patience = 1s;

}  // namespace

Driver::Driver(std::optional<zet::OffscreenSize> size) : _hasWindow(size.has_value()), _observers(&_bus) {
    const auto observe = [this](std::int64_t id, const std::function<void(void* data)>& act) {
        const auto observer = [act](zet::DisplayConfig&, zet::DisplayConfigUserData& event) {
            act(event.getData());
            return 0;
        };
        _observers.regist(id, observer, zet::DCFG_FLAG_EVENT);
    };
    observe(zet::DCFG_FRAME_READ, [this](void* request) {
        if (request) answerFrameRead(*static_cast<zet::SnapData*>(request));
    });
    observe(zet::DCFG_GL_CONTEXT, [this](void* context) { _hasContext = context != nullptr; });
    observe(zet::DCFG_DRAWN, [this](void*) {
        {
            const std::lock_guard lock(_drawnMutex);
            if (_drawn) _drawn();
        }
        _draws.drawn();
    });
    // Before the display, which else asks for a screen first.
    if (size) _bus.setConfig(zet::DCFG_OFFSCREEN_SIZE, &*size);
    // Before the module's own observer and behind it.
    observe(zet::DCFG_RENDER_REQUEST, [this](void*) { _draws.requestBegins(); });
    _display = zet::CreateZETDisplay(&_bus, &_global);
    observe(zet::DCFG_RENDER_REQUEST, [this](void*) { _draws.requestEnds(); });
}

Driver::~Driver() = default;

void Driver::setWindow(std::uintptr_t handle) {
    _hasWindow = handle != 0;
    _bus.setConfig(zet::DCFG_WINDOW_INSTANCE, handle);
    if (handle != 0 && !_hasContext) throw Failure("no OpenGL ES 2 context: EGL does not work on this X display");
}

void Driver::setOffscreenSize(zet::OffscreenSize size) {
    _hasWindow = true;
    _bus.setConfig(zet::DCFG_OFFSCREEN_SIZE, &size);
    if (!_hasContext) throw Failure("no OpenGL ES 2 context: EGL does not work here");
}

void Driver::onDrawn(std::function<void()> act) {
    const std::lock_guard lock(_drawnMutex);
    _drawn = std::move(act);
}

void Driver::setFrame(const Picture& picture, const Annotations& annotations) {
    {
        const std::lock_guard lock(_pictureMutex);
        _picture = picture;
    }
    setColor(picture.color);
    zet::YUV420PData frame;
    frame.y = picture.y;
    frame.u = picture.u;
    frame.v = picture.v;
    frame.yLineSize = picture.yLineSize;
    frame.uvLineSize = picture.uvLineSize;
    frame.width = picture.width;
    frame.height = picture.height;
    int kind = zet::AI_KIND_FACES;
    if (!annotations.faces.empty()) {
        frame.aiCount = static_cast<int>(annotations.faces.size());
        frame.aiItems = annotations.faces.data();
    } else if (!annotations.rects.empty()) {
        kind = zet::AI_KIND_RECTS;
        frame.aiCount = static_cast<int>(annotations.rects.size());
        frame.aiItems = annotations.rects.data();
    }
    frame.aiKind = &kind;
    if (annotations.lens) frame.lensRegion = annotations.lens->data();
    _draws.frameBegins();
    _bus.setConfig(zet::DCFG_YUV_FRAME, &frame);
    _draws.frameEnds();
}

void Driver::setColor(zet::FrameColor color) {
    const bool unspecified = color.matrix == zet::COLOR_MATRIX_UNSPECIFIED;
    if (unspecified) color.fullRange = 0;
    if (color.matrix == _color.matrix && color.fullRange == _color.fullRange) return;
    _color = color;
    _bus.setConfig(zet::DCFG_FRAME_COLOR, &color);
}

void Driver::waitDrawn() {
    if (_draws.waitFrame(_hasWindow ? patience : DrawWatch::pace)) return;
    // A pace after the last draw the next is due at once. The refused snapshot is a task that changes nothing. Its set
    // returns only when the render thread waits again, and that first draws what is due.
    zet::SnapData refused;
    _bus.setConfig(zet::DCFG_SNAP, &refused);
    _draws.dueDrawn();
}

void Driver::settle() {
    _draws.waitOwed();
}

void Driver::requestRedraw() {
    _bus.setConfig(zet::DCFG_RENDER_REQUEST, nullptr);
}

void Driver::setView(int mode) {
    _bus.setConfig(zet::DCFG_RENDER_MODE, static_cast<std::int32_t>(mode));
}

void Driver::touchDown(zet::TouchPoint point) {
    _bus.setConfig(zet::DCFG_TOUCH_DOWN, &point);
}

void Driver::touchUp(zet::TouchPoint point) {
    _bus.setConfig(zet::DCFG_TOUCH_UP, &point);
}

void Driver::doubleTap(zet::TouchPoint point) {
    _bus.setConfig(zet::DCFG_DOUBLE_TAP, &point);
}

void Driver::drag(zet::DragPoints points) {
    _bus.setConfig(zet::DCFG_DRAG, &points);
}

void Driver::pinch(float factor) {
    _bus.setConfig(zet::DCFG_PINCH, factor);
}

void Driver::fling(zet::Fling velocity) {
    _bus.setConfig(zet::DCFG_FLING, &velocity);
}

void Driver::setAutoRotate(zet::AutoRotate setting) {
    _bus.setConfig(zet::DCFG_AUTO_ROTATE, &setting);
}

void Driver::setOpeningFlight(bool on) {
    _bus.setConfig(zet::DCFG_OPENING_FLIGHT, static_cast<std::int32_t>(on));
}

void Driver::setSceneBackdrop(bool backdrop, bool stars) {
    const zet::SceneBackdrop scene{backdrop, stars};
    _bus.setConfig(zet::DCFG_SCENE_BACKDROP, &scene);
}

void Driver::setRotation(std::uint32_t degrees) {
    _bus.setConfig(zet::DCFG_ROTATION, degrees);
}

void Driver::setScale(float scale) {
    _bus.setConfig(zet::DCFG_SCALE, scale);
}

void Driver::setMaxScale(float scale) {
    _bus.setConfig(zet::DCFG_MAX_SCALE, scale);
}

void Driver::setClearColor(std::uint32_t rgb) {
    _bus.setConfig(zet::DCFG_CLEAR_COLOR, rgb);
}

void Driver::setFaceOption(int bits) {
    _bus.setConfig(zet::DCFG_FACE_OPTION, static_cast<std::int32_t>(bits));
}

void Driver::setLensParam(const zet::LensParam& lens) {
    _bus.setConfig(zet::DCFG_LENS_PARAM, &lens);
}

void Driver::setOverlayImage(const zet::OverlayRect& rect, const std::string& path) {
    _bus.setConfig(zet::DCFG_OVERLAY_IMAGE, zet::SizeHelp{&rect, sizeof rect}, path);
}

std::optional<float> Driver::readScale() {
    float scale = 0;
    if (_bus.readConfig(zet::DCFG_SCALE, scale) != 0) return std::nullopt;
    return scale;
}

std::optional<Snapshot> Driver::snap(const SnapRequest& request) {
    Snapshot snapshot;
    snapshot.rgba.resize(static_cast<std::size_t>(request.bufferSize));
    zet::SnapData record;
    record.sourceFrame = request.sourceFrame;
    record.buffer = snapshot.rgba.data();
    record.bufferSize = request.bufferSize;
    record.postProcess = request.postProcess;
    record.timeOffset = request.timeOffset;
    _frameReadAnswered = false;
    _bus.setConfig(zet::DCFG_SNAP, &record);
    const std::size_t bytes = 4 * static_cast<std::size_t>(record.width) * static_cast<std::size_t>(record.height);
    if (bytes == 0 || bytes > snapshot.rgba.size()) return std::nullopt;
    snapshot.width = record.width;
    snapshot.height = record.height;
    snapshot.topRowFirst = request.postProcess || _frameReadAnswered;
    snapshot.rgba.resize(bytes);
    return snapshot;
}

int Driver::frameBytes() const {
    const Picture picture = lastPicture();
    return 4 * picture.width * picture.height;
}

Picture Driver::lastPicture() const {
    const std::lock_guard lock(_pictureMutex);
    return _picture;
}

void Driver::answerFrameRead(zet::SnapData& request) {
    const Picture picture = lastPicture();
    if (!request.buffer || !picture.memory || request.bufferSize < 4 * picture.width * picture.height) return;
    convertToRgba(picture, request.buffer);
    request.width = picture.width;
    request.height = picture.height;
    _frameReadAnswered = true;
}

}  // namespace zetplay
