#include "keys/key_codes.h"

#include "keys/evdev_codes.h"

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>
#include <set>
#include <vector>

namespace tamsel {
namespace {

std::vector<std::string> namesOf(std::span<const KeyCodeDef> keys) {
    std::vector<std::string> names;
    for (const KeyCodeDef& key : keys) {
        names.emplace_back(key.name);
    }
    return names;
}

TEST(KeyCodes, catalogueIsSound) {
    ASSERT_EQ(KeyCodes::all().size(), 183U);
    EXPECT_EQ(KeyCodes::all().front(), (KeyCodeDef{0, 0, "vk_none"}));
    EXPECT_EQ(KeyCodes::all().back(), (KeyCodeDef{0x1020, 0x1020, "button32"}));
    std::set<std::uint32_t> codes;
    std::set<std::string_view> names;
    for (const KeyCodeDef& key : KeyCodes::all()) {
        EXPECT_EQ(key.id, key.code);
        codes.insert(key.code);
        names.insert(key.name);
        EXPECT_EQ(KeyCodes::find(key.code), &key);
        EXPECT_EQ(KeyCodes::find(key.name), &key);
    }
    EXPECT_EQ(codes.size(), 183U);
    EXPECT_EQ(names.size(), 183U);
    // The gaps of the page: error codes, 130 to 132 (locking keys), 134 (AS/400 equal sign).
    for (const std::uint32_t usage : {1, 3, 130, 131, 132, 134, 149, 223, 232}) {
        EXPECT_EQ(KeyCodes::find(usage), nullptr) << usage;
    }
}

TEST(KeyCodes, names) {
    std::string names;
    for (const std::uint32_t code :
         {53U,  255U, 4097U, 4128U, 0U,     10U,   29U, 38U,   39U,  69U,
          104U, 115U, 231U,  56U,   76U,    97U,   98U, 99U,   133U, 102U,
          129U, 143U, 148U,  126U,  0x1F4U, 0xA5U, 3U,  4129U, ~0U})
        names += std::string(KeyCodes::name(code)) + ' ';
    EXPECT_EQ(names, "grave_accent_and_tilde fn button1 button32 vk_none g z 9 0 f12 f13 f24 "
                     "right_command slash delete_forward keypad_9 keypad_0 keypad_period "
                     "keypad_comma power volume_down international9 lang5 find unknown (0x1F4) "
                     "unknown (0xA5) unknown (0x03) unknown (0x1021) unknown (0xFFFFFFFF) ");
    EXPECT_EQ(KeyCodes::find("left_bracket"), nullptr);
}

TEST(KeyCodes, categories) {
    const struct {
        KeyCat category;
        std::string_view title;
        std::size_t size;
        std::string_view first;
        std::string_view last;
    } cases[] = {
        {KeyCat::modifierKeys, "Modifier keys", 10, "caps_lock", "fn"},
        {KeyCat::controlsAndSymbols, "Controls and symbols", 18, "caps_lock", "slash"},
        {KeyCat::arrowKeys, "Arrow keys", 4, "up_arrow", "right_arrow"},
        {KeyCat::letterKeys, "Letter keys", 26, "a", "z"},
        {KeyCat::numberKeys, "Number keys", 10, "1", "0"},
        {KeyCat::functionKeys, "Function keys", 24, "f1", "f24"},
        {KeyCat::specialKeys, "Special keys", 23, "return_or_enter", "delete_forward"},
    };
    ASSERT_EQ(KeyCodes::categories().size(), std::size(cases));
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const std::span<const KeyCodeDef> keys = KeyCodes::keys(cases[i].category);
        EXPECT_EQ(KeyCodes::categories()[i], cases[i].category);
        EXPECT_EQ(KeyCodes::title(cases[i].category), cases[i].title);
        ASSERT_EQ(keys.size(), cases[i].size) << cases[i].title;
        EXPECT_EQ(keys.front().name, cases[i].first);
        EXPECT_EQ(keys.back().name, cases[i].last);
    }
    const auto arrows = namesOf(KeyCodes::keys(KeyCat::arrowKeys));
    EXPECT_EQ(arrows[1], "down_arrow");
    EXPECT_EQ(arrows[2], "left_arrow");
    const auto special = namesOf(KeyCodes::keys(KeyCat::specialKeys));
    EXPECT_EQ((std::vector(special.begin() + 16, special.end())),
              (std::vector<std::string>{"slash", "home", "end", "page_up", "page_down", "insert",
                                        "delete_forward"}));
    EXPECT_EQ(KeyCodes::keys(KeyCat::controlsAndSymbols)[1].name, "return_or_enter");
}

TEST(KeyCodes, virtualKeysAndUsagesAreInverse) {
    const auto isCovered = [](std::uint32_t usage) {
        return (usage >= 4 && usage <= 69 && usage != 50) || (usage >= 79 && usage <= 82) ||
               (usage >= 224 && usage <= 231);
    };
    std::set<std::uint16_t> virtualKeys;
    for (std::uint32_t usage = 0; usage < 0x1100; ++usage) {
        const auto virtualKey = KeyCodes::hidToMac(usage);
        ASSERT_EQ(virtualKey.has_value(), isCovered(usage)) << usage;
        if (virtualKey) {
            EXPECT_EQ(KeyCodes::macToHid(*virtualKey), usage);
            virtualKeys.insert(*virtualKey);
        }
    }
    EXPECT_EQ(virtualKeys.size(), 77U);
    std::size_t mapped = 0;
    for (std::uint32_t key = 0; key <= 0xFFFF; ++key) {
        mapped += KeyCodes::macToHid(static_cast<std::uint16_t>(key)).has_value() ? 1 : 0;
    }
    EXPECT_EQ(mapped, 77U);
    // Keys whose virtual codes are known by heart from other programs.
    EXPECT_EQ(KeyCodes::macToHid(36), 40U);
    EXPECT_EQ(KeyCodes::hidToMac(4), 0);
    EXPECT_EQ(KeyCodes::hidToMac(57), 57);
    EXPECT_EQ(KeyCodes::hidToMac(41), 53);
    EXPECT_EQ(KeyCodes::hidToMac(231), 54);
}

TEST(EvdevCodes, pairTheKernelsKeysWithTheCatalogue) {
    std::set<std::uint32_t> usages;
    for (std::uint32_t code = 0; code <= 0xFFFF; ++code) {
        const auto usage = EvdevCodes::toHid(static_cast<std::uint16_t>(code));
        if (!usage)
            continue;
        EXPECT_NE(KeyCodes::find(*usage), nullptr) << code;
        EXPECT_EQ(EvdevCodes::fromHid(*usage), code) << "two kernel codes of one key";
        usages.insert(*usage);
    }
    const std::set<std::string_view> lacking{"vk_none", "non_us_pound", "international7",
                                             "international8", "international9"};
    for (const KeyCodeDef& key : KeyCodes::all()) {
        const bool isKeyboardKey = key.code < KeyCodes::mouseButtonBase;
        EXPECT_EQ(usages.contains(key.code), isKeyboardKey && !lacking.contains(key.name))
            << key.name;
    }
    std::string ends; // of the table's runs
    for (const int code :
         {KEY_Z, KEY_0, KEY_BACKSLASH, KEY_CAPSLOCK, KEY_UP, KEY_SYSRQ, KEY_KPDOT, KEY_KPEQUAL,
          KEY_F24, KEY_FIND, KEY_VOLUMEDOWN, KEY_KPJPCOMMA, KEY_ZENKAKUHANKAKU, KEY_RIGHTMETA})
        ends +=
            KeyCodes::name(EvdevCodes::toHid(static_cast<std::uint16_t>(code)).value_or(0)) + ' ';
    EXPECT_EQ(ends,
              "z 0 backslash caps_lock up_arrow print_screen keypad_period keypad_equal_sign f24 "
              "find volume_down international6 lang5 right_command ");
}

} // namespace
} // namespace tamsel
