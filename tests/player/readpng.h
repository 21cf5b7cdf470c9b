#pragma once

#include <png.h>

#include <stdexcept>
#include <string>

#include "image.h"

namespace zetplay::test {

inline Image readPng(const std::string& path) {
    png_image format{};
    format.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&format, path.c_str())) throw std::runtime_error(path + ": " + format.message);
    format.format = PNG_FORMAT_RGB;
    Image image(static_cast<int>(format.width), static_cast<int>(format.height));
    if (!png_image_finish_read(&format, nullptr, image.rgb.data(), 0, nullptr))
        throw std::runtime_error(format.message);
    return image;
}

}  // namespace zetplay::test
