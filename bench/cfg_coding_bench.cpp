#include "coding/cfg_coding.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <plist/plist.h>

// Saving and sending a large configuration: each direction of 10,000 combos is to stay below 10 ms.
// The C library, which does half the work (it builds a tree of untyped values), is the measure.

namespace {

using namespace tamsel;

Cfg largeCfg() {
    Cfg cfg;
    for (std::uint32_t i = 0; i < 10000; ++i) {
        const std::string number = std::to_string(100000 + i);
        cfg.shortcuts.push_back(Shortcut{
            .id = "0A8E2C36-6B0F-4D2E-9C55-7D0C4E" + number,
            .enabled = i % 2 == 0,
            .title = "Open application " + number,
            .keys = {4 + i % 26, {"right_option"}},
            .action = {ActionType::command, "open -a 'Application " + number + "'"},
        });
    }
    return cfg;
}

void encode(benchmark::State& state) {
    const Cfg cfg = largeCfg();
    for (auto _ : state) {
        benchmark::DoNotOptimize(encodeCfg(cfg));
    }
}
BENCHMARK(encode)->Unit(benchmark::kMillisecond);

void decode(benchmark::State& state) {
    const Bytes bytes = encodeCfg(largeCfg()).value_or(Bytes());
    for (auto _ : state) {
        benchmark::DoNotOptimize(decodeCfg(bytes));
    }
    state.counters["bytes"] = static_cast<double>(bytes.size());
}
BENCHMARK(decode)->Unit(benchmark::kMillisecond);

plist_t parse(const Bytes& bytes) {
    plist_t root = nullptr;
    plist_from_bin(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::uint32_t>(bytes.size()), &root);
    return root;
}

void libraryEncode(benchmark::State& state) {
    plist_t root = parse(encodeCfg(largeCfg()).value_or(Bytes()));
    for (auto _ : state) {
        char* out = nullptr;
        std::uint32_t length = 0;
        plist_to_bin(root, &out, &length);
        benchmark::DoNotOptimize(length);
        std::free(out);
    }
    plist_free(root);
}
BENCHMARK(libraryEncode)->Unit(benchmark::kMillisecond);

void libraryDecode(benchmark::State& state) {
    const Bytes bytes = encodeCfg(largeCfg()).value_or(Bytes());
    for (auto _ : state) {
        plist_free(parse(bytes));
    }
}
BENCHMARK(libraryDecode)->Unit(benchmark::kMillisecond);

} // namespace
