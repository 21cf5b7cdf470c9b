#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

extern "C" {
#include <libavcodec/codec_id.h>
#include <libavutil/pixfmt.h>
}

namespace zetplay::test {

/// A directory of its own, removed with all that is in it.
class ScratchDirectory {
public:
    ScratchDirectory();
    ~ScratchDirectory();
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;
    std::string path(const std::string& name) const { return (_directory / name).string(); }
    /// Writes a file and gives its path.
    std::string write(const std::string& name, const std::string& content) const;

private:
    std::filesystem::path _directory;
};

/// What a test video is made of. Each plane of each picture is one row after the other, without padding.
struct Video {
    int width = 0;
    int height = 0;
    AVPixelFormat format = AV_PIX_FMT_YUV420P;
    AVColorSpace matrix = AVCOL_SPC_UNSPECIFIED;
    AVColorRange range = AVCOL_RANGE_UNSPECIFIED;
    AVCodecID codec = AV_CODEC_ID_FFV1;  ///< FFV1 keeps every sample
};

using Planes = std::vector<std::vector<std::uint8_t>>;

/// Encodes `pictures` at 10 a second into a container that goes by the name's ending.
void encode(const Video& video, const std::vector<Planes>& pictures, const std::string& path);

}  // namespace zetplay::test
