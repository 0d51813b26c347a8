#include "devices/device_description.h"

#include "devices/virtual_identity.h"

#include <gmock/gmock.h>
#include <linux/input.h>
#include <memory>

namespace tamsel {
namespace {

/// A device as the kernel would describe it, without a kernel.
class Description {
public:
    explicit Description(int bus = BUS_USB, int vendor = 0x46D, int product = 0xC52B) {
        ::libevdev_set_id_bustype(get(), bus);
        ::libevdev_set_id_vendor(get(), vendor);
        ::libevdev_set_id_product(get(), product);
    }
    Description&& named(const char* name) && {
        ::libevdev_set_name(get(), name);
        return std::move(*this);
    }
    Description&& at(const char* phys) && {
        ::libevdev_set_phys(get(), phys);
        return std::move(*this);
    }
    Description&& with(unsigned type, std::initializer_list<unsigned> codes) && {
        const input_absinfo axis{0, 0, 1000, 0, 0, 0};
        for (const unsigned code : codes)
            ::libevdev_enable_event_code(get(), type, code, type == EV_ABS ? &axis : nullptr);
        return std::move(*this);
    }
    Description&& withKeys(unsigned first, unsigned last) && {
        for (unsigned code = first; code <= last; ++code)
            ::libevdev_enable_event_code(get(), EV_KEY, code, nullptr);
        return std::move(*this);
    }
    libevdev* get() const { return m_device.get(); }

private:
    std::unique_ptr<libevdev, void (*)(libevdev*)> m_device{::libevdev_new(), ::libevdev_free};
};

Description mouse(Description&& description) {
    return std::move(description)
        .with(EV_KEY, {BTN_LEFT, BTN_RIGHT, BTN_MIDDLE})
        .with(EV_REL, {REL_X, REL_Y, REL_WHEEL});
}

Description touch(Description&& description) {
    return std::move(description).with(EV_KEY, {BTN_TOUCH}).with(EV_ABS, {ABS_X, ABS_Y});
}

TEST(DeviceDescription, tellsKeyboardsAndPointersFromTheRest) {
    struct Case {
        const char* what;
        Description device;
        Interfaces expected;
    };
    Description keyboard = Description().withKeys(KEY_ESC, KEY_KPDOT).withKeys(KEY_F11, KEY_F12);
    Description both = mouse(Description().withKeys(KEY_ESC, KEY_KPDOT));
    const Case cases[] = {
        {"keyboard", std::move(keyboard), {true, false}},
        {"keypad",
         Description().withKeys(KEY_KP7, KEY_KPDOT).with(EV_KEY, {KEY_KPENTER}),
         {true, false}},
        {"keypad without Enter", Description().withKeys(KEY_KP7, KEY_KPDOT), {false, false}},
        {"mouse", mouse(Description()), {false, true}},
        {"receiver for both", std::move(both), {true, true}},
        {"mouse with a few keys", mouse(Description().withKeys(KEY_1, KEY_0)), {false, true}},
        {"touchpad",
         touch(Description().with(EV_KEY, {BTN_LEFT, BTN_TOOL_FINGER}).with(EV_ABS, {ABS_MT_SLOT})),
         {false, true}},
        {"touch screen", touch(Description()), {false, false}},
        {"tablet", touch(Description().with(EV_KEY, {BTN_TOOL_PEN, BTN_STYLUS})), {false, false}},
        {"game controller",
         Description().withKeys(BTN_SOUTH, BTN_THUMBR).with(EV_ABS, {ABS_X, ABS_Y, ABS_RX}),
         {false, false}},
        {"wheel alone",
         Description().with(EV_KEY, {BTN_LEFT}).with(EV_REL, {REL_WHEEL}),
         {false, false}},
        {"power button", Description(BUS_HOST).with(EV_KEY, {KEY_POWER}), {false, false}},
        {"lid", Description(BUS_HOST).with(EV_SW, {SW_LID}), {false, false}},
        {"headset",
         Description().with(EV_KEY, {KEY_VOLUMEUP, KEY_VOLUMEDOWN, KEY_PLAYPAUSE, KEY_MUTE}),
         {false, false}},
        {"remote control",
         Description().withKeys(KEY_1, KEY_0).with(EV_KEY, {KEY_ENTER, KEY_UP}),
         {false, false}},
        {"nothing", Description(), {false, false}},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(classify(each.device.get()), each.expected) << each.what;
        EXPECT_EQ(describe(each.device.get(), "").size(),
                  std::size_t{each.expected.isKeyboard} + std::size_t{each.expected.isPointer})
            << each.what;
    }
}

TEST(DeviceDescription, makesAnEntryForEachInterface) {
    const Description both =
        mouse(Description().named(" Two\tin \xFF one\n").withKeys(KEY_ESC, KEY_KPDOT));
    const SeenDeviceInfo keyboard{0x46D, 0xC52B, "Two in ? one", "Maker",
                                  "usb", false,  true,           false};
    SeenDeviceInfo pointer = keyboard;
    pointer.isMouse = true;
    EXPECT_THAT(describe(both.get(), "Maker"), testing::ElementsAre(keyboard, pointer));
}

TEST(DeviceDescription, neverTakesItsOwnDevices) {
    const auto isOwn = [](Description&& device) {
        const Description keyboard = std::move(device).withKeys(KEY_ESC, KEY_KPDOT);
        EXPECT_EQ(describe(keyboard.get(), "").empty(), isOwnVirtualDevice(keyboard.get()));
        return isOwnVirtualDevice(keyboard.get());
    };
    EXPECT_TRUE(isOwn(Description(BUS_VIRTUAL).at("tamsel/virtual")));
    EXPECT_TRUE(isOwn(Description(BUS_USB).at("tamsel/virtual"))) << "a stand-in for a mouse";
    EXPECT_FALSE(isOwn(Description(BUS_VIRTUAL).at("somebody/else")));
    EXPECT_FALSE(isOwn(Description(BUS_VIRTUAL).named(virtual_identity::keyboardName)));
}

TEST(DeviceDescription, leavesSwitchesAndTouchOutOfReach) {
    const auto areInReach = [](Description&& device) {
        const Description all = std::move(device).withKeys(KEY_ESC, KEY_KPDOT);
        const auto entries = describe(all.get(), "");
        return std::all_of(entries.begin(), entries.end(),
                           [](const SeenDeviceInfo& entry) { return entry.isAllowed; });
    };
    EXPECT_TRUE(areInReach(mouse(Description())));
    EXPECT_FALSE(areInReach(Description().with(EV_SW, {SW_TABLET_MODE})));
    EXPECT_FALSE(areInReach(touch(mouse(Description()))));
}

TEST(DeviceDescription, tellsTheSiblingWithTheVolumeKeys) {
    const auto isSibling = [](Description&& device) {
        const Description keys = std::move(device).withKeys(KEY_MUTE, KEY_VOLUMEUP);
        return hasMediaKeysOnly(keys.get());
    };
    EXPECT_TRUE(isSibling(Description()));
    EXPECT_TRUE(isSibling(Description().with(EV_REL, {REL_HWHEEL})));
    EXPECT_FALSE(isSibling(Description().withKeys(KEY_ESC, KEY_KPDOT)));
    EXPECT_FALSE(isSibling(mouse(Description())));
    EXPECT_FALSE(isSibling(Description().with(EV_SW, {SW_HEADPHONE_INSERT})));
    EXPECT_FALSE(isSibling(Description().with(EV_KEY, {BTN_GAMEPAD})));
    EXPECT_FALSE(hasMediaKeysOnly(Description().withKeys(KEY_POWER, KEY_POWER).get()));
}

TEST(DeviceDescription, namesTheTransport) {
    const std::pair<int, const char*> cases[] = {
        {BUS_USB, "usb"},         {BUS_BLUETOOTH, "bluetooth"}, {BUS_I8042, "ps2"},
        {BUS_VIRTUAL, "virtual"}, {BUS_I2C, "bus 0x18"},        {0, "bus 0x00"},
    };
    for (const auto& [bus, name] : cases)
        EXPECT_EQ(transportName(bus), name);
}

TEST(DeviceDescription, cleansTexts) {
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"  Plain Keys \r\n", "Plain Keys"},
        {"Tast\xC3\xA4tur \xE2\x8C\xA8 \xF0\x9F\x96\xB1",
         "Tast\xC3\xA4tur \xE2\x8C\xA8 \xF0\x9F\x96\xB1"},
        {"a\x1B[31m\x7F\xC2\x9B"
         "b",
         "a [31m  b"},
        {"\xFF\xFE\x80", "???"},
        {"cut \xE2\x8C", "cut ??"},
        {"overlong \xC0\xAF", "overlong ??"},
        {"surrogate \xED\xA0\x80", "surrogate ???"},
        {std::string(5000, 'x'), std::string(128, 'x')},
        {std::string(127, 'x') + "\xC3\xA4", std::string(127, 'x')},
        {std::string("nul\0nul", 7), "nul nul"},
    };
    for (const auto& [raw, clean] : cases)
        EXPECT_EQ(cleanText(raw), clean);
}

} // namespace
} // namespace tamsel
