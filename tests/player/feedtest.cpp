#include "feed.h"

#include <gtest/gtest.h>

#include <cmath>

namespace zetplay {
namespace {

/// Three pictures, 0.1 seconds apart, or one still.
class FewPictures : public Source {
public:
    explicit FewPictures(int count) : _count(count) {}

    bool next(Picture& picture) override {
        if (_next == _count) return false;
        picture.width = picture.height = 4;
        picture.yLineSize = picture.uvLineSize = 4;
        picture.y.assign(16, 0);
        picture.u.assign(8, 0);
        picture.v.assign(8, 0);
        picture.number = _next;
        picture.seconds = 0.1 * _next;
        ++_next;
        return true;
    }
    void rewind() override { _next = 0; }
    bool still() const override { return _count == 1; }
    double frameRate() const override { return 10; }
    std::string name() const override { return "few"; }

private:
    int _count;
    int _next = 0;
};

std::vector<int> dueTenths(Feed& feed, int most) {
    std::vector<int> due;
    while (static_cast<int>(due.size()) < most && feed.fetch()) {
        due.push_back(static_cast<int>(std::lround(feed.due() * 10)));
        feed.show();
    }
    return due;
}

TEST(Feed, GoesThroughTheInputOnOneTimeline) {
    const struct {
        const char* name;
        int pictures;
        bool loop, repeatStill;
        std::vector<int> due;
        int read;
    } cases[] = {
        {"once", 3, false, false, {0, 1, 2}, 3},
        {"a still that repeats makes no video start over", 3, false, true, {0, 1, 2}, 3},
        {"over and over", 3, true, false, {0, 1, 2, 3, 4, 5, 6, 7}, 8},
        {"a still", 1, false, false, {0}, 1},
        {"a still as often as it is asked for", 1, false, true, {0, 1, 2, 3, 4, 5, 6, 7}, 1},
        {"a still, over and over", 1, true, false, {0, 1, 2, 3, 4, 5, 6, 7}, 1},
    };
    for (const auto& run : cases) {
        SCOPED_TRACE(run.name);
        FewPictures source(run.pictures);
        Driver driver;
        Feed feed(source, driver);
        feed.loop = run.loop;
        feed.repeatStill = run.repeatStill;
        EXPECT_EQ(dueTenths(feed, 8), run.due);
        EXPECT_EQ(feed.framesRead(), run.read);
        EXPECT_EQ(feed.framesShown(), static_cast<std::int64_t>(run.due.size()));
    }
}

}  // namespace
}  // namespace zetplay
