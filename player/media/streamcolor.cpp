#include "media/streamcolor.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace zetplay {

namespace {

constexpr int linesOfBt709 = 720;

struct FullRangeTwin {
    AVPixelFormat marked;
    AVPixelFormat plain;
};

/// The formats that carry "full range" in their name, and the same layout without it.
constexpr FullRangeTwin fullRangeTwins[] = {
    {AV_PIX_FMT_YUVJ420P, AV_PIX_FMT_YUV420P}, {AV_PIX_FMT_YUVJ422P, AV_PIX_FMT_YUV422P},
    {AV_PIX_FMT_YUVJ444P, AV_PIX_FMT_YUV444P}, {AV_PIX_FMT_YUVJ440P, AV_PIX_FMT_YUV440P},
    {AV_PIX_FMT_YUVJ411P, AV_PIX_FMT_YUV411P},
};

/// Red, green and blue, or a palette of them.
bool isRgb(AVPixelFormat format) {
    const AVPixFmtDescriptor* const description = av_pix_fmt_desc_get(format);
    return description && (description->flags & (AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_PAL)) != 0;
}

bool isGrey(AVPixelFormat format) {
    const AVPixFmtDescriptor* const description = av_pix_fmt_desc_get(format);
    return description && description->nb_components <= 2 && !isRgb(format);
}

std::int32_t matrixOf(const AVFrame& frame) {
    switch (frame.colorspace) {
        case AVCOL_SPC_BT709:
        case AVCOL_SPC_FCC:
        case AVCOL_SPC_BT470BG:
        case AVCOL_SPC_SMPTE170M:
        case AVCOL_SPC_SMPTE240M:
        case AVCOL_SPC_BT2020_NCL:
            return frame.colorspace;
        case AVCOL_SPC_BT2020_CL:
            return zet::COLOR_MATRIX_BT2020;  // the nearest that the module knows
        default:
            return frame.height >= linesOfBt709 ? zet::COLOR_MATRIX_BT709 : zet::COLOR_MATRIX_BT601;
    }
}

}  // namespace

AVPixelFormat plainFormat(AVPixelFormat format) {
    for (const FullRangeTwin& twin : fullRangeTwins)
        if (format == twin.marked) return twin.plain;
    return format;
}

zet::FrameColor colorOf(const AVFrame& frame) {
    const auto format = static_cast<AVPixelFormat>(frame.format);
    if (isRgb(format)) return {zet::COLOR_MATRIX_BT601, true};
    const bool unsaid = frame.color_range == AVCOL_RANGE_UNSPECIFIED;
    const bool full =
        frame.color_range == AVCOL_RANGE_JPEG || plainFormat(format) != format || (unsaid && isGrey(format));
    return {matrixOf(frame), full};
}

}  // namespace zetplay
