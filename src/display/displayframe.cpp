// A frame's way from the bus into textures and onto the screen, and the change of the view.

#include <algorithm>
#include <cstring>

#include "display/display.h"
#include "display/interleave.h"
#include "render/render.h"
#include "render/renderfactory.h"
#include "zet/zetlog.h"

namespace zet::ZETShow {

namespace {

// GL reads each row of a client picture from a multiple of 4 bytes on; a texel of interleaved U and V has 2.
bool rowsAreAligned(const YUV420PData& frame) {
    return frame.yLineSize % 4 == 0 && frame.uvLineSize % 2 == 0;
}

}  // namespace

int Display::frameTask(const DisplayConfigUserData& delivery) {
    if (_frameReady) return 0;
    if (makeCurrent() != 0) return -1;
    const YUV420PData* const frame = delivery.getRecord<const YUV420PData>();
    if (!frame || !frameIsSound(*frame)) return -1;
    if (!_frame.hasPlanes()) ZETLog::instance().debug("Display::onRenderYUV420PData glGenTextures");
    uploadFrame(*frame);
    copyItems(*frame);
    _frame.setLensRegion(frame->lensRegion);
    findRegion();
    _frameReady = 1;
    return 0;
}

bool Display::frameIsSound(const YUV420PData& frame) {
    GLint limit = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &limit);
    const bool planes = frame.y && frame.u && frame.v;
    const bool sizes = frame.width > 0 && frame.height > 0 && frame.height <= limit;
    const bool lines = frame.yLineSize >= frame.width && frame.yLineSize <= limit && frame.uvLineSize <= limit &&
                       frame.uvLineSize >= (frame.width - 1) / 2 + 1 && rowsAreAligned(frame);
    const bool items = frame.aiCount == 0 || (frame.aiCount > 0 && frame.aiItems && frame.aiKind);
    const bool sound = planes && sizes && lines && items;
    if (!sound && !_refusing) {
        ZETLog::instance().warning("Display::onRenderYUV420PData refused width: %d height: %d lines: %d %d limit: %d",
                                   frame.width, frame.height, frame.yLineSize, frame.uvLineSize, limit);
    }
    _refusing = !sound;  // a run of such frames is logged once
    return sound;
}

void Display::uploadFrame(const YUV420PData& frame) {
    const int chromaSize = frame.height * frame.uvLineSize;
    if (chromaSize > _uvBufferSize) _uvBuffer.reset(new std::uint8_t[static_cast<std::size_t>(chromaSize)]);
    _uvBufferSize = chromaSize;
    interleave(frame.u, frame.v, _uvBuffer.get(), chromaSize / 2);

    _frame.setSize(frame.width, frame.height, frame.yLineSize);
    _frame.upload(frame.y, frame.yLineSize, _uvBuffer.get(), frame.uvLineSize, frame.height);
}

void Display::copyItems(const YUV420PData& frame) {
    const int kind = frame.aiCount != 0 ? *frame.aiKind : 0;
    _frame.rects.clear();
    if (kind != AI_KIND_FACES) _frame.faces.clear();
    if (kind == AI_KIND_FACES) {
        const auto* const items = static_cast<const FaceItem*>(frame.aiItems);
        _frame.faces.resize(static_cast<std::size_t>(frame.aiCount));
        const FaceItem* item = items;
        for (FaceInfo& face : _frame.faces) {
            face.name.assign(item->name, strnlen(item->name, sizeof item->name));
            face.gender = item->gender;
            face.age = item->age;
            face.x = item->x;
            face.y = item->y;
            face.width = item->width;
            face.height = item->height;
            ++item;
        }
    } else if (kind == AI_KIND_RECTS) {
        const auto* const items = static_cast<const RectItem*>(frame.aiItems);
        for (const RectItem* item = items; item != items + frame.aiCount; ++item) {
            _frame.rects.push_back({item->x, item->y, item->width, item->height});
        }
    }
}

ShownPart Display::shownPart() const {
    const RenderModeInfo* const known = findRenderMode(_renderMode);
    return known ? known->part : ShownPart::lensSquare;
}

void Display::findRegion() {
    _frame.findRegion(shownPart() != ShownPart::lensRectangle);
}

int Display::colorTask(const DisplayConfigUserData& delivery) {
    const auto* const color = delivery.getRecord<const FrameColor>();
    const auto transform = color ? findColorTransform(*color) : std::nullopt;
    if (!transform) {
        ZETLog::instance().warning("Display::onFrameColor refused matrix: %d", color ? color->matrix : -1);
        return -1;
    }
    const bool changed = *transform != _frame.color;
    _frame.color = *transform;
    return changed ? 0 : -1;
}

int Display::modeTask(const DisplayConfigUserData& delivery) {
    _renderMode = delivery.getInt();
    if (makeCurrent() != 0) return -1;
    _render = createRender(_renderMode, _frame.color, _config, this);
    if (_frame.hasPlanes()) findRegion();
    return 0;
}

int Display::drawFrame() {
    if (!_eglSurface) return -1;
    if (!eglQuerySurface(_eglDisplay, _eglSurface, EGL_WIDTH, &_surfaceWidth)) return -1;
    if (!eglQuerySurface(_eglDisplay, _eglSurface, EGL_HEIGHT, &_surfaceHeight)) return -1;
    const bool drawn = makeCurrent() == 0 && drawPicture();
    if (swapBuffers() != 0) return -1;
    _lastDraw = Condition::Clock::now();  // before the notice: its observers may count on the pace from now on
    if (drawn) _config->setConfig(DCFG_DRAWN, ++_drawCount);
    return 0;
}

bool Display::drawPicture() {
    const bool sizes = _surfaceWidth > 0 && _surfaceHeight > 0;
    if (!_render || !sizes || !_frame.hasPlanes()) return false;
    _render->motion().stepFling();
    const bool complete = _render->render(_surfaceWidth, _surfaceHeight, _frame) == 0;
    // Last: an observer of the request may replace the view.
    if (complete && _render->motion().asksForDraws()) _config->setConfig(DCFG_RENDER_REQUEST, nullptr);
    return true;
}

}  // namespace zet::ZETShow
