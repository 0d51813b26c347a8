// Long random sequences of keys, configurations, seizures and losses.
#include "engine/engine.h"

#include <array>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>

namespace tamsel::engine {
namespace {

constexpr DeviceIndex deviceCount = 3;
/// Few keys, so that they meet: letters, a media key, modifiers, buttons, the lock-out chord.
constexpr std::uint32_t usages[] = {4,   5,   6,   57,     127,    224, 225, 227, 228,
                                    231, 255, 300, 0x1001, 0x1020, 40,  41,  42};
constexpr unsigned lockOutKeys = 3;

/// Checks each output against what the virtual device holds.
class HeldKeys {
public:
    void take(Outputs outputs) {
        for (const OutputEvent& event : outputs) {
            const bool isChange = event.edge == Edge::down ? m_held.insert(event.usage).second
                                                           : m_held.erase(event.usage) == 1;
            EXPECT_TRUE(isChange) << "usage " << event.usage << " twice in the same direction";
        }
    }
    const std::set<std::uint32_t>& held() const { return m_held; }

private:
    std::set<std::uint32_t> m_held;
};

class Monkey {
public:
    explicit Monkey(unsigned seed) : m_random(seed) {
        for (DeviceIndex device = 0; device < deviceCount; ++device)
            replug(device);
        reload();
    }

    void step() {
        const unsigned dice = pick(100);
        const auto device = static_cast<DeviceIndex>(pick(deviceCount));
        if (dice < 92)
            send(device, usages[pick(std::size(usages) - lockOutKeys)],
                 pick(2) == 0 ? Edge::down : Edge::up);
        else if (dice < 94)
            send(device, anyUsage(), pick(5) == 0 ? Edge::down : Edge::up);
        else if (dice < 96)
            reload();
        else if (dice < 97)
            replug(device);
        else
            setSeizure(device, pick(3) != 0 ? Seizure::seized : Seizure::watched);
        std::set<std::uint32_t> expected;
        for (const auto& [key, output] : m_produced)
            expected.insert(output);
        EXPECT_EQ(m_keys.held(), expected);
    }

    void letGo() {
        for (DeviceIndex device = 0; device < deviceCount; ++device) {
            for (const std::uint32_t usage : usages)
                send(device, usage, Edge::up);
        }
        EXPECT_TRUE(m_keys.held().empty()) << "held although no key is down";
    }

private:
    unsigned pick(unsigned count) { return static_cast<unsigned>(m_random() % count); }
    std::uint32_t anyUsage() { return usages[pick(std::size(usages))]; }

    void reload() {
        m_keys.take(m_engine.reload(randomCfg()));
        m_produced.clear();
    }

    void replug(DeviceIndex device) {
        m_keys.take(m_engine.removeDevice(device));
        m_produced.clear();
        m_engine.addDevice(device);
        m_seizures[device] = Seizure::watched;
        setSeizure(device, Seizure::seized);
    }

    void setSeizure(DeviceIndex device, Seizure seizure) {
        m_keys.take(m_engine.setSeizure(device, seizure));
        if (std::exchange(m_seizures[device], seizure) == Seizure::seized &&
            seizure == Seizure::watched)
            m_produced.clear();
    }

    void send(DeviceIndex device, std::uint32_t usage, Edge edge) {
        const Outcome outcome = m_engine.handle({EngineTime(++m_time), device, usage, edge});
        m_keys.take(outcome.outputs);
        if (edge == Edge::up)
            m_produced.erase({device, usage});
        else if (outcome.report && outcome.report->action != keySuppress)
            m_produced[{device, usage}] = outcome.report->outputUsage;
        if (!outcome.lockOut)
            return;
        m_produced.clear();
        m_seizures = {};
        for (DeviceIndex each = 0; each < deviceCount; ++each)
            setSeizure(each, Seizure::seized);
    }

    KeyDefinition randomKey() {
        const char* const names[] = {"control", "left_control", "shift", "fn", "right_command"};
        KeyDefinition key{anyUsage(), {}};
        while (pick(4) == 0)
            key.modifiers.emplace_back(names[pick(std::size(names))]);
        return key;
    }

    Cfg randomCfg() {
        Cfg cfg;
        for (unsigned i = pick(12); i > 0; --i)
            cfg.mappings.push_back({"id", pick(5) != 0, randomKey(), {anyUsage(), {}}});
        return cfg;
    }

    std::mt19937 m_random;
    Engine m_engine;
    HeldKeys m_keys;
    /// What each key that is down produced, as the engine reported it.
    std::map<std::pair<DeviceIndex, std::uint32_t>, std::uint32_t> m_produced;
    std::array<Seizure, deviceCount> m_seizures{};
    std::int64_t m_time = 0;
};

TEST(EngineProperty, whatIsHeldIsWhatTheKeysDownProduced) {
    for (unsigned seed = 0; seed < 200 && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Monkey monkey(seed);
        for (int i = 0; i < 1000; ++i)
            monkey.step();
        monkey.letGo();
    }
}

} // namespace
} // namespace tamsel::engine
