// Runs the scripts in scripts/: what a line sets up or feeds in, and what must come out of it.
//
//   devices N                    N seized devices
//   map [MODIFIER+]...CODE [MODIFIER+]...CODE     an enabled mapping of the next configuration
//   disabled CODE CODE           a disabled one
//   combo [MODIFIER+]...CODE TYPE [VALUE]         an enabled combo of the next configuration
//   up TYPE [VALUE]              the release action of the last combo
//   reload                       applies what was given since the last reload
//   type TEXT                    types the text
//   seize D | free D | lose D    what happens to a device
//   TIME DEVICE USAGE down|up    an event
//   ! TYPE [VALUE]               the next action that the step above fired
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

ShortcutAction action(const std::string& text) {
    using enum ActionType;
    const std::size_t blank = std::min(text.find(' '), text.size());
    for (const ActionType type : {command, keyPress, typeText, pasteClipboard, openURL}) {
        if (name(type) == text.substr(0, blank))
            return {type, text.substr(std::min(blank + 1, text.size()))};
    }
    ADD_FAILURE() << "not an action: " << text;
    return {};
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
            return expectNext(m_pending, second + " " + third);
        if (first == "~")
            return expectReport(third.empty() ? second : second + " " + third);
        if (first == "!")
            return expectNext(m_fired, line.substr(2));
        expectNoMore();
        m_reported.clear();
        if (first == "map" || first == "disabled")
            m_next.mappings.push_back({"id", first == "map", key(second), key(third)});
        else if (first == "combo")
            m_next.shortcuts.push_back(
                {.id = "id",
                 .enabled = true,
                 .keys = key(second),
                 .action = action(line.substr(line.find(second) + second.size() + 1))});
        else if (first == "up")
            m_next.shortcuts.back().actionUp = action(line.substr(line.find(second)));
        else if (first == "type")
            type(second);
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
        EXPECT_THAT(m_fired, testing::IsEmpty()) << "actions that the script does not expect";
        m_pending.clear();
        m_fired.clear();
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
        take(outcome.effects);
        if (outcome.lockOut)
            m_reported = "lock-out";
        else if (outcome.report)
            m_reported = std::to_string(outcome.report->action) + " " +
                         std::to_string(outcome.report->outputUsage);
        else
            m_reported = "none";
    }

    void take(const Effects& effects) {
        takeOutputs(effects.outputs);
        for (const ShortcutAction* fired : effects.actions)
            m_fired.push_back(std::string(name(fired->type)) +
                              (fired->value.empty() ? "" : " " + fired->value));
    }

    void takeOutputs(Outputs outputs) {
        for (const OutputEvent& event : outputs)
            m_pending.push_back(std::to_string(event.usage) +
                                (event.edge == Edge::down ? " down" : " up"));
    }

    void type(const std::string& text) {
        const auto typed = m_engine.type(text, 10);
        m_reported = typed ? "none" : "refused";
        if (typed)
            takeOutputs(*typed);
    }

    void expectReport(const std::string& expected) { EXPECT_EQ(m_reported, expected); }

    static void expectNext(std::vector<std::string>& list, const std::string& expected) {
        if (list.empty()) {
            ADD_FAILURE() << "missing " << expected;
            return;
        }
        EXPECT_EQ(list.front(), expected);
        list.erase(list.begin());
    }

    Engine m_engine;
    Cfg m_next;
    std::vector<std::string> m_pending;
    std::vector<std::string> m_fired;
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
