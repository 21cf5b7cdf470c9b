// The frame intake's chroma interleave beside memcpy of the same bytes.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "display/interleave.h"

namespace {

constexpr int pairs = 960 * 540;  // 1080p

void interleaveChroma(benchmark::State& state) {
    const std::vector<std::uint8_t> u(pairs, 1);
    const std::vector<std::uint8_t> v(pairs, 2);
    std::vector<std::uint8_t> uv(2 * pairs);
    for (auto _ : state) {
        zet::ZETShow::interleave(u.data(), v.data(), uv.data(), pairs);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * 2 * pairs);
}

void copySameBytes(benchmark::State& state) {
    const std::vector<std::uint8_t> from(2 * pairs, 1);
    std::vector<std::uint8_t> to(2 * pairs);
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), to.size());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * 2 * pairs);
}

BENCHMARK(interleaveChroma);
BENCHMARK(copySameBytes);

}  // namespace
