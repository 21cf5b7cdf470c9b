#include "window/gestures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

namespace zetplay {
namespace {

/// Notes gestures as text: "down 10,20", "drag 10,20>30,20", …
struct Notes {
    std::ostringstream text;

    void operator()(const Gesture& gesture) {
        std::visit([this](const auto& g) { write(g); }, gesture);
        text << "; ";
    }
    void write(const TouchDown& g) { text << "down " << g.at.x << ',' << g.at.y; }
    void write(const TouchUp& g) { text << "up " << g.at.x << ',' << g.at.y; }
    void write(const DoubleTap& g) { text << "double " << g.at.x << ',' << g.at.y; }
    void write(const Pinch& g) { text << "pinch " << (g.factor > 1 ? "nearer" : "farther"); }
    void write(const zet::DragPoints& g) { text << "drag " << g.x1 << ',' << g.y1 << '>' << g.x2 << ',' << g.y2; }
    void write(const zet::Fling& g) { text << "fling " << std::lround(g.vx) << ',' << std::lround(g.vy); }
};

TEST(Gestures, comeFromThePathsOfFingers) {
    const struct {
        const char* name;
        const char* path;  // event, finger, place (x, y), time
        const char* expected;
    } cases[] = {
        {"a drag that rests before it ends", "down 1 10 20 0  move 1 60 20 0.05  move 1 90 25 0.1  up 1 90 25 0.5",
         "down 10,20; drag 10,20>60,20; drag 60,20>90,25; up 90,25; "},
        {"90 pixels in 0.06 s at the end", "down 1 10 20 0  move 1 40 20 0.22  move 1 130 -10 0.27  up 1 130 -10 0.28",
         "down 10,20; drag 10,20>40,20; drag 40,20>130,-10; up 130,-10; fling 1500,-500; "},
        {"three taps make one double tap, and a late one none",
         "down 1 5 5 0  up 1 5 5 0.1  down 1 7 5 0.3  up 1 7 5 0.4  down 1 7 5 0.5  up 1 7 5 0.6  down 1 7 5 1.1  up 1 "
         "7 5 1.2",
         "down 5,5; up 5,5; down 7,5; up 7,5; double 7,5; down 7,5; up 7,5; down 7,5; up 7,5; "},
        {"two fingers part, then meet; the one that stays does not drag",
         "down 1 100 0 0  down 2 200 0 0.1  move 2 202 0 0.2  move 2 220 0 0.3  move 1 140 0 0.4  up 2 220 0 0.5"
         "  move 1 0 0 0.6  up 1 0 0 0.61",
         "down 100,0; up 100,0; pinch nearer; pinch farther; "},
        {"a wheel: one for a notch",
         "wheel 0 0 1 0  wheel 0 0 -2 0  wheel 0 0 0.5 0  wheel 0 0 0.25 0  wheel 0 0 0.25 0",
         "pinch nearer; pinch farther; pinch farther; pinch nearer; "},
    };
    for (const auto& [name, path, expected] : cases) {
        Notes notes;
        Gestures gestures(std::ref(notes));
        std::istringstream moves(path);
        std::string what;
        int finger;
        zet::TouchPoint at;
        for (double time; moves >> what >> finger >> at.x >> at.y >> time;) {
            if (what == "down") gestures.down(finger, at, time);
            if (what == "move") gestures.move(finger, at, time);
            if (what == "up") gestures.up(finger, at, time);
            if (what == "wheel") gestures.wheel(at.y);
        }
        EXPECT_EQ(notes.text.str(), expected) << name;
    }
}

}  // namespace
}  // namespace zetplay
