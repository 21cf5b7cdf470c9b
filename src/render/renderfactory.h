#pragma once

#include <memory>

#include "zet/displayconfig.h"

namespace zet::ZETShow {

class Render;
class RenderThread;
struct ColorTransform;

/// The view of a `RenderMode`, with programs for these colours, complete and reached by the bus; empty for a number
/// that has none and for a view that can't be initialised. Render thread, with the context current.
std::shared_ptr<Render> createRender(int mode, const ColorTransform& color, DisplayConfig* config,
                                     RenderThread* thread);

}  // namespace zet::ZETShow
