#include "keys/evdev_codes.h"

#include "keys/key_codes.h"

#include <array>
#include <initializer_list>
#include <linux/input-event-codes.h>

namespace tamsel::EvdevCodes {

namespace {

using CodesByUsage = std::array<std::uint16_t, KeyCodes::fn + 1>;
using UsagesByCode = std::array<std::uint8_t, KEY_CNT>;

/// Kernel codes of keys whose usages follow each other, from `first` on.
constexpr void put(CodesByUsage& table, std::size_t first,
                   std::initializer_list<std::uint16_t> codes) {
    for (const std::uint16_t code : codes)
        table[first++] = code;
}

/// KEY_RESERVED where there is none.
constexpr CodesByUsage codesByUsage = [] {
    CodesByUsage table{};
    put(table, 4, {KEY_A, KEY_B, KEY_C, KEY_D, KEY_E, KEY_F, KEY_G, KEY_H, KEY_I,
                   KEY_J, KEY_K, KEY_L, KEY_M, KEY_N, KEY_O, KEY_P, KEY_Q, KEY_R,
                   KEY_S, KEY_T, KEY_U, KEY_V, KEY_W, KEY_X, KEY_Y, KEY_Z});
    put(table, 30, {KEY_1, KEY_2, KEY_3, KEY_4, KEY_5, KEY_6, KEY_7, KEY_8, KEY_9, KEY_0});
    put(table, 40,
        {KEY_ENTER, KEY_ESC, KEY_BACKSPACE, KEY_TAB, KEY_SPACE, KEY_MINUS, KEY_EQUAL, KEY_LEFTBRACE,
         KEY_RIGHTBRACE, KEY_BACKSLASH});
    put(table, 51,
        {KEY_SEMICOLON, KEY_APOSTROPHE, KEY_GRAVE, KEY_COMMA, KEY_DOT, KEY_SLASH, KEY_CAPSLOCK});
    put(table, 58,
        {KEY_F1, KEY_F2, KEY_F3, KEY_F4, KEY_F5, KEY_F6, KEY_F7, KEY_F8, KEY_F9, KEY_F10, KEY_F11,
         KEY_F12});
    put(table, 70,
        {KEY_SYSRQ, KEY_SCROLLLOCK, KEY_PAUSE, KEY_INSERT, KEY_HOME, KEY_PAGEUP, KEY_DELETE,
         KEY_END, KEY_PAGEDOWN, KEY_RIGHT, KEY_LEFT, KEY_DOWN, KEY_UP});
    put(table, 83,
        {KEY_NUMLOCK, KEY_KPSLASH, KEY_KPASTERISK, KEY_KPMINUS, KEY_KPPLUS, KEY_KPENTER, KEY_KP1,
         KEY_KP2, KEY_KP3, KEY_KP4, KEY_KP5, KEY_KP6, KEY_KP7, KEY_KP8, KEY_KP9, KEY_KP0,
         KEY_KPDOT});
    put(table, 100, {KEY_102ND, KEY_COMPOSE, KEY_POWER, KEY_KPEQUAL});
    put(table, 104,
        {KEY_F13, KEY_F14, KEY_F15, KEY_F16, KEY_F17, KEY_F18, KEY_F19, KEY_F20, KEY_F21, KEY_F22,
         KEY_F23, KEY_F24});
    put(table, 116,
        {KEY_OPEN, KEY_HELP, KEY_PROPS, KEY_FRONT, KEY_STOP, KEY_AGAIN, KEY_UNDO, KEY_CUT, KEY_COPY,
         KEY_PASTE, KEY_FIND});
    put(table, 127, {KEY_MUTE, KEY_VOLUMEUP, KEY_VOLUMEDOWN});
    put(table, 133, {KEY_KPCOMMA});
    put(table, 135,
        {KEY_RO, KEY_KATAKANAHIRAGANA, KEY_YEN, KEY_HENKAN, KEY_MUHENKAN, KEY_KPJPCOMMA});
    put(table, 144, {KEY_HANGEUL, KEY_HANJA, KEY_KATAKANA, KEY_HIRAGANA, KEY_ZENKAKUHANKAKU});
    put(table, 224,
        {KEY_LEFTCTRL, KEY_LEFTSHIFT, KEY_LEFTALT, KEY_LEFTMETA, KEY_RIGHTCTRL, KEY_RIGHTSHIFT,
         KEY_RIGHTALT, KEY_RIGHTMETA});
    put(table, KeyCodes::fn, {KEY_FN});
    return table;
}();

constexpr UsagesByCode usagesByCode = [] {
    UsagesByCode table{};
    for (std::size_t usage = 0; usage < codesByUsage.size(); ++usage) {
        if (codesByUsage[usage] != KEY_RESERVED)
            table[codesByUsage[usage]] = static_cast<std::uint8_t>(usage);
    }
    return table;
}();

} // namespace

std::optional<std::uint32_t> toHid(std::uint16_t evdevCode) {
    if (evdevCode >= usagesByCode.size() || usagesByCode[evdevCode] == KeyCodes::noKey)
        return std::nullopt;
    return usagesByCode[evdevCode];
}

std::optional<std::uint16_t> fromHid(std::uint32_t usage) {
    if (usage >= codesByUsage.size() || codesByUsage[usage] == KEY_RESERVED)
        return std::nullopt;
    return codesByUsage[usage];
}

} // namespace tamsel::EvdevCodes
