#pragma once

#include <GLES2/gl2.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "config/door.h"
#include "config/relaxed.h"
#include "display/displaycommon.h"
#include "zet/displayconfigkit.h"
#include "zet/globalconfiger.h"

namespace zet::ZETShow {

class Display;

/// What a view answers to a gesture that it doesn't know; no redraw follows.
inline constexpr int RENDER_NOT_HANDLED = -1118208;

/// Base of the views: the operations through which the display drives one, what they hear from the bus, and inertia.
///
/// Made, drawn and destroyed on the render thread with the context current. Gestures and settings arrive on their
/// setters' threads and change single numbers without a lock. Gesture coordinates are surface pixels, origin at the
/// top left corner.
class Render : public DisplayConfigKit {
public:
    Render(DisplayConfig* config, float touchScale, Display* display);
    ~Render() override;
    Render(const Render&) = delete;
    Render& operator=(const Render&) = delete;

    /// Draws `texture` into the window surface; the display swaps. 0 on success. Render thread.
    virtual int render(int surfaceWidth, int surfaceHeight, int frameWidth, int frameHeight, Texture& texture) = 0;

    // Gestures: 0 asks for a redraw. Setter's thread.
    virtual int onTouchDown(float x, float y);
    virtual int onTouchUp(float x, float y);
    virtual int onPinch(float factor);
    virtual int onDoubleTap(float x, float y);
    virtual int onDrag(float x1, float y1, float x2, float y2);

    /// Builds what needs GL and registers the view's own observers. 0 on success. Render thread.
    virtual int init() = 0;

    // Settings and inertia, in surface pixels a second; a view that has no use for one leaves it alone.
    virtual void setAutoRotate(bool enable, float speed);      // Setter's thread.
    virtual void onFling(float velocityX, float velocityY);    // Render thread, one frame of it before the draw.
    virtual void setOpeningFlight(bool on);                    // Setter's thread.
    virtual void setSceneBackdrop(bool backdrop, bool stars);  // Setter's thread.

    /// Builds `_program` and fetches its locations. 0 on success. Render thread.
    virtual int createProgram() = 0;

    /// Draws `texture` into the view's own RGBA picture of `width` by `height` pixels, the size of the whole frame, and
    /// leaves the frame buffer of that picture bound. With a rectangle, in pixels of the frame, the picture is the
    /// rectangle stretched to the full size, row 0 at its top, and takes the place of the planes in `texture`. Without
    /// one it is the whole frame, row 0 at its bottom. 0 on success, otherwise nothing has changed. Render thread.
    int cropTexture(Texture& texture, int width, int height, const CropParam* cropParam);
    /// Reads the frame as RGBA. 0 on success; -1 if `dataSize` bytes don't hold it, with nothing written. Rows come
    /// bottom row first, unless `texture` holds a cropped picture already. Render thread.
    int readTexture(Texture& texture, void* data, int dataSize, int width, int height);
    /// Reads the view's last viewport from the window surface as RGBA, bottom row first, and answers its size. 0 on
    /// success; -1 if nothing has been drawn or `dataSize` bytes don't hold it, with nothing written. Render thread.
    int readScreen(void* data, int dataSize, int* outWidth, int* outHeight);

    /// Slows the inertia by a frame and hands it to `onFling`, before each draw. Render thread.
    void stepFling();

    /// The view stands complete: from now on the bus reaches it, stored settings first. Render thread.
    void goLive();
    /// Nothing reaches the view any more once this has returned. Render thread, before the view's destructor begins.
    void retire();

protected:
    using Work = std::function<int(DisplayConfigUserData&)>;

    /// Runs `work` on the setter's thread at each delivery of `id`; a result of 0 asks for a redraw.
    void observe(std::int64_t id, unsigned mask, const Work& work);
    /// The same with `work` on the render thread, while the setter waits.
    void observeOnRenderThread(std::int64_t id, unsigned mask, const Work& work);

    /// Fetches from `_program` the locations that all frame programs have.
    void fetchProgramLocations();
    /// Gives the program in use its matrix and its picture. Always 0.
    int bindFrameTextures(Texture& texture, const float* matrix);
    /// Gives the program in use, one of the view's own, its picture.
    static void bindPicture(const Texture& texture, GLint planeSizeLoc, GLint yLoc, GLint uvLoc);
    void requestRender() { _config->setConfig(DCFG_RENDER_REQUEST, nullptr); }

    struct Viewport {
        GLint x = 0;
        GLint y = 0;
        GLsizei width = 0;
        GLsizei height = 0;
    };

    Viewport _viewport;       // what was last given to glViewport, written together with that call
    const float _touchScale;  // factor on the coordinates of gestures

    // The offscreen pass, made at the first need.
    GLuint _textureFrameBuffer = 0;
    GLuint _readerTexture = 0;
    GLuint _textureProgram = 0;
    GLint _textureYLoc = -1;
    GLint _textureUvLoc = -1;
    GLint _texturePositionLoc = -1;
    GLint _textureTexCoordLoc = -1;
    GLint _texturePlaneSizeLoc = -1;

    Display* const _display;
    GlobalConfiger* const _globalConfiger;

    // Inertia, surface pixels a second.
    Relaxed<int> _flingActive = 0;
    Relaxed<float> _flingVelocityX = 0.0f;
    Relaxed<float> _flingVelocityY = 0.0f;

    // The view's main program.
    GLuint _program = 0;
    GLint _yTextureLoc = -1;
    GLint _uvTextureLoc = -1;
    GLint _mapMatrixLoc = -1;
    GLint _planeSizeLoc = -1;
    GLint _positionLoc = -1;
    GLint _texCoordLoc = -1;

    // Corners of a full-frame quad in triangle-strip order, before and after the view's rotation.
    static constexpr float _baseTexCoords[8] = {0, 1, 1, 1, 0, 0, 1, 0};
    float _rotatedTexCoords[8] = {0, 1, 1, 1, 0, 0, 1, 0};

private:
    struct PendingObserver {
        std::int64_t id;
        DisplayConfig::Callback callback;
        unsigned mask;
    };

    int ensureOffscreenResources();
    void drawOffscreenQuad(const float* texCoords);
    void registerGestureObservers();
    void registerSettingObservers();
    /// Scales the `count` coordinates of a gesture's record in place; false, with nothing changed, if one isn't finite.
    bool scaleGesturePoints(float* points, int count) const;
    int startFling(const Fling* fling);

    const std::shared_ptr<Door> _door = std::make_shared<Door>();
    std::vector<PendingObserver> _pending;  // `observe` collects them here, `goLive` registers them
};

}  // namespace zet::ZETShow
