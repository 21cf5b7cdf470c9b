#include "frameconverter.h"

#include <new>
#include <string>

#include "pictureplanes.h"

extern "C" {
#include <libavutil/opt.h>
#include <libavutil/pixdesc.h>
}

namespace zetplay {

namespace {

struct FullRangeTwin {
    AVPixelFormat marked;
    AVPixelFormat plain;
};

/// The formats that carry "full range" in their name, and the same layout without it.
constexpr FullRangeTwin FULL_RANGE_TWINS[] = {
    {AV_PIX_FMT_YUVJ420P, AV_PIX_FMT_YUV420P}, {AV_PIX_FMT_YUVJ422P, AV_PIX_FMT_YUV422P},
    {AV_PIX_FMT_YUVJ444P, AV_PIX_FMT_YUV444P}, {AV_PIX_FMT_YUVJ440P, AV_PIX_FMT_YUV440P},
    {AV_PIX_FMT_YUVJ411P, AV_PIX_FMT_YUV411P},
};

/// Grey that does not tell its range is full range: that is how picture files hold it.
bool isGrey(AVPixelFormat format) {
    const AVPixFmtDescriptor* const description = av_pix_fmt_desc_get(format);
    return description && description->nb_components <= 2 && !(description->flags & AV_PIX_FMT_FLAG_RGB);
}

}  // namespace

FrameConverter::Form FrameConverter::formOf(const AVFrame& frame) {
    Form form{frame.width & ~1, frame.height & ~1, static_cast<AVPixelFormat>(frame.format), frame.colorspace,
              frame.color_range == AVCOL_RANGE_JPEG};
    if (frame.color_range == AVCOL_RANGE_UNSPECIFIED && isGrey(form.format)) form.fullRange = true;
    for (const FullRangeTwin& twin : FULL_RANGE_TWINS) {
        if (form.format == twin.marked) {
            form.format = twin.plain;
            form.fullRange = true;
        }
    }
    return form;
}

/// A stream that names no matrix is taken as BT.601, which is what FFmpeg writes when it makes video from RGB.
bool FrameConverter::passes(const Form& form) {
    const bool bt601 =
        form.matrix == AVCOL_SPC_UNSPECIFIED || form.matrix == AVCOL_SPC_BT470BG || form.matrix == AVCOL_SPC_SMPTE170M;
    return form.format == AV_PIX_FMT_YUV420P && form.fullRange && bt601;
}

void FrameConverter::convert(const AVFrame& frame, Picture& picture) {
    const Form form = formOf(frame);
    if (form.width < 2 || form.height < 2) {
        throw Failure("a picture of " + std::to_string(frame.width) + "x" + std::to_string(frame.height) +
                      " is too small; 2x2 is the least");
    }
    if (passes(form)) {
        write(frame, form.width, form.height, picture);
        return;
    }
    if (_prepared != form) prepare(form);
    sws_scale(_scaler.get(), frame.data, frame.linesize, 0, form.height, _converted->data, _converted->linesize);
    write(*_converted, form.width, form.height, picture);
}

void FrameConverter::prepare(const Form& form) {
    _prepared.reset();
    if (!sws_isSupportedInput(form.format)) {
        const char* const name = av_get_pix_fmt_name(form.format);
        throw Failure(std::string("pixel format ") + (name ? name : "unknown") + " can't be converted");
    }
    _scaler.reset(sws_alloc_context());
    if (!_scaler) throw std::bad_alloc();
    SwsContext* const scaler = _scaler.get();
    const struct {
        const char* name;
        std::int64_t value;
    } options[] = {
        {"srcw", form.width},
        {"srch", form.height},
        {"src_format", form.format},
        {"src_range", form.fullRange},
        {"dstw", form.width},
        {"dsth", form.height},
        {"dst_format", AV_PIX_FMT_YUV420P},
        {"dst_range", 1},
        {"sws_flags", SWS_BILINEAR | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT},
    };
    for (const auto& option : options) av_opt_set_int(scaler, option.name, option.value, 0);
    const int* const from = sws_getCoefficients(form.matrix);
    const int* const to = sws_getCoefficients(SWS_CS_ITU601);
    if (sws_init_context(scaler, nullptr, nullptr) < 0 ||
        sws_setColorspaceDetails(scaler, from, form.fullRange, to, 1, 0, 1 << 16, 1 << 16) < 0) {
        throw Failure("libswscale refuses the conversion of pictures of " + std::to_string(form.width) + "x" +
                      std::to_string(form.height));
    }
    // libswscale writes past the width up to its own alignment, so that it gets a frame of FFmpeg's and not the
    // picture.
    _converted.reset(av_frame_alloc());
    if (!_converted) throw std::bad_alloc();
    _converted->format = AV_PIX_FMT_YUV420P;
    _converted->width = form.width;
    _converted->height = form.height;
    if (av_frame_get_buffer(_converted.get(), 0) < 0) throw std::bad_alloc();
    _prepared = form;
}

void FrameConverter::write(const AVFrame& frame, int width, int height, Picture& picture) const {
    const bool sideways = _quarterTurns % 2 == 1;
    shapePicture(picture, sideways ? height : width, sideways ? width : height);
    std::uint8_t* const planes[] = {picture.y.data(), picture.u.data(), picture.v.data()};
    for (int plane = 0; plane < 3; ++plane) {
        const int divisor = plane == 0 ? 1 : 2;
        const PlaneView view{frame.data[plane], frame.linesize[plane], 1, width / divisor, height / divisor};
        copyPlane(turned(view, _quarterTurns), planes[plane], plane == 0 ? picture.yLineSize : picture.uvLineSize);
    }
}

}  // namespace zetplay
