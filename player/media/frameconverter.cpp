#include "media/frameconverter.h"

#include <new>
#include <string>

#include "media/streamcolor.h"

extern "C" {
#include <libavutil/opt.h>
#include <libavutil/pixdesc.h>
}

namespace zetplay {

void FrameConverter::convert(AVFrame& frame, Picture& picture) {
    picture.memory.reset();
    picture.color = colorOf(frame);
    const Form form{frame.width & ~1, frame.height & ~1, plainFormat(static_cast<AVPixelFormat>(frame.format)),
                    picture.color.matrix, picture.color.fullRange != 0};
    if (form.width < 2 || form.height < 2) {
        throw Failure("a picture of " + std::to_string(frame.width) + "x" + std::to_string(frame.height) +
                      " is too small; 2x2 is the least");
    }
    if (form.format != AV_PIX_FMT_YUV420P) {
        if (_prepared != form) prepare(form);
        sws_scale(_scaler.get(), frame.data, frame.linesize, 0, form.height, _converted->data, _converted->linesize);
        write(*_converted, form, picture);
    } else if (!handOn(frame, form, picture)) {
        write(frame, form, picture);
    }
    av_frame_unref(&frame);
}

/// Hands on the decoder's own planes if they have no padding, which the flat view would show.
bool FrameConverter::handOn(AVFrame& frame, const Form& form, Picture& picture) const {
    const bool tight = form.width % 4 == 0 && frame.linesize[0] == form.width && frame.linesize[1] == form.width / 2 &&
                       frame.linesize[2] == form.width / 2;
    if (!tight || _quarterTurns != 0 || !frame.buf[0]) return false;
    const std::shared_ptr<AVFrame> owner(av_frame_alloc(), AvDelete());
    if (!owner) throw std::bad_alloc();
    av_frame_move_ref(owner.get(), &frame);
    picture.width = form.width;
    picture.height = form.height;
    picture.yLineSize = owner->linesize[0];
    picture.uvLineSize = owner->linesize[1];
    picture.y = owner->data[0];
    picture.u = owner->data[1];
    picture.v = owner->data[2];
    picture.memory = owner;
    return true;
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
        {"dst_range", form.fullRange},
        {"sws_flags", SWS_BILINEAR | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT},
    };
    for (const auto& option : options) av_opt_set_int(scaler, option.name, option.value, 0);
    const int* const matrix = sws_getCoefficients(form.matrix);
    if (sws_init_context(scaler, nullptr, nullptr) < 0 ||
        sws_setColorspaceDetails(scaler, matrix, form.fullRange, matrix, form.fullRange, 0, 1 << 16, 1 << 16) < 0) {
        throw Failure("libswscale refuses the conversion of pictures of " + std::to_string(form.width) + "x" +
                      std::to_string(form.height));
    }
    // libswscale writes past the width up to its own alignment: give it a frame of FFmpeg's, not the picture.
    _converted.reset(av_frame_alloc());
    if (!_converted) throw std::bad_alloc();
    _converted->format = AV_PIX_FMT_YUV420P;
    _converted->width = form.width;
    _converted->height = form.height;
    if (av_frame_get_buffer(_converted.get(), 0) < 0) throw std::bad_alloc();
    _prepared = form;
}

void FrameConverter::write(const AVFrame& frame, const Form& form, Picture& picture) {
    const bool sideways = _quarterTurns % 2 == 1;
    const Planes planes =
        sideways ? _pool.shape(picture, form.height, form.width) : _pool.shape(picture, form.width, form.height);
    std::uint8_t* const to[] = {planes.y, planes.u, planes.v};
    for (int plane = 0; plane < 3; ++plane) {
        const int divisor = plane == 0 ? 1 : 2;
        const PlaneView view{frame.data[plane], frame.linesize[plane], 1, form.width / divisor, form.height / divisor};
        copyPlane(turned(view, _quarterTurns), to[plane], plane == 0 ? planes.yLineSize : planes.uvLineSize);
    }
}

}  // namespace zetplay
