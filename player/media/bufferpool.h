#pragma once

#include <cstddef>
#include <memory>

struct AVBufferPool;
struct AVBufferRef;

namespace zetplay {

/// Memory that is reused after its last owner, on any thread, has released it.
class BufferPool {
public:
    /// Memory of `size` bytes, uninitialised, which the caller owns. Frees what the pool holds of another size.
    AVBufferRef* get(std::size_t size);

private:
    struct Unneeded {
        void operator()(AVBufferPool* pool) const;
    };

    std::unique_ptr<AVBufferPool, Unneeded> _pool;
    std::size_t _size = 0;
};

}  // namespace zetplay
