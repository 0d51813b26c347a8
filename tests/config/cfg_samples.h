#pragma once

#include "coding/cfg_coding.h"

#include <string>

namespace tamsel::test {

/// A configuration that uses every kind of record, value and text.
inline Cfg fullCfg() {
    using namespace std::string_literals;
    Cfg cfg;
    cfg.mappings = {
        {"m1", true, {57, {}}, {224, {}}},
        {"m2", false, {4097, {"fn", "left_shift"}}, {255, {}}},
        {"m3", true, {4128, {}}, {4294967295, {""}}},
    };
    cfg.shortcuts = {
        {.id = "s1",
         .enabled = true,
         .title = "Wenlo輸入法 🎹",
         .keys = {62, {}},
         .action = {ActionType::openURL, "wenlo://start"},
         .actionUp = ShortcutAction{ActionType::openURL, "wenlo://stop"}},
        {.id = "s2", .title = "nul\0inside"s, .keys = {}, .action = {ActionType::keyPress, ""}},
        {.id = "s3", .action = {ActionType::typeText, std::string(300, 'x')}},
        {.id = "s4", .action = {ActionType::typeText, "\xF4\x8F\xBF\xBF \xC2\x80 \xEF\xBF\xBF"}},
        {.id = "s5", .action = {ActionType::pasteClipboard, ""}},
    };
    cfg.excludedKeyboards = {{0x05AC, -1, "Keyboard"}, {1LL << 32, 0xFFFF, ""}};
    cfg.mouseDevices = {{INT64_MAX, INT64_MIN, "Mäuse"}};
    cfg.grabScope = GrabScope::selected;
    cfg.allowedDevices = {{0, 256, "x"}};
    return cfg;
}

} // namespace tamsel::test
