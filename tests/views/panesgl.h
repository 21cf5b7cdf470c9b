#pragma once

#include <GLES2/gl2.h>

#include <algorithm>
#include <atomic>
#include <functional>

#include "support/displaytest.h"
#include "views/lenspicture.h"

namespace zet::test {

/// A view, pixel by pixel against rays that the test casts itself through a scene of its own.
struct PanesGl : DisplayTest {
    static constexpr int stride = 3;  // of the pixels that are looked at

    struct Rect {
        int x, y, width, height;  // from the top left corner
    };
    /// The colour that a place must have; none where it isn't checked.
    using Wanted = std::optional<Color>;

    /// The colour of the scene at a picture radius and the dome's angle clockwise from the top.
    static Color colorAt(double radius, double azimuth) { return toColor(sceneColor(lensDirection(radius, azimuth))); }
    /// At a place of a dome with an even radius and the bottom of the lens circle at angle 0.
    static Wanted evenColor(const DomeAngles& place) { return colorAt(0.998 * (1 - place.b / 90), place.a + 180); }

    void startView(RenderMode mode, int width, int height) {
        bus.setConfig(DCFG_RENDER_MODE, mode);
        start(width, height);
    }
    void drag(float x1, float y1, float x2, float y2) {
        const DragPoints points{x1, y1, x2, y2};
        bus.setConfig(DCFG_DRAG, &points);
    }
    void touch(std::int64_t id, float x, float y) {
        const TouchPoint point{x, y};
        bus.setConfig(id, &point);
    }
    void pinch(float factor, int times) {
        for (int i = 0; i < times; ++i) bus.setConfig(DCFG_PINCH, factor);
    }

    /// Compares a pane with `wantedAt(x, y)`, pane units.
    void compare(const Picture& picture, const Rect& rect, const std::string& what,
                 const std::function<Wanted(double, double)>& wantedAt) {
        int looked = 0;
        for (int j = stride; j < rect.height - stride; j += stride) {
            for (int i = stride; i < rect.width - stride; i += stride) {
                const Wanted wanted = wantedAt((2 * i + 1.0) / rect.width - 1, 1 - (2 * j + 1.0) / rect.height);
                if (!wanted) continue;
                const Color& seen = picture.at(rect.x + i, rect.y + j);
                ++looked;
                ASSERT_TRUE(near(seen, *wanted, tolerance)) << what << " at " << i << ' ' << j << seen << *wanted;
            }
        }
        EXPECT_GT(looked, rect.width * rect.height / (stride * stride) / 2) << what;
    }
    /// The whole window.
    void compareAll(const std::string& what, const std::function<Wanted(double, double)>& wantedAt) {
        const Picture picture = shown();
        compare(picture, {0, 0, picture.width, picture.height}, what, wantedAt);
    }

    /// What a pane shows there of the dome that `camera` sees.
    static Wanted domeColor(const DomeCamera& camera, double x, double y,
                            const std::function<Wanted(const DomeAngles&)>& colorOf = evenColor) {
        const DomeAngles place = camera.at(x, y);
        if (std::fabs(place.b) < 1 || place.b > 86) return std::nullopt;  // the rim's edge; narrow cells at the pole
        return place.b > 0 ? colorOf(place) : Color{};
    }

    /// How often `gestures` makes the view ask for a redraw.
    int requestsOf(const std::function<void()>& gestures) {
        std::atomic<int> requests = 0;
        void* observer = bus.registObserver(
            DCFG_RENDER_REQUEST, [&](DisplayConfig&, DisplayConfigUserData&) { return ++requests, 0; }, nullptr,
            DCFG_FLAG_EVENT);
        gestures();
        bus.unRegistObserver(observer);
        return requests;
    }

    double tolerance = 4;  // of 255: 8-bit planes, half the chroma, cells of 2.7 degrees for a dome
    const Frame frame = lensFrame(512);
};

}  // namespace zet::test
