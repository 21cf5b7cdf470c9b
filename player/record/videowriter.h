#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "media/image.h"

struct AVFrame;

namespace zetplay {

/// An MP4 file that grows picture by picture: H.264 where an encoder for it opens, else MPEG-4. All operations throw
/// `Failure` with the path and the cause.
class VideoWriter {
public:
    /// The size is that of the video; an odd side loses its last pixel. `frameRate` is what to expect.
    VideoWriter(const std::string& path, int width, int height, double frameRate);
    /// Without `finish` the file is of no use, and is removed.
    ~VideoWriter();
    VideoWriter(const VideoWriter&) = delete;
    VideoWriter& operator=(const VideoWriter&) = delete;

    /// A picture of another size than the video's is scaled to it. If the disk is full, `finish` still works.
    void add(const Pixels& pixels, double seconds);
    /// Makes the file whole. Nothing can be added any more; a second call does nothing.
    void finish();

private:
    struct Parts;

    void open(int width, int height, double frameRate);
    void holdRoom();
    /// Hands a frame to the encoder, or null for the end, and writes what comes out.
    void encode(const AVFrame* frame);
    [[noreturn]] void fail(const std::string& cause);

    std::string _path;
    std::unique_ptr<Parts> _parts;
};

}  // namespace zetplay
