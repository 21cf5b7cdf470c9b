#pragma once

#include "config/relaxed.h"

namespace zet::ZETShow {

/// What moves in a view, as numbers without GL: the bus calls it with gestures and settings, frames step it, and the
/// view draws what it holds. The base has inertia; a motion overrides what it knows.
///
/// The bus shares it with the view: a gesture that is under way when the view dies changes numbers that nobody draws.
/// Points are surface pixels, origin at the top left corner, and finite, as are all numbers here.
class Motion {
public:
    virtual ~Motion() = default;
    Motion& operator=(const Motion&) = delete;

    // Gestures; true asks for a redraw. Setter's thread.
    virtual bool touchDown(float x, float y);
    virtual bool touchUp(float x, float y);
    virtual bool pinch(float factor);
    virtual bool doubleTap(float x, float y);
    virtual bool drag(float x1, float y1, float x2, float y2);

    // Settings. Setter's thread.
    virtual void setAutoRotate(bool on, float speed);
    virtual void setOpeningFlight(bool on);
    virtual void setSceneBackdrop(bool backdrop, bool stars);

    // Inertia, surface pixels a second.
    /// Starts it, unless both velocities are next to nothing. Setter's thread.
    void startFling(float velocityX, float velocityY);
    void stopFling() { _flings = false; }  // Setter's thread.
    /// Slows it by a frame and hands it to `fling`, before each draw. Render thread.
    void stepFling();

    /// One frame of what moves by itself, and the numbers to draw with. The view calls it where its order of drawing
    /// wants it; motions of several cameras step with each camera instead. Render thread.
    virtual void step();
    /// The next frame differs without a gesture or new video. Asked after each draw. Render thread.
    virtual bool asksForDraws() const;

protected:
    Motion() = default;
    Motion(const Motion&) = default;

    /// One frame of inertia. Render thread.
    virtual void fling(float velocityX, float velocityY);

private:
    Relaxed<bool> _flings = false;
    Relaxed<float> _velocityX = 0.0f;
    Relaxed<float> _velocityY = 0.0f;
};

}  // namespace zet::ZETShow
