// A set on the bus with observers on the setter's own thread.

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "zet/zet.h"

namespace {

void setWithObservers(benchmark::State& state, int count) {
    zet::DisplayConfig config;
    int heard = 0;
    std::vector<std::unique_ptr<zet::DisplayConfigKit>> observers;
    for (int i = 0; i < count; ++i) {
        observers.push_back(std::make_unique<zet::DisplayConfigKit>(&config));
        observers.back()->regist(
            zet::DCFG_CLEAR_COLOR,
            [&heard](zet::DisplayConfig&, zet::DisplayConfigUserData& delivery) { return heard += delivery.getInt(); },
            zet::DCFG_FLAG_VALUE);
    }
    for (auto _ : state) config.setConfig(zet::DCFG_CLEAR_COLOR, 1);
    benchmark::DoNotOptimize(heard);
}

void setUnobserved(benchmark::State& state) {
    setWithObservers(state, 0);
}

void setObserved(benchmark::State& state) {
    setWithObservers(state, 1);
}

void setObservedByEight(benchmark::State& state) {
    setWithObservers(state, 8);
}

BENCHMARK(setUnobserved);
BENCHMARK(setObserved);
BENCHMARK(setObservedByEight);

}  // namespace
