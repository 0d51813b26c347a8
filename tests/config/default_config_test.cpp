#include "config/default_config.h"

#include "keys/key_codes.h"

#include <gtest/gtest.h>
#include <map>
#include <set>

namespace tamsel {
namespace {

const Shortcut& builtIn(const std::string& id) {
    for (const Shortcut& shortcut : defaultShortcuts()) {
        if (shortcut.id == id) {
            return shortcut;
        }
    }
    throw std::out_of_range(id);
}

TEST(DefaultConfig, recordsAreSound) {
    std::set<std::string> ids;
    std::set<std::string> signatures;
    std::map<std::string, int> types;
    int linked = 0;
    for (const Shortcut& shortcut : defaultShortcuts()) {
        EXPECT_FALSE(shortcut.enabled) << shortcut.id;
        EXPECT_TRUE(shortcut.id.starts_with("default_"));
        EXPECT_NE(shortcut.keys.keyCode, KeyCodes::noKey) << shortcut.id;
        EXPECT_EQ(shortcut.actionUp.has_value(), shortcut.keys.modifiers.empty()) << shortcut.id;
        const auto link = shortcut.title.find(" [Website](https://");
        linked += link != std::string::npos && shortcut.title.ends_with(')') ? 1 : 0;
        ids.insert(shortcut.id);
        signatures.insert(actionSignature(shortcut));
        ++types[std::string(name(shortcut.action.type))];
    }
    EXPECT_EQ(ids.size(), 35U);
    EXPECT_EQ(signatures.size(), 35U);
    EXPECT_EQ(linked, 15);
    EXPECT_EQ(types, (std::map<std::string, int>{
                         {"command", 24}, {"openURL", 1}, {"keyPress", 9}, {"pasteClipboard", 1}}));
    ASSERT_EQ(defaultMappings().size(), 2U);
    EXPECT_EQ(defaultMappings()[0],
              (KeyMapping{"default_capslock_ctrl", false, {57, {}}, {224, {}}}));
    EXPECT_EQ(defaultMappings()[1], (KeyMapping{"default_rcmd_fn", false, {231, {}}, {255, {}}}));
}

TEST(DefaultConfig, someCombosInFull) {
    const std::vector<std::string> commandShift = {"command", "shift"};
    const std::vector<std::string> rightOption = {"right_option"};
    const Shortcut cases[] = {
        {"default_shift_space_wenlo",
         false,
         "Wenlo輸入法切換簡正 [Website](https://wenlo.app)",
         {44, {"right_shift"}},
         {ActionType::command, "open -g 'wenlo://charset?toggle'"}},
        {"default_dictation_ptt_wenlo_voice",
         false,
         "Wenlo輸入法語音AI轉錄 [Website](https://wenlo.app)",
         {62, {}},
         {ActionType::openURL, "wenlo://voice?action=start"},
         ShortcutAction{ActionType::openURL, "wenlo://voice?action=stop"}},
        {"default_cmd_shift_5_snapko_scroll",
         false,
         "Snapko Screenshot (Scrolling)",
         {34, commandShift},
         {ActionType::command, "open -g 'snapko://capture?mode=scroll'"}},
        {"default_ropt_c_pellam",
         false,
         "Open Pellam [Website](https://pellam.app)",
         {6, rightOption},
         {ActionType::command, "open -b app.pellam"}},
        {"default_ropt_f_finder",
         false,
         "Open Finder",
         {9, rightOption},
         {ActionType::command, "open -a 'Finder'"}},
        {"default_fn_comma_pgup",
         false,
         "Fn+, Page Up",
         {54, {"fn"}},
         {ActionType::keyPress, "page_up"}},
        {"default_cmd_h_disable",
         false,
         "Disable Cmd+H",
         {11, {"command"}},
         {ActionType::keyPress, ""}},
        {"default_cmd_shift_v_clipboard_to_text",
         false,
         "Clipboard to Type Text",
         {25, commandShift},
         {ActionType::pasteClipboard, ""}},
    };
    for (const Shortcut& expected : cases) {
        EXPECT_EQ(builtIn(expected.id), expected) << expected.id;
    }
    EXPECT_EQ(defaultShortcuts()[14].title, "Open Safari");
    EXPECT_EQ(actionSignature(defaultShortcuts()[14]), "command|open -a 'Safari'||");
    EXPECT_EQ(actionSignature(defaultShortcuts()[1]),
              "openURL|wenlo://voice?action=start|openURL|wenlo://voice?action=stop");
}

TEST(DefaultConfig, mergingAppendsWhatIsNotCovered) {
    Cfg cfg;
    cfg.version = "other";
    cfg.grabScope = GrabScope::selected;
    cfg.mouseDevices = {{1, 2, "m"}};
    Cfg merged = withDefaults(cfg);
    EXPECT_EQ(merged.mappings.size(), 2U);
    ASSERT_EQ(merged.shortcuts.size(), 35U);
    EXPECT_EQ(merged.shortcuts[34].id, "default_cmd_shift_v_clipboard_to_text");
    EXPECT_EQ(withDefaults(merged), merged);
    merged.mappings.clear();
    merged.shortcuts.clear();
    EXPECT_EQ(merged, cfg);

    // Off, on another key, under another title: the user's record still covers the built-in one.
    cfg.mappings = {{"U", false, {57, {"fn"}}, {41, {}}}};
    cfg.shortcuts = {{"U", false, "mine", {4, {}}, {ActionType::command, "open -a 'Safari'"}}};
    merged = withDefaults(cfg);
    ASSERT_EQ(merged.mappings.size(), 2U);
    EXPECT_EQ(merged.mappings[0].id, "U");
    EXPECT_EQ(merged.mappings[1].id, "default_rcmd_fn");
    ASSERT_EQ(merged.shortcuts.size(), 35U);
    EXPECT_EQ(merged.shortcuts[0].id, "U");
    EXPECT_EQ(merged.shortcuts[14].id, "default_ropt_b_chrome");
    EXPECT_EQ(merged.shortcuts[15].id, "default_ropt_b_brave");

    // A release action, or another type with the same value, makes it another action.
    cfg.shortcuts[0].actionUp = ShortcutAction{ActionType::keyPress, ""};
    EXPECT_EQ(uncoveredDefaultShortcuts(cfg.shortcuts).size(), 35U);
    cfg.shortcuts[0].actionUp.reset();
    cfg.shortcuts[0].action.type = ActionType::typeText;
    EXPECT_EQ(uncoveredDefaultShortcuts(cfg.shortcuts).size(), 35U);
}

TEST(DefaultConfig, promotion) {
    const Shortcut& dictation = defaultShortcuts()[1];
    Shortcut own = promoted(dictation, "FRESH");
    EXPECT_EQ(own.id, "FRESH");
    EXPECT_TRUE(own.enabled);
    EXPECT_EQ(uncoveredDefaultShortcuts({own}).size(), 34U);
    own.id = dictation.id;
    own.enabled = false;
    EXPECT_EQ(own, dictation);

    const KeyMapping mapping = promoted(defaultMappings()[1], "FRESH");
    EXPECT_EQ(mapping, (KeyMapping{"FRESH", true, {231, {}}, {255, {}}}));
    EXPECT_EQ(uncoveredDefaultMappings({mapping}).at(0).id, "default_capslock_ctrl");
}

} // namespace
} // namespace tamsel
