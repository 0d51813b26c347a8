#include "keys/key_table.h"

#include <cstddef>
#include <string_view>

// Codes are usages of the Keyboard/Keypad page (0x07) of the USB HID Usage Tables; names are ours.

namespace tamsel::keyTable {

namespace {

template <std::size_t N>
using Keys = std::array<KeyCodeDef, N>;

/// Keys whose codes follow each other, from `first` on.
template <std::size_t N>
constexpr Keys<N> run(std::uint32_t first, const std::string_view (&names)[N]) {
    Keys<N> keys{};
    for (std::size_t i = 0; i < N; ++i) {
        const auto code = first + static_cast<std::uint32_t>(i);
        keys[i] = {code, code, names[i]};
    }
    return keys;
}

constexpr KeyCodeDef key(std::string_view name, std::uint32_t code) {
    return {code, code, name};
}

template <std::size_t... Sizes>
constexpr auto join(const Keys<Sizes>&... parts) {
    Keys<(Sizes + ...)> joined{};
    std::size_t next = 0;
    const auto append = [&](const auto& part) {
        for (const KeyCodeDef& entry : part)
            joined[next++] = entry;
    };
    (append(parts), ...);
    return joined;
}

constexpr auto none = run(KeyCodes::noKey, {"vk_none"});

constexpr auto letters = run(4, {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l", "m",
                                 "n", "o", "p", "q", "r", "s", "t", "u", "v", "w", "x", "y", "z"});

constexpr auto numbers = run(30, {"1", "2", "3", "4", "5", "6", "7", "8", "9", "0"});

constexpr auto functionKeys = join(
    run(58, {"f1", "f2", "f3", "f4", "f5", "f6", "f7", "f8", "f9", "f10", "f11", "f12"}),
    run(104, {"f13", "f14", "f15", "f16", "f17", "f18", "f19", "f20", "f21", "f22", "f23", "f24"}));

constexpr auto modifiers =
    join(run(KeyCodes::capsLock, {"caps_lock"}),
         run(224, {"left_control", "left_shift", "left_option", "left_command", "right_control",
                   "right_shift", "right_option", "right_command"}),
         // Not a usage of the page.
         run(KeyCodes::fn, {"fn"}));

constexpr auto controlsAndSymbols =
    run(40, {"return_or_enter", "escape", "delete_or_backspace", "tab", "space", "hyphen",
             "equal_sign", "open_bracket", "close_bracket", "backslash", "non_us_pound",
             "semicolon", "quote", "grave_accent_and_tilde", "comma", "period", "slash"});

// Not in the order of the codes: the picker shows them so, arrows first.
constexpr auto arrowsAndNavigation = Keys<10>{
    key("up_arrow", 82), key("down_arrow", 81),    key("left_arrow", 80), key("right_arrow", 79),
    key("home", 74),     key("end", 77),           key("page_up", 75),    key("page_down", 78),
    key("insert", 73),   key("delete_forward", 76)};

constexpr auto keypad = join(
    run(83, {"keypad_num_lock", "keypad_slash", "keypad_asterisk", "keypad_hyphen", "keypad_plus",
             "keypad_enter", "keypad_1", "keypad_2", "keypad_3", "keypad_4", "keypad_5", "keypad_6",
             "keypad_7", "keypad_8", "keypad_9", "keypad_0", "keypad_period"}),
    run(103, {"keypad_equal_sign"}), run(133, {"keypad_comma"}));

constexpr auto pcKeys = join(run(70, {"print_screen", "scroll_lock", "pause"}),
                             run(100, {"non_us_backslash", "application", "power"}));

constexpr auto mediaKeys = run(127, {"mute", "volume_up", "volume_down"});

constexpr auto international =
    run(135, {"international1", "international2", "international3", "international4",
              "international5", "international6", "international7", "international8",
              "international9", "lang1", "lang2", "lang3", "lang4", "lang5"});

constexpr auto other = run(116, {"execute", "help", "menu", "select", "stop", "again", "undo",
                                 "cut", "copy", "paste", "find"});

constexpr auto mouseButtons =
    run(KeyCodes::mouseButtonBase + 1,
        {"button1",  "button2",  "button3",  "button4",  "button5",  "button6",  "button7",
         "button8",  "button9",  "button10", "button11", "button12", "button13", "button14",
         "button15", "button16", "button17", "button18", "button19", "button20", "button21",
         "button22", "button23", "button24", "button25", "button26", "button27", "button28",
         "button29", "button30", "button31", "button32"});

constexpr auto catalogue =
    join(none, letters, numbers, functionKeys, modifiers, controlsAndSymbols, arrowsAndNavigation,
         keypad, pcKeys, mediaKeys, international, other, mouseButtons);
static_assert(catalogue.size() == 183);

constexpr auto virtualKeyList = std::to_array<VirtualKey>(
    {{4, 0},    {5, 11},   {6, 8},    {7, 2},    {8, 14},   {9, 3},    {10, 5},   {11, 4},
     {12, 34},  {13, 38},  {14, 40},  {15, 37},  {16, 46},  {17, 45},  {18, 31},  {19, 35},
     {20, 12},  {21, 15},  {22, 1},   {23, 17},  {24, 32},  {25, 9},   {26, 13},  {27, 7},
     {28, 16},  {29, 6},   {30, 18},  {31, 19},  {32, 20},  {33, 21},  {34, 23},  {35, 22},
     {36, 26},  {37, 28},  {38, 25},  {39, 29},  {40, 36},  {41, 53},  {42, 51},  {43, 48},
     {44, 49},  {45, 27},  {46, 24},  {47, 33},  {48, 30},  {49, 42},  {51, 41},  {52, 39},
     {53, 50},  {54, 43},  {55, 47},  {56, 44},  {57, 57},  {58, 122}, {59, 120}, {60, 99},
     {61, 118}, {62, 96},  {63, 97},  {64, 98},  {65, 100}, {66, 101}, {67, 109}, {68, 103},
     {69, 111}, {79, 124}, {80, 123}, {81, 125}, {82, 126}, {224, 59}, {225, 56}, {226, 58},
     {227, 55}, {228, 62}, {229, 60}, {230, 61}, {231, 54}});

} // namespace

std::span<const KeyCodeDef> all() {
    return catalogue;
}

std::span<const KeyCodeDef> group(Group group) {
    switch (group) {
    case Group::letters:
        return letters;
    case Group::numbers:
        return numbers;
    case Group::functionKeys:
        return functionKeys;
    case Group::modifiers:
        return modifiers;
    case Group::controlsAndSymbols:
        return controlsAndSymbols;
    case Group::arrowsAndNavigation:
        return arrowsAndNavigation;
    case Group::keypad:
        return keypad;
    case Group::pcKeys:
        return pcKeys;
    case Group::mediaKeys:
        return mediaKeys;
    case Group::international:
        return international;
    case Group::other:
        return other;
    case Group::mouseButtons:
        return mouseButtons;
    }
    return {};
}

std::span<const VirtualKey> virtualKeys() {
    return virtualKeyList;
}

} // namespace tamsel::keyTable
