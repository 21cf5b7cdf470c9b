#pragma once

#include <optional>

#include "media/avhandles.h"
#include "media/pictureplanes.h"
#include "media/source.h"

namespace zetplay {

/// Turns decoded frames of any format into pictures as the module takes them. Planes of 8-bit 4:2:0 are handed on as
/// they are; lines with padding and turned pictures are copied. Everything else goes through libswscale once, which
/// changes the coding of colours only for RGB. An odd width or height loses its last column or row.
class FrameConverter {
public:
    /// `quarterTurns`: turns of 90 degrees clockwise that show the picture upright, 0 to 3.
    explicit FrameConverter(int quarterTurns) : _quarterTurns(quarterTurns) {}

    /// Takes what `frame` holds and leaves it empty. Writes only size, planes and colours of `picture`. Throws
    /// `Failure` (without the name of the input) for a frame under 2x2 pixels or a format that libswscale can't read.
    void convert(AVFrame& frame, Picture& picture);

private:
    /// What a conversion depends on; a stream may change any of it between two frames.
    struct Form {
        int width = 0;  ///< even
        int height = 0;
        AVPixelFormat format = AV_PIX_FMT_NONE;
        int matrix = 0;  ///< of YUV, before and after
        bool fullRange = false;
        bool operator==(const Form&) const = default;
    };

    bool handOn(AVFrame& frame, const Form& form, Picture& picture) const;
    void prepare(const Form& form);
    void write(const AVFrame& frame, const Form& form, Picture& picture);

    int _quarterTurns;
    std::optional<Form> _prepared;
    SwsHandle _scaler;
    FrameHandle _converted;
    PlanePool _pool;
};

}  // namespace zetplay
