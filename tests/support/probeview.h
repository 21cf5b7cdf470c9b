#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "render/render.h"

namespace zet::test {

/// A view that draws nothing and notes its calls.
class ProbeView final : public ZETShow::Render {
public:
    using Draw = std::function<void(const ZETShow::Texture&)>;

    ProbeView(DisplayConfig* bus, float touchScale, ZETShow::Display* display) : Render(bus, touchScale, display) {}

    int init() override { return 0; }
    int createProgram() override { return 0; }
    int render(int surfaceWidth, int surfaceHeight, int frameWidth, int frameHeight,
               ZETShow::Texture& texture) override {
        sizes = {surfaceWidth, surfaceHeight, frameWidth, frameHeight};
        if (draw) draw(texture);
        return 0;
    }
    int onTouchUp(float x, float y) override { return note("up", {x, y}); }
    int onPinch(float factor) override { return note("pinch", {factor}); }
    int onDoubleTap(float x, float y) override { return note("double tap", {x, y}); }
    int onDrag(float x1, float y1, float x2, float y2) override { return note("drag", {x1, y1, x2, y2}); }
    void setAutoRotate(bool enable, float speed) override { note("rotate", {enable ? 1.0f : 0.0f, speed}); }
    void onFling(float x, float y) override { note("fling", {x, y}); }
    void setOpeningFlight(bool on) override { note("flight", {on ? 1.0f : 0.0f}); }
    void setSceneBackdrop(bool first, bool stars) override {
        note("scene", {first ? 1.0f : 0.0f, stars ? 1.0f : 0.0f});
    }

    Draw draw;
    std::vector<int> sizes;  // as of the last draw
    std::vector<std::string> names;
    std::vector<float> numbers;  // of the last call
    int result = 0;              // of the gestures

private:
    int note(const char* name, std::vector<float> values) {
        names.emplace_back(name);
        numbers = std::move(values);
        return result;
    }
};

/// The factory makes a probe with this draw for every mode but 0, until an empty one is given. Only in programs that
/// hold probefactory.cpp.
void useProbes(const ProbeView::Draw& draw);
/// No draw of a probe runs while the lock is held.
std::unique_lock<std::mutex> holdProbes();

}  // namespace zet::test
