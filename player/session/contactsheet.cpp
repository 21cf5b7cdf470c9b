#include "session/contactsheet.h"

#include <algorithm>
#include <cctype>
#include <string>

#include "media/avhandles.h"
#include "media/source.h"
#include "synthetic/strokefont.h"

namespace zetplay {

namespace {

constexpr int columns = 4;
constexpr int rows = 3;
constexpr int border = 12;       // pixels round each picture
constexpr int labelHeight = 30;  // pixels under each picture
constexpr float letterHeight = 12;
constexpr float inset = 2;      // strokes are wider than the line that a letter is measured by
constexpr int mostWidth = 400;  // of a small picture
constexpr int mostHeight = 300;
constexpr std::uint8_t paper = 24;
constexpr std::uint8_t ink = 230;

}  // namespace

ContactSheet::ContactSheet(int width, int height) {
    const double scale = std::min({1.0 * mostWidth / width, 1.0 * mostHeight / height, 1.0});
    _cellWidth = std::max(1, static_cast<int>(scale * width));
    _cellHeight = std::max(1, static_cast<int>(scale * height));
    _sheet = Image(border + columns * (_cellWidth + border), border + rows * (_cellHeight + labelHeight + border));
    std::fill(_sheet.rgb.begin(), _sheet.rgb.end(), paper);
}

void ContactSheet::add(const Image& image, std::string_view label) {
    if (_count == rows * columns) return;
    const int left = border + _count % columns * (_cellWidth + border);
    const int top = border + _count / columns * (_cellHeight + labelHeight + border);
    ++_count;
    const SwsHandle scaler(sws_getContext(image.width, image.height, AV_PIX_FMT_RGB24, _cellWidth, _cellHeight,
                                          AV_PIX_FMT_RGB24, SWS_AREA, nullptr, nullptr, nullptr));
    if (!scaler) throw Failure("a picture cannot be scaled for the contact sheet");
    const std::uint8_t* const from[] = {image.rgb.data()};
    const int fromLine[] = {3 * image.width};
    std::uint8_t* const to[] = {_sheet.row(top) + 3 * left};
    const int toLine[] = {3 * _sheet.width};
    sws_scale(scaler.get(), from, fromLine, 0, image.height, to, toLine);
    write(label, left, top + _cellHeight);
}

void ContactSheet::write(std::string_view label, int left, int top) {
    std::string text(label);
    for (char& letter : text) letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    const float foot = static_cast<float>(labelHeight) / 2 + letterHeight / 2;
    for (int y = 0; y < labelHeight; ++y) {
        std::uint8_t* pixel = _sheet.row(top + y) + 3 * left;
        for (int x = 0; x < _cellWidth; ++x, pixel += 3) {
            const float distance =
                letterHeight * textDistance(text, (static_cast<float>(x) + 0.5f - inset) / letterHeight,
                                            (foot - static_cast<float>(y) - 0.5f) / letterHeight);
            const float cover = std::clamp(0.5f - distance, 0.0f, 1.0f);
            std::fill_n(pixel, 3, static_cast<std::uint8_t>(paper + cover * (ink - paper)));
        }
    }
}

}  // namespace zetplay
