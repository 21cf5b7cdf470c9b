#include "drawwatch.h"

#include <gtest/gtest.h>

namespace zetplay {
namespace {

TEST(DrawWatch, KnowsWhichNoticeIsTheFrames) {
    // A request, the set of a frame from its begin to its end, notices; "s" where no draw is owed any more.
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
        {"the redraw or the frame, and none to come", "rbdes", 1, false},
        {"the request comes within the set", "brde", 0, true},
        {"no redraw is owed any more", "r" + std::string(31, 'd') + "bde", 1, false},
        {"nothing can be drawn", "bes", 0, false},
        {"redraws of the frame count once", "bedrdd", 1, false},
        {"dropped for the frame before", "bebed", 1, false},
    };
    for (const auto& [name, events, drawn, waits] : cases) {
        DrawWatch watch;
        for (const char event : events) {
            if (event == 'r') watch.requested();
            if (event == 'b') watch.frameBegins();
            if (event == 'e') watch.frameEnds();
            if (event == 'd') watch.drawn();
            if (event == 's') watch.settled();
        }
        EXPECT_EQ(watch.framesDrawn(), drawn) << name;
        EXPECT_EQ(watch.waitFrame(std::chrono::seconds(0)), !waits) << name;
    }
}

}  // namespace
}  // namespace zetplay
