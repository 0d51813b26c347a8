#include "ui/key_legend.h"

#include <gtest/gtest.h>

namespace tamsel {
namespace {

TEST(KeyLegend, SaysWhatStandsOnTheCap) {
    const std::pair<const char*, const char*> legends[] = {
        {"a", "A"},
        {"return_or_enter", "Return Or Enter"},
        {"keypad_5", "Keypad 5"},
        {"f18", "F18"},
        {"left_arrow", "←"},
        {"grave_accent_and_tilde", "`"},
        {"right_option", "Right Option"},
        {"command", "Command"},
        // Neither a key nor a modifier: as it is.
        {"unknown (0xF423F)", "unknown (0xF423F)"},
        {"no_such_key", "no_such_key"},
        {"", ""},
    };
    for (const auto& [name, legend] : legends)
        EXPECT_EQ(KeyLegend::of(name), legend) << name;
}

} // namespace
} // namespace tamsel
