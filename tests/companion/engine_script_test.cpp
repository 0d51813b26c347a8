// Runs the scripts in scripts/: what a line sets up or feeds in, and what must come out of it.
//
//   devices N                    N seized devices
//   map [MODIFIER+]...CODE [MODIFIER+]...CODE     an enabled mapping of the next configuration
//   disabled CODE CODE           a disabled one
//   reload                       applies the mappings given since the last reload
//   seize D | free D | lose D    what happens to a device
//   TIME DEVICE USAGE down|up    an event
//   > USAGE down|up              the next output of the step above; a step has no others
//   ~ ACTION USAGE | none | lock-out              what the step above reported
#include "engine/engine.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <sstream>

namespace tamsel::engine {
namespace {

std::vector<std::string> scripts() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(TAMSEL_SCRIPTS))
        names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

KeyDefinition key(const std::string& text) {
    KeyDefinition definition;
    std::istringstream parts(text);
    for (std::string part; std::getline(parts, part, '+');) {
        if (part.find_first_not_of("0123456789") == std::string::npos)
            definition.keyCode = static_cast<std::uint32_t>(std::stoul(part));
        else
            definition.modifiers.push_back(part);
    }
    return definition;
}

class Script {
public:
    void run(const std::string& line) {
        std::istringstream words(line);
        std::string first;
        std::string second;
        std::string third;
        words >> first >> second >> third;
        if (first == ">")
            return expectOutput(second + " " + third);
        if (first == "~")
            return expectReport(third.empty() ? second : second + " " + third);
        expectNoMore();
        m_reported.clear();
        if (first == "map" || first == "disabled")
            m_next.mappings.push_back({"id", first == "map", key(second), key(third)});
        else if (first == "reload")
            take(m_engine.reload(std::exchange(m_next, {})));
        else if (first == "devices")
            addDevices(static_cast<DeviceIndex>(std::stoul(second)));
        else if (first == "seize" || first == "free")
            take(m_engine.setSeizure(static_cast<DeviceIndex>(std::stoul(second)),
                                     first == "seize" ? Seizure::seized : Seizure::watched));
        else if (first == "lose")
            take(m_engine.removeDevice(static_cast<DeviceIndex>(std::stoul(second))));
        else
            feed(line);
    }

    void expectNoMore() {
        EXPECT_THAT(m_pending, testing::IsEmpty()) << "outputs that the script does not expect";
        m_pending.clear();
    }

private:
    void addDevices(DeviceIndex count) {
        for (DeviceIndex device = 0; device < count; ++device) {
            m_engine.addDevice(device);
            take(m_engine.setSeizure(device, Seizure::seized));
        }
    }

    void feed(const std::string& line) {
        std::istringstream words(line);
        std::int64_t time = 0;
        InputEvent event;
        std::string edge;
        ASSERT_TRUE(words >> time >> event.device >> event.usage >> edge) << "not a script line";
        event.time = EngineTime(time);
        event.edge = edge == "down" ? Edge::down : Edge::up;
        const Outcome outcome = m_engine.handle(event);
        take(outcome.outputs);
        if (outcome.lockOut)
            m_reported = "lock-out";
        else if (outcome.report)
            m_reported = std::to_string(outcome.report->action) + " " +
                         std::to_string(outcome.report->outputUsage);
        else
            m_reported = "none";
    }

    void take(Outputs outputs) {
        for (const OutputEvent& event : outputs)
            m_pending.push_back(std::to_string(event.usage) +
                                (event.edge == Edge::down ? " down" : " up"));
    }

    void expectReport(const std::string& expected) { EXPECT_EQ(m_reported, expected); }

    void expectOutput(const std::string& expected) {
        if (m_pending.empty()) {
            ADD_FAILURE() << "missing output " << expected;
            return;
        }
        EXPECT_EQ(m_pending.front(), expected);
        m_pending.erase(m_pending.begin());
    }

    Engine m_engine;
    Cfg m_next;
    std::vector<std::string> m_pending;
    std::string m_reported;
};

class EngineScript : public testing::TestWithParam<std::string> {};

TEST_P(EngineScript, givesTheExpectedOutputs) {
    std::ifstream file(TAMSEL_SCRIPTS "/" + GetParam() + ".txt");
    ASSERT_TRUE(file.is_open());
    Script script;
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        SCOPED_TRACE(GetParam() + ".txt:" + std::to_string(number) + ": " + line);
        if (!line.empty() && line.front() != '#')
            script.run(line);
    }
    script.expectNoMore();
}

INSTANTIATE_TEST_SUITE_P(Scripts, EngineScript, testing::ValuesIn(scripts()),
                         [](const auto& script) { return script.param; });

} // namespace
} // namespace tamsel::engine
