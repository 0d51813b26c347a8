#include "config/combo_conflicts.h"
#include "config/default_config.h"

#include <benchmark/benchmark.h>

// The marks of a large list are made anew after every edit: 10,000 combos within a frame (16 ms),
// and linear in their number.

namespace {

using namespace tamsel;

std::vector<Shortcut> manyCombos(std::int64_t count) {
    std::vector<Shortcut> combos;
    for (std::int64_t i = 0; i < count; ++i) {
        Shortcut combo{.id = "0A8E2C36-6B0F-4D2E-9C55-" + std::to_string(100000000000 + i),
                       .enabled = true};
        combo.keys = {static_cast<std::uint32_t>(4 + i % 150), {"command", "shift"}};
        if (i % 3 == 0)
            combo.keys.modifiers = {"right_option", "fn"};
        combos.push_back(std::move(combo));
    }
    return combos;
}

void marks(benchmark::State& state) {
    const auto combos = manyCombos(state.range(0));
    const auto builtIn = uncoveredDefaultShortcuts(combos);
    const std::vector<KeyMapping> mappings(100,
                                           KeyMapping{.id = "", .enabled = true, .from = {30, {}}});
    for (auto _ : state) {
        benchmark::DoNotOptimize(conflictingIds(combos, builtIn));
        benchmark::DoNotOptimize(systemConflicts(combos, builtIn));
        const auto froms = enabledMappingFroms(mappings);
        for (const Shortcut& combo : combos)
            benchmark::DoNotOptimize(isMappingConflict(combo, froms));
    }
    state.SetComplexityN(state.range(0));
}
BENCHMARK(marks)
    ->Arg(1250)
    ->Arg(2500)
    ->Arg(5000)
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

} // namespace
