#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "zet/records.h"

namespace zetplay {

/// A failure that ends the run with status 1. The text is its line on standard error.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One picture as the module takes it: YUV 4:2:0 of 8 bits, top row first. A copy has the same planes.
struct Picture {
    int width = 0;       ///< pixels, even
    int height = 0;      ///< pixels, even
    int yLineSize = 0;   ///< bytes: `width`, rounded up to a multiple of 4
    int uvLineSize = 0;  ///< bytes: half of `yLineSize`
    const std::uint8_t* y = nullptr;
    const std::uint8_t* u = nullptr;
    const std::uint8_t* v = nullptr;
    std::shared_ptr<const void> memory;  ///< keeps the planes alive; nobody changes them
    zet::FrameColor color;
    std::int64_t number = 0;  ///< counts from 0 at the start of the input
    double seconds = 0;       ///< presentation time from the start of the input
};

/// Where pictures come from: a file, or the synthetic camera.
class Source {
public:
    virtual ~Source() = default;

    /// Replaces `picture` with the next one, after releasing its memory; false at the end of the input. Throws
    /// `Failure` where the input is damaged, after all pictures decoded before have been given.
    virtual bool next(Picture& picture) = 0;
    /// A read that waits for data asks `given` when a signal comes and now and then, on any thread. True ends the read:
    /// ignore what `next` throws then.
    virtual void giveUpWhen(const std::function<bool()>& given) { static_cast<void>(given); }
    /// Back to the first picture.
    virtual void rewind() = 0;
    /// One picture and no more: a still.
    virtual bool still() const = 0;
    /// Pictures a second, as far as the input says; 0 if unknown.
    virtual double frameRate() const = 0;
    /// Pictures from start to end, as far as the input says; 0 if unknown or without end.
    virtual std::int64_t frameCount() const { return 0; }
    /// Name for the title of the window.
    virtual std::string name() const = 0;
};

/// A file that FFmpeg opens. Throws `Failure` if it is missing, empty, not decodable or has no picture.
std::unique_ptr<Source> openMedia(const std::string& path);

enum class Mount { ceiling, wall };

struct SyntheticSize {
    int width = 1920;
    int height = 1920;
    double frameRate = 30;
};

/// The built-in fisheye camera: an equidistant 180-degree lens in a small textured room. The same picture for the
/// same number, without end.
std::unique_ptr<Source> openSynthetic(const SyntheticSize& size, Mount mount);

}  // namespace zetplay
