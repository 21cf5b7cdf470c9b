// A player in a Qt window: drag to look around, wheel to zoom, keys 0 to 9 for the views. In a program of widgets put
// the window into one with QWidget::createWindowContainer. qtplayer [--frames N] ends when its window is closed, or
// after N frames; then with 1 if it shows nothing.
#include <zet/zet.h>

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPlatformSurfaceEvent>
#include <QTimer>
#include <QWindow>

#include <cmath>
#include <cstdint>
#include <vector>

// What a decoder would deliver: planar 4:2:0, full range. Rings around the middle that move outward with `time`.
struct Picture {
    static constexpr int side = 480;
    std::vector<std::uint8_t> y = std::vector<std::uint8_t>(side * side), u, v;

    Picture() : u(side * side / 4, 90), v(side * side / 4, 150) {}
    void paint(double time) {
        for (int i = 0; i < side * side; ++i) {
            const double across = 2.0 * (i % side) / side - 1, down = 2.0 * (i / side) / side - 1;
            y[i] = static_cast<std::uint8_t>(150 + 80 * std::sin(25 * std::hypot(across, down) - time));
        }
    }
};

class View : public QWindow {
public:
    View() {
        _bus.setConfig(zet::DCFG_RENDER_MODE, zet::RENDER_MODE_HALF_SPHERE);
        resize(960, 600);
    }
    // Before the bus goes, and before Qt destroys the native window.
    ~View() override { _display.reset(); }

    void show(Picture& picture) {
        zet::YUV420PData frame;
        frame.y = picture.y.data(), frame.u = picture.u.data(), frame.v = picture.v.data();
        frame.yLineSize = frame.width = frame.height = Picture::side;
        frame.uvLineSize = Picture::side / 2;
        _bus.setConfig(zet::DCFG_YUV_FRAME, &frame);
    }
    // Whether the middle of the window has a colour.
    bool showsSomething() {
        const QSize pixels = size() * devicePixelRatio();
        std::vector<std::uint8_t> rgba(4u * pixels.width() * pixels.height());
        zet::SnapData snap;
        snap.buffer = rgba.data();
        snap.bufferSize = static_cast<int>(rgba.size());
        _bus.setConfig(zet::DCFG_SNAP, &snap);
        const std::uint8_t* const middle = &rgba[4u * (snap.height / 2 * snap.width + snap.width / 2)];
        return snap.width > 0 && middle[0] + middle[1] + middle[2] > 0;
    }

protected:
    // A native window comes with the first exposure. Qt may take it away and make another one, when the window changes
    // its screen or its parent: the module must let go of it first.
    bool event(QEvent* event) override {
        if (event->type() == QEvent::PlatformSurface &&
            static_cast<QPlatformSurfaceEvent*>(event)->surfaceEventType() ==
                QPlatformSurfaceEvent::SurfaceAboutToBeDestroyed) {
            _bus.setConfig(zet::DCFG_WINDOW_INSTANCE, nullptr);
            _hasWindow = false;
        }
        return QWindow::event(event);
    }
    void exposeEvent(QExposeEvent*) override {
        if (!isExposed()) return;
        if (!_hasWindow) _bus.setConfig(zet::DCFG_WINDOW_INSTANCE, winId());
        _hasWindow = true;
        _bus.setConfig(zet::DCFG_RENDER_REQUEST, nullptr);  // what was covered is drawn again
    }
    void resizeEvent(QResizeEvent*) override { _bus.setConfig(zet::DCFG_RENDER_REQUEST, nullptr); }

    // The module counts in pixels of the surface, Qt in units of its own.
    void mousePressEvent(QMouseEvent* event) override {
        _finger = pixels(event->localPos());
        _bus.setConfig(zet::DCFG_TOUCH_DOWN, &_finger);
    }
    void mouseMoveEvent(QMouseEvent* event) override {
        const zet::TouchPoint last = _finger;
        _finger = pixels(event->localPos());
        const zet::DragPoints drag{last.x, last.y, _finger.x, _finger.y};
        _bus.setConfig(zet::DCFG_DRAG, &drag);
    }
    void mouseReleaseEvent(QMouseEvent*) override { _bus.setConfig(zet::DCFG_TOUCH_UP, &_finger); }
    void wheelEvent(QWheelEvent* event) override {
        _bus.setConfig(zet::DCFG_PINCH, event->angleDelta().y() > 0 ? 1.1 : 0.9);
    }
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() >= Qt::Key_0 && event->key() <= Qt::Key_9) {
            _bus.setConfig(zet::DCFG_RENDER_MODE, event->key() - Qt::Key_0);
        }
    }

private:
    zet::TouchPoint pixels(const QPointF& point) const {
        const qreal ratio = devicePixelRatio();
        return {static_cast<float>(point.x() * ratio), static_cast<float>(point.y() * ratio)};
    }

    zet::GlobalConfiger _global;
    zet::DisplayConfig _bus;
    std::shared_ptr<zet::DisplayConfigKit> _display = zet::CreateZETDisplay(&_bus, &_global);
    zet::TouchPoint _finger;
    bool _hasWindow = false;
};

int main(int count, char** words) {
    QGuiApplication application(count, words);
    const QStringList arguments = application.arguments();
    const int frames = arguments.size() == 3 && arguments[1] == "--frames" ? arguments[2].toInt() : 0;
    Picture picture;
    View view;
    view.QWindow::show();
    int shown = 0;
    QTimer clock;
    QObject::connect(&clock, &QTimer::timeout, [&] {
        picture.paint(shown * 0.1);
        view.show(picture);
        if (++shown == frames) QGuiApplication::exit(view.showsSomething() ? 0 : 1);
    });
    clock.start(33);
    return application.exec();
}
