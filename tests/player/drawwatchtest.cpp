#include "bus/drawwatch.h"

#include <gtest/gtest.h>

namespace zetplay {
namespace {

TEST(DrawWatch, knowsWhichNoticeIsTheFrames) {
    // r is a request, < its begin and > its end; b and e begin and end the set of a frame; d is a notice; w is a wait
    // in vain, s the draw that was due then.
    const struct {
        const char* name;
        std::string events;
        int drawn;
        bool waits;
    } cases[] = {
        {"drawn after the set", "bed", 1, false},
        {"drawn within the set", "bde", 1, false},
        {"a redraw within the set", "rbde", 0, true},
        {"a redraw within the set, then the frame", "rbded", 1, false},
        {"the redraw or the frame, and none to come", "rbdews", 1, false},
        {"then no redraw was owed any more", "rbdewsbde", 2, false},
        {"a request since the wait", "rbdewrsbde", 1, true},
        {"and one that has only begun", "rbdew<sbde", 1, true},
        {"the request ends behind other draws", "<" + std::string(31, 'd') + "bde>", 0, true},
        {"and is owed from then on", "<" + std::string(31, 'd') + ">bde", 0, true},
        {"one was due and others are still owed", "rbdewdsbde", 1, true},
        {"the request comes within the set", "brde", 0, true},
        {"no redraw is owed any more", "r" + std::string(31, 'd') + "bde", 1, false},
        {"nothing can be drawn", "bews", 0, false},
        {"redraws of the frame count once", "bedrdd", 1, false},
        {"dropped for the frame before", "bebed", 1, false},
    };
    for (const auto& [name, events, drawn, waits] : cases) {
        DrawWatch watch;
        for (const char event : events) {
            if (event == 'r' || event == '<') watch.requestBegins();
            if (event == 'r' || event == '>') watch.requestEnds();
            if (event == 'b') watch.frameBegins();
            if (event == 'e') watch.frameEnds();
            if (event == 'd') watch.drawn();
            if (event == 'w') watch.waitFrame(std::chrono::seconds(0));
            if (event == 's') watch.dueDrawn();
        }
        EXPECT_EQ(watch.framesDrawn(), drawn) << name;
        EXPECT_EQ(watch.waitFrame(std::chrono::seconds(0)), !waits) << name;
    }
}

}  // namespace
}  // namespace zetplay
