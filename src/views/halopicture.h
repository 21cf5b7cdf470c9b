#pragma once

#include <cstdint>
#include <span>

namespace zet::ZETShow {

/// The halo behind the half sphere, 480 by 480, as `unpackPicture` reads it. Drawn at build time by
/// tools/halopicture.cpp.
extern const std::span<const std::uint8_t> haloPicture;

}  // namespace zet::ZETShow
