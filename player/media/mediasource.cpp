#include "media/mediasource.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <filesystem>
#include <new>
#include <string_view>
#include <system_error>
#include <utility>

#include "media/avhandles.h"
#include "media/frameconverter.h"
#include "media/rawreader.h"
#include "media/source.h"

extern "C" {
#include <libavutil/display.h>
}

namespace zetplay {

namespace {

/// At the end a decoder can fail for each picture that it still holds. A broken one would fail for ever.
constexpr int maxDrainErrors = 256;

std::string errorText(int code) {
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(code, text, sizeof text);
    return text;
}

template <typename Handle>
Handle owned(typename Handle::pointer object) {
    if (!object) throw std::bad_alloc();
    return Handle(object);
}

/// Turns of 90 degrees clockwise that the stream asks for.
int quarterTurnsOf(const AVStream& stream) {
    std::size_t size = 0;
    const std::uint8_t* const data = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, &size);
    if (!data || size < 9 * sizeof(std::int32_t)) return 0;
    const double anticlockwise = av_display_rotation_get(reinterpret_cast<const std::int32_t*>(data));
    return std::isnan(anticlockwise) ? 0 : static_cast<int>(std::lround(-anticlockwise / 90.0)) & 3;
}

/// A size as Matroska writes it (RFC 8794, section 4); -1 for "unknown".
std::int64_t readEbmlSize(AVIOContext& io) {
    const unsigned first = static_cast<unsigned>(avio_r8(&io)) & 0xffU;
    const int following = std::countl_zero(static_cast<std::uint8_t>(first));
    if (following > 7) return -1;
    std::int64_t size = first & (0x7fU >> following);
    std::int64_t unknown = 0x7f >> following;
    for (int i = 0; i < following; ++i) {
        size = size << 8 | avio_r8(&io);
        unknown = unknown << 8 | 0xff;
    }
    return size == unknown ? -1 : size;
}

/// Whether a Matroska file's one big element reaches past the file's end. The reading position is undefined afterwards.
bool matroskaCutShort(AVIOContext& io, std::int64_t fileSize) {
    if (avio_seek(&io, 0, SEEK_SET) < 0 || avio_rb32(&io) != 0x1a45dfa3) return false;
    avio_skip(&io, readEbmlSize(io));
    return avio_rb32(&io) == 0x18538067 && readEbmlSize(io) > fileSize - avio_tell(&io);
}

class MediaSource final : public Source {
public:
    explicit MediaSource(std::string path);

    bool next(Picture& picture) override;
    void giveUpWhen(const std::function<bool()>& given) override { _givenUp = given; }
    void rewind() override;
    bool still() const override { return _still; }
    double frameRate() const override { return _frameRate; }
    std::int64_t frameCount() const override;
    std::string name() const override { return std::filesystem::path(_path).filename().string(); }

private:
    [[noreturn]] void fail(const std::string& cause) const { throw Failure(_path + ": " + cause); }
    void open();
    void openAndDecode(bool strict);
    void openInput();
    void openDecoder(bool strict);
    void startOver();
    std::string_view demuxer() const { return _format->iformat->name; }
    bool pictureFile() const;
    bool seekable() const;
    bool seekToStart();
    bool decode(AVFrame& frame);
    void feed();
    bool cutShort() const;
    void noteDamage(const std::string& damage);
    void stamp(const AVFrame& frame, Picture& picture);

    std::string _path;
    std::function<bool()> _givenUp = [] { return false; };

    // Fixed while the input is open.
    FormatHandle _format;
    std::optional<RawReader> _raw;  ///< for files that hold nothing but raw pictures
    CodecHandle _codec;
    AVStream* _stream = nullptr;
    std::optional<FrameConverter> _converter;
    bool _still = false;
    double _frameRate = 0;  ///< pictures a second, 0 for unknown

    // Progress of decoding.
    FrameHandle _frames[2];  ///< the first two pictures are decoded on opening, to tell a still from a video
    int _decoded = 0;        ///< pictures in `_frames`
    int _given = 0;          ///< pictures of these that `next` has given
    PacketHandle _packet;
    bool _packetWaits = false;    ///< `_packet` was read and the decoder has not taken it yet
    bool _draining = false;       ///< the decoder knows that no packet follows
    int _drainErrors = 0;         ///< errors met since then
    std::int64_t _readUntil = 0;  ///< end of the last packet, bytes from the start of the file
    std::string _damage;          ///< first damage met; empty for none

    // Number and time of the pictures given so far.
    std::int64_t _number = 0;
    double _seconds = 0;                            ///< time of the last picture
    std::int64_t _firstTimestamp = AV_NOPTS_VALUE;  ///< in the stream's time base
};

MediaSource::MediaSource(std::string path) : _path(std::move(path)) {
    _packet = owned<PacketHandle>(av_packet_alloc());
    for (FrameHandle& frame : _frames) frame = owned<FrameHandle>(av_frame_alloc());
    open();
    if (_decoded == 0) fail("no picture can be decoded: " + (_damage.empty() ? "damaged or cut short" : _damage));
    _still = _decoded == 1 && _damage.empty();
    const AVRational rate = _raw ? av_inv_q(_stream->time_base) : av_guess_frame_rate(_format.get(), _stream, nullptr);
    if (!_still && rate.num > 0 && rate.den > 0) _frameRate = av_q2d(rate);
}

std::int64_t MediaSource::frameCount() const {
    if (_still) return 1;
    if (_stream->nb_frames > 0) return _stream->nb_frames;
    if (_stream->duration > 0)
        return std::llround(static_cast<double>(_stream->duration) * av_q2d(_stream->time_base) * _frameRate);
    if (_format->duration <= 0) return 0;
    return std::llround(static_cast<double>(_format->duration) / AV_TIME_BASE * _frameRate);
}

/// Opens the input and decodes up to two pictures. Decoders of picture files silently repair a damaged file unless they
/// are told to refuse it. So the first try is strict, and if it fails a second one takes what can be decoded.
void MediaSource::open() {
    openAndDecode(true);
    if (_decoded > 0 || !pictureFile() || !seekable()) return;
    const std::string damage = _damage;
    openAndDecode(false);
    noteDamage(damage);
}

void MediaSource::openAndDecode(bool strict) {
    openInput();
    openDecoder(strict);
    startOver();
    while (_decoded < 2 && decode(*_frames[_decoded])) ++_decoded;
}

void MediaSource::openInput() {
    std::string url = _path == "-" ? "pipe:0" : _path;
    AVDictionary* options = nullptr;
    std::error_code error;
    if (std::filesystem::is_directory(_path, error)) fail("is a directory");
    if (std::filesystem::exists(_path, error)) {
        const bool regular = std::filesystem::is_regular_file(_path, error);
        if (regular && std::filesystem::file_size(_path, error) == 0) fail("the file is empty");
        // The name of an existing file is neither an address ("a:b.mp4") nor a pattern ("a%d.png").
        url = "file:" + _path;
        av_dict_set(&options, "pattern_type", "none", 0);
    }
    _codec.reset();
    _raw.reset();
    AVFormatContext* format = avformat_alloc_context();
    if (!format) throw std::bad_alloc();
    format->interrupt_callback = {[](void* source) -> int { return static_cast<MediaSource*>(source)->_givenUp(); },
                                  this};
    const int opened = avformat_open_input(&format, url.c_str(), nullptr, &options);
    av_dict_free(&options);
    if (opened == AVERROR_INVALIDDATA) fail("no format that FFmpeg knows, or the file's head is damaged");
    if (opened < 0) fail("cannot open: " + errorText(opened));
    _format.reset(format);
    if (demuxer() == "yuv4mpegpipe") {
        // The file's header is enough: no decoder is needed.
        _raw.emplace(*format->pb, *format->streams[0]);
        return;
    }
    const int found = avformat_find_stream_info(format, nullptr);
    if (found < 0) fail("cannot read: " + errorText(found));
}

void MediaSource::openDecoder(bool strict) {
    const AVCodec* decoder = nullptr;
    const int index = av_find_best_stream(_format.get(), AVMEDIA_TYPE_VIDEO, -1, -1, &decoder, 0);
    if (index == AVERROR_STREAM_NOT_FOUND) {
        const bool sound = av_find_best_stream(_format.get(), AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0) >= 0;
        fail(sound ? "there is only sound in it, no picture" : "there is no picture in it");
    }
    if (index < 0) fail("FFmpeg has no decoder for its pictures");
    for (unsigned i = 0; i < _format->nb_streams; ++i) {
        _format->streams[i]->discard = static_cast<int>(i) == index ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    }
    _stream = _format->streams[index];
    _codec = owned<CodecHandle>(avcodec_alloc_context3(decoder));
    int result = avcodec_parameters_to_context(_codec.get(), _stream->codecpar);
    _codec->pkt_timebase = _stream->time_base;
    _codec->thread_count = 0;
    if (strict && pictureFile()) _codec->err_recognition |= AV_EF_EXPLODE;
    if (result >= 0) result = avcodec_open2(_codec.get(), decoder, nullptr);
    if (result < 0) fail(std::string("cannot start the decoder ") + decoder->name + ": " + errorText(result));
    _converter.emplace(quarterTurnsOf(*_stream));
}

/// The state before the first picture. What was decoded is dropped.
void MediaSource::startOver() {
    av_packet_unref(_packet.get());
    _packetWaits = false;
    _draining = false;
    _drainErrors = 0;
    _decoded = 0;
    _given = 0;
    _readUntil = 0;
    _damage.clear();
    _number = 0;
    _seconds = 0;
}

/// FFmpeg reads a file that holds a picture, not a video, with a demuxer of one of these names.
bool MediaSource::pictureFile() const {
    return demuxer() == "image2" || demuxer().ends_with("_pipe");
}

bool MediaSource::seekable() const {
    return !_format->pb || (_format->pb->seekable & AVIO_SEEKABLE_NORMAL) != 0;
}

bool MediaSource::next(Picture& picture) {
    AVFrame* frame = _frames[0].get();
    if (_given < _decoded) {
        frame = _frames[_given++].get();
    } else if (!decode(*frame)) {
        if (_damage.empty()) return false;
        fail("damaged, " + std::to_string(_number) + (_number == 1 ? " picture" : " pictures") +
             " decoded: " + _damage);
    }
    stamp(*frame, picture);
    try {
        _converter->convert(*frame, picture);
    } catch (const Failure& failure) {
        fail(failure.what());
    }
    return true;
}

void MediaSource::stamp(const AVFrame& frame, Picture& picture) {
    const std::int64_t timestamp = frame.best_effort_timestamp;
    const double previous = _seconds;
    if (_number == 0) {
        _firstTimestamp = timestamp;
    } else {
        _seconds += 1 / (_frameRate > 0 ? _frameRate : 25.0);
        if (timestamp != AV_NOPTS_VALUE && _firstTimestamp != AV_NOPTS_VALUE) {
            const double seconds = static_cast<double>(timestamp - _firstTimestamp) * av_q2d(_stream->time_base);
            if (seconds > previous) _seconds = seconds;
        }
    }
    picture.seconds = _seconds;
    picture.number = _number++;
}

void MediaSource::rewind() {
    if (!seekable()) fail("cannot start over: it is a stream that can be read once");
    if (!seekToStart()) open();
}

/// Quick where the input allows it. True if the first picture has been decoded afterwards.
bool MediaSource::seekToStart() {
    if (pictureFile() || _firstTimestamp == AV_NOPTS_VALUE) return false;
    if (av_seek_frame(_format.get(), _stream->index, _firstTimestamp, AVSEEK_FLAG_BACKWARD) < 0) return false;
    avcodec_flush_buffers(_codec.get());
    startOver();
    if (!decode(*_frames[0])) return false;
    _decoded = 1;
    return _frames[0]->best_effort_timestamp == _firstTimestamp;
}

/// The next frame that can be decoded; false at the end. Damage on the way is noted and passed over.
bool MediaSource::decode(AVFrame& frame) {
    for (;;) {
        const int result = avcodec_receive_frame(_codec.get(), &frame);
        if (result == 0) {
            if (frame.decode_error_flags != 0 || (frame.flags & AV_FRAME_FLAG_CORRUPT) != 0) {
                noteDamage("parts of a picture are missing");
            }
            return true;
        }
        if (result == AVERROR_EOF) return false;
        if (result != AVERROR(EAGAIN)) {
            noteDamage(errorText(result));
            if (_draining && ++_drainErrors > maxDrainErrors) return false;
        }
        feed();
    }
}

/// Hands the decoder one more packet, or tells it that none follows.
void MediaSource::feed() {
    while (!_packetWaits && !_draining) {
        const int result = _raw ? _raw->read(*_packet) : av_read_frame(_format.get(), _packet.get());
        if (result < 0) {
            _draining = true;
            if (result != AVERROR_EOF) noteDamage("reading fails: " + errorText(result));
            if (cutShort()) noteDamage("the file is cut short");
            avcodec_send_packet(_codec.get(), nullptr);
            return;
        }
        _packetWaits = _packet->stream_index == _stream->index;
        if (!_packetWaits) av_packet_unref(_packet.get());
    }
    if (!_packetWaits) return;
    if ((_packet->flags & AV_PKT_FLAG_CORRUPT) != 0) noteDamage("the file is cut short or damaged");
    _readUntil = std::max(_readUntil, _packet->pos + _packet->size);
    const int result = avcodec_send_packet(_codec.get(), _packet.get());
    if (result == AVERROR(EAGAIN)) return;
    if (result < 0) noteDamage(errorText(result));
    av_packet_unref(_packet.get());
    _packetWaits = false;
}

/// Whether the file was cut short: by its own header it goes on here. Demuxers report a normal end.
bool MediaSource::cutShort() const {
    const std::int64_t size = _format->pb ? avio_size(_format->pb) : -1;
    if (size <= 0) return false;
    if (demuxer() == "yuv4mpegpipe") return _readUntil < size;
    if (demuxer().starts_with("matroska")) return matroskaCutShort(*_format->pb, size);
    const int entries = avformat_index_get_entries_count(_stream);
    for (int i = 0; i < entries; ++i) {
        const AVIndexEntry* const entry = avformat_index_get_entry(_stream, i);
        if (entry->pos + entry->size > size) return true;
    }
    return false;
}

void MediaSource::noteDamage(const std::string& damage) {
    if (_damage.empty()) _damage = damage;
}

}  // namespace

void showMediaLog(bool on) {
    av_log_set_level(on ? AV_LOG_INFO : AV_LOG_QUIET);
}

std::unique_ptr<Source> openMedia(const std::string& path) {
    return std::make_unique<MediaSource>(path);
}

}  // namespace zetplay
