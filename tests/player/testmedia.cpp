#include "testmedia.h"

#include <fcntl.h>
#include <png.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <stdexcept>

#include "media/avhandles.h"
#include "media/mediasource.h"

extern "C" {
#include <libavutil/opt.h>
}

namespace zetplay::test {

namespace {

// Luma and chroma; none of the colours is out of range.
constexpr int quarters[4][3] = {{90, 110, 190}, {140, 70, 60}, {60, 210, 120}, {200, 50, 150}};

// The tests damage files on purpose: FFmpeg's messages about them are noise.
const bool quiet = (showMediaLog(false), true);

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

std::string y4m(int width, int height, const std::string& form, const std::vector<std::string>& pictures) {
    std::string file = "YUV4MPEG2 W" + std::to_string(width) + " H" + std::to_string(height) + " F25:1 " + form + "\n";
    for (const std::string& picture : pictures) file += "FRAME\n" + picture;
    return file;
}

void repack(const std::string& from, const std::string& to) {
    AVFormatContext* input = nullptr;
    avformat_open_input(&input, from.c_str(), nullptr, nullptr);
    const FormatHandle owner(input);
    AVFormatContext* output = nullptr;
    avformat_alloc_output_context2(&output, nullptr, nullptr, to.c_str());
    AVStream* const stream = avformat_new_stream(output, nullptr);
    avcodec_parameters_copy(stream->codecpar, input->streams[0]->codecpar);
    stream->codecpar->codec_tag = avcodec_pix_fmt_to_codec_tag(AV_PIX_FMT_YUV420P);
    stream->time_base = input->streams[0]->time_base;
    avio_open(&output->pb, to.c_str(), AVIO_FLAG_WRITE);
    av_opt_set(output->priv_data, "allow_raw_vfw", "1", 0);  // Matroska refuses raw video without it
    if (avformat_write_header(output, nullptr) < 0) throw std::runtime_error(to);
    const PacketHandle packet(av_packet_alloc());
    for (; av_read_frame(input, packet.get()) >= 0; av_packet_unref(packet.get())) {
        av_packet_rescale_ts(packet.get(), input->streams[0]->time_base, stream->time_base);
        av_write_frame(output, packet.get());
    }
    av_write_trailer(output);
    avio_closep(&output->pb);
    avformat_free_context(output);
}

Pipe::Pipe(const std::string& path, const std::string& content) {
    if (mkfifo(path.c_str(), 0600) != 0) throw std::runtime_error(path);
    _file = open(path.c_str(), O_RDWR | O_CLOEXEC);
    if (write(_file, content.data(), content.size()) != static_cast<ssize_t>(content.size()))
        throw std::runtime_error(path);
}

Pipe::~Pipe() {
    close(_file);
}

std::string quarteredVideo(int width, int height, int frames) {
    std::string picture;
    for (int plane = 0; plane < 3; ++plane) {
        const int w = plane == 0 ? width : width / 2;
        const int h = plane == 0 ? height : height / 2;
        for (int i = 0; i < w * h; ++i)
            picture += static_cast<char>(quarters[2 * (i / w * 2 / h) + i % w * 2 / w][plane]);
    }
    return y4m(width, height, fullRange, std::vector(static_cast<std::size_t>(frames), picture));
}

std::array<double, 3> shownColour(int quarter) {
    const auto [y, cb, cr] = quarters[quarter];
    return {y + 1.402 * (cr - 128), y - 0.344136 * (cb - 128) - 0.714136 * (cr - 128), y + 1.772 * (cb - 128)};
}

std::vector<std::uint8_t> samplesOf(const Picture& picture) {
    std::vector<std::uint8_t> samples(picture.y, picture.y + picture.height * picture.yLineSize);
    for (const std::uint8_t* plane : {picture.u, picture.v})
        samples.insert(samples.end(), plane, plane + picture.height / 2 * picture.uvLineSize);
    return samples;
}

std::vector<Picture> picturesOf(const std::string& path) {
    const auto source = openMedia(path);
    std::vector<Picture> pictures;
    for (Picture picture; source->next(picture);) pictures.push_back(picture);
    return pictures;
}

Image readPng(const std::string& path) {
    png_image format{};
    format.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&format, path.c_str())) throw std::runtime_error(path + ": " + format.message);
    format.format = PNG_FORMAT_RGB;
    Image image(static_cast<int>(format.width), static_cast<int>(format.height));
    if (!png_image_finish_read(&format, nullptr, image.rgb.data(), 0, nullptr))
        throw std::runtime_error(path + ": " + format.message);
    return image;
}

}  // namespace zetplay::test
