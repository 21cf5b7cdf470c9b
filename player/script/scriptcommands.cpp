#include "script/scriptcommands.h"

#include <SDL_timer.h>

#include <algorithm>
#include <charconv>
#include <iostream>
#include <map>

#include "record/pngfile.h"
#include "script/scriptwords.h"
#include "session/options.h"

namespace zetplay {

namespace {

using Step = std::function<void(Session&)>;
using Parser = Step (*)(ScriptWords&);

// Time, frames and the window.

void runFrames(Session& session, int count) {
    for (int i = 0; i < count && !session.stopped(); ++i) {
        session.drainEvents();
        if (!session.feed.fetch())
            throw Failure("frame: the input ends after " + std::to_string(session.feed.framesShown()) + " frames");
        session.drawNext();
    }
}

Step frame(ScriptWords& words) {
    const int count = words.more() ? words.integer("a count of frames", 1) : 1;
    return [=](Session& session) { runFrames(session, count); };
}

Step settle(ScriptWords&) {
    return [](Session& session) { session.driver.settle(); };
}

Step wait(ScriptWords& words) {
    const int milliseconds = words.integer("a time in milliseconds", 0);
    return [=](Session& session) {
        const Uint64 end = SDL_GetTicks64() + static_cast<Uint64>(milliseconds);
        for (Uint64 now = SDL_GetTicks64(); now < end && !session.stopped(); now = SDL_GetTicks64()) {
            session.drainEvents();
            SDL_Delay(static_cast<Uint32>(std::min<Uint64>(end - now, 20)));
        }
    };
}

Step window(ScriptWords& words) {
    const std::string which = words.text("new, again or none");
    if (which == "new") return [](Session& session) { session.renewWindow(); };
    if (which == "again") return [](Session& session) { session.showWindow(); };
    if (which == "none") return [](Session& session) { session.driver.setWindow(0); };
    ScriptWords::refuse(which, "new, again or none");
}

Step resize(ScriptWords& words) {
    const int width = words.integer("a width in pixels", 1, 32767);
    const int height = words.integer("a height in pixels", 1, 32767);
    return [=](Session& session) { session.resize(width, height); };
}

Step renderMode(ScriptWords& words) {
    const int mode = words.integer("a mode number");
    return [=](Session& session) { session.setView(mode); };
}

// Gestures.

zet::TouchPoint point(ScriptWords& words) {
    const float x = words.real("an x in pixels");
    return {x, words.real("a y in pixels")};
}

Step touchDown(ScriptWords& words) {
    return [at = point(words)](Session& session) { session.driver.touchDown(at); };
}

Step touchUp(ScriptWords& words) {
    return [at = point(words)](Session& session) { session.driver.touchUp(at); };
}

Step doubleTap(ScriptWords& words) {
    return [at = point(words)](Session& session) { session.driver.doubleTap(at); };
}

Step drag(ScriptWords& words) {
    const zet::TouchPoint from = point(words);
    const zet::TouchPoint to = point(words);
    return [=](Session& session) { session.driver.drag({from.x, from.y, to.x, to.y}); };
}

Step pinch(ScriptWords& words) {
    return [factor = words.real("a factor")](Session& session) { session.driver.pinch(factor); };
}

Step fling(ScriptWords& words) {
    const float vx = words.real("a speed");
    const float vy = words.real("a speed");
    return [=](Session& session) { session.driver.fling({vx, vy}); };
}

// Settings of the dewarping views.

Step autoRotate(ScriptWords& words) {
    const bool enable = words.flag("0 or 1");
    const float speed = words.real("a speed");
    return [=](Session& session) { session.driver.setAutoRotate({enable, speed}); };
}

Step openingFlight(ScriptWords& words) {
    return [on = words.flag("0 or 1")](Session& session) { session.driver.setOpeningFlight(on); };
}

Step sceneBackdrop(ScriptWords& words) {
    const bool backdrop = words.flag("0 or 1");
    const bool stars = words.flag("0 or 1");
    return [=](Session& session) { session.driver.setSceneBackdrop(backdrop, stars); };
}

// Settings of the flat view.

Step rotation(ScriptWords& words) {
    const int degrees = words.integer("degrees", 0);
    return [=](Session& session) { session.driver.setRotation(static_cast<std::uint32_t>(degrees)); };
}

Step scale(ScriptWords& words) {
    return [factor = words.real("a factor")](Session& session) { session.driver.setScale(factor); };
}

Step maxScale(ScriptWords& words) {
    return [factor = words.real("a factor")](Session& session) { session.driver.setMaxScale(factor); };
}

Step clearColor(ScriptWords& words) {
    const std::string word = words.text("a colour in hexadecimal");
    std::string_view digits = word;
    if (digits.starts_with("0x")) digits.remove_prefix(2);
    std::uint32_t colour = 0;
    const auto [rest, error] = std::from_chars(digits.data(), digits.data() + digits.size(), colour, 16);
    if (error != std::errc{} || rest != digits.data() + digits.size())
        ScriptWords::refuse(word, "a colour in hexadecimal");
    return [=](Session& session) { session.driver.setClearColor(colour); };
}

Step faceOption(ScriptWords& words) {
    return [bits = words.integer("a sum of option bits")](Session& session) { session.driver.setFaceOption(bits); };
}

Step lensParam(ScriptWords& words) {
    zet::LensParam lens;
    for (double* number : {&lens.k1, &lens.k2, &lens.k3, &lens.p1, &lens.p2, &lens.fx, &lens.fy, &lens.ox, &lens.oy,
                           &lens.bottomMargin, &lens.leftMargin, &lens.topMargin, &lens.rightMargin})
        *number = words.realDouble("one of 13 numbers");
    return [=](Session& session) { session.driver.setLensParam(lens); };
}

Step overlayImage(ScriptWords& words) {
    zet::OverlayRect rect;
    for (float* number : {&rect.x, &rect.y, &rect.width, &rect.height}) *number = words.real("a share of the picture");
    const std::string path = words.text("the path of a BMP file");
    return [=](Session& session) { session.driver.setOverlayImage(rect, path); };
}

Step readScale(ScriptWords&) {
    return [](Session& session) {
        const auto scale = session.driver.readScale();
        std::cout << "scale " << (scale ? std::to_string(*scale) : "unanswered") << std::endl;
    };
}

// What the next frames carry.

Step lens(ScriptWords& words) {
    if (words.take("none")) return [](Session& session) { session.feed.setLens(std::nullopt); };
    LensRegion region;
    for (int& number : region) number = words.integer("a number in 1/10000 of the picture");
    return [=](Session& session) { session.feed.setLens(region); };
}

Step frameColor(ScriptWords& words) {
    const std::string word = words.text(frameColorForm);
    const auto color = parseFrameColor(word);
    if (!color) ScriptWords::refuse(word, frameColorForm);
    return [=](Session& session) { session.feed.setColor(color); };
}

Step faces(ScriptWords& words) {
    std::vector<zet::FaceItem> items;
    if (!words.take("none")) {
        do {
            const std::string word = words.text("X,Y,W,H,GENDER,AGE,NAME or none");
            const auto face = parseFace(word);
            if (!face) ScriptWords::refuse(word, "X,Y,W,H,GENDER,AGE,NAME with a name of at most 31 characters");
            items.push_back(*face);
        } while (words.more());
    }
    return [=](Session& session) { session.feed.setFaces(items); };
}

Step rects(ScriptWords& words) {
    std::vector<zet::RectItem> items;
    if (!words.take("none")) {
        do {
            const std::string word = words.text("X,Y,W,H or none");
            const auto rect = parseRect(word);
            if (!rect) ScriptWords::refuse(word, "X,Y,W,H");
            items.push_back(*rect);
        } while (words.more());
    }
    return [=](Session& session) { session.feed.setRects(items); };
}

// Pictures out.

Step grab(ScriptWords& words) {
    return [path = words.text("a file name")](Session& session) { writePng(path, session.window->grab()); };
}

void runSnap(Session& session, const std::string& path, bool raw, SnapRequest request) {
    const auto shot = session.driver.snap(request);
    if (!shot) {
        std::cout << "snap refused" << std::endl;
        return;
    }
    if (raw) {
        writeBytes(path, shot->rgba);
    } else {
        writePng(path, imageFromRgba(shot->rgba, shot->width, shot->height, shot->topRowFirst));
    }
    std::cout << "snap " << shot->width << ' ' << shot->height << std::endl;
}

template <typename Number>
std::optional<Number> numberBehind(const std::string& word, std::string_view name) {
    if (!word.starts_with(name)) return std::nullopt;
    return parseNumber<Number>(std::string_view(word).substr(name.size()));
}

Step snap(ScriptWords& words) {
    const std::string path = words.text("a file name");
    const bool raw = path.ends_with(".rgba");
    if (!raw && !path.ends_with(".png")) ScriptWords::refuse(path, "a file name that ends in .png or .rgba");
    SnapRequest request;
    std::optional<int> bytes;
    while (words.more()) {
        const std::string word = words.text("");
        if (word == "source") {
            request.sourceFrame = true;
        } else if (word == "post") {
            request.postProcess = true;
        } else if (const auto offset = numberBehind<int>(word, "offset=")) {
            request.timeOffset = *offset;
        } else if (const auto size = numberBehind<int>(word, "buffer="); size && *size >= 0) {
            bytes = size;
        } else {
            ScriptWords::refuse(word, "source, post, offset=MS or buffer=BYTES");
        }
    }
    return [=](Session& session) mutable {
        request.bufferSize = bytes.value_or(session.snapBytes());
        runSnap(session, path, raw, request);
    };
}

// What `GlobalConfiger` answers.

Step startTime(ScriptWords& words) {
    const std::int64_t time = words.longInteger("a time in milliseconds");
    return [=](Session& session) { session.driver.global().setStartTime4WaterMarker(time); };
}

Step font(ScriptWords& words) {
    return
        [path = words.text("the path of a font file")](Session& session) { session.driver.global().setFontPath(path); };
}

Step rectZoom(ScriptWords& words) {
    return [on = words.flag("0 or 1")](Session& session) { session.driver.global().setRectZoom(on); };
}

const std::map<std::string, Parser, std::less<>> commands = {
    {"auto-rotate", autoRotate},
    {"clear-color", clearColor},
    {"double-tap", doubleTap},
    {"drag", drag},
    {"face-option", faceOption},
    {"faces", faces},
    {"fling", fling},
    {"font", font},
    {"frame", frame},
    {"frame-color", frameColor},
    {"grab", grab},
    {"lens", lens},
    {"lens-param", lensParam},
    {"max-scale", maxScale},
    {"opening-flight", openingFlight},
    {"overlay-image", overlayImage},
    {"pinch", pinch},
    {"read-scale", readScale},
    {"rect-zoom", rectZoom},
    {"rects", rects},
    {"render-mode", renderMode},
    {"resize", resize},
    {"rotation", rotation},
    {"scale", scale},
    {"scene-backdrop", sceneBackdrop},
    {"settle", settle},
    {"snap", snap},
    {"start-time", startTime},
    {"touch-down", touchDown},
    {"touch-up", touchUp},
    {"wait", wait},
    {"window", window},
};

}  // namespace

std::optional<Step> parseScriptLine(const std::string& line) {
    auto words = splitLine(line);
    if (!words) throw WrongUsage("a quote is not closed");
    if (words->empty()) return std::nullopt;
    const std::string name = words->front();
    const auto command = commands.find(name);
    if (command == commands.end()) throw WrongUsage("'" + name + "' is no command");
    words->erase(words->begin());
    ScriptWords arguments(std::move(*words));
    try {
        Step step = command->second(arguments);
        arguments.end();
        return step;
    } catch (const WrongUsage& wrong) {
        throw WrongUsage(name + ": " + wrong.what());
    }
}

}  // namespace zetplay
