#include "render/lensregion.h"

#include <algorithm>

namespace zet::ZETShow {

CropParam findLensRegion(const int* lensRegion, int width, int height, int lineSize, bool square) {
    int cx = 0;
    int cy = 0;
    int rx = 0;
    int ry = 0;
    if (lensRegion) {
        // The bound keeps every sum of two such values an int.
        const auto part = [](int share, int whole) {
            return std::clamp(static_cast<float>(share) / 10000.0f * static_cast<float>(whole), -5e8f, 5e8f);
        };
        cx = static_cast<int>(part(lensRegion[0], width) + 0.5f);
        cy = static_cast<int>(part(lensRegion[1], height) + 0.5f);
        rx = static_cast<int>(part(lensRegion[2], width));
        ry = static_cast<int>(part(lensRegion[3], height));
    }
    CropParam crop;
    crop.x = cx >= rx ? cx - rx : 0;
    crop.y = cy >= ry ? cy - ry : 0;
    crop.width = rx ? 2 * rx : width;
    crop.height = ry ? 2 * ry : height;
    if (square) crop.width = crop.height = std::min(crop.width, crop.height);
    if (crop.width == width && width != lineSize) {
        // `mapOntoRegion` divides by the picture's width, but the texture is a line wide. With this width the map ends
        // at the picture's last column, less a pixel, so that no padding is blended in.
        crop.width = static_cast<int>(static_cast<double>(width) / lineSize * width - 1.0);
    }
    return crop;
}

RegionMap mapOntoRegion(const CropParam& crop, int width, int height) {
    const auto share = [](int part, int whole) { return static_cast<float>(part) / static_cast<float>(whole); };
    const float halfWidth = 0.5f * share(crop.width, width);
    const float halfHeight = 0.5f * share(crop.height, height);
    return {share(crop.x, width) + halfWidth, share(crop.y, height) + halfHeight, halfWidth, halfHeight};
}

}  // namespace zet::ZETShow
