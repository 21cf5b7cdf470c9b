// The module as a player uses it, by its public headers alone: this file is also built against other versions of it.

#include <EGL/egl.h>
#include <dlfcn.h>

#include <atomic>
#include <cstdio>

#include "worker/painter.h"
#include "worker/record.h"

namespace {

std::atomic<long> swaps = 0;

}  // namespace

// The module's calls arrive here, since the program comes before libraries.
extern "C" __attribute__((visibility("default"))) EGLBoolean eglSwapBuffers(EGLDisplay display, EGLSurface surface) {
    static const auto real = reinterpret_cast<decltype(&eglSwapBuffers)>(dlsym(RTLD_NEXT, "eglSwapBuffers"));
    const EGLBoolean done = real(display, surface);
    ++swaps;
    return done;
}

namespace bench {

namespace {

const char* const font = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

std::vector<zet::FaceItem> makeFaces(int count, Size frame) {
    std::vector<zet::FaceItem> faces;
    for (int i = 0; i < count; ++i) {
        zet::FaceItem face;
        face.gender = i % 2;
        face.age = 20u + static_cast<unsigned>(i);
        face.width = frame.width / 14;
        face.height = frame.height / 8;
        face.x = frame.width / 20 + i % 10 * frame.width / 11;
        face.y = frame.height / 20 + i / 10 * frame.height / 6;
        std::snprintf(face.name, sizeof face.name, "Somebody Longname %d", i);
        faces.push_back(face);
    }
    return faces;
}

// One display on a bus of its own.
struct Screen {
    zet::DisplayConfig config;
    std::shared_ptr<zet::DisplayConfigKit> display;
};

class ModulePainter final : public Painter {
public:
    ModulePainter(const Scene& scene, const std::vector<std::unique_ptr<XWindow>>& windows)
        : _faces(makeFaces(scene.faces, scene.frame)) {
        _global.setFontPath(font);
        for (const auto& window : windows) {
            _screens.push_back(std::make_unique<Screen>());
            open(*_screens.back(), scene.view, *window);
        }
    }

    void show(const Picture& picture) override {
        zet::YUV420PData frame = recordOf(picture);
        frame.lensRegion = lensRegion;
        frame.aiCount = static_cast<int>(_faces.size());
        frame.aiItems = _faces.data();
        frame.aiKind = &_facesKind;
        for (const auto& screen : _screens) screen->config.setConfig(zet::DCFG_YUV_FRAME, &frame);
    }

    long drawn() const override { return swaps; }

private:
    void open(Screen& screen, int view, const XWindow& window) {
        zet::DisplayConfig& config = screen.config;
        screen.display = zet::CreateZETDisplay(&config, &_global);
        config.setConfig(zet::DCFG_FACE_OPTION, zet::FACE_BOX | zet::FACE_GENDER | zet::FACE_AGE | zet::FACE_NAME);
        config.setConfig(zet::DCFG_WINDOW_INSTANCE, window.handle());
        config.setConfig(zet::DCFG_RENDER_MODE, view);
        // After the view is made, and the backdrop first: then the half sphere is at rest from its first draw on.
        const zet::SceneBackdrop nothing{0, 0};
        config.setConfig(zet::DCFG_SCENE_BACKDROP, &nothing);
        config.setConfig(zet::DCFG_OPENING_FLIGHT, 0);
    }

    const std::vector<zet::FaceItem> _faces;
    const int _facesKind = zet::AI_KIND_FACES;
    zet::GlobalConfiger _global;
    std::vector<std::unique_ptr<Screen>> _screens;
};

}  // namespace

std::unique_ptr<Painter> makePainter(const Scene& scene, const std::vector<std::unique_ptr<XWindow>>& windows) {
    return std::make_unique<ModulePainter>(scene, windows);
}

}  // namespace bench
