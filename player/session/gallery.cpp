#include "session/gallery.h"

#include <algorithm>
#include <filesystem>

#include "record/pngfile.h"
#include "session/contactsheet.h"
#include "session/progress.h"
#include "zet/rendermode.h"

namespace zetplay {

namespace {

// Views need a draw or two to settle their cameras.
constexpr int drawsForView = 3;

// "04-map"
std::string titleOf(const zet::RenderModeInfo& view) {
    std::string number = std::to_string(view.mode);
    number.insert(0, 2 - number.size(), '0');
    return number + "-" + std::string(view.name);
}

void fetchPicture(Session& session) {
    for (std::int64_t skip = session.options.frames - 1; skip > 0 && session.feed.fetch(); --skip) session.feed.drop();
    if (!session.feed.fetch()) throw Failure("the input ends before the picture for the gallery");
    session.drawNext();
}

Image showView(Session& session, const zet::RenderModeInfo& view) {
    session.setView(view.mode);
    for (int i = 0; i < drawsForView; ++i) {
        session.feed.showAgain();
        session.driver.waitDrawn();
    }
    // Without a view a snapshot is refused; the window would still show the last view.
    if (!session.snap(false)) throw Failure("the module has no view " + std::string(view.name));
    return session.window->grab();
}

}  // namespace

void makeGallery(Session& session) {
    const std::filesystem::path directory = session.options.gallery;
    std::error_code error;
    std::filesystem::create_directories(directory, error);
    if (error) throw Failure(directory.string() + ": " + error.message());

    session.driver.setOpeningFlight(false);
    fetchPicture(session);
    ContactSheet sheet(session.window->width(), session.window->height());
    Progress progress("gallery", static_cast<int>(zet::renderModes.size()) + 1);
    for (const zet::RenderModeInfo& view : zet::renderModes) {
        if (session.closing()) return;
        session.drainEvents();
        const Image image = showView(session, view);
        writePng(directory / (titleOf(view) + ".png"), image);
        sheet.add(image, titleOf(view));
        progress.step();
    }
    if (session.closing()) return;
    writePng(directory / "contact-sheet.png", sheet.image());
    progress.step();
}

}  // namespace zetplay
