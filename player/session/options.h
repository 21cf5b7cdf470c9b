#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>

#include "bus/annotations.h"
#include "media/source.h"
#include "zet/rendermode.h"

namespace zetplay {

/// Wrong usage, on the command line or in a script, ends the run with status 2. The text is its line on standard error.
class WrongUsage : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Choices of the lens circle, beside a given `LensRegion`.

struct LensOfMetadata {};
struct NoLens {};
struct LensToFind {};  ///< in the first pictures

/// The command line.
struct Options {
    std::string input;  ///< empty for the synthetic camera
    int view = zet::RENDER_MODE_FLAT;
    int width = 1280;  ///< of the window, pixels
    int height = 720;
    std::variant<LensOfMetadata, NoLens, LensToFind, LensRegion> lens;
    std::optional<zet::FrameColor> frameColor;  ///< nothing for what the stream says
    std::string meta;
    Mount mount = Mount::ceiling;
    SyntheticSize synthetic;
    std::int64_t frames = 0;  ///< 0 for no limit
    std::string script;       ///< "-" for standard input
    std::string shot;
    std::string record;
    std::string gallery;
    std::string font;
    std::int64_t startTime = 0;  ///< milliseconds since 1970-01-01 UTC
    bool rectZoom = false;
    bool loop = false;
    bool headless = false;
    bool stats = false;
    bool verbose = false;
};

/// "MATRIX,RANGE", such as "709,limited"; "none" for the module's default. Empty result for any other text.
std::optional<zet::FrameColor> parseFrameColor(std::string_view text);
/// The form that it takes, for error messages.
constexpr const char* frameColorForm =
    "none or MATRIX,RANGE (matrix 601, 709, 2020, 240m, fcc, 470bg or its number; range limited or full)";

/// Throws `WrongUsage`; nothing if help or the version was asked for and has been printed.
std::optional<Options> parseOptions(int argc, const char* const* argv);

}  // namespace zetplay
