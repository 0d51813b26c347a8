#include "config/combo_rules.h"

#include <gtest/gtest.h>

namespace tamsel {

using Names = std::vector<std::string>;

TEST(ComboRules, TypeTextCountsCharacters) {
    const QString plain(2048, u'a');
    const QString family = QStringLiteral("👨‍👩‍👧‍👦");
    struct Row {
        QString text;
        TypeTextCheck check;
    };
    const std::vector<Row> rows{
        {"", {true, false, 0}},
        {"Grüße aus Zürich, Mira", {false, false, 3}},
        {plain, {false, false, 0}},
        {plain + "a", {false, true, 0}},
        {QString::fromUtf8("e\u0301"), {false, false, 1}},
        {"a\r\nb", {false, false, 1}},
        {"a\rb\nc\td", {false, false, 1}},
        {family, {false, false, 1}},
        {family.repeated(2048), {false, false, 2048}},
        {family.repeated(2049), {false, true, 2049}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(typeTextCheck(row.text), row.check) << row.text.left(30).toStdString();
}

TEST(ComboRules, MessagesAndSaving) {
    struct Row {
        ShortcutAction action;
        std::optional<QString> message;
        bool savable;
    };
    const std::string tooMany(2049, 'a');
    const QString badUrl = "Enter a valid URL with a scheme (file: is not allowed).";
    const std::vector<Row> rows{
        {{ActionType::command, ""}, std::nullopt, true},
        {{ActionType::keyPress, ""}, std::nullopt, true},
        {{ActionType::pasteClipboard, "x"}, std::nullopt, true},
        {{ActionType::typeText, ""}, "Type Text cannot be empty.", false},
        {{ActionType::typeText, tooMany}, "Type Text is limited to 2048 characters.", false},
        {{ActionType::typeText, tooMany + "é"}, "Type Text is limited to 2048 characters.", false},
        {{ActionType::typeText, "aé"},
         "Type Text contains 1 unsupported characters. Use US ASCII, space, Return, and Tab.",
         false},
        {{ActionType::typeText, "a\n"}, std::nullopt, true},
        {{ActionType::openURL, ""}, std::nullopt, false},
        {{ActionType::openURL, "file:///tmp"}, badUrl, false},
        {{ActionType::openURL, "myapp://x"}, std::nullopt, true},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(valueMessage(row.action), row.message) << row.action.value.substr(0, 30);
        EXPECT_EQ(canSave({.id = "x", .action = row.action}, MainKeyPick::accepted), row.savable)
            << row.action.value.substr(0, 30);
    }
    const auto savable = [](ActionType type, std::optional<ShortcutAction> up, MainKeyPick pick) {
        return canSave({.id = "x", .action = {type}, .actionUp = std::move(up)}, pick);
    };
    using enum ActionType;
    EXPECT_FALSE(savable(keyPress, std::nullopt, MainKeyPick::refused));
    EXPECT_TRUE(savable(command, std::nullopt, MainKeyPick::refused));
    EXPECT_FALSE(savable(command, ShortcutAction{openURL, ""}, MainKeyPick::accepted));
    EXPECT_TRUE(savable(command, ShortcutAction{openURL, "a://b"}, MainKeyPick::accepted));
    EXPECT_TRUE(savable(command, ShortcutAction{command, ""}, MainKeyPick::accepted));
}

TEST(ComboRules, ModifierToggles) {
    struct Row {
        Names before;
        std::string pressed;
        Names after;
    };
    const std::vector<Row> rows{
        {{"left_command", "fn", "right_command"}, "command", {"fn", "command"}},
        {{"command", "shift"}, "left_command", {"shift", "left_command"}},
        {{"left_option"}, "right_option", {"left_option", "right_option"}},
        {{"control", "shift"}, "control", {"shift"}},
        {{"left_control", "left_shift"}, "shift", {"left_control", "shift"}},
        {{"option"}, "right_option", {"right_option"}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(withModifierToggled(row.before, row.pressed), row.after) << row.pressed;
}

} // namespace tamsel
