#include "program/log.h"

#include <gtest/gtest.h>

namespace tamsel {
namespace {

TEST(Log, quotationsAreTakenOut) {
    const std::pair<const char*, const char*> cases[] = {
        {"mappings[0].from: missing", "mappings[0].from: missing"},
        {"type: \"secret\" is not an action type", "type: a value is not an action type"},
        {"type: \"se\" \"cret\" is wrong", "type: a value is wrong"},
        {"type: \"cut short", "type: "},
        {"two\nlines\x1b", "two lines "},
        {"", ""},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(withoutQuotations(text), expected);
}

} // namespace
} // namespace tamsel
