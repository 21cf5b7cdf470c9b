#pragma once

#include "media/avhandles.h"
#include "zet/records.h"

namespace zetplay {

/// How the colours of a decoded frame are coded. Where the stream doesn't say, the rules are those of players. The
/// matrix follows the height: BT.709 from 720 lines on. The range is limited. It is full for grey, as in picture files,
/// and for the formats that have it in their names. RGB has no such coding: it gets the one that it is converted to.
zet::FrameColor colorOf(const AVFrame& frame);

/// The same layout without "full range" in its name.
AVPixelFormat plainFormat(AVPixelFormat format);

}  // namespace zetplay
