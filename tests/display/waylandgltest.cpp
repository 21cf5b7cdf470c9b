// A window of Wayland, in a compositor of the test's own. It is never mapped: nobody shows it, and nobody asks for
// frames.

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <wayland-client.h>
#include <wayland-egl.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <future>

#include "support/displaytest.h"

namespace zet::test {
namespace {

using namespace std::chrono_literals;

/// A compositor without a screen.
class Compositor {
public:
    Compositor() {
        char folder[] = "/tmp/zet-wayland-XXXXXX";
        _folder = mkdtemp(folder);
        setenv("XDG_RUNTIME_DIR", folder, 1);
        const char* const words[] = {"weston",        "--backend=headless-backend.so",
                                     "--socket=zet",  "--no-config",
                                     "--idle-time=0", "--log=/dev/null",
                                     nullptr};
        posix_spawnp(&_process, "weston", nullptr, nullptr, const_cast<char**>(words), environ);
        for (int i = 0; i < 500 && !connection; ++i) {
            std::this_thread::sleep_for(10ms);
            connection = wl_display_connect("zet");
        }
    }
    ~Compositor() {
        if (_compositor) wl_compositor_destroy(_compositor);
        if (connection) wl_display_disconnect(connection);
        kill();
        std::filesystem::remove_all(_folder);
    }
    void kill() {
        if (_process > 0) ::kill(_process, SIGKILL);
        if (_process > 0) waitpid(_process, nullptr, 0);
        _process = 0;
    }
    wl_surface* makeSurface() {
        const wl_registry_listener listener = {
            [](void* user, wl_registry* registry, std::uint32_t name, const char* interface, std::uint32_t) {
                if (std::strcmp(interface, "wl_compositor") != 0) return;
                *static_cast<wl_compositor**>(user) =
                    static_cast<wl_compositor*>(wl_registry_bind(registry, name, &wl_compositor_interface, 1));
            },
            [](void*, wl_registry*, std::uint32_t) {}};
        wl_registry* const registry = wl_display_get_registry(connection);
        wl_registry_add_listener(registry, &listener, &_compositor);
        wl_display_roundtrip(connection);
        wl_registry_destroy(registry);
        return _compositor ? wl_compositor_create_surface(_compositor) : nullptr;
    }

    wl_display* connection = nullptr;

private:
    wl_compositor* _compositor = nullptr;
    std::string _folder;
    pid_t _process = 0;
};

class WaylandGl : public DisplayTest {
protected:
    ~WaylandGl() override { stop(); }

    std::vector<std::uint8_t> snapshot() {
        std::vector<std::uint8_t> pixels(4 * 200 * 150);
        SnapData snap;
        snap.buffer = pixels.data();
        snap.bufferSize = static_cast<int>(pixels.size());
        bus.setConfig(DCFG_SNAP, &snap);
        EXPECT_EQ(snap.width, 200);
        return pixels;
    }

    const Frame frame = smoothFrame(128, 128);
};

TEST_F(WaylandGl, drawsIntoAWindowThatNobodyShows) {
    Compositor compositor;
    ASSERT_TRUE(compositor.connection) << "weston does not start";
    wl_surface* const surface = compositor.makeSurface();
    ASSERT_TRUE(surface);
    wl_egl_window* const native = wl_egl_window_create(surface, 200, 150);
    std::vector<std::vector<std::uint8_t>> pictures;
    bus.setConfig(DCFG_RENDER_MODE, RENDER_MODE_PANORAMA);
    // In memory, in Wayland's window, and there again for a display that finds both on the bus.
    const OffscreenSize size{200, 150};
    bus.setConfig(DCFG_OFFSCREEN_SIZE, &size);
    start();
    for (const int round : {0, 1, 2}) {
        if (round == 1) {
            bus.setConfig(DCFG_NATIVE_DISPLAY, compositor.connection);
            bus.setConfig(DCFG_WINDOW_INSTANCE, native);
        }
        if (round == 2) {
            display.reset();
            start();
        }
        bus.setConfig(DCFG_YUV_FRAME, &frame.record);
        const auto before = std::chrono::steady_clock::now();
        drawOut();
        EXPECT_LT(std::chrono::steady_clock::now() - before, 5s) << "no draw waits for the compositor";
        pictures.push_back(snapshot());
    }
    EXPECT_EQ(pictures[0], pictures[1]);
    EXPECT_EQ(pictures[0], pictures[2]);

    // The compositor dies; then the module lets go of what was the player's.
    compositor.kill();
    auto ended = std::async(std::launch::async, [&] {
        bus.setConfig(DCFG_YUV_FRAME, &frame.record);
        bus.setConfig(DCFG_RENDER_REQUEST, nullptr);
        std::this_thread::sleep_for(100ms);
        bus.setConfig(DCFG_NATIVE_DISPLAY, nullptr);
    });
    ASSERT_EQ(ended.wait_for(5s), std::future_status::ready);
    wl_egl_window_destroy(native);
    wl_surface_destroy(surface);
    display.reset();
}

}  // namespace
}  // namespace zet::test
