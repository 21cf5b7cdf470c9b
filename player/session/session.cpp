#include "session/session.h"

#include <SDL.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iostream>
#include <system_error>
#include <utility>

#include "media/lensfinder.h"
#include "session/views.h"
#include "window/interrupt.h"
#include "window/memorywindow.h"

namespace zetplay {

namespace {

std::unique_ptr<Source> openSource(const Options& options) {
    return options.input.empty() ? openSynthetic(options.synthetic, options.mount) : openMedia(options.input);
}

/// Finds the lens circle in the first pictures of the source and rewinds it. Prints the circle in the form that
/// `--lens` takes, for a person to keep. Throws `Failure` if there is none.
LensRegion findLens(Source& source, const std::string& input) {
    constexpr int pictures = 10;
    LensFinder finder;
    Picture picture;
    try {
        for (int i = 0; i < pictures && source.next(picture); ++i) finder.add(picture);
    } catch (const Failure&) {
        // Playing reports damage when it comes to it.
    }
    const auto circle = finder.find();
    if (!circle) throw Failure((input.empty() ? source.name() : input) + ": no lens circle found");
    const auto share = [](double part, int whole) { return static_cast<int>(std::lround(10000 * part / whole)); };
    const LensRegion region = {share(circle->x, picture.width), share(circle->y, picture.height),
                               share(circle->radius, picture.width), share(circle->radius, picture.height)};
    std::cerr << "lens " << region[0] << ',' << region[1] << ',' << region[2] << ',' << region[3] << std::endl;
    source.rewind();
    return region;
}

/// A font that systems usually have; empty if none is found.
std::string systemFont() {
    for (const char* path : {
             "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
             "/usr/share/fonts/dejavu-sans-fonts/DejaVuSans.ttf",
             "/usr/share/fonts/TTF/DejaVuSans.ttf",
             "/usr/share/fonts/truetype/liberation/LiberationSans-Regular.ttf",
             "/usr/share/fonts/liberation-sans/LiberationSans-Regular.ttf",
             "/usr/share/fonts/truetype/noto/NotoSans-Regular.ttf",
             "/usr/share/fonts/noto/NotoSans-Regular.ttf",
             "/usr/share/fonts/truetype/freefont/FreeSans.ttf",
         })
        if (std::filesystem::exists(path)) return path;
    return {};
}

/// `given`, or a system's font. None is no reason to stop.
std::string fontFile(const std::string& given) {
    std::string path = given.empty() ? systemFont() : given;
    std::error_code unknown;
    if (!std::filesystem::is_regular_file(path, unknown)) {
        const std::string what = path.empty() ? "no font found, see --font" : path + ": no such font";
        std::cerr << "zetplay: " + what + ": labels and timestamps are left out\n";
    }
    return path;
}

}  // namespace

Session::Session(const Options& given)
    : options(given),
      source(openSource(given)),
      _video(given.headless ? std::nullopt : std::optional<VideoSystem>(std::in_place)),
      window(makeWindow(given.width, given.height)),
      driver(given.headless ? std::optional<zet::OffscreenSize>({given.width, given.height}) : std::nullopt),
      feed(*source, driver),
      _view(given.view) {
    source->giveUpWhen([this] { return closing(); });
    feed.loop = options.loop;
    feed.setColor(options.frameColor);
    if (!options.meta.empty()) feed.setMetadata(Metadata(options.meta));
    if (const auto* region = std::get_if<LensRegion>(&options.lens)) feed.setLens(*region);
    if (std::holds_alternative<NoLens>(options.lens)) feed.setLens(std::nullopt);
    if (std::holds_alternative<LensToFind>(options.lens)) feed.setLens(findLens(*source, options.input));
    driver.global().setFontPath(fontFile(options.font));
    driver.global().setStartTime4WaterMarker(options.startTime);
    driver.global().setRectZoom(options.rectZoom);
    retitle();
    driver.setView(_view);
    if (options.headless && savesPictures()) driver.onDrawn([this] { window->take(); });
    showWindow();
    if (!options.record.empty()) startRecording();
}

Session::~Session() {
    driver.onDrawn({});
    if (_video) _video->onServerLost({});
}

void Session::startRecording() {
    recording = std::make_unique<VideoWriter>(options.record, window->width(), window->height(), source->frameRate());
    if (!_video) return;
    _video->onServerLost([this] {
        try {
            recording->finish();
        } catch (const Failure& failure) {
            std::cerr << std::string("zetplay: ") + failure.what() + '\n';
        }
    });
}

void Session::drawNext() {
    feed.show();
    driver.waitDrawn();
    if (recording) recording->add(window->read(), feed.due());
}

void Session::setView(int view) {
    _view = view;
    driver.setView(view);
    retitle();
}

void Session::renewWindow() {
    // The module must leave the old window before it is destroyed.
    // One in memory stays: the module's thread takes its pictures there, and there is nothing else to renew.
    std::unique_ptr<Window> last;
    if (!options.headless) last = std::exchange(window, makeWindow(window->width(), window->height()));
    showWindow();
    retitle();
}

void Session::showWindow() {
    if (!options.headless) {
        driver.setWindow(window->handle());
    } else {
        driver.setWindow(0);
        driver.setOffscreenSize({window->width(), window->height()});
    }
}

void Session::resize(int width, int height) {
    window->resize(width, height);
    if (options.headless) driver.setOffscreenSize({width, height});
}

std::unique_ptr<Window> Session::makeWindow(int width, int height) const {
    if (options.headless) return std::make_unique<MemoryWindow>(width, height);
    return std::make_unique<ScreenWindow>(width, height);
}

/// Whether a picture of the window may be asked for.
bool Session::savesPictures() const {
    return !(options.record.empty() && options.shot.empty() && options.gallery.empty() && options.script.empty());
}

std::optional<Snapshot> Session::snap(bool sourceFrame) {
    SnapRequest request;
    request.sourceFrame = sourceFrame;
    request.postProcess = true;
    request.bufferSize = snapBytes();
    return driver.snap(request);
}

int Session::snapBytes() const {
    return std::max(4 * window->width() * window->height(), driver.frameBytes());
}

bool Session::closing() const {
    return _quit || interrupted() != 0;
}

bool Session::stopped() const {
    return closing() || (options.frames > 0 && feed.framesShown() >= options.frames);
}

void Session::drainEvents() {
    SDL_Event event;
    while (SDL_PollEvent(&event))
        if (event.type == SDL_QUIT) quit();
}

void Session::retitle() {
    const std::string_view name = viewName(_view);
    window->setTitle((name.empty() ? "view " + std::to_string(_view) : std::string(name)) + " - " + source->name());
}

}  // namespace zetplay
