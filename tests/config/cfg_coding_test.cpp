#include "config/cfg_samples.h"
#include "records/seen_device.h"

#include <gtest/gtest.h>
#include <unordered_set>

namespace tamsel {
namespace {

TEST(CfgCoding, roundTrip) {
    Cfg long_;
    for (int i = 0; i < 300; ++i) {
        long_.mappings.push_back({std::to_string(i), i % 2 == 0, {}, {}});
    }
    Cfg huge;
    huge.version = std::string(70000, 'v');
    for (const Cfg& cfg : {Cfg(), test::fullCfg(), long_, huge}) {
        const Result<Bytes> bytes = encodeCfg(cfg);
        ASSERT_TRUE(bytes) << bytes.error().description();
        const Result<Cfg> again = decodeCfg(*bytes);
        ASSERT_TRUE(again) << again.error().description();
        EXPECT_EQ(*again, cfg);
    }
}

/// What the encoder refuses the decoder would refuse too; both name the field.
TEST(CfgCoding, refusedByTheEncoder) {
    struct Case {
        std::string error;
        void (*spoil)(Cfg&);
    };
    const std::string badText = "the text is not valid UTF-8";
    const Case cases[] = {
        {"version: " + badText, [](Cfg& cfg) { cfg.version = "\x80"; }},
        {"mappings[1].to.modifiers[0]: " + badText,
         [](Cfg& cfg) { cfg.mappings[1].to.modifiers = {"\xC0\x80"}; }},
        {"shortcuts[0].actionUp.value: " + badText,
         [](Cfg& cfg) { cfg.shortcuts[0].actionUp->value = "\xED\xA0\x80"; }},
        {"shortcuts[2].title: " + badText, [](Cfg& cfg) { cfg.shortcuts[2].title = "a\xE2\x82"; }},
        {"mouseDevices[0].product: " + badText,
         [](Cfg& cfg) { cfg.mouseDevices[0].product = "\xF4\x90\x80\x80"; }},
        {"shortcuts[1].action.type: 9 is not an action type",
         [](Cfg& cfg) { cfg.shortcuts[1].action.type = static_cast<ActionType>(9); }},
        {"shortcuts[4].title: the configuration takes more than 64 MiB",
         [](Cfg& cfg) { cfg.shortcuts[4].title.assign(std::size_t{64} << 20U, 'x'); }},
        {"mappings: the configuration takes more than 64 MiB",
         [](Cfg& cfg) { cfg.mappings.resize(262144); }},
    };
    for (const Case& c : cases) {
        Cfg cfg = test::fullCfg();
        c.spoil(cfg);
        const Result<Bytes> bytes = encodeCfg(cfg);
        ASSERT_FALSE(bytes) << c.error;
        EXPECT_EQ(bytes.error().description(), c.error);
    }
}

TEST(CfgCoding, nearTheLimitWhatIsSavedCanBeLoaded) {
    const std::size_t fixed = 3; // "1.0"
    const std::size_t limit = std::size_t{64} << 20U;
    Cfg cfg;
    cfg.mappings.resize(2);
    cfg.mappings[1].from.modifiers = {"fn"};
    cfg.mappings[0].id.assign(limit - fixed - 2 * 256 - 32 - 2, 'x');
    const Result<Bytes> bytes = encodeCfg(cfg);
    ASSERT_TRUE(bytes) << bytes.error().description();
    EXPECT_TRUE(decodeCfg(*bytes));
    cfg.mappings[0].id += 'x';
    EXPECT_FALSE(encodeCfg(cfg));
}

TEST(Records, identifiersAndEquality) {
    const GrabbedDevice device{1452, -3, "Keyboard"};
    EXPECT_EQ(device.identifier(), "1452:-3");
    std::unordered_set<GrabbedDevice> set = {device, device, {1452, -3, "Other"}, {1453, -3, ""}};
    EXPECT_EQ(set.size(), 3U);
    SeenDeviceInfo seen{.vendorID = 7, .productID = 8};
    EXPECT_EQ(seen.identifier(), "7:8:k");
    seen.isMouse = true;
    EXPECT_EQ(seen.identifier(), "7:8:m");
}

} // namespace
} // namespace tamsel
