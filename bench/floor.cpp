// What a view costs beside the bare GL work in it. For each mode the module shows frames while its GL calls are
// written down; then a bare EGL/GLES context makes the same calls with nothing around them, in turn with the module.
// Printed: CPU time a shown frame of the module, of the floor, and their ratio, as medians over the rounds. `faces` is
// mode 0 with ten faces, each with its box and three lines of text. `bowl` and `scene` are mode 1 at rest with nothing
// new to upload, without and with its halo and stars.
//
// usage: floor [MODE|faces|bowl|scene...]   (default: 0)

#include <EGL/egl.h>
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "glcalls.h"
#include "xwindow.h"
#include "zet/zet.h"

namespace {

using namespace std::chrono_literals;

constexpr int windowWidth = 1280;
constexpr int windowHeight = 720;
constexpr int framesPerRound = 60;
constexpr int rounds = 9;
const char* const font = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
constexpr auto framePeriod = 20ms;  // longer than the module's pace: every frame is shown

double cpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) + 1e-6 * static_cast<double>(t.tv_usec);
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
    return values[values.size() / 2];
}

struct Frame {
    Frame(int width, int height) : y(static_cast<std::size_t>(width * height)), u(y.size() / 4), v(y.size() / 4) {
        for (std::size_t i = 0; i < y.size(); ++i) y[i] = static_cast<std::uint8_t>(i * 7 + i / 640);
        for (std::size_t i = 0; i < u.size(); ++i) u[i] = static_cast<std::uint8_t>(i * 3);
        for (std::size_t i = 0; i < v.size(); ++i) v[i] = static_cast<std::uint8_t>(i * 5);
        record.y = y.data();
        record.u = u.data();
        record.v = v.data();
        record.yLineSize = record.width = width;
        record.uvLineSize = width / 2;
        record.height = height;
        record.lensRegion = region;
    }

    void addFaces() {
        for (int i = 0; i < 10; ++i) {
            zet::FaceItem face{0,   i % 2, 30u + static_cast<unsigned>(i), 40 + 360 * (i % 5), 200 + 420 * (i / 5),
                               150, 180};
            std::snprintf(face.name, sizeof face.name, "Somebody Longname %d", i);
            faces.push_back(face);
        }
        record.aiCount = static_cast<int>(faces.size());
        record.aiItems = faces.data();
        record.aiKind = &facesKind;
    }

    static constexpr int facesKind = zet::AI_KIND_FACES;
    std::vector<zet::FaceItem> faces;
    static constexpr int region[4] = {5000, 5000, 4900, 4900};
    std::vector<std::uint8_t> y, u, v;
    zet::YUV420PData record;
};

// The floor: a context of its own that repeats the module's calls.
class Floor {
public:
    explicit Floor(std::uintptr_t window) {
        const EGLint config[] = {EGL_RED_SIZE,   8, EGL_GREEN_SIZE, 8, EGL_BLUE_SIZE,       8,
                                 EGL_ALPHA_SIZE, 8, EGL_DEPTH_SIZE, 8, EGL_RENDERABLE_TYPE, EGL_OPENGL_ES2_BIT,
                                 EGL_NONE};
        const EGLint context[] = {EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE};
        EGLint found = 0;
        EGLConfig chosen = nullptr;
        _display = eglGetDisplay(EGL_DEFAULT_DISPLAY);
        eglInitialize(_display, nullptr, nullptr);
        eglChooseConfig(_display, config, &chosen, 1, &found);
        _context = eglCreateContext(_display, chosen, EGL_NO_CONTEXT, context);
        _surface = eglCreateWindowSurface(_display, chosen, static_cast<EGLNativeWindowType>(window), nullptr);
        eglMakeCurrent(_display, _surface, _surface, _context);
    }
    ~Floor() {
        eglMakeCurrent(_display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        eglDestroySurface(_display, _surface);
        eglDestroyContext(_display, _context);
    }

    void replay(std::size_t from, std::size_t to) {
        const auto& calls = bench::GlCalls::recorded().calls;
        for (std::size_t i = from; i < to; ++i) calls[i]();
    }
    void swap() { eglSwapBuffers(_display, _surface); }

private:
    EGLDisplay _display;
    EGLContext _context;
    EGLSurface _surface;
};

// Frames, or requests to draw the last one again where there is none, set until `count` more draws have been shown; the
// last one is on the screen when it returns.
void show(zet::DisplayConfig& config, const Frame* frame, std::size_t count) {
    const std::size_t end = bench::shownFrames() + count;
    while (bench::shownFrames() < end) {
        if (frame) {
            config.setConfig(zet::DCFG_YUV_FRAME, &frame->record);
        } else {
            config.setConfig(zet::DCFG_RENDER_REQUEST, nullptr);
        }
        std::this_thread::sleep_for(framePeriod);
    }
}

void measure(const char* what) {
    const std::string_view name = what;
    const bool withFaces = name == "faces";
    const bool withScene = name == "scene";
    const bool still = withScene || name == "bowl";
    const int mode = withFaces ? 0 : still ? 1 : std::atoi(what);
    Frame frame(1920, mode == 0 ? 1080 : 1920);
    if (withFaces) frame.addFaces();
    const bench::XWindow moduleWindow(windowWidth, windowHeight);
    const bench::XWindow floorWindow(windowWidth, windowHeight);
    zet::DisplayConfig config;
    zet::GlobalConfiger global;
    auto& recorded = bench::GlCalls::recorded();
    recorded = {};
    global.setFontPath(font);
    config.setConfig(zet::DCFG_FACE_OPTION, zet::FACE_BOX | zet::FACE_GENDER | zet::FACE_AGE | zet::FACE_NAME);

    bench::startRecording();
    auto display = zet::CreateZETDisplay(&config, &global);
    config.setConfig(zet::DCFG_RENDER_MODE, mode);
    // What asks for draws of its own would show frames that were never uploaded.
    const zet::SceneBackdrop scene{withScene, withScene};
    config.setConfig(zet::DCFG_SCENE_BACKDROP, &scene);
    config.setConfig(zet::DCFG_OPENING_FLIGHT, 0);
    config.setConfig(zet::DCFG_WINDOW_INSTANCE, moduleWindow.handle());
    show(config, &frame, 10);
    std::this_thread::sleep_for(1500ms);  // no redraw is owed any more
    recorded.frameEnds.clear();
    const Frame* const next = still ? nullptr : &frame;
    show(config, next, 2);
    std::this_thread::sleep_for(100ms);
    bench::stopRecording();
    const std::size_t last = recorded.frameEnds.size() - 1;
    const std::size_t begin = recorded.frameEnds[last - 1];
    const std::size_t end = recorded.frameEnds[last];

    std::vector<double> module;
    std::vector<double> bare;
    std::vector<double> ratios;
    Floor floor(floorWindow.handle());
    floor.replay(0, end);
    floor.swap();
    for (int round = 0; round < rounds; ++round) {
        const std::size_t shownBefore = bench::shownFrames();
        const double start = cpuSeconds();
        show(config, next, framesPerRound);
        const double between = cpuSeconds();
        const auto shown = static_cast<double>(bench::shownFrames() - shownBefore);
        const std::lock_guard lock(bench::swapping());
        for (int i = 0; i < framesPerRound; ++i) {
            floor.replay(begin, end);
            floor.swap();
            std::this_thread::sleep_for(framePeriod);
        }
        const double stop = cpuSeconds();
        module.push_back((between - start) / shown);
        bare.push_back((stop - between) / framesPerRound);
        ratios.push_back(module.back() / bare.back());
    }
    std::printf("%5s   module %.3f ms   floor %.3f ms   ratio %.3f   (%zu GL calls a frame)\n", what,
                1e3 * median(module), 1e3 * median(bare), median(ratios), end - begin);
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) measure("0");
    for (int i = 1; i < argc; ++i) measure(argv[i]);
}
