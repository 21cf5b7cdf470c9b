#pragma once

namespace zet::test {

/// GL objects that the module has made and not yet deleted, in all contexts: textures, frame buffers, programs,
/// shaders.
int liveGlNames();

}  // namespace zet::test
