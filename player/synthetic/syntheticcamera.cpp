#include "synthetic/syntheticcamera.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "media/pictureplanes.h"
#include "synthetic/fisheyecanvas.h"
#include "synthetic/fisheyelens.h"
#include "synthetic/syntheticfigure.h"
#include "synthetic/syntheticroom.h"

namespace zetplay {

namespace {

class SyntheticCamera final : public Source {
public:
    SyntheticCamera(const SyntheticSize& size, Mount mount);

    bool next(Picture& picture) override;
    void rewind() override { _number = 0; }
    bool still() const override { return false; }
    double frameRate() const override { return _frameRate; }
    std::string name() const override { return _mount == Mount::ceiling ? "ceiling camera" : "wall camera"; }

private:
    void paintFigure(const Planes& picture, Figure figure) const;

    Mount _mount;
    double _frameRate;
    SyntheticRoom _room;
    FisheyeLens _lens;
    FisheyeCanvas _canvas;
    std::vector<ClockFace> _clocks;
    PlanePool _pool;
    Picture _background;  ///< all that doesn't move
    std::int64_t _number = 0;
};

SyntheticCamera::SyntheticCamera(const SyntheticSize& size, Mount mount)
    : _mount(mount),
      _frameRate(size.frameRate),
      _room(mount),
      _lens(size.width, size.height, _room.pose()),
      _canvas(_lens, _room) {
    const Planes background = _pool.shape(_background, size.width, size.height);
    _canvas.paintRoom(background);
    for (const Figure& figure : bystanders(mount)) paintFigure(background, figure);
    for (const Sign& clock : _room.clocks()) _clocks.emplace_back(_lens, _room, clock);
}

bool SyntheticCamera::next(Picture& picture) {
    const Planes planes = _pool.shape(picture, _background.width, _background.height);
    copyPlanes(_background, planes);
    picture.color = {zet::COLOR_MATRIX_BT601, true};
    picture.number = _number++;
    picture.seconds = static_cast<double>(picture.number) / _frameRate;
    const std::string text = clockText(picture.seconds);
    for (const ClockFace& clock : _clocks) clock.paint(planes, text);
    paintFigure(planes, walker(_mount, picture.seconds));
    return true;
}

void SyntheticCamera::paintFigure(const Planes& picture, Figure figure) const {
    _canvas.paintShadow(picture, figure.feet, 0.5f);
    // What is nearer to the camera hides what is farther.
    const Vec3 eye = _room.pose().eye;
    const auto distance = [=](const Capsule& part) { return length(mix(part.from, part.to, 0.5f) - eye); };
    std::sort(figure.parts.begin(), figure.parts.end(),
              [=](const Capsule& a, const Capsule& b) { return distance(a) > distance(b); });
    for (const Capsule& part : figure.parts) _canvas.paintCapsule(picture, part);
}

}  // namespace

std::string clockText(double seconds) {
    const auto hundredths = static_cast<long long>(std::floor(seconds * 100 + 1e-6));
    char text[32];
    std::snprintf(text, sizeof text, "%02lld:%02lld.%02lld", hundredths / 6000 % 100, hundredths / 100 % 60,
                  hundredths % 100);
    return text;
}

std::unique_ptr<Source> openSynthetic(const SyntheticSize& size, Mount mount) {
    constexpr int largest = 16384;
    if (size.width < 2 || size.height < 2 || size.width > largest || size.height > largest || size.width % 2 != 0 ||
        size.height % 2 != 0) {
        throw Failure("synthetic camera: " + std::to_string(size.width) + "x" + std::to_string(size.height) +
                      " is not a size of even sides from 2 to " + std::to_string(largest));
    }
    if (!(size.frameRate > 0 && std::isfinite(size.frameRate))) {
        throw Failure("synthetic camera: the rate must be above 0");
    }
    return std::make_unique<SyntheticCamera>(size, mount);
}

}  // namespace zetplay
