#include "simulation/simulated_line.h"

#include <gtest/gtest.h>

namespace tamsel {
namespace {

using engine::Edge;
using engine::EngineTime;
using engine::InputEvent;

TEST(SimulatedLine, readsEventsAndBareTimes) {
    struct Case {
        const char* line;
        SimulatedLine expected;
    };
    const auto event = [](int time, unsigned device, unsigned usage, Edge edge) {
        return SimulatedLine{EngineTime(time), InputEvent{EngineTime(time), device, usage, edge}};
    };
    const Case cases[] = {
        {"100 0 4 down", event(100, 0, 4, Edge::down)},
        {"  100\t1  4128 up ", event(100, 1, 4128, Edge::up)},
        {"0100 0 255 up", event(100, 0, 255, Edge::up)},
        {"5000", {EngineTime(5000), {}}},
    };
    for (const Case& each : cases) {
        const auto parsed = parseSimulatedLine(each.line, EngineTime(100), 2);
        ASSERT_TRUE(parsed) << each.line;
        EXPECT_EQ(*parsed, each.expected) << each.line;
    }
}

TEST(SimulatedLine, refusesEverythingElseWithoutRepeatingIt) {
    const char* const lines[] = {
        "",
        " ",
        "x",
        "99 0 4 down",
        "-1 0 4 down",
        "+100 0 4 down",
        "100 2 4 up",
        "100 0",
        "100 0 4",
        "100 0 4 Down",
        "100 0 4 up x",
        "100 0 0 down",
        "100 0 256 down",
        "100 0 4096 down",
        "100 0 4129 down",
        "100 -1 4 down",
        "100 0 4.0 down",
        "100 0 0x4 down",
        "100 0 4 down\r",
        "99999999999999999999 0 4 down",
        "100 4294967296 4 down",
        "100 0 4294967300 down",
        "10000000000000000",
        "100 0 4 \xff",
    };
    for (const char* const line : lines) {
        const auto parsed = parseSimulatedLine(line, EngineTime(100), 2);
        ASSERT_FALSE(parsed) << line;
        EXPECT_EQ(parsed.error().what.find_first_of("0123456789x\xff"), std::string::npos) << line;
    }
}

TEST(LineSplitter, joinsPartsAndBoundsLines) {
    LineSplitter splitter;
    std::vector<std::string> lines;
    const auto feed = [&](const std::string& bytes) {
        splitter.feed(bytes, [&](const LineSplitter::Line& line) {
            lines.push_back(line.isTooLong ? "(too long)" : std::string(line.text));
        });
    };
    feed("1 0 4");
    feed(" down\n\n2\n3");
    feed(std::string(LineSplitter::maxLength, 'x'));
    feed("yy\n4\n" + std::string(LineSplitter::maxLength, 'z') + "\n");
    const std::vector<std::string> expected{
        "1 0 4 down", "", "2", "(too long)", "4", std::string(LineSplitter::maxLength, 'z')};
    EXPECT_EQ(lines, expected);
}

} // namespace
} // namespace tamsel
