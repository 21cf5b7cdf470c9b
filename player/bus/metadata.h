#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "bus/annotations.h"

namespace zetplay {

/// What a metadata file says of the frames of an input:
///
///     {"frames": {"12": ENTRY, …}, "default": ENTRY}
///     ENTRY = {"lens": [cx, cy, rx, ry], "faces": [{"x", "y", "w", "h", "gender", "age", "name"}, …],
///              "rects": [[x, y, w, h], …]}
///
/// Everything may be left out but the sides of a face; an entry has faces or rectangles, not both.
class Metadata {
public:
    Metadata() = default;
    /// Throws `Failure` that names the file and the place in it.
    explicit Metadata(const std::string& path);

    /// What a frame carries; one without an entry takes the default.
    const Annotations& of(std::int64_t frame) const;

private:
    std::map<std::int64_t, Annotations> _frames;
    Annotations _default;
};

}  // namespace zetplay
