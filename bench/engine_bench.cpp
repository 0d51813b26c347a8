// One event through the engine: an unmapped key, a mapped one, a combo; alone and among many.

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

/// Combos on the keys from 4 on in turn.
Cfg combos(int count, const std::vector<std::string>& modifiers) {
    Cfg cfg;
    for (int i = 0; i < count; ++i) {
        Shortcut combo{.id = std::to_string(i), .enabled = true};
        combo.keys.keyCode = static_cast<std::uint32_t>(4 + i % 50);
        combo.keys.modifiers = modifiers;
        combo.action = {ActionType::keyPress, "left_control+tab"};
        cfg.shortcuts.push_back(std::move(combo));
    }
    return cfg;
}

void pressAndRelease(benchmark::State& state, std::uint32_t usage, const Cfg& cfg) {
    constexpr DeviceIndex device = 0;
    Engine engine;
    engine.addDevice(device);
    engine.setSeizure(device, Seizure::seized);
    engine.reload(cfg);
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

BENCHMARK_CAPTURE(pressAndRelease, unmapped, 4, mappings(1));
BENCHMARK_CAPTURE(pressAndRelease, mapped, 57, mappings(1));
BENCHMARK_CAPTURE(pressAndRelease, mapped_of_100, 57, mappings(100));
BENCHMARK_CAPTURE(pressAndRelease, combo, 4, combos(1, {}));
BENCHMARK_CAPTURE(pressAndRelease, combo_of_10000, 4, combos(10000, {}));
// Walks all of its key's 200 combos.
BENCHMARK_CAPTURE(pressAndRelease, none_of_10000, 4, combos(10000, {"command"}));
