#include "config/combo_conflicts.h"
#include "config/default_config.h"
#include "config/trigger_signatures.h"
#include "keys/key_codes.h"
#include "keys/key_press.h"
#include "keys/us_typing.h"

#include <gtest/gtest.h>

namespace tamsel {

namespace {

using Names = std::vector<std::string>;

constexpr std::uint32_t b = 5;
constexpr std::uint32_t h = 11;

Shortcut combo(std::string id, Names modifiers, std::uint32_t keyCode, bool enabled = true) {
    return {.id = std::move(id), .enabled = enabled, .keys = {keyCode, std::move(modifiers)}};
}

Names sortedKeys(const auto& map) {
    Names keys;
    for (const auto& [id, value] : map)
        keys.emplace_back(id);
    std::sort(keys.begin(), keys.end());
    return keys;
}

} // namespace

TEST(TriggerSignatures, ExpandInOrder) {
    EXPECT_EQ(triggerSignatures(33, Names{"command", "shift"}),
              (Names{"left_command,left_shift|33", "left_command,right_shift|33",
                     "left_shift,right_command|33", "right_command,right_shift|33"}));
    EXPECT_EQ(triggerSignatures(33, {}), Names{"|33"});
    EXPECT_EQ(triggerSignatures(0, Names{"command"}), Names{});
    EXPECT_EQ(triggerSignatures(4, Names{"Shift", "SHIFT"}),
              (Names{"left_shift|4", "right_shift|4"}));
    EXPECT_EQ(triggerSignatures(4, Names{"shift", "left_shift"}),
              (Names{"left_shift,left_shift|4", "left_shift,right_shift|4"}));
    EXPECT_EQ(triggerSignatures(4, Names{"zebra", "Fn", "right_option", "hyper"}),
              Names{"fn,hyper,right_option,zebra|4"});
    EXPECT_EQ(triggerSignatures(4, Names{"control", "shift", "option", "command"}).size(), 16U);
    EXPECT_EQ(triggerSignatures(4, Names(1000, "shift")).size(), 2U) << "no explosion";
}

TEST(ComboConflicts, OverlappingTriggersMarkEachOther) {
    struct Row {
        std::vector<Shortcut> combos;
        Names marked;
    };
    const std::vector<Row> rows{
        {{combo("1", {"command"}, h), combo("2", {"left_command"}, h)}, {"1", "2"}},
        {{combo("1", {"command"}, h), combo("2", {"left_command"}, h, false)}, {}},
        {{combo("1", {"right_command"}, h), combo("2", {"left_command"}, h)}, {}},
        {{combo("1", {"shift", "command"}, h), combo("2", {"command", "shift"}, h)}, {"1", "2"}},
        {{combo("1", {}, 0), combo("2", {}, 0)}, {}},
        {{combo("1", {"command"}, h), combo("2", {"command"}, h), combo("3", {"command"}, h)},
         {"1", "2", "3"}},
    };
    for (const Row& row : rows) {
        const auto marks = conflictingIds(row.combos, {});
        EXPECT_EQ(sortedKeys(marks), row.marked);
        for (const auto& [id, other] : marks)
            EXPECT_NE(other->id, id) << "names the other side";
    }
}

TEST(ComboConflicts, AUsersComboMarksBuiltInRowsThoughTheyAreOff) {
    const std::vector<Shortcut> own{combo("mine", {"right_option"}, b)};
    const auto builtIn = uncoveredDefaultShortcuts(own);
    const auto marks = conflictingIds(own, builtIn);
    EXPECT_EQ(sortedKeys(marks),
              (Names{"default_ropt_b_brave", "default_ropt_b_chrome", "default_ropt_b_ganjing"}));
    EXPECT_EQ(marks.at("default_ropt_b_brave"), &own[0]);
    EXPECT_TRUE(conflictingIds({}, builtIn).empty()) << "built-in rows don't mark each other";
}

TEST(ComboConflicts, SystemShortcuts) {
    const auto label = [](Names modifiers, std::uint32_t key, bool enabled = true) {
        const std::vector<Shortcut> own{combo("x", std::move(modifiers), key, enabled)};
        const auto labels = systemConflicts(own, {});
        return labels.empty() ? std::string_view() : labels.at("x");
    };
    ASSERT_EQ(systemShortcuts().size(), 17U);
    for (const SystemShortcut& row : systemShortcuts())
        EXPECT_EQ(label(row.modifiers, row.keyCode), row.label);
    EXPECT_EQ(label({"right_command"}, h), "Hide App (⌘ H)");
    EXPECT_EQ(label({"left_option", "right_command"}, h), "Hide Others (⌘ ⌥ H)");
    EXPECT_EQ(label({"command", "fn"}, h), "");
    EXPECT_EQ(label({"command"}, h, false), "");
    EXPECT_EQ(label({"control", "command"}, 20), "Lock Screen (⌃ ⌘ Q)");

    std::vector<Shortcut> builtIn(defaultShortcuts().begin(), defaultShortcuts().end());
    EXPECT_TRUE(systemConflicts({}, builtIn).empty()) << "all are off";
    builtIn.back().enabled = true;
    builtIn.back().keys = {h, {"command"}};
    EXPECT_EQ(systemConflicts({}, builtIn).size(), 1U);
}

TEST(ComboConflicts, Mappings) {
    const std::vector<KeyMapping> mappings{
        {"1", true, {KeyCodes::capsLock}, {}}, {"2", false, {b}, {}}, {"3", true, {}, {}}};
    const auto froms = enabledMappingFroms(mappings);
    EXPECT_TRUE(isMappingConflict(combo("x", {"fn"}, KeyCodes::capsLock, false), froms));
    EXPECT_FALSE(isMappingConflict(combo("x", {}, b), froms));
    EXPECT_FALSE(isMappingConflict(combo("x", {}, 0), froms)) << "no key is nobody's";
}

TEST(KeyPress, ParsesAndComposes) {
    struct Row {
        std::string value;
        Names modifiers;
        std::uint32_t mainKey;
    };
    const std::vector<Row> rows{
        {"left_command+left_shift+a", {"left_command", "left_shift"}, 4},
        {"", {}, 0},
        {"++a++", {}, 4},
        {"command+left_command+Command+a", {"left_command"}, 4},
        {"shift+fn+right_option", {"left_shift", "fn", "right_option"}, 0},
        {"left_bracket+left_command", {"left_command"}, 0},
        {"caps_lock+button3+nonsense+b+c", {}, 5},
        {"page_up", {}, KeyCodes::find("page_up")->code},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(keyPressModifiers(row.value), row.modifiers) << row.value;
        EXPECT_EQ(keyPressMainKey(row.value), row.mainKey) << row.value;
    }
    EXPECT_EQ(composeKeyPress(Names{"left_command", "left_shift"}, 4), "left_command+left_shift+a");
    EXPECT_EQ(composeKeyPress({}, 0), "");
    for (const KeyCodeDef& key : KeyCodes::all()) {
        const std::uint32_t expected = canBeMainKey(key.code) ? key.code : 0;
        EXPECT_EQ(keyPressMainKey(composeKeyPress(Names{"fn"}, key.code)), expected);
    }
    for (const std::uint32_t code : {57U, 255U, 224U, 231U, 4096U, 4099U})
        EXPECT_FALSE(canBeMainKey(code)) << code;
    EXPECT_TRUE(canBeMainKey(232));
}

TEST(UsTyping, NinetySevenCharacters) {
    std::size_t count = 0;
    for (char32_t character = 0; character < 0x300; ++character)
        count += usTyping(character) ? 1 : 0;
    EXPECT_EQ(count, 97U);
    std::string typed;
    for (const char32_t character : U"zA0)\n\t _|;\"~?\r") {
        const TypedKey key = usTyping(character).value_or(TypedKey{});
        typed += (key.shift == ShiftKey::held ? '+' : ' ') + std::to_string(key.usage);
    }
    EXPECT_EQ(typed, " 29+4 39+39 40 43 44+45+49 51+52+53+56 0 0");
}

} // namespace tamsel
