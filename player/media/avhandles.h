#pragma once

#include <memory>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswscale/swscale.h>
}

namespace zetplay {

/// Owners of FFmpeg's objects: each is freed by FFmpeg's own operation.
struct AvDelete {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(SwsContext* context) const { sws_freeContext(context); }
};

using FormatHandle = std::unique_ptr<AVFormatContext, AvDelete>;
using CodecHandle = std::unique_ptr<AVCodecContext, AvDelete>;
using PacketHandle = std::unique_ptr<AVPacket, AvDelete>;
using FrameHandle = std::unique_ptr<AVFrame, AvDelete>;
using SwsHandle = std::unique_ptr<SwsContext, AvDelete>;

}  // namespace zetplay
