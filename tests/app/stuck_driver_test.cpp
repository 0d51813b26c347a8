#include "driver/stuck_driver.h"
#include "driver/sys_ext_status.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>
#include <vector>

namespace tamsel {

TEST(SysExtStatusTest, HasATextAndAnIdentity) {
    const std::vector<std::pair<SysExtStatus, QString>> texts{
        {SysExtStatus::failed(4, "X"), "Error: [4] X"},
        {SysExtStatus::failed(-9'000'000'000, ""), "Error: [-9000000000] "},
        {SysExtStatus::unknown, "Unknown"},
        {SysExtStatus::loading, "Loading..."},
        {SysExtStatus::unloading, "Unloading..."},
        {SysExtStatus::needsApproval, "Requires approval in System Settings"},
        {SysExtStatus::loaded, "Loaded"},
        {SysExtStatus::completesAfterRestart, "Completes after restart"},
        {SysExtStatus::unknownResult, "Unknown result"},
        {SysExtStatus::repairing, "Repairing driver state..."},
    };
    for (const auto& [status, text] : texts) {
        EXPECT_EQ(status.displayText(), text);
        for (const auto& [other, otherText] : texts)
            EXPECT_EQ(status == other, text == otherText);
    }
    EXPECT_NE(SysExtStatus::failed(4, "X"), SysExtStatus::failed(4, "Y"));
}

TEST(StuckDriverTest, ProcessNumbersAreWhatReadsAsAnInteger) {
    const std::vector<std::pair<QByteArray, QList<qint64>>> cases{
        {"", {}},
        {"812\n990\n", {812, 990}},
        {"990\n812", {990, 812}},
        {" 812 \n\nabc\n", {812}},
        {"\t812\t\n \t \n", {812}},
        {"+5\n-7\n007", {5, -7, 7}},
        {"+\n-\n+-5\n-+5\n++5\n5+\n8 12\n0x10\n1.0\n1e3", {}},
        {"812\r\n990\v\n991", {991}},
        {"9223372036854775807\n9223372036854775808\n-9223372036854775808\n-9223372036854775809",
         {std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::min()}},
        {"\xe3\x80\x80"
         "812\xc2\xa0\n\xd9\xa1",
         {812}}, // wide blanks; an Arabic digit
        {"812\n\xff\n990", {}},
        {"812\n\xe2\x82", {}},
        {QByteArray("812\0\n990", 8), {990}},
    };
    for (const auto& [output, numbers] : cases)
        EXPECT_EQ(processNumbers(output), numbers) << output.constData();
}

TEST(StuckDriverTest, TheScriptHoldsTheEscapedCommand) {
    EXPECT_EQ(killScript({-7}), "do shell script \"kill -9 -7\" with administrator privileges");
    EXPECT_EQ(escapedForScript(R"(a\b"c\")"), R"(a\\b\"c\\\")");
}

} // namespace tamsel
