#pragma once

#include "image.h"

struct _XDisplay;
struct _XImage;

namespace zetplay {

/// What the X server holds for the whole of `window`. Throws `Failure` if the window can't be read.
Image grabWindow(_XDisplay* display, unsigned long window);

/// A true-colour X picture of any depth and byte order, turned into 8 bits a channel.
Image imageFromX(_XImage& picture);

}  // namespace zetplay
