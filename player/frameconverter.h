#pragma once

#include <optional>

#include "avhandles.h"
#include "source.h"

namespace zetplay {

/// Turns decoded frames of any format into pictures as the module takes them. Full-range BT.601 4:2:0 passes sample for
/// sample; everything else goes through libswscale once. An odd width or height loses its last column or row.
class FrameConverter {
public:
    /// `quarterTurns`: turns of 90 degrees clockwise that show the picture upright, 0 to 3.
    explicit FrameConverter(int quarterTurns) : _quarterTurns(quarterTurns) {}

    /// Writes size and planes of `picture` and nothing else of it. Throws `Failure` (without the name of the input) for
    /// a frame under 2x2 pixels or of a format that libswscale can't read.
    void convert(const AVFrame& frame, Picture& picture);

private:
    /// What a conversion depends on; a stream may change any of it between two frames.
    struct Form {
        int width = 0;
        int height = 0;
        AVPixelFormat format = AV_PIX_FMT_NONE;
        AVColorSpace matrix = AVCOL_SPC_UNSPECIFIED;
        bool fullRange = false;
        bool operator==(const Form&) const = default;
    };

    static Form formOf(const AVFrame& frame);
    static bool passes(const Form& form);
    void prepare(const Form& form);
    void write(const AVFrame& frame, int width, int height, Picture& picture) const;

    int _quarterTurns;
    std::optional<Form> _prepared;
    SwsHandle _scaler;
    FrameHandle _converted;
};

}  // namespace zetplay
