#pragma once

#include <memory>

#include "media/avhandles.h"
#include "media/bufferpool.h"

namespace zetplay {

/// Reads the pictures of a .y4m file like FFmpeg's demuxer, but into reused memory: fresh pages from the system for
/// each picture cost more than reading it.
class RawReader {
public:
    /// Begins at the first picture. Keeps references to both.
    RawReader(AVIOContext& io, const AVStream& stream);

    /// The next picture, or an error of FFmpeg's, as `av_read_frame` gives them.
    int read(AVPacket& packet);

private:
    AVIOContext& _io;
    const AVStream& _stream;
    std::int64_t _first;  ///< place of the first picture in the file
    std::int64_t _size;   ///< bytes of a picture
    BufferPool _pool;
};

}  // namespace zetplay
