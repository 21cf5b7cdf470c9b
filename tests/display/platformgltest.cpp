// Where a display draws: into handles that name no window, beside a player that uses EGL too, into memory without a
// screen, on a server that dies.

#include <EGL/egl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <map>
#include <thread>

#include "support/displaytest.h"

extern "C" decltype(eglSwapBuffers) __real_eglSwapBuffers;  // as the linker names it, behind the tests' own

namespace zet::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Clock = std::chrono::steady_clock;

class PlatformGl : public DisplayTest {
protected:
    PlatformGl() {
        global.setErrorCallback([this](int code, const std::string&, const std::string&, int) {
            const std::lock_guard lock(mutex);
            errors.push_back(code);
        });
    }
    ~PlatformGl() override { stop(); }

    std::vector<int> takeErrors() {
        const std::lock_guard lock(mutex);
        return std::exchange(errors, {});
    }
    /// What a snapshot of the surface holds after two further draws; its size comes with it.
    std::vector<std::uint8_t> snapshot(SnapData& snap) {
        std::vector<std::uint8_t> pixels(4 * 640 * 480);
        snap.buffer = pixels.data();
        snap.bufferSize = static_cast<int>(pixels.size());
        bus.setConfig(DCFG_SNAP, &snap);
        pixels.resize(4u * static_cast<unsigned>(snap.width * snap.height));
        return pixels;
    }

    const Frame frame{64, 64, {110, 110, 190}};
    std::mutex mutex;
    std::vector<int> errors;
};

TEST_F(PlatformGl, refusesWindowsThatAreNone) {
    window.emplace(64, 64);
    Window destroyed(64, 64);
    destroyed.destroy();
    for (const std::uintptr_t handle :
         {std::uintptr_t{1}, std::uintptr_t{0x12345}, destroyed.handle(), ~std::uintptr_t{0}}) {
        // Before the display, as a replay, and while it lives.
        bus.setConfig(DCFG_WINDOW_INSTANCE, handle);
        start();
        EXPECT_THAT(takeErrors(), ElementsAre(DISPLAY_ERROR_WINDOW)) << handle;
        bus.setConfig(DCFG_YUV_FRAME, &frame.record);
        bus.setConfig(DCFG_RENDER_REQUEST, nullptr);
        rest();
        EXPECT_THAT(takeErrors(), IsEmpty()) << "told once";
        bus.setConfig(DCFG_WINDOW_INSTANCE, handle);
        EXPECT_THAT(takeErrors(), ElementsAre(DISPLAY_ERROR_WINDOW)) << handle;
        setWindow();
        EXPECT_TRUE(near(shown(frame).at(32, 32), toColor({110, 110, 190}), 1));
        EXPECT_THAT(takeErrors(), IsEmpty());
        display.reset();
    }
}

TEST_F(PlatformGl, leavesThePlayersEglAlone) {
    const EGLDisplay egl = eglGetDisplay(EGL_DEFAULT_DISPLAY);
    ASSERT_TRUE(eglInitialize(egl, nullptr, nullptr));
    const EGLint attributes[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_ES2_BIT, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint found = 0;
    ASSERT_TRUE(eglChooseConfig(egl, attributes, &config, 1, &found));
    const EGLint size[] = {EGL_WIDTH, 8, EGL_HEIGHT, 8, EGL_NONE};
    const EGLSurface surface = eglCreatePbufferSurface(egl, config, size);
    const EGLint version[] = {EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE};
    const EGLContext context = eglCreateContext(egl, config, EGL_NO_CONTEXT, version);
    const auto works = [&] {
        return eglMakeCurrent(egl, surface, surface, context) && eglGetCurrentContext() == context &&
               eglSwapBuffers(egl, surface) && eglMakeCurrent(egl, nullptr, nullptr, nullptr);
    };
    EXPECT_TRUE(works());
    for (int i = 0; i < 3; ++i) {
        start(64, 64);
        shown(frame);
        EXPECT_TRUE(works()) << i;
        display.reset();
        EXPECT_TRUE(works()) << i << " after its end";
    }
    eglTerminate(egl);
}

TEST_F(PlatformGl, drawsIntoMemoryWhatItDrawsIntoAWindow) {
    std::vector<std::vector<std::uint8_t>> pictures;
    const OffscreenSize size{200, 150};
    window.emplace(size.width, size.height);
    bus.setConfig(DCFG_OFFSCREEN_SIZE, &size);
    start();
    for (const bool inMemory : {true, false, true}) {
        if (inMemory) {
            bus.setConfig(DCFG_OFFSCREEN_SIZE, &size);
        } else {
            setWindow();
        }
        for (const int mode : {RENDER_MODE_FOUR_PANE, RENDER_MODE_BOWL, RENDER_MODE_FLAT}) {
            bus.setConfig(DCFG_RENDER_MODE, mode);
            bus.setConfig(DCFG_YUV_FRAME, &frame.record);
            SnapData snap;
            redraw();
            pictures.push_back(snapshot(snap));
            EXPECT_GT(snap.width, 0);
        }
    }
    for (std::size_t i = 3; i < pictures.size(); ++i) EXPECT_EQ(pictures[i], pictures[i % 3]) << i;
    EXPECT_THAT(takeErrors(), IsEmpty());

    // Sizes that can't be had change nothing; another size keeps view and picture; null ends it.
    for (const OffscreenSize wrong :
         {OffscreenSize{0, 0}, OffscreenSize{-1, 5}, OffscreenSize{1 << 20, 1 << 20}, OffscreenSize{1 << 20, 4}}) {
        bus.setConfig(DCFG_OFFSCREEN_SIZE, &wrong);
        EXPECT_THAT(takeErrors(), ElementsAre(DISPLAY_ERROR_SIZE)) << wrong.width;
        SnapData snap;
        EXPECT_EQ(snapshot(snap), pictures.back());
    }
    const OffscreenSize larger{300, 200};
    bus.setConfig(DCFG_OFFSCREEN_SIZE, &larger);
    redraw();
    SnapData snap;
    EXPECT_FALSE(snapshot(snap).empty());
    EXPECT_EQ(snap.width, 300);
    EXPECT_EQ(snap.height, 200);
    bus.setConfig(DCFG_WINDOW_INSTANCE, nullptr);
    SnapData none;
    EXPECT_TRUE(snapshot(none).empty());
}

TEST_F(PlatformGl, snapshotOfAWindowThatHasGrownIsWhole) {
    start(64, 64);
    shown(frame);
    drawOut();
    window->resize(200, 150);
    SnapData snap;
    const auto pixels = snapshot(snap);
    EXPECT_EQ(snap.width, 200);
    ASSERT_FALSE(pixels.empty());
    const Color middle{static_cast<double>(pixels[4 * (75 * 200 + 100)]),
                       static_cast<double>(pixels[4 * (75 * 200 + 100) + 1]),
                       static_cast<double>(pixels[4 * (75 * 200 + 100) + 2])};
    EXPECT_TRUE(near(middle, toColor({110, 110, 190}), 1));
}

/// An X server that can be killed.
class Server {
public:
    Server() {
        int ends[2];
        if (pipe(ends) != 0) std::abort();
        const std::string write = std::to_string(ends[1]);
        const char* const words[] = {"Xvfb",       "-displayfd", write.c_str(), "-screen", "0",
                                     "640x480x24", "-nolisten",  "tcp",         nullptr};
        posix_spawnp(&_process, "Xvfb", nullptr, nullptr, const_cast<char**>(words), environ);
        close(ends[1]);
        char digit = 0;
        while (read(ends[0], &digit, 1) == 1 && digit != '\n') name += digit;
        close(ends[0]);
    }
    ~Server() { kill(); }
    void kill() {
        if (_process == 0) return;
        ::kill(_process, SIGKILL);
        waitpid(_process, nullptr, 0);
        _process = 0;
    }

    std::string name = ":";

private:
    pid_t _process = 0;
};

TEST_F(PlatformGl, outlivesItsServer) {
    std::map<int, int> told;
    const char* const rounds = std::getenv("ZET_SERVER_DEATHS");
    for (int i = 0; i < (rounds ? std::atoi(rounds) : 6); ++i) {
        Server server;
        setenv("DISPLAY", server.name.c_str(), 1);
        xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
        const xcb_window_t native = xcb_generate_id(connection);
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, native,
                          xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root, 0, 0, 256, 240, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_map_window(connection, native);
        free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
        start();
        bus.setConfig(DCFG_WINDOW_INSTANCE, native);
        std::atomic<bool> enough = false;
        std::atomic<long> longest = 0;
        auto setter = std::async(std::launch::async, [&] {
            while (!enough) {
                const auto before = Clock::now();
                bus.setConfig(DCFG_YUV_FRAME, &frame.record);
                longest = std::max(longest.load(), static_cast<long>((Clock::now() - before) / 1ms));
            }
        });
        const int before = swapsEnded();
        waitForSwaps(3 + i % 3, before);
        // The server dies between two swaps; or after the module has checked it and before the driver swaps; or just
        // before, when the driver has noticed it, which leaves the driver in an endless loop.
        const SwapHook hook([&] {
            if (i % 3 == 0) return;
            server.kill();
            if (i % 3 == 2) __real_eglSwapBuffers(eglGetCurrentDisplay(), eglGetCurrentSurface(EGL_DRAW));
        });
        if (i % 3 == 0) server.kill();
        std::this_thread::sleep_for(std::chrono::milliseconds(100 * (i % 4)));
        enough = true;
        ASSERT_EQ(setter.wait_for(2s), std::future_status::ready) << "a setter is blocked";
        const auto release = Clock::now();
        display.reset();
        EXPECT_LT((Clock::now() - release) / 1ms, 2000);
        EXPECT_LT(longest, 1000) << "ms that a setter waited";
        for (const int code : takeErrors()) ++told[code];
        bus.setConfig(DCFG_WINDOW_INSTANCE, nullptr);
        xcb_disconnect(connection);
    }
    std::printf("the server was missed %d times, swaps were given up %d times\n", told[DISPLAY_ERROR_SERVER],
                told[DISPLAY_ERROR_STUCK]);
    for (const auto& [code, count] : told)
        EXPECT_TRUE(code == DISPLAY_ERROR_SERVER || code == DISPLAY_ERROR_STUCK) << code;
}

}  // namespace
}  // namespace zet::test
