#pragma once

#include <string_view>

#include "render/frame.h"

namespace zet::ZETShow {

// Where the box of a face and its lines of text lie, in units of the video quad: -1 to 1, y upward. No GL.

/// The box round a face: two fifths larger, spread evenly. It may reach outside the quad.
struct FaceBox {
    /// The frame's size is that which the view has fitted.
    FaceBox(const FaceInfo& face, int frameWidth, int frameHeight);

    float right() const { return left + width; }
    float bottom() const { return top + height; }

    float left;
    float top;
    float width;
    float height;  // negative: it reaches downward
};

/// The lines beside a box: name, gender, age, as far as `option` asks for them and the name isn't empty. Views into the
/// face, which must outlive it.
struct FaceLines {
    static constexpr float lineHeight = 0.1f;

    FaceLines(const FaceInfo& face, const FaceBox& box, int option);
    FaceLines(const FaceLines&) = delete;
    FaceLines& operator=(const FaceLines&) = delete;

    std::string_view text[3];
    int count = 0;
    // Lower left corner of the first line; each further one lies a line's height lower.
    float x;
    float y;

private:
    char _age[10];  // all digits that there can be
};

}  // namespace zet::ZETShow
