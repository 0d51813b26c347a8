#include "config/default_config.h"

#include <gtest/gtest.h>
#include <set>

namespace tamsel {
namespace {

// The records themselves are held against tables where the application sends them.

TEST(DefaultConfig, signaturesAreOfActionsAlone) {
    std::set<std::string> signatures;
    for (const Shortcut& shortcut : defaultShortcuts())
        signatures.insert(actionSignature(shortcut));
    EXPECT_EQ(signatures.size(), 35U);
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

} // namespace
} // namespace tamsel
