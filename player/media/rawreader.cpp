#include "media/rawreader.h"

#include <cstring>
#include <string>

extern "C" {
#include <libavutil/imgutils.h>
}

namespace zetplay {

namespace {

constexpr std::string_view head = "FRAME";
constexpr std::size_t longestHead = 80;

}  // namespace

RawReader::RawReader(AVIOContext& io, const AVStream& stream)
    : _io(io),
      _stream(stream),
      _first(avio_tell(&io)),
      _size(av_image_get_buffer_size(static_cast<AVPixelFormat>(stream.codecpar->format), stream.codecpar->width,
                                     stream.codecpar->height, 1)) {}

int RawReader::read(AVPacket& packet) {
    if (_size <= 0) return AVERROR_INVALIDDATA;
    const std::int64_t place = avio_tell(&_io);
    std::string line;
    for (int c = avio_r8(&_io); c != '\n' && !avio_feof(&_io); c = avio_r8(&_io)) {
        line += static_cast<char>(c);
        if (line.size() > longestHead) return AVERROR_INVALIDDATA;
    }
    if (_io.error < 0) return _io.error;
    if (avio_feof(&_io)) return AVERROR_EOF;
    if (!line.starts_with(head)) return AVERROR_INVALIDDATA;
    packet.buf = _pool.get(static_cast<std::size_t>(_size) + AV_INPUT_BUFFER_PADDING_SIZE);
    packet.data = packet.buf->data;
    packet.size = static_cast<int>(_size);
    packet.pos = avio_tell(&_io);
    packet.stream_index = _stream.index;
    packet.pts = packet.dts = (place - _first) / (_size + static_cast<std::int64_t>(head.size()) + 1);
    packet.duration = 1;
    packet.flags |= AV_PKT_FLAG_KEY;
    const int count = avio_read(&_io, packet.data, packet.size);
    if (count == packet.size) return 0;
    av_packet_unref(&packet);
    return count < 0 ? count : AVERROR_EOF;
}

}  // namespace zetplay
