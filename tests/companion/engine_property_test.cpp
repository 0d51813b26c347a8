// Long random sequences of keys, configurations, seizures and losses.
#include "engine/engine.h"

#include <array>
#include <gtest/gtest.h>
#include <map>
#include <numeric>
#include <random>
#include <set>

namespace tamsel::engine {
namespace {

constexpr DeviceIndex deviceCount = 3;
/// Few keys, so that they meet: letters, a media key, modifiers, buttons, the lock-out chord.
constexpr std::uint32_t usages[] = {4,   5,   6,   57,     127,    224, 225, 227, 228,
                                    231, 255, 300, 0x1001, 0x1020, 40,  41,  42};
constexpr unsigned lockOutKeys = 3;

/// What a configuration may hold: with plain mappings alone it is known what is held at any time;
/// chords lift and restore.
enum class Content { plainMappings, everything };

/// Checks each output against what the virtual device holds, and each release action against what
/// began.
class HeldKeys {
public:
    void take(const Effects& effects) {
        for (const ShortcutAction* action : effects.actions) {
            if (action->type == ActionType::command)
                ++m_begun[action->value];
            if (action->type == ActionType::openURL) {
                EXPECT_GE(--m_begun[action->value], 0) << "ended " << action->value << " twice";
            }
        }
        for (const OutputEvent& event : effects.outputs) {
            const bool isChange = event.edge == Edge::down ? m_held.insert(event.usage).second
                                                           : m_held.erase(event.usage) == 1;
            EXPECT_TRUE(isChange) << "usage " << event.usage << " twice in the same direction";
        }
    }
    const std::set<std::uint32_t>& held() const { return m_held; }
    int begun() const {
        return std::accumulate(m_begun.begin(), m_begun.end(), 0,
                               [](int sum, const auto& entry) { return sum + entry.second; });
    }

private:
    std::set<std::uint32_t> m_held;
    std::map<std::string, int> m_begun;
};

class Monkey {
public:
    Monkey(unsigned seed, Content content) : m_random(seed), m_content(content) {
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
        if (m_content == Content::everything)
            return;
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
        EXPECT_EQ(m_keys.begun(), 0) << "begun and not ended";
    }

private:
    unsigned pick(unsigned count) { return static_cast<unsigned>(m_random() % count); }
    std::uint32_t anyUsage() { return usages[pick(std::size(usages))]; }

    void reload() {
        m_keys.take(m_engine.reload(randomCfg()));
        EXPECT_TRUE(m_keys.held().empty());
        EXPECT_EQ(m_keys.begun(), 0);
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
        m_keys.take(outcome.effects);
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

    KeyDefinition plainKey() { return {anyUsage(), {}}; }

    /// A hold-mode combo's press and release actions have one value of their own.
    Shortcut randomCombo(unsigned number) {
        const char* const chords[] = {"", "a", "left_command+b", "shift+fn+left_arrow", "option"};
        Shortcut combo{.id = "id", .enabled = pick(5) != 0, .keys = randomKey()};
        combo.action = {ActionType::keyPress, chords[pick(std::size(chords))]};
        if (pick(3) == 0) {
            combo.action = {ActionType::command, std::to_string(number)};
            combo.actionUp = {ActionType::openURL, std::to_string(number)};
        }
        return combo;
    }

    Cfg randomCfg() {
        const bool plain = m_content == Content::plainMappings;
        Cfg cfg;
        for (unsigned i = pick(12); i > 0; --i)
            cfg.mappings.push_back(
                {"id", pick(5) != 0, plain ? plainKey() : randomKey(), {anyUsage(), {}}});
        for (unsigned i = plain ? 0 : pick(20); i > 0; --i)
            cfg.shortcuts.push_back(randomCombo(i));
        return cfg;
    }

    std::mt19937 m_random;
    Content m_content;
    Engine m_engine;
    HeldKeys m_keys;
    /// What each key that is down produced, as the engine reported it.
    std::map<std::pair<DeviceIndex, std::uint32_t>, std::uint32_t> m_produced;
    std::array<Seizure, deviceCount> m_seizures{};
    std::int64_t m_time = 0;
};

void run(Content content) {
    for (unsigned seed = 0; seed < 200 && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Monkey monkey(seed, content);
        for (int i = 0; i < 1000; ++i)
            monkey.step();
        monkey.letGo();
    }
}

TEST(EngineProperty, whatIsHeldIsWhatTheKeysDownProduced) {
    run(Content::plainMappings);
}

TEST(EngineProperty, nothingStaysHeldOrBegun) {
    run(Content::everything);
}

} // namespace
} // namespace tamsel::engine
