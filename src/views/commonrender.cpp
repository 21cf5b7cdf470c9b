// What a person sees: the whole picture, as large as the window allows, with bars of the clear colour beside it. A
// pinch zooms by one step, a drag moves the zoomed picture, a double tap flies to the full zoom and back. The picture
// turns in steps of 90 degrees, and a lens record straightens what the lens has bent. Where an analysis stage marks a
// rectangle and the player allows it, the picture zooms to it, with the whole frame small in the lower right corner.
// Boxes with labels are drawn round the faces of a frame, and a picture of the player's may lie over it all.

#include "views/commonrender.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include "render/shaderpieces.h"
#include "zet/zetlog.h"

namespace zet::ZETShow {

namespace {

// Reads the nine lens uniforms; bends a coordinate of the corrected picture to where the lens put it. The model of
// D. C. Brown, "Decentering distortion of lenses" (1966).
const char* const lensStep = R"(
uniform float k1;
uniform float k2;
uniform float k3;
uniform float p1;
uniform float p2;
uniform float fx;
uniform float fy;
uniform float ox;
uniform float oy;
vec2 throughLens(vec2 v) {
    float x0 = (v.x - ox) / fx;
    float y0 = (v.y - oy) / fy;
    float r2 = x0 * x0 + y0 * y0;
    float r4 = r2 * r2;
    float r6 = r4 * r2;
    float radial = 1.0 + k1 * r2 + k2 * r4 + k3 * r6;
    float x = x0 * radial + 2.0 * p1 * x0 * y0 + p2 * (r2 + 2.0 * x0 * x0);
    float y = y0 * radial + 2.0 * p2 * x0 * y0 + p1 * (r2 + 2.0 * y0 * y0);
    return vec2(x * fx + ox, y * fy + oy);
}
)";

const char* const plainMain = R"(
void main() {
    gl_FragColor = samplePlanes(v_texCoord);
}
)";

const char* const correctedMain = R"(
void main() {
    gl_FragColor = samplePlanes(throughLens(v_texCoord));
}
)";

// Corners of a whole picture in triangle-strip order.
constexpr float baseTexCoords[8] = {0, 1, 1, 1, 0, 0, 1, 0};

constexpr unsigned settingMask = DCFG_FLAG_VALUE | DCFG_FLAG_REPLAY;

constexpr float correctedHeight = 0.83f;  // share of the frame's height that a corrected picture is fitted with
constexpr float nearPlane = 1.0f;         // the camera is as far from the quad, which then fills the view
constexpr float farPlane = 30.0f;
constexpr float insetScale = 0.3f;   // of the view
constexpr float insetOffset = 0.7f;  // view units, right and down

// Whether the quad reaches the middle of every pixel; the matrix has no turn and no perspective.
bool coversSurface(const float* matrix) {
    constexpr float edge = 0.9999f;
    return matrix[0] - std::fabs(matrix[12]) >= edge && matrix[5] - std::fabs(matrix[13]) >= edge;
}

}  // namespace

CommonRender::CommonRender(DisplayConfig* config, RenderThread* thread, const std::shared_ptr<CommonMotion>& motion)
    : Render(config, thread, motion), _motion(*motion) {
    observeNumbers(motion);
}

int CommonRender::init(const ColorTransform& color) {
    glDisable(GL_DEPTH_TEST);
    setQuad(0.0f, 1.0f, 1.0f, 0.0f);
    if (_program.build(color, frameVertexStage, {plainMain}) != 0) return -1;
    if (_correctedProgram.build(color, frameVertexStage, {lensStep, correctedMain},
                                {"k1", "k2", "k3", "p1", "p2", "fx", "fy", "ox", "oy"}) != 0) {
        return -1;
    }
    observeDrawing();
    return 0;
}

void CommonRender::observeNumbers(const std::shared_ptr<CommonMotion>& motion) {
    observe(DCFG_SCALE, settingMask | DCFG_FLAG_READ, [motion](DisplayConfigUserData& delivery) {
        const bool isRead = (delivery.getState() & int{DCFG_FLAG_READ}) != 0;
        if (!isRead && !std::isfinite(delivery.getFloat())) return false;
        if (!isRead) motion->setScale(delivery.getFloat());
        delivery.answer(motion->_scale);
        return !isRead;
    });
    observe(DCFG_MAX_SCALE, settingMask, [motion](DisplayConfigUserData& delivery) {
        if (!std::isfinite(delivery.getFloat())) return false;
        motion->setMaxScale(delivery.getFloat());
        return true;
    });
    observe(DCFG_ROTATION, settingMask, [motion](DisplayConfigUserData& delivery) {
        const unsigned degrees = static_cast<unsigned>(delivery.getInt()) % 360u;
        if (degrees % 90 == 0) motion->_rotation = degrees;
        return true;
    });
}

void CommonRender::observeDrawing() {
    observeOnRenderThread(DCFG_FACE_OPTION, settingMask,
                          [this](DisplayConfigUserData& delivery) { return setFaceOption(delivery.getInt()); });
    observeOnRenderThread(DCFG_LENS_PARAM, settingMask, [this](DisplayConfigUserData& delivery) {
        return setLensParam(delivery.getRecord<const LensParam>());
    });
    observeOnRenderThread(DCFG_OVERLAY_IMAGE, settingMask,
                          [this](DisplayConfigUserData& delivery) { return setOverlayImage(delivery); });
    observeOnRenderThread(DCFG_CLEAR_COLOR, settingMask, [](DisplayConfigUserData& delivery) {
        const auto color = static_cast<unsigned>(delivery.getInt());
        const auto channel = [color](int shift) { return static_cast<float>((color >> shift & 0xff) / 255.0); };
        glClearColor(channel(16), channel(8), channel(0), 1.0f);
        return false;
    });
}

int CommonRender::render(int surfaceWidth, int surfaceHeight, const Frame& frame) {
    const unsigned rotation = _motion._rotation;
    const bool lies = rotation == 90 || rotation == 270;
    const int frameWidth = lies ? frame.height : frame.width;
    const int frameHeight = lies ? frame.width : frame.height;
    turnQuad(rotation);
    fitTo(surfaceWidth, surfaceHeight, frameWidth, static_cast<int>(static_cast<float>(frameHeight) * _heightFactor));

    applyViewTransform();
    const bool zoomed = zoomIsInForce(frame);
    if (zoomed) zoomToRect(frame);
    if (!coversSurface(_matrixState.computeMvp())) glClear(GL_COLOR_BUFFER_BIT);
    drawQuad(frame);
    drawImageOverlay(rotation);
    if (zoomed) {
        drawInset(frame, rotation);
        zoomToRect(frame);
    }
    drawFaces(frame);
    return 0;
}

void CommonRender::fitTo(int surfaceWidth, int surfaceHeight, int frameWidth, int frameHeight) {
    if (surfaceWidth == _motion._surfaceWidth && surfaceHeight == _motion._surfaceHeight && frameWidth == _frameWidth &&
        frameHeight == _frameHeight) {
        return;
    }
    const float s = static_cast<float>(surfaceWidth) / static_cast<float>(surfaceHeight);
    const float f = static_cast<float>(frameWidth) / static_cast<float>(frameHeight);
    const float a = s > f ? s / f : 1.0f;
    const float b = s > f ? 1.0f : f / s;
    _matrixState.setFrustum(-a, a, -b, b, nearPlane, farPlane);
    _motion._surfaceWidth = surfaceWidth;
    _motion._surfaceHeight = surfaceHeight;
    _frameWidth = frameWidth;
    _frameHeight = frameHeight;
    setViewport({0, 0, surfaceWidth, surfaceHeight});
}

void CommonRender::turnQuad(unsigned rotation) {
    if (rotation == _quadRotation) return;
    _quadRotation = rotation;
    rotateTexCoords(rotation, _rotatedQuadTexCoords, _quadTexCoords);
    constexpr float places[4][2] = {{-1, -1}, {1, -1}, {-1, 1}, {1, 1}};
    std::array<MeshVertex, 4> corners;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const float* const texCoord = _rotatedQuadTexCoords + 2 * i;
        corners[i] = {{places[i][0], places[i][1], 0}, {texCoord[0], texCoord[1]}};
    }
    _quad.load(corners);
}

void CommonRender::lookStraight() {
    matrixIdentity(_matrixState._modelMatrix);
    matrixLookAt(_matrixState._viewMatrix, 0, 0, 1, 0, 0, 0, 0, 1, 0);
}

void CommonRender::applyViewTransform() {
    _motion.step();
    lookStraight();
    matrixTranslate(_matrixState._viewMatrix, _motion._panX, _motion._panY, 0);
    matrixScale(_matrixState._modelMatrix, _motion._scale, _motion._scale, 1);
}

bool CommonRender::zoomIsInForce(const Frame& frame) const {
    if (!_thread->globalConfiger()->GetConfigBaseData().rectZoom || frame.rects.empty()) return false;
    const ZoomRect& rect = frame.rects.front();
    return rect.width > 0 && rect.height > 0;
}

void CommonRender::drawQuad(const Frame& frame) {
    FrameProgram& program = _corrects ? _correctedProgram : _program;
    program.use(frame);
    for (std::size_t i = 0; _corrects && i < _lensNumbers.size(); ++i) program.set(i, _lensNumbers[i]);
    program.setMatrix(_matrixState.computeMvp());
    _quad.bind();
    _quad.draw();
}

void CommonRender::drawInset(const Frame& frame, unsigned rotation) {
    lookStraight();
    matrixTranslate(_matrixState._viewMatrix, insetOffset, -insetOffset, 0);
    matrixScale(_matrixState._modelMatrix, insetScale, insetScale, 1);
    drawQuad(frame);
    drawImageOverlay(rotation);
}

void CommonRender::drawImageOverlay(unsigned rotation) {
    if (!_imageOverlay || !_imageOverlay->hasImage()) return;
    float texCoords[8];
    rotateTexCoords(rotation, texCoords, baseTexCoords);
    _imageOverlay->drawOverlay(texCoords, _matrixState._mvpMatrix);
}

void CommonRender::drawFaces(const Frame& frame) {
    if (_faceOption == 0 || frame.faces.empty()) return;
    if (!_aiRectRender) {
        _aiRectRender = std::make_unique<AiRectRender>();
        const char* const font = _thread->globalConfiger()->GetFontPath();
        if (font && *font) _aiRectRender->initText(font);
        _aiRectRender->initRect();
    }
    _aiRectRender->drawFaces(_rotatedQuadTexCoords, _matrixState.computeMvp(), frame.faces.data(),
                             static_cast<int>(frame.faces.size()), _frameWidth, _frameHeight, _faceOption);
}

void CommonRender::zoomToRect(const Frame& frame) {
    const ZoomRect& rect = frame.rects.front();
    const auto x = static_cast<float>(rect.x);
    const auto y = static_cast<float>(rect.y);
    const auto w = static_cast<float>(rect.width);
    const auto h = static_cast<float>(rect.height);
    const auto frameWidth = static_cast<float>(_frameWidth);
    const auto frameHeight = static_cast<float>(_frameHeight);
    const auto halfWidth = static_cast<float>(_frameWidth / 2);
    const auto halfHeight = static_cast<float>(_frameHeight / 2);
    const float s = std::min(frameWidth / w, frameHeight / h);
    const float edge = s - 1.0f;
    const auto limited = [edge](float move) { return std::min(std::max(move, -edge), edge); };
    const float tx = (w * 0.5f + x - halfWidth) / frameWidth * s * -2.0f;
    const float ty = (y + h * 0.5f - halfHeight) / frameHeight * s * 2.0f;
    lookStraight();
    matrixTranslate(_matrixState._viewMatrix, limited(tx), limited(ty), 0);
    matrixScale(_matrixState._modelMatrix, s, s, 1);
}

void CommonRender::setQuad(float left, float bottom, float right, float top) {
    const float texCoords[8] = {left, bottom, right, bottom, left, top, right, top};
    std::copy_n(texCoords, 8, _quadTexCoords);
    _quadRotation = noRotation;
}

void CommonRender::rotateTexCoords(unsigned rotation, float* out, const float* in) {
    static constexpr int corners[4][4] = {{0, 1, 2, 3}, {1, 3, 0, 2}, {3, 2, 1, 0}, {2, 0, 3, 1}};
    const int* const from = corners[rotation / 90];
    for (int i = 0; i < 4; ++i) std::copy_n(in + 2 * from[i], 2, out + 2 * i);
}

bool CommonRender::setLensParam(const LensParam* lens) {
    if (!lens) return false;
    const double values[] = {lens->k1, lens->k2, lens->k3, lens->p1, lens->p2, lens->fx, lens->fy, lens->ox, lens->oy};
    std::transform(std::begin(values), std::end(values), _lensNumbers.begin(),
                   [](double value) { return static_cast<float>(value); });
    setQuad(static_cast<float>(lens->leftMargin), static_cast<float>(lens->bottomMargin + 1.0),
            static_cast<float>(lens->rightMargin + 1.0), static_cast<float>(lens->topMargin));
    _corrects = static_cast<float>(lens->k1) != 0.0f;
    _heightFactor = lens->k1 == 0.0 ? 1.0f : correctedHeight;
    return true;
}

bool CommonRender::setFaceOption(int option) {
    if (!_aiRectRender) _faceOption = option;
    ZETLog::instance().debug("CommonRender::onFaceOption _aiRectRender: %p _faceOption: %d",
                             static_cast<void*>(_aiRectRender.get()), _faceOption);
    return false;
}

bool CommonRender::setOverlayImage(DisplayConfigUserData& delivery) {
    const auto* const rectangle = delivery.getRecord<const OverlayRect>();
    if (!rectangle) return false;
    const char* const path = reinterpret_cast<const char*>(rectangle + 1);
    // A block that doesn't hold the whole path is no record.
    const int size = delivery.getBlockSize() - static_cast<int>(sizeof(OverlayRect));
    if (delivery.getBlockSize() != 0 && (size <= 0 || !std::memchr(path, 0, static_cast<std::size_t>(size)))) {
        return false;
    }
    if (!_imageOverlay) {
        auto overlay = std::make_unique<ImageOverlay>();
        if (overlay->initOverlay() == 0) _imageOverlay = std::move(overlay);
    }
    if (_imageOverlay) _imageOverlay->loadImage(path, &rectangle->x);
    return false;
}

}  // namespace zet::ZETShow
