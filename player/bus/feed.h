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

/// Brings the pictures of a source onto the bus, on one timeline that goes on when the source starts over. One thread
/// at a time; the counts and `loop` on any.
class Feed {
public:
    Feed(Source& source, Driver& driver) : _source(source), _driver(driver) {}

    /// Makes the next picture wait, if none does; false at the end of the input. Throws `Failure` where it is damaged.
    bool fetch();
    bool waiting() const { return _waiting; }
    /// When the waiting picture is due, seconds.
    double due() const { return _due; }
    /// Time between two pictures, seconds.
    double period() const;
    /// Sets the waiting picture on the bus.
    void show();
    /// Gives the waiting picture up.
    void drop();
    /// Puts the next picture in the place of the waiting one. False if there is none: then that one waits on, and where
    /// the input is damaged the next `fetch` throws.
    bool skip();
    /// Sets the last picture again.
    void showAgain();

    /// Start over at the end.
    std::atomic<bool> loop = false;
    /// A still picture is one frame, or one that comes as often as it is asked for.
    bool repeatStill = false;

    /// What goes with each frame, as long as nothing else is set below.
    void setMetadata(Metadata metadata) { _metadata = std::move(metadata); }

    // What goes with the frames that follow, whatever the metadata say.

    /// Nothing for those that the source tells.
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
    Annotations _own;  // in the metadata's place, where these say so
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
