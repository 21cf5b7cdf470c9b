#pragma once

#include <string_view>

#include "media/image.h"

namespace zetplay {

/// Small pictures in rows of four, each over its label.
class ContactSheet {
public:
    /// Size of the pictures that will come; it gives the small ones their shape.
    ContactSheet(int width, int height);

    void add(const Image& image, std::string_view label);
    const Image& image() const { return _sheet; }

private:
    void write(std::string_view label, int left, int top);

    int _cellWidth;
    int _cellHeight;
    int _count = 0;
    Image _sheet;
};

}  // namespace zetplay
