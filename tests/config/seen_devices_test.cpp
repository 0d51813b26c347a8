#include "coding/seen_devices_coding.h"

#include <gtest/gtest.h>

namespace tamsel {
namespace {

/// One device as JSON; `from` is replaced by `to`.
std::string device(const std::string& from = {}, const std::string& to = {}) {
    std::string json =
        R"({"vendorID":1452,"productID":-2,"product":"Tast\u00e4tur","manufacturer":)"
        R"("M","transport":"USB","isSeized":true,"isAllowed":false,"isMouse":true})";
    if (!from.empty()) {
        json.replace(json.find(from), from.size(), to);
    }
    return json;
}

TEST(SeenDevices, decode) {
    const SeenDeviceInfo expected{.vendorID = 1452,
                                  .productID = -2,
                                  .product = "Tastätur",
                                  .manufacturer = "M",
                                  .transport = "USB",
                                  .isSeized = true,
                                  .isAllowed = false,
                                  .isMouse = true};
    const std::string future = device("\"isMouse\"", "\"new\":[{}],\"isMouse\"");
    const auto devices = decodeSeenDevices("[" + device() + ", " + future + "]");
    ASSERT_TRUE(devices) << devices.error().description();
    EXPECT_EQ(*devices, (std::vector{expected, expected}));
    EXPECT_EQ(decodeSeenDevices(" [ ] ").value(), std::vector<SeenDeviceInfo>());
}

TEST(SeenDevices, errors) {
    const auto second = [](const std::string& from, const std::string& to) {
        return "[" + device() + "," + device(from, to) + "]";
    };
    const struct {
        std::string json;
        std::string error;
    } cases[] = {
        {"", "not valid JSON at byte 1"},
        {"[" + device(), "not valid JSON at byte 146"},
        {"[] x", "not valid JSON at byte 4"},
        {"[\"\xFF\"]", "not valid JSON at byte 3"},
        {"[\"\\ud800\"]", "not valid JSON at byte 9"},
        {"[1e999]", "the JSON has a number that is out of range"},
        {device(), "expected an array, found an object"},
        {"[null]", "[0]: expected an object, found null"},
        {second("\"transport\":\"USB\",", ""), "[1].transport: the key is missing"},
        {second("isSeized", "is_seized"), "[1].isSeized: the key is missing"},
        {second("true", "1"), "[1].isSeized: expected a boolean, found an integer"},
        {second("\"USB\"", "null"), "[1].transport: expected a string, found null"},
        {second("1452", "1452.5"), "[1].vendorID: expected an integer, found a fraction"},
        {second("1452", "9223372036854775808"),
         "[1].vendorID: 9223372036854775808 is out of range"},
        {second("1452", "\"1452\""), "[1].vendorID: expected an integer, found a string"},
    };
    for (const auto& c : cases) {
        const auto devices = decodeSeenDevices(c.json);
        ASSERT_FALSE(devices) << c.json;
        EXPECT_EQ(devices.error().description(), c.error) << c.json;
    }
}

TEST(SeenDevices, deepNestingIsRefused) {
    const std::size_t depth = 1000000;
    EXPECT_FALSE(decodeSeenDevices(std::string(depth, '[')));
    EXPECT_FALSE(decodeSeenDevices(std::string(depth, '[') + std::string(depth, ']')));
}

TEST(SeenDevices, roundTrip) {
    std::vector<SeenDeviceInfo> devices = {
        {},
        {.vendorID = INT64_MAX,
         .productID = INT64_MIN,
         .product = "\"\\\n\x01é🎹",
         .isAllowed = true},
    };
    EXPECT_EQ(decodeSeenDevices(encodeSeenDevices(devices)).value(), devices);
    // A device may call itself anything; the list still reaches the application.
    devices[0].product = "bad \xFF name";
    devices[0].product = decodeSeenDevices(encodeSeenDevices(devices)).value()[0].product;
    EXPECT_EQ(devices[0].product, "bad \xEF\xBF\xBD name");
}

} // namespace
} // namespace tamsel
