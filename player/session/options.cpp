#include "session/options.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <utility>

#include "session/views.h"
#include "text/words.h"

namespace zetplay {

namespace {

// Larger windows are refused by X servers.
constexpr int largestSide = 32767;
constexpr int largestSynthetic = 16384;

const std::pair<const char*, std::int32_t> matrices[] = {
    {"601", zet::COLOR_MATRIX_BT601},      {"709", zet::COLOR_MATRIX_BT709}, {"2020", zet::COLOR_MATRIX_BT2020},
    {"240m", zet::COLOR_MATRIX_SMPTE240M}, {"fcc", zet::COLOR_MATRIX_FCC},   {"470bg", zet::COLOR_MATRIX_BT470BG},
};

struct Size {
    int width;
    int height;
};

std::optional<Size> parseSize(std::string_view text) {
    const std::size_t cross = text.find('x');
    if (cross == text.npos) return std::nullopt;
    const auto width = parseNumber<int>(text.substr(0, cross));
    const auto height = parseNumber<int>(text.substr(cross + 1));
    if (!width || !height || *width < 1 || *height < 1 || *width > largestSide || *height > largestSide)
        return std::nullopt;
    return Size{*width, *height};
}

[[noreturn]] void refuse(const std::string& option, const std::string& text, const std::string& wanted) {
    throw WrongUsage(option + ": '" + text + "' is not " + wanted);
}

void setView(Options& options, const std::string& text) {
    const auto view = viewFromText(text);
    if (!view) refuse("--view", text, "a view: " + viewNumbers() + ", or a name such as half-sphere");
    options.view = *view;
}

void setSize(Options& options, const std::string& text) {
    const auto size = parseSize(text);
    if (!size) refuse("--size", text, "a window size such as 1280x720");
    options.width = size->width;
    options.height = size->height;
}

void setLens(Options& options, const std::string& text) {
    if (text == "auto") {
        options.lens = LensToFind{};
    } else if (text == "none") {
        options.lens = NoLens{};
    } else if (const auto region = parseLens(text)) {
        options.lens = *region;
    } else {
        refuse("--lens", text, "CX,CY,RX,RY in 1/10000 of the picture, auto or none");
    }
}

void setFrameColor(Options& options, const std::string& text) {
    if (text == "auto") return;
    options.frameColor = parseFrameColor(text);
    if (!options.frameColor) refuse("--frame-color", text, std::string("auto, ") + frameColorForm);
}

void setSynthetic(Options& options, const std::string& text) {
    const std::size_t at = text.find('@');
    const auto size = parseSize(std::string_view(text).substr(0, at));
    const auto rate = at == text.npos ? std::optional(30.0) : parseNumber<double>(text.substr(at + 1));
    if (!size || !rate || !(*rate > 0) || !(*rate <= 1000) || size->width % 2 != 0 || size->height % 2 != 0 ||
        size->width > largestSynthetic || size->height > largestSynthetic)
        refuse("--synthetic", text, "a size of even sides up to 16384 and a rate, such as 1920x1920@30");
    options.synthetic = {size->width, size->height, *rate};
}

void setFrames(Options& options, const std::string& text) {
    const auto frames = parseNumber<std::int64_t>(text);
    if (!frames || *frames < 1) refuse("--frames", text, "a count of frames");
    options.frames = *frames;
}

/// Options that are parsed after CLI11 has accepted the command line.
struct Texts {
    std::string view;
    std::string size;
    std::string lens;
    std::string frameColor;
    std::string mount;
    std::string synthetic;
    std::string frames;
};

void describe(CLI::App& app, Options& options, Texts& texts) {
    app.add_option("INPUT", options.input, "Video, still picture or .y4m file; none for the synthetic camera")
        ->option_text(" ");
    app.add_option("--view", texts.view, viewNumbers() + ", or " + viewNames())->option_text("VIEW");
    app.add_option("--size", texts.size, "Window size in pixels [1280x720]")->option_text("WxH");
    app.add_option("--lens", texts.lens, "Lens circle in 1/10000 of the picture; auto finds and prints it")
        ->option_text("CX,CY,RX,RY|auto|none");
    app.add_option("--frame-color", texts.frameColor,
                   "How colours are coded, such as 709,limited [auto: as the input says]")
        ->option_text("MATRIX,RANGE|auto|none");
    app.add_option("--meta", options.meta, "Faces, rectangles and lens region of each frame")->option_text("FILE.json");
    app.add_option("--mount", texts.mount, "Mounting of the synthetic camera [ceiling]")
        ->option_text("ceiling|wall")
        ->check(CLI::IsMember({"ceiling", "wall"}));
    app.add_option("--synthetic", texts.synthetic, "Size and rate of the synthetic camera [1920x1920@30]")
        ->option_text("WxH@FPS");
    app.add_option("--frames", texts.frames, "Stop after this many frames")->option_text("N");
    app.add_flag("--loop", options.loop, "Start over at the end");
    auto* script =
        app.add_option("--script", options.script, "Run a script, - for standard input")->option_text("FILE");
    app.add_option("--shot", options.shot, "Save the whole window when the run ends")->option_text("FILE.png");
    auto* record = app.add_option("--record", options.record, "Record the whole window, each frame of the input once")
                       ->option_text("FILE.mp4");
    app.add_option("--gallery", options.gallery, "All views as PNG files, and one sheet of them")
        ->option_text("DIR")
        ->excludes(record)
        ->excludes(script);
    app.add_flag("--headless", options.headless, "Never show a window on a screen");
    app.add_option("--font", options.font, "Font file for labels and timestamps")->option_text("FILE");
    app.add_option("--start-time", options.startTime, "Base of the timestamps, milliseconds since 1970 UTC")
        ->option_text("MS");
    app.add_flag("--rect-zoom", options.rectZoom, "Flat view: zoom to the first rectangle of a frame");
    app.add_flag("--stats", options.stats, "At the end, one line of JSON with counts, times and memory");
    app.add_flag("--verbose", options.verbose, "All of the module's log and FFmpeg's on standard error");
    app.set_version_flag("--version", "zetplay " ZETPLAY_VERSION);
}

/// One option at a time, so that the message names the wrong one.
void apply(const CLI::App& app, const Texts& texts, Options& options) {
    options.view = options.input.empty() ? zet::RENDER_MODE_HALF_SPHERE : zet::RENDER_MODE_FLAT;
    if (app.count("--view") > 0) setView(options, texts.view);
    if (app.count("--size") > 0) setSize(options, texts.size);
    if (app.count("--lens") > 0) setLens(options, texts.lens);
    if (app.count("--frame-color") > 0) setFrameColor(options, texts.frameColor);
    if (app.count("--synthetic") > 0) setSynthetic(options, texts.synthetic);
    if (app.count("--frames") > 0) setFrames(options, texts.frames);
    if (texts.mount == "wall") options.mount = Mount::wall;
    // Otherwise an empty variable in a shell script would look like an option that is not given.
    for (const char* file : {"INPUT", "--meta", "--script", "--shot", "--record", "--gallery", "--font"})
        if (app.count(file) > 0 && app[file]->as<std::string>().empty())
            throw WrongUsage(std::string(file) + " is empty");
    for (const char* option : {"--mount", "--synthetic"})
        if (!options.input.empty() && app.count(option) > 0)
            throw WrongUsage(std::string(option) + ": only without INPUT, for the synthetic camera");
}

}  // namespace

std::optional<zet::FrameColor> parseFrameColor(std::string_view text) {
    if (text == "none") return zet::FrameColor{};
    const auto words = splitAtCommas(text);
    if (words.size() != 2 || (words[1] != "limited" && words[1] != "full")) return std::nullopt;
    for (const auto& [name, matrix] : matrices)
        if (words[0] == name || words[0] == std::to_string(matrix)) return zet::FrameColor{matrix, words[1] == "full"};
    return std::nullopt;
}

std::optional<Options> parseOptions(int argc, const char* const* argv) {
    CLI::App app(
        "Plays video of fisheye cameras in the views of the display module.\n"
        "Press h in the window for the keys.",
        "zetplay");
    Options options;
    Texts texts;
    describe(app, options, texts);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& help) {
        app.exit(help);
        return std::nullopt;
    } catch (const CLI::ParseError& error) {
        throw WrongUsage(error.what());
    }
    apply(app, texts, options);
    return options;
}

}  // namespace zetplay
