#include "coding/seen_devices_coding.h"
#include "config/cfg_samples.h"

#include <gtest/gtest.h>
#include <random>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace tamsel {
namespace {

using Random = std::mt19937;

std::size_t below(Random& random, std::size_t limit) {
    return limit == 0 ? 0 : random() % limit;
}

/// One small change: a byte, a marker, a swapped pair, a cut, a repeated stretch. The trailer is
/// spared half of the time, so that more documents get past it.
void mutate(Bytes& bytes, Random& random) {
    constexpr std::size_t trailer = 32;
    const std::size_t end =
        random() % 2 == 0 && bytes.size() > trailer ? bytes.size() - trailer : bytes.size();
    const std::size_t at = below(random, end);
    const std::size_t other = below(random, end);
    if (bytes.empty()) {
        return;
    }
    switch (random() % 6) {
    case 0:
        bytes[at] = static_cast<std::uint8_t>(random());
        break;
    case 1:
        bytes[at] = static_cast<std::uint8_t>(bytes[at] ^ (1U << (random() % 8)));
        break;
    case 2:
        bytes[at] = static_cast<std::uint8_t>((random() % 14) << 4U | random() % 16);
        break;
    case 3:
        std::swap(bytes[at], bytes[other]);
        break;
    case 4:
        bytes[at] = bytes[other];
        break;
    default: {
        const std::size_t length = below(random, std::min<std::size_t>(8, bytes.size() - at));
        bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                    bytes.begin() + static_cast<std::ptrdiff_t>(at + length));
        break;
    }
    }
}

/// A small configuration with one of everything, then ever stranger descendants of its bytes.
TEST(FuzzCfgCoding, mutationsFromAFixedSeed) {
    Cfg small = test::fullCfg();
    small.shortcuts.erase(small.shortcuts.begin() + 2);
    const std::string devices = encodeSeenDevices({{}, {.vendorID = -1, .product = "é\n"}});
    const Bytes seeds[] = {encodeCfg(small).value(), encodeCfg(Cfg()).value(),
                           Bytes(devices.begin(), devices.end())};
    Random random(20240607);
    std::size_t accepted = 0;
    for (int round = 0; round < 100000; ++round) {
        Bytes bytes = seeds[round % 3];
        for (std::size_t changes = 1 + below(random, 4); changes > 0; --changes) {
            mutate(bytes, random);
        }
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
        accepted += decodeCfg(bytes) ? 1 : 0;
    }
    // Mutations that all fail at the door would test nothing behind it.
    EXPECT_GT(accepted, 5000U);
    EXPECT_LT(accepted, 60000U);
}

} // namespace
} // namespace tamsel
