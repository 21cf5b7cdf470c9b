#pragma once

namespace zet::ZETShow {

/// The square or rectangle of the lens circle, in pixels of the picture, origin at its top left corner.
struct CropParam {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool operator==(const CropParam&) const = default;
};

/// An affine map of places: (-1, -1) to (1, 1), from the top left corner of the lens region to its bottom right one,
/// become texture coordinates of the planes, centre - half size to centre + half size.
struct RegionMap {
    float centreX = 0.5f;
    float centreY = 0.5f;
    float halfWidth = 0.5f;
    float halfHeight = 0.5f;
};

/// The lens region of a picture of `width` by `height` pixels whose lines hold `lineSize`, all positive.
///
/// `lensRegion` is as `YUV420PData` has it; without one the region begins at the picture's top left corner and is as
/// large as the picture. A circle over the left or top edge begins at that edge, with its whole size. `square` cuts
/// the longer side to the shorter one. A region as wide as the picture ends before the padding of its lines.
CropParam findLensRegion(const int* lensRegion, int width, int height, int lineSize, bool square);

/// The map onto `crop`, a region of a picture of that size. Coordinates are divided by the picture's width, but the
/// texture is a line wide: where lines are padded, the map reaches further right than `crop`.
RegionMap mapOntoRegion(const CropParam& crop, int width, int height);

}  // namespace zet::ZETShow
