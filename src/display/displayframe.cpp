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

constexpr int flatMode = 0;      // never cropped
constexpr int wall180Mode = 10;  // the one view that keeps a crop that isn't square

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
    _texture.usePlanes();
    if (_texture.textures[0] == 0) {
        ZETLog::instance().error("Display::onRenderYUV420PData glGenTextures");
        glGenTextures(2, _texture.textures);
    }
    uploadFrame(*frame);
    copyItems(*frame);
    updateCropParam(frame->lensRegion);
    return notifyFrameReady();
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
        ZETLog::instance().error("Display::onRenderYUV420PData refused width: %d height: %d lines: %d %d limit: %d",
                                 frame.width, frame.height, frame.yLineSize, frame.uvLineSize, limit);
    }
    _refusing = !sound;  // a stream of such frames is told of once
    return sound;
}

void Display::uploadFrame(const YUV420PData& frame) {
    const int chromaSize = frame.height * frame.uvLineSize;
    if (chromaSize > _uvBufferSize) _uvBuffer.reset(new std::uint8_t[static_cast<std::size_t>(chromaSize)]);
    _uvBufferSize = chromaSize;
    interleave(frame.u, frame.v, _uvBuffer.get(), chromaSize / 2);

    _videoWidth = frame.width;
    _videoHeight = frame.height;
    _lineSize = frame.yLineSize;
    _texture.upload(0, frame.y, GL_LUMINANCE, frame.yLineSize, _videoHeight);
    _texture.upload(1, _uvBuffer.get(), GL_LUMINANCE_ALPHA, frame.uvLineSize, _videoHeight / 2);
    _texture.textureSize = 2;
}

void Display::copyItems(const YUV420PData& frame) {
    const int kind = frame.aiCount != 0 ? *frame.aiKind : 0;
    _texture.rects.clear();
    if (kind != AI_KIND_FACES) _texture.faces.clear();
    if (kind == AI_KIND_FACES) {
        const auto* const items = static_cast<const FaceItem*>(frame.aiItems);
        _texture.faces.resize(static_cast<std::size_t>(frame.aiCount));
        const FaceItem* item = items;
        for (FaceInfo& face : _texture.faces) {
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
            _texture.rects.push_back({item->x, item->y, item->width, item->height});
        }
    }
}

void Display::updateCropParam(const int* lensRegion) {
    const int w = _videoWidth;
    const int h = _videoHeight;
    int cx = 0;
    int cy = 0;
    int rx = 0;
    int ry = 0;
    if (lensRegion) {
        // The bound keeps every sum of two such values an int.
        const auto part = [](int share, int whole) {
            return std::clamp(static_cast<float>(share) / 10000.0f * static_cast<float>(whole), -5e8f, 5e8f);
        };
        cx = static_cast<int>(part(lensRegion[0], w) + 0.5f);
        cy = static_cast<int>(part(lensRegion[1], h) + 0.5f);
        rx = static_cast<int>(part(lensRegion[2], w));
        ry = static_cast<int>(part(lensRegion[3], h));
    }
    CropParam& crop = _texture.cropParam;
    crop.x = cx >= rx ? cx - rx : 0;
    crop.y = cy >= ry ? cy - ry : 0;
    crop.width = rx ? 2 * rx : w;
    crop.height = ry ? 2 * ry : h;
    if (_renderMode != wall180Mode) crop.width = crop.height = std::min(crop.width, crop.height);
    if (crop.width == w && w != _lineSize) {
        // The crop is cut out by shares of the picture's width, but the texture is as wide as a line: this is the width
        // whose share of the picture is the picture's share of a line, less a pixel, so that no padding is blended in.
        crop.width = static_cast<int>(static_cast<double>(w) / _lineSize * w - 1.0);
    }
}

int Display::notifyFrameReady() {
    _frameReady = 1;
    _idleCond.notifyOne();
    return 0;
}

int Display::modeTask(const DisplayConfigUserData& delivery) {
    _renderMode = delivery.getInt();
    if (makeCurrent() != 0) return -1;
    if (!_render) return 0;
    _render = createRender(_renderMode, _config, _touchScale, this);
    // The cropped picture went with the old view; the planes are still whole.
    _texture.usePlanes();
    _texture.textureSize = 2;
    return 0;
}

int Display::drawFrame() {
    if (!_eglSurface) return -1;
    if (!eglQuerySurface(_eglDisplay, _eglSurface, EGL_WIDTH, &_surfaceWidth)) return -1;
    if (!eglQuerySurface(_eglDisplay, _eglSurface, EGL_HEIGHT, &_surfaceHeight)) return -1;
    if (makeCurrent() == 0) drawPicture();
    if (swapBuffers() != 0) return -1;
    _config->setConfig(DCFG_DRAWN, ++_drawCount);
    return 0;
}

void Display::drawPicture() {
    // Held for the length of the draw: an observer that a view's own request reaches may replace the view.
    const std::shared_ptr<Render> render = _render;
    const bool sizes = _surfaceWidth > 0 && _surfaceHeight > 0 && _videoWidth > 0 && _videoHeight > 0;
    if (!render || !sizes || _texture.current[0] == 0) return;
    const CropParam whole{0, 0, _videoWidth, _videoHeight};
    const bool isCropped = _texture.current == _texture.cropTextures;
    if (_renderMode != flatMode && !isCropped && _texture.cropParam != whole) {
        render->cropTexture(_texture, _videoWidth, _videoHeight, &_texture.cropParam);
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
    }
    render->stepFling();
    render->render(_surfaceWidth, _surfaceHeight, _videoWidth, _videoHeight, _texture);
}

}  // namespace zet::ZETShow
