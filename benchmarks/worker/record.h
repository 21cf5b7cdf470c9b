#pragma once

#include "worker/picture.h"
#include "zet/zet.h"

namespace bench {

/// The picture as the module takes it, without a lens region. It must outlive the record.
inline zet::YUV420PData recordOf(const Picture& picture) {
    zet::YUV420PData frame;
    frame.y = picture.y.data();
    frame.u = picture.u.data();
    frame.v = picture.v.data();
    frame.yLineSize = frame.width = picture.size.width;
    frame.uvLineSize = picture.size.width / 2;
    frame.height = picture.size.height;
    return frame;
}

}  // namespace bench
