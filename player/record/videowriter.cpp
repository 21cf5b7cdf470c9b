#include "record/videowriter.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <optional>

#include "media/avhandles.h"
#include "media/source.h"
#include "record/reserve.h"

extern "C" {
#include <libavutil/opt.h>
}

namespace zetplay {

namespace {

// Every usual rate has a whole number of ticks a picture, and MPEG-4 can hold this number.
constexpr int ticksPerSecond = 60000;
// Software encoders only: those of graphics cards and phones take other pixel formats.
constexpr const char* encoders[] = {"libx264", "libopenh264", "mpeg4"};

struct OutputDelete {
    void operator()(AVFormatContext* context) const {
        if (context->pb) avio_closep(&context->pb);
        avformat_free_context(context);
    }
};

int evenPart(int side) {
    return std::max(side & ~1, 1);
}

std::string causeOf(int error) {
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    return av_make_error_string(text, sizeof text, error);
}

/// Opened for the container; empty if FFmpeg lacks the encoder or it does not work here.
CodecHandle openEncoder(const char* name, int width, int height, double frameRate) {
    const AVCodec* const encoder = avcodec_find_encoder_by_name(name);
    if (!encoder) return {};
    CodecHandle codec(avcodec_alloc_context3(encoder));
    codec->width = width;
    codec->height = height;
    codec->pix_fmt = AV_PIX_FMT_YUV420P;
    codec->time_base = {1, ticksPerSecond};
    codec->framerate = av_d2q(frameRate, ticksPerSecond);
    codec->gop_size = 2 * std::max(1, static_cast<int>(std::lround(frameRate)));
    codec->colorspace = AVCOL_SPC_BT709;
    codec->color_range = AVCOL_RANGE_MPEG;
    codec->color_primaries = AVCOL_PRI_BT709;
    codec->color_trc = AVCOL_TRC_BT709;
    codec->flags |= AV_CODEC_FLAG_GLOBAL_HEADER | AV_CODEC_FLAG_QSCALE;
    codec->global_quality = 3 * FF_QP2LAMBDA;  // of MPEG-4: close to the picture
    av_opt_set(codec->priv_data, "preset", "veryfast", 0);
    av_opt_set(codec->priv_data, "crf", "18", 0);
    if (avcodec_open2(codec.get(), encoder, nullptr) < 0) return {};
    return codec;
}

}  // namespace

struct VideoWriter::Parts {
    std::unique_ptr<AVFormatContext, OutputDelete> format;
    CodecHandle codec;
    AVStream* stream = nullptr;
    FrameHandle frame;
    PacketHandle packet;
    SwsHandle scaler;
    std::int64_t lastTick = -1;
    std::int64_t period = 0;   // ticks
    std::int64_t sent = 0;     // pictures
    std::int64_t written = 0;  // pictures
    std::int64_t largest = 0;  // bytes of a written picture
    bool begun = false;        // the file is ours
    std::optional<Reserve> reserve;
};

VideoWriter::VideoWriter(const std::string& path, int width, int height, double frameRate)
    : _path(path), _parts(std::make_unique<Parts>()) {
    if (width < 2 || height < 2)
        fail("a window of " + std::to_string(width) + "x" + std::to_string(height) + " pixels is too small to record");
    open(evenPart(width), evenPart(height), frameRate > 0 ? frameRate : 25);
}

VideoWriter::~VideoWriter() {
    if (!_parts || !_parts->begun) return;
    _parts->format.reset();
    struct stat kind {};
    if (::stat(_path.c_str(), &kind) == 0 && S_ISREG(kind.st_mode)) ::unlink(_path.c_str());
}

void VideoWriter::fail(const std::string& cause) {
    throw Failure(_path + ": " + cause);
}

void VideoWriter::open(int width, int height, double frameRate) {
    Parts& parts = *_parts;
    for (const char* name : encoders)
        if (!parts.codec) parts.codec = openEncoder(name, width, height, frameRate);
    if (!parts.codec) fail("FFmpeg has no encoder for H.264 or MPEG-4");
    AVFormatContext* format = nullptr;
    avformat_alloc_output_context2(&format, nullptr, "mp4", _path.c_str());
    if (!format) fail("FFmpeg cannot write MP4");
    parts.format.reset(format);
    parts.stream = avformat_new_stream(format, nullptr);
    parts.stream->time_base = parts.codec->time_base;
    parts.stream->avg_frame_rate = parts.codec->framerate;
    avcodec_parameters_from_context(parts.stream->codecpar, parts.codec.get());

    parts.frame.reset(av_frame_alloc());
    parts.frame->format = AV_PIX_FMT_YUV420P;
    parts.frame->width = width;
    parts.frame->height = height;
    if (const int error = av_frame_get_buffer(parts.frame.get(), 0); error < 0) fail(causeOf(error));
    parts.packet.reset(av_packet_alloc());
    parts.period = std::max<std::int64_t>(1, std::llround(ticksPerSecond / frameRate));

    if (const int error = avio_open(&format->pb, _path.c_str(), AVIO_FLAG_WRITE); error < 0) fail(causeOf(error));
    parts.begun = true;
    if (const int error = avformat_write_header(format, nullptr); error < 0) fail(causeOf(error));
    parts.reserve.emplace(_path);
}

/// A full disk ends the recording here, while there is room for `finish`: for what the encoder still holds and for the
/// index.
void VideoWriter::holdRoom() {
    constexpr std::int64_t indexBytes = 64;  // a picture needs less
    constexpr std::int64_t margin = 1 << 13;
    Parts& parts = *_parts;
    const std::int64_t toCome = (parts.sent + 1 - parts.written) * parts.largest + parts.sent * indexBytes + margin;
    if (const int error = parts.reserve->hold(avio_tell(parts.format->pb) + toCome)) fail(causeOf(AVERROR(error)));
}

void VideoWriter::add(const Pixels& pixels, double seconds) {
    Parts& parts = *_parts;
    holdRoom();
    AVFrame& frame = *parts.frame;
    // The encoder may still hold the last picture's memory.
    if (const int error = av_frame_make_writable(&frame); error < 0) fail(causeOf(error));
    constexpr int quality = SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INP;
    const AVPixelFormat format = pixels.order == PixelOrder::rgba ? AV_PIX_FMT_RGB0 : AV_PIX_FMT_0RGB32;
    parts.scaler.reset(sws_getCachedContext(parts.scaler.release(), evenPart(pixels.width), evenPart(pixels.height),
                                            format, frame.width, frame.height, AV_PIX_FMT_YUV420P, quality, nullptr,
                                            nullptr, nullptr));
    if (!parts.scaler) fail("the window's picture cannot be scaled");
    const int* const rgb = sws_getCoefficients(SWS_CS_DEFAULT);
    sws_setColorspaceDetails(parts.scaler.get(), rgb, 1, sws_getCoefficients(SWS_CS_ITU709), 0, 0, 1 << 16, 1 << 16);
    const std::uint8_t* const rows[] = {pixels.first};
    const int lineSizes[] = {pixels.lineSize};
    sws_scale(parts.scaler.get(), rows, lineSizes, 0, evenPart(pixels.height), frame.data, frame.linesize);
    frame.pts = std::max<std::int64_t>(parts.lastTick + 1, std::llround(seconds * ticksPerSecond));
    parts.lastTick = frame.pts;
    ++parts.sent;
    encode(&frame);
}

void VideoWriter::encode(const AVFrame* frame) {
    Parts& parts = *_parts;
    int error = avcodec_send_frame(parts.codec.get(), frame);
    while (error >= 0) {
        AVPacket* const packet = parts.packet.get();
        error = avcodec_receive_packet(parts.codec.get(), packet);
        if (error == AVERROR(EAGAIN) || error == AVERROR_EOF) return;
        if (error < 0) break;
        ++parts.written;
        parts.largest = std::max<std::int64_t>(parts.largest, packet->size);
        packet->duration = parts.period;
        av_packet_rescale_ts(packet, parts.codec->time_base, parts.stream->time_base);
        error = av_interleaved_write_frame(parts.format.get(), packet);
    }
    fail(causeOf(error));
}

void VideoWriter::finish() {
    if (!_parts) return;
    encode(nullptr);
    Parts& parts = *_parts;
    if (const int error = av_write_trailer(parts.format.get()); error < 0) fail(causeOf(error));
    const std::int64_t end = avio_tell(parts.format->pb);
    if (const int error = avio_closep(&parts.format->pb); error < 0) fail(causeOf(error));
    parts.reserve->release(end);
    _parts.reset();
}

}  // namespace zetplay
