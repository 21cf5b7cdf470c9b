#include "testmedia.h"

#include <unistd.h>

#include <cstring>
#include <fstream>
#include <stdexcept>

#include "avhandles.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace zetplay::test {

namespace {

int check(int result, const char* what) {
    if (result < 0) throw std::runtime_error(what);
    return result;
}

void drain(AVCodecContext* codec, AVPacket* packet, AVFormatContext* format) {
    while (avcodec_receive_packet(codec, packet) == 0) {
        av_packet_rescale_ts(packet, codec->time_base, format->streams[0]->time_base);
        check(av_write_frame(format, packet), "av_write_frame");
        av_packet_unref(packet);
    }
}

void fill(AVFrame* frame, const Planes& planes) {
    check(av_frame_make_writable(frame), "av_frame_make_writable");
    const AVPixFmtDescriptor* const form = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame->format));
    for (std::size_t plane = 0; plane < planes.size(); ++plane) {
        const int rows = plane == 0 ? frame->height : -(-frame->height >> form->log2_chroma_h);
        const std::size_t rowBytes = planes[plane].size() / static_cast<std::size_t>(rows);
        for (int row = 0; row < rows; ++row) {
            std::memcpy(frame->data[plane] + row * frame->linesize[plane],
                        planes[plane].data() + static_cast<std::size_t>(row) * rowBytes, rowBytes);
        }
    }
}

}  // namespace

ScratchDirectory::ScratchDirectory() {
    std::string pattern = (std::filesystem::temp_directory_path() / "zetplay-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("mkdtemp");
    _directory = pattern;
}

ScratchDirectory::~ScratchDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(_directory, ignored);
}

std::string ScratchDirectory::write(const std::string& name, const std::string& content) const {
    std::ofstream(path(name), std::ios::binary) << content;
    return path(name);
}

void encode(const Video& video, const std::vector<Planes>& pictures, const std::string& path) {
    const AVCodec* const encoder = avcodec_find_encoder(video.codec);
    const CodecHandle codec(avcodec_alloc_context3(encoder));
    codec->width = video.width;
    codec->height = video.height;
    codec->pix_fmt = video.format;
    codec->colorspace = video.matrix;
    codec->color_range = video.range;
    codec->time_base = {1, 10};
    codec->framerate = {10, 1};
    codec->strict_std_compliance = FF_COMPLIANCE_UNOFFICIAL;

    AVFormatContext* format = nullptr;
    check(avformat_alloc_output_context2(&format, nullptr, nullptr, path.c_str()), "container");
    if (format->oformat->flags & AVFMT_GLOBALHEADER) codec->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    check(avcodec_open2(codec.get(), encoder, nullptr), "avcodec_open2");
    AVStream* const stream = avformat_new_stream(format, nullptr);
    check(avcodec_parameters_from_context(stream->codecpar, codec.get()), "parameters");
    stream->time_base = codec->time_base;
    check(avio_open(&format->pb, path.c_str(), AVIO_FLAG_WRITE), "avio_open");
    check(avformat_write_header(format, nullptr), "avformat_write_header");

    const FrameHandle frame(av_frame_alloc());
    frame->format = video.format;
    frame->width = video.width;
    frame->height = video.height;
    check(av_frame_get_buffer(frame.get(), 0), "av_frame_get_buffer");
    const PacketHandle packet(av_packet_alloc());
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        fill(frame.get(), pictures[i]);
        frame->pts = static_cast<std::int64_t>(i);
        check(avcodec_send_frame(codec.get(), frame.get()), "avcodec_send_frame");
        drain(codec.get(), packet.get(), format);
    }
    avcodec_send_frame(codec.get(), nullptr);
    drain(codec.get(), packet.get(), format);
    check(av_write_trailer(format), "av_write_trailer");
    avio_closep(&format->pb);
    avformat_free_context(format);
}

}  // namespace zetplay::test
