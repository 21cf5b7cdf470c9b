#include "media/bufferpool.h"

#include <new>

extern "C" {
#include <libavutil/buffer.h>
}

namespace zetplay {

void BufferPool::Unneeded::operator()(AVBufferPool* pool) const {
    av_buffer_pool_uninit(&pool);
}

AVBufferRef* BufferPool::get(std::size_t size) {
    if (!_pool || _size != size) _pool.reset(av_buffer_pool_init(size, nullptr));
    _size = size;
    AVBufferRef* const buffer = _pool ? av_buffer_pool_get(_pool.get()) : nullptr;
    if (!buffer) throw std::bad_alloc();
    return buffer;
}

}  // namespace zetplay
