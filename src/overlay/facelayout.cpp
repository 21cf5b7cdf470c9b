#include "overlay/facelayout.h"

#include <charconv>

#include "zet/records.h"

namespace zet::ZETShow {

namespace {

constexpr float boxMargin = 0.2f;  // of the face's side, on each side
constexpr float boxGrowth = 1.4f;  // the box's side to the face's
constexpr double textGap = 0.01;   // between a box and its lines

}  // namespace

FaceBox::FaceBox(const FaceInfo& face, int frameWidth, int frameHeight) {
    const auto x = static_cast<float>(face.x);
    const auto y = static_cast<float>(face.y);
    const auto faceWidth = static_cast<float>(face.width);
    const auto faceHeight = static_cast<float>(face.height);
    const auto wide = static_cast<float>(frameWidth);
    const auto high = static_cast<float>(frameHeight);
    constexpr auto growth = static_cast<double>(boxGrowth);
    left = static_cast<float>(2.0 * ((x - boxMargin * faceWidth) / wide) - 1.0);
    top = static_cast<float>(-(2.0 * ((y - boxMargin * faceHeight) / high) - 1.0));
    width = static_cast<float>(2.0 * (faceWidth * growth / wide));
    height = static_cast<float>(2.0 * (-faceHeight * growth / high));
}

FaceLines::FaceLines(const FaceInfo& face, const FaceBox& box, int option) {
    if ((option & FACE_NAME) && !face.name.empty()) text[count++] = face.name;
    if (option & FACE_GENDER) text[count++] = face.gender != 0 ? "male" : "female";
    if (option & FACE_AGE) {
        const char* const end = std::to_chars(_age, _age + sizeof _age, face.age).ptr;
        text[count++] = {_age, static_cast<std::size_t>(end - _age)};
    }
    x = static_cast<float>(box.right() + textGap);
    // Half a line up for each line beyond the second: so the block is beside the middle of the box.
    y = static_cast<float>(box.top + box.height * 0.5 + (count - 2) * 0.05);
}

}  // namespace zet::ZETShow
