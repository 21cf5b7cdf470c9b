#pragma once

#include <atomic>
#include <cstdint>
#include <exception>
#include <optional>

#include "bus/annotations.h"
#include "bus/driver.h"
#include "bus/metadata.h"
#include "media/source.h"

namespace zetplay {

/// Sets the pictures of a source on the bus, on one timeline that goes on when the source starts over. One thread at a
/// time; the counts and `loop` on any.
class Feed {
public:
    Feed(Source& source, Driver& driver) : _source(source), _driver(driver) {}

    /// Reads the next picture unless one is waiting to be shown; false at the end of the input. Throws `Failure` where
    /// the input is damaged.
    bool fetch();
    bool waiting() const { return _waiting; }
    /// When the waiting picture is due, seconds.
    double due() const { return _due; }
    /// Time between two pictures, seconds.
    double period() const;
    /// Sets the waiting picture on the bus.
    void show();
    /// Discards the waiting picture.
    void drop();
    /// Replaces the waiting picture with the next one. False if there is none: then the old one stays waiting. Where
    /// the input is damaged, the next `fetch` throws.
    bool skip();
    /// Sets the last picture again.
    void showAgain();

    /// Start over at the end.
    std::atomic<bool> loop = false;
    /// Whether a still picture comes again with each `fetch`, or is one frame.
    bool repeatStill = false;

    /// What each frame carries, unless something is set below.
    void setMetadata(Metadata metadata) { _metadata = std::move(metadata); }

    // What the next frames carry, in place of the metadata's.

    /// Nothing for the source's own.
    void setColor(const std::optional<zet::FrameColor>& color) { _color = color; }
    void setLens(const std::optional<LensRegion>& lens);
    /// A frame carries faces or rectangles, so each takes the other's place.
    void setFaces(const std::vector<zet::FaceItem>& faces);
    void setRects(const std::vector<zet::RectItem>& rects);

    std::int64_t framesRead() const { return _read; }
    std::int64_t framesSet() const { return _set; }
    /// Pictures set for the first time, redraws not counted.
    std::int64_t framesShown() const { return _shown; }

private:
    void set();
    Annotations annotations() const;

    Source& _source;
    Driver& _driver;
    Picture _picture;  // waiting
    Picture _last;     // set last
    std::optional<zet::FrameColor> _color;
    Metadata _metadata;
    Annotations _own;  // in place of the metadata's, where the flags say so
    bool _ownLens = false;
    bool _ownItems = false;
    bool _waiting = false;
    std::exception_ptr _failure;  // of a skip
    bool _stillShown = false;
    double _start = 0;  // of the source on the timeline
    double _due = 0;
    std::atomic<std::int64_t> _read = 0;
    std::atomic<std::int64_t> _set = 0;
    std::atomic<std::int64_t> _shown = 0;
};

}  // namespace zetplay
