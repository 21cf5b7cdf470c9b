// What a person sees: the whole picture, as large as the window allows, with bars of the clear colour beside it. A
// pinch zooms by one step, a drag moves the zoomed picture, a double tap flies to the full zoom and back. The picture
// turns in steps of 90 degrees, and a lens record straightens what the lens has bent. Where an analysis stage marks a
// rectangle and the player allows it, the picture zooms to it, with the whole frame small in the lower right corner.
// Boxes with labels stand round the faces of a frame, and a picture of the player's may lie over it all.

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

constexpr float correctedHeight = 0.83f;  // share of the frame's height that a corrected picture is fitted with
constexpr float nearPlane = 1.0f;         // the camera stands as far from the quad, so that it fills the view
constexpr float farPlane = 30.0f;
constexpr float insetScale = 0.3f;   // of the view
constexpr float insetOffset = 0.7f;  // view units, right and down

// Whether the quad reaches the middle of every pixel; the matrix has no turn and no perspective.
bool coversSurface(const float* matrix) {
    constexpr float edge = 0.9999f;
    return matrix[0] - std::fabs(matrix[12]) >= edge && matrix[5] - std::fabs(matrix[13]) >= edge;
}

bool within(float value, float end) {
    return value >= 0.0f && value <= end;
}

}  // namespace

CommonRender::CommonRender(DisplayConfig* config, float touchScale, Display* display)
    : Render(config, touchScale, display) {}

int CommonRender::init() {
    glDisable(GL_DEPTH_TEST);
    const int created = createProgram();
    registerObservers();
    return created;
}

int CommonRender::createProgram() {
    if (_program.build(frameVertexStage, {plainMain}) != 0) return -1;
    setQuad(0.0f, 1.0f, 1.0f, 0.0f);
    return _correctedProgram.build(frameVertexStage, {lensStep, correctedMain},
                                   {"k1", "k2", "k3", "p1", "p2", "fx", "fy", "ox", "oy"});
}

void CommonRender::registerObservers() {
    constexpr unsigned setting = DCFG_FLAG_VALUE | DCFG_FLAG_REPLAY;
    observeOnRenderThread(DCFG_FACE_OPTION, setting,
                          [this](DisplayConfigUserData& delivery) { return onFaceOption(delivery.getInt()); });
    observe(DCFG_SCALE, setting | DCFG_FLAG_READ,
            [this](DisplayConfigUserData& delivery) { return onScale(delivery); });
    observe(DCFG_MAX_SCALE, setting, [this](DisplayConfigUserData& delivery) {
        if (!std::isfinite(delivery.getFloat())) return RENDER_NOT_HANDLED;
        _motion.setMaxScale(delivery.getFloat());
        return 0;
    });
    observeOnRenderThread(DCFG_LENS_PARAM, setting, [this](DisplayConfigUserData& delivery) {
        return setLensParam(delivery.getRecord<const LensParam>());
    });
    observeOnRenderThread(DCFG_OVERLAY_IMAGE, setting,
                          [this](DisplayConfigUserData& delivery) { return onOverlayImage(delivery); });
    observeOnRenderThread(DCFG_CLEAR_COLOR, setting, [](DisplayConfigUserData& delivery) {
        const auto color = static_cast<unsigned>(delivery.getInt());
        const auto channel = [color](int shift) { return static_cast<float>((color >> shift & 0xff) / 255.0); };
        glClearColor(channel(16), channel(8), channel(0), 1.0f);
        return RENDER_NOT_HANDLED;
    });
    observe(DCFG_ROTATION, setting, [this](DisplayConfigUserData& delivery) {
        const unsigned degrees = static_cast<unsigned>(delivery.getInt()) % 360u;
        if (degrees % 90 == 0) _rotation = degrees;
        return 0;
    });
}

int CommonRender::render(int surfaceWidth, int surfaceHeight, const Frame& frame) {
    const unsigned rotation = _rotation;
    const bool lies = rotation == 90 || rotation == 270;
    const int frameWidth = lies ? frame.height : frame.width;
    const int frameHeight = lies ? frame.width : frame.height;
    turnQuad(rotation);
    fitTo(surfaceWidth, surfaceHeight, frameWidth, static_cast<int>(static_cast<float>(frameHeight) * _heightFactor));

    applyViewTransform();
    if (_motion._zoomAnimating) requestRender();  // the animation pulls its own next frame
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
    if (surfaceWidth == _surfaceWidth && surfaceHeight == _surfaceHeight && frameWidth == _frameWidth &&
        frameHeight == _frameHeight) {
        return;
    }
    const float s = static_cast<float>(surfaceWidth) / static_cast<float>(surfaceHeight);
    const float f = static_cast<float>(frameWidth) / static_cast<float>(frameHeight);
    const float a = s > f ? s / f : 1.0f;
    const float b = s > f ? 1.0f : f / s;
    _matrixState.setFrustum(-a, a, -b, b, nearPlane, farPlane);
    _surfaceWidth = surfaceWidth;
    _surfaceHeight = surfaceHeight;
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
    if (_motion._zoomAnimating) _motion.stepZoomAnimation();
    _motion.clampPan();
    lookStraight();
    matrixTranslate(_matrixState._viewMatrix, _motion._panX, _motion._panY, 0);
    matrixScale(_matrixState._modelMatrix, _motion._scale, _motion._scale, 1);
}

bool CommonRender::zoomIsInForce(const Frame& frame) const {
    if (!_globalConfiger->GetConfigBaseData().rectZoom || frame.rects.empty()) return false;
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
        const char* const font = _globalConfiger->GetFontPath();
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

int CommonRender::setLensParam(const LensParam* lens) {
    if (!lens) return RENDER_NOT_HANDLED;
    const double values[] = {lens->k1, lens->k2, lens->k3, lens->p1, lens->p2, lens->fx, lens->fy, lens->ox, lens->oy};
    std::transform(std::begin(values), std::end(values), _lensNumbers.begin(),
                   [](double value) { return static_cast<float>(value); });
    setQuad(static_cast<float>(lens->leftMargin), static_cast<float>(lens->bottomMargin + 1.0),
            static_cast<float>(lens->rightMargin + 1.0), static_cast<float>(lens->topMargin));
    _corrects = static_cast<float>(lens->k1) != 0.0f;
    _heightFactor = lens->k1 == 0.0 ? 1.0f : correctedHeight;
    return 0;
}

int CommonRender::onFaceOption(int option) {
    if (!_aiRectRender) _faceOption = option;
    ZETLog::instance().error("CommonRender::onFaceOption _aiRectRender: %p _faceOption: %d",
                             static_cast<void*>(_aiRectRender.get()), _faceOption);
    return RENDER_NOT_HANDLED;
}

int CommonRender::onOverlayImage(DisplayConfigUserData& delivery) {
    const auto* const rectangle = delivery.getRecord<const OverlayRect>();
    if (!rectangle) return RENDER_NOT_HANDLED;
    const char* const path = reinterpret_cast<const char*>(rectangle + 1);
    // A block that doesn't hold the whole path is no record.
    const int size = delivery.getBlockSize() - static_cast<int>(sizeof(OverlayRect));
    if (delivery.getBlockSize() != 0 && (size <= 0 || !std::memchr(path, 0, static_cast<std::size_t>(size)))) {
        return RENDER_NOT_HANDLED;
    }
    if (!_imageOverlay) {
        auto overlay = std::make_unique<ImageOverlay>();
        if (overlay->initOverlay() == 0) _imageOverlay = std::move(overlay);
    }
    if (_imageOverlay) _imageOverlay->loadImage(path, &rectangle->x);
    return RENDER_NOT_HANDLED;
}

int CommonRender::onScale(DisplayConfigUserData& delivery) {
    if (delivery.getState() & DCFG_FLAG_READ) {
        delivery.answer(_motion._scale);
        return RENDER_NOT_HANDLED;
    }
    if (!std::isfinite(delivery.getFloat())) return RENDER_NOT_HANDLED;
    _motion.setScale(delivery.getFloat());
    delivery.answer(_motion._scale);
    return 0;
}

int CommonRender::onPinch(float factor) {
    _motion.pinch(factor);
    return 0;
}

int CommonRender::onDoubleTap(float x, float y) {
    if (within(x, static_cast<float>(_surfaceWidth)) && within(y, static_cast<float>(_surfaceHeight))) {
        _motion.startZoomAnimation();
    }
    return 0;
}

int CommonRender::onDrag(float x1, float y1, float x2, float y2) {
    const bool inside = x2 > 0.0f && y2 > 0.0f && within(x2, static_cast<float>(_surfaceWidth)) &&
                        within(y2, static_cast<float>(_surfaceHeight));
    if (inside) _motion.drag(x1, y1, x2, y2);
    return 0;
}

}  // namespace zet::ZETShow
