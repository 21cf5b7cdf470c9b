#pragma once

#include <GLES2/gl2.h>

#include <cstdint>
#include <functional>
#include <memory>

#include "render/frame.h"
#include "render/motion.h"
#include "render/program.h"
#include "render/renderthread.h"
#include "render/viewport.h"
#include "zet/displayconfigkit.h"

namespace zet::ZETShow {

/// Base of the views: what draws the frame as its motion says. Held by shared pointer; made, drawn and destroyed on
/// the render thread with the context current.
///
/// The bus delivers gestures and settings to the motion, on their setters' threads. Nothing there uses the view.
class Render : public DisplayConfigKit, public std::enable_shared_from_this<Render> {
public:
    /// Registers the motion at the bus, stored settings first: it must be complete, the view needn't be.
    Render(DisplayConfig* config, RenderThread* thread, const std::shared_ptr<Motion>& motion);
    ~Render() override;
    Render(const Render&) = delete;
    Render& operator=(const Render&) = delete;

    /// Builds what needs GL, programs for these colours. 0 on success; a view that has failed is never drawn. Render
    /// thread.
    virtual int init(const ColorTransform& color) = 0;
    /// Draws `frame` into the window surface, whose size is in pixels; the display swaps. 0 on success. Render thread.
    virtual int render(int surfaceWidth, int surfaceHeight, const Frame& frame) = 0;

    Motion& motion() const { return *_motion; }
    /// The part of the surface that was last drawn into, all 0 before the first draw. Render thread.
    const Viewport& viewport() const { return _viewport; }

protected:
    using Work = std::function<bool(DisplayConfigUserData&)>;

    /// Runs `work` on the setter's thread at each delivery of `id`; true asks for a redraw. The view may die
    /// meanwhile: `work` holds what it uses.
    void observe(std::int64_t id, unsigned mask, const Work& work);
    /// The same on the render thread, while the setter waits, and only as long as the view lives: `work` may use it.
    /// In `init` or later.
    void observeOnRenderThread(std::int64_t id, unsigned mask, const Work& work);

    /// Draws into this part of the surface from now on. Render thread.
    void setViewport(const Viewport& viewport);

    RenderThread* const _thread;
    FrameProgram _program;  // the view's main one

private:
    void observeGestures();
    void observeSettings();

    const std::shared_ptr<Motion> _motion;
    Viewport _viewport;
};

}  // namespace zet::ZETShow
