// One event through the engine: an unmapped key, a mapped one, and with many mappings loaded.

#include "engine/engine.h"

#include <benchmark/benchmark.h>

namespace {

using namespace tamsel;
using namespace tamsel::engine;

Cfg mappings(int count) {
    Cfg cfg;
    for (int i = 0; i < count; ++i)
        cfg.mappings.push_back(
            {std::to_string(i), true, {static_cast<std::uint32_t>(57 + i)}, {224}});
    return cfg;
}

void pressAndRelease(benchmark::State& state, std::uint32_t usage, int mappingCount) {
    constexpr DeviceIndex device = 0;
    Engine engine;
    engine.addDevice(device);
    engine.setSeizure(device, Seizure::seized);
    engine.reload(mappings(mappingCount));
    InputEvent event{};
    event.usage = usage;
    for (auto _ : state) {
        event.edge = Edge::down;
        benchmark::DoNotOptimize(engine.handle(event));
        event.edge = Edge::up;
        benchmark::DoNotOptimize(engine.handle(event));
    }
    state.SetItemsProcessed(state.iterations() * 2);
}

} // namespace

BENCHMARK_CAPTURE(pressAndRelease, unmapped, 4, 1);
BENCHMARK_CAPTURE(pressAndRelease, mapped, 57, 1);
BENCHMARK_CAPTURE(pressAndRelease, mapped_of_100, 57, 100);
