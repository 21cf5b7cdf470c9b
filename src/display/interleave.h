#pragma once

#include <cstdint>

namespace zet::ZETShow {

/// Weaves two planes into pairs: `uv[2i]` is `u[i]`, `uv[2i + 1]` is `v[i]`. The planes must not overlap: then the
/// compiler vectorises the loop.
inline void interleave(const std::uint8_t* __restrict u, const std::uint8_t* __restrict v, std::uint8_t* __restrict uv,
                       int pairs) {
    for (int i = 0; i < pairs; ++i) {
        uv[2 * i] = u[i];
        uv[2 * i + 1] = v[i];
    }
}

}  // namespace zet::ZETShow
