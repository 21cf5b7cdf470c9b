#include "gestures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

namespace zetplay {
namespace {

/// Notes gestures as text: "down 10,20", "drag 10,20>30,20", …
struct Notes {
    std::vector<std::string> lines;

    void operator()(const Gesture& gesture) {
        std::ostringstream text;
        std::visit([&](const auto& g) { write(text, g); }, gesture);
        lines.push_back(text.str());
    }
    static void write(std::ostream& out, const TouchDown& g) { out << "down " << g.at.x << ',' << g.at.y; }
    static void write(std::ostream& out, const TouchUp& g) { out << "up " << g.at.x << ',' << g.at.y; }
    static void write(std::ostream& out, const DoubleTap& g) { out << "double " << g.at.x << ',' << g.at.y; }
    static void write(std::ostream& out, const Pinch& g) { out << "pinch " << (g.factor > 1 ? "nearer" : "farther"); }
    static void write(std::ostream& out, const zet::DragPoints& g) {
        out << "drag " << g.x1 << ',' << g.y1 << '>' << g.x2 << ',' << g.y2;
    }
    static void write(std::ostream& out, const zet::Fling& g) {
        out << "fling " << std::lround(g.vx) << ',' << std::lround(g.vy);
    }
};

struct Move {
    char what;  // d(own), m(ove), u(p)
    int finger;
    float x, y;
    double time;
};

using Lines = std::vector<std::string>;

TEST(Gestures, ComeFromThePathsOfFingers) {
    const struct {
        const char* name;
        std::vector<Move> moves;
        Lines expected;
    } cases[] = {
        {"a drag that rests before it ends",
         {{'d', 1, 10, 20, 0}, {'m', 1, 60, 20, 0.05}, {'m', 1, 90, 25, 0.1}, {'u', 1, 90, 25, 0.5}},
         {"down 10,20", "drag 10,20>60,20", "drag 60,20>90,25", "up 90,25"}},
        {"a drag that ends at speed: 90 pixels in 0.06 s",
         {{'d', 1, 10, 20, 0}, {'m', 1, 40, 20, 0.22}, {'m', 1, 130, -10, 0.27}, {'u', 1, 130, -10, 0.28}},
         {"down 10,20", "drag 10,20>40,20", "drag 40,20>130,-10", "up 130,-10", "fling 1500,-500"}},
        {"too slow for a fling",
         {{'d', 1, 0, 0, 0}, {'m', 1, 20, 0, 0.3}, {'m', 1, 25, 0, 0.39}, {'u', 1, 25, 0, 0.4}},
         {"down 0,0", "drag 0,0>20,0", "drag 20,0>25,0", "up 25,0"}},
        {"two taps",
         {{'d', 1, 5, 5, 0}, {'u', 1, 5, 5, 0.1}, {'d', 1, 7, 5, 0.3}, {'u', 1, 7, 5, 0.4}},
         {"down 5,5", "up 5,5", "down 7,5", "up 7,5", "double 7,5"}},
        {"two taps too far apart in time",
         {{'d', 1, 5, 5, 0}, {'u', 1, 5, 5, 0.1}, {'d', 1, 5, 5, 0.6}, {'u', 1, 5, 5, 0.7}},
         {"down 5,5", "up 5,5", "down 5,5", "up 5,5"}},
        {"two taps too far apart in place",
         {{'d', 1, 5, 5, 0}, {'u', 1, 5, 5, 0.1}, {'d', 1, 80, 5, 0.2}, {'u', 1, 80, 5, 0.3}},
         {"down 5,5", "up 5,5", "down 80,5", "up 80,5"}},
        {"three taps make one double tap",
         {{'d', 1, 5, 5, 0},
          {'u', 1, 5, 5, 0.1},
          {'d', 1, 5, 5, 0.2},
          {'u', 1, 5, 5, 0.3},
          {'d', 1, 5, 5, 0.4},
          {'u', 1, 5, 5, 0.5}},
         {"down 5,5", "up 5,5", "down 5,5", "up 5,5", "double 5,5", "down 5,5", "up 5,5"}},
        {"two fingers part, then meet; the one that stays does not drag",
         {{'d', 1, 100, 0, 0},
          {'d', 2, 200, 0, 0.1},
          {'m', 2, 202, 0, 0.2},
          {'m', 2, 220, 0, 0.3},
          {'m', 1, 140, 0, 0.4},
          {'u', 2, 220, 0, 0.5},
          {'m', 1, 0, 0, 0.6},
          {'u', 1, 0, 0, 0.61}},
         {"down 100,0", "up 100,0", "pinch nearer", "pinch farther"}},
        {"a pointer that moves without a press", {{'m', 1, 5, 5, 0}, {'u', 1, 5, 5, 0.1}}, {}},
    };
    for (const auto& path : cases) {
        Notes notes;
        Gestures gestures(std::ref(notes));
        for (const Move& move : path.moves) {
            if (move.what == 'd') gestures.down(move.finger, {move.x, move.y}, move.time);
            if (move.what == 'm') gestures.move(move.finger, {move.x, move.y}, move.time);
            if (move.what == 'u') gestures.up(move.finger, {move.x, move.y}, move.time);
        }
        EXPECT_EQ(notes.lines, path.expected) << path.name;
    }
}

TEST(Gestures, WheelPinchesOnceANotch) {
    Notes notes;
    Gestures gestures(std::ref(notes));
    for (const double notches : {1.0, -2.0, 0.5, 0.25, 0.25}) gestures.wheel(notches);
    EXPECT_EQ(notes.lines, (Lines{"pinch nearer", "pinch farther", "pinch farther", "pinch nearer"}));
}

TEST(Gestures, PictureFollowsTheFingerInEachView) {
    const zet::DragPoints drag{1, 2, 3, 4};
    const zet::Fling fling{300, -50};
    for (int view = 0; view <= 10; ++view) {
        SCOPED_TRACE(view);
        Notes notes;
        if (const auto told = gestureForView(drag, view)) notes(*told);
        if (const auto told = gestureForView(fling, view)) notes(*told);
        if (const auto told = gestureForView(Pinch{2}, view)) notes(*told);
        const Lines flat{"drag 3,4>1,2", "pinch nearer"};
        const Lines wallTwo{"drag 1,2>3,4", "fling -300,50", "pinch nearer"};
        const Lines others{"drag 1,2>3,4", "fling 300,-50", "pinch nearer"};
        EXPECT_EQ(notes.lines, view == 0 ? flat : view == 8 ? wallTwo : others);
    }
}

}  // namespace
}  // namespace zetplay
