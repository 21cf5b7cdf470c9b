#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

#include "zet/records.h"

namespace zetplay {

struct TouchDown {
    zet::TouchPoint at;
};
struct TouchUp {
    zet::TouchPoint at;
};
struct DoubleTap {
    zet::TouchPoint at;
};
struct Pinch {
    float factor = 1;  ///< above 1: the fingers part
};
/// What a pointer or two fingers do. A drag goes from the old point to the new one; a fling is in pixels per second.
using Gesture = std::variant<TouchDown, TouchUp, DoubleTap, zet::DragPoints, Pinch, zet::Fling>;

/// Changes the gesture for the view in force so that the picture follows the finger; nothing if the view should not get
/// it. The flat view moves against a drag and has no inertia; wall-two turns against a fling.
std::optional<Gesture> gestureForView(const Gesture& gesture, int view);

/// Turns movements of a mouse or of fingers into gestures. Points are window pixels from the top left corner, times are
/// seconds of one clock.
class Gestures {
public:
    using Sink = std::function<void(const Gesture&)>;

    explicit Gestures(Sink sink) : _sink(std::move(sink)) {}

    /// The first finger touches and drags; a second one ends that and makes a pinch of the two.
    void down(std::int64_t finger, zet::TouchPoint at, double time);
    void move(std::int64_t finger, zet::TouchPoint at, double time);
    void up(std::int64_t finger, zet::TouchPoint at, double time);
    /// Notches of a mouse wheel, fractions from a trackpad; positive away from the user, which zooms in.
    void wheel(double notches);

private:
    struct Finger {
        std::int64_t id;
        zet::TouchPoint at;
    };
    struct Sample {
        zet::TouchPoint at;
        double time;
    };

    Finger* find(std::int64_t finger);
    void pinch();
    void release(zet::TouchPoint at, double time);
    zet::Fling speed(double time) const;

    Sink _sink;
    std::vector<Finger> _fingers;

    // The one finger that drags.
    bool _dragging = false;
    bool _moved = false;  // moved farther than a tap may
    Sample _start{};
    std::vector<Sample> _trail;  // the newest samples, oldest first

    std::optional<Sample> _lastTap;
    float _span = 0;  // distance of two fingers at the last pinch
    double _wheel = 0;
};

}  // namespace zetplay
