#include "../support/logic_fixture.h"

#include "coding/cfg_coding.h"
#include "config/default_config.h"
#include "editors/combo_title.h"
#include "editors/combo_vm.h"

namespace tamsel {

struct ComboVMTest : LogicFixture {
    ComboVM vm{desk, workspace};

    void store(std::vector<Shortcut> shortcuts, std::vector<KeyMapping> mappings = {}) {
        Cfg cfg;
        cfg.shortcuts = std::move(shortcuts);
        cfg.mappings = std::move(mappings);
        storage.save(cfg);
        vm.reload();
    }
    /// The stored combos, and that the daemon got them with the defaults.
    std::vector<Shortcut> saved() {
        queue.runPending();
        EXPECT_FALSE(daemon.configs.empty());
        EXPECT_EQ(decodeCfg(daemon.configs.back()), withDefaults(storage.load()));
        return storage.load().shortcuts;
    }
    const ComboRow& row(const QString& id) {
        for (const ComboRow& each : vm.rows()) {
            if (each.id == id)
                return each;
        }
        ADD_FAILURE() << "no row " << id.toStdString();
        return vm.rows().first();
    }
};

TEST_F(ComboVMTest, ANewComboIsStoredOnTop) {
    store({{.id = "old", .enabled = true}}, {{"m", true, {4, {}}, {5, {}}}});
    vm.addCombo();
    ASSERT_TRUE(vm.editor());
    EXPECT_TRUE(vm.editor()->editedShortcut().enabled);
    EXPECT_EQ(vm.editor()->action(), ShortcutEditVM::Command);
    vm.addCombo();
    vm.editor()->setTitle("Terminal");
    vm.editor()->setValue("term");
    const QString id = vm.save();
    EXPECT_FALSE(vm.editor());
    ASSERT_EQ(saved().size(), 2U);
    EXPECT_EQ(saved()[0], (Shortcut{.id = id.toStdString(),
                                    .enabled = false,
                                    .title = "Terminal",
                                    .action = {ActionType::command, "term"}}))
        << "without a trigger it is off";
    EXPECT_EQ(storage.load().mappings.size(), 1U) << "other parts stay";
    EXPECT_EQ(daemon.configs.size(), 1U);
    vm.addCombo();
    vm.cancel();
    EXPECT_TRUE(vm.save().isEmpty()) << "no editor, nothing to save";
    EXPECT_EQ(saved().size(), 2U);
}

TEST_F(ComboVMTest, EditingReplacesInPlace) {
    store({{.id = "a"}, {.id = "b", .enabled = true, .keys = {4, {"fn", "command"}}}, {.id = "c"}});
    vm.edit("b");
    EXPECT_EQ(vm.editor()->triggerCaps(), (QStringList{"command", "fn", "a"}));
    vm.editor()->toggleModifier("left_command");
    vm.editor()->pickKey(5);
    vm.editor()->setAction(ShortcutEditVM::OpenURL);
    EXPECT_TRUE(vm.save().isEmpty()) << "an empty URL can't be saved";
    vm.editor()->setValue("tel:1");
    EXPECT_EQ(vm.save(), "b");
    EXPECT_EQ(saved()[1], (Shortcut{.id = "b",
                                    .enabled = true,
                                    .keys = {5, {"fn", "left_command"}},
                                    .action = {ActionType::openURL, "tel:1"}}));
    vm.deleteCombo("b");
    vm.setEnabled("c", true);
    ASSERT_EQ(saved().size(), 2U);
    EXPECT_TRUE(saved()[1].enabled);
    vm.edit("nobody");
    EXPECT_FALSE(vm.editor());
}

TEST_F(ComboVMTest, ABuiltInComboIsPromoted) {
    store({{.id = "own"}});
    const auto count = vm.rows().size();
    vm.setEnabled("default_ropt_a_safari", false);
    vm.deleteCombo("default_ropt_a_safari");
    EXPECT_TRUE(daemon.configs.empty());
    vm.setEnabled("default_ropt_a_safari", true);
    EXPECT_EQ(vm.rows().size(), count) << "the built-in row is covered";
    ASSERT_EQ(saved().size(), 2U);
    EXPECT_EQ(saved()[0].title, "Open Safari");
    EXPECT_TRUE(saved()[0].enabled);
    vm.edit("default_cmd_h_disable");
    vm.editor()->setTitle("No hiding");
    const QString id = vm.save();
    ASSERT_EQ(saved().size(), 3U);
    EXPECT_EQ(saved()[0].id, id.toStdString());
    EXPECT_TRUE(saved()[0].enabled);
    EXPECT_EQ(saved()[0].title, "No hiding");
    EXPECT_EQ(row(id).systemShortcut, "Hide App (⌘ H)");
    EXPECT_FALSE(QString::fromStdString(saved()[0].id).startsWith("default_"));
}

TEST_F(ComboVMTest, RowsShowMarksLinksAndCaps) {
    store({{.id = "1",
            .enabled = true,
            .title = "One [Site](https://one.example)",
            .keys = {57, {"shift", "right_control", "left_control"}},
            .action = {ActionType::typeText, "a\nb"},
            .actionUp = ShortcutAction{ActionType::openURL, "x:y"}},
           {.id = "2", .enabled = true, .title = "Two", .keys = {57, {"left_shift", "control"}}},
           {.id = "3",
            .enabled = true,
            .title = "Three",
            .keys = {57, {"left_shift", "left_control", "right_control"}}}},
          {{"m", true, {57, {}}, {224, {}}}});
    EXPECT_EQ(row("1"), (ComboRow{.id = "1",
                                  .enabled = true,
                                  .title = "One",
                                  .linkText = "Site",
                                  .keys = {"left_control", "right_control", "shift", "caps_lock"},
                                  .action = "Type Text",
                                  .value = "a↵b",
                                  .holdMode = true,
                                  .upAction = "Open URL",
                                  .upValue = "x:y",
                                  .keyConflict = true,
                                  .conflictsWith = "Three",
                                  .mappingConflict = true,
                                  .remappedTo = "left_control"}));
    EXPECT_FALSE(row("2").keyConflict);
    vm.openLink("1");
    EXPECT_EQ(workspace.opened, QList<QUrl>{QUrl("https://one.example")});
    vm.openLink("2");
    EXPECT_EQ(workspace.opened.size(), 1);
    Cfg cfg = storage.load();
    cfg.mappings[0].enabled = false;
    storage.save(cfg);
    vm.reload();
    EXPECT_FALSE(row("1").mappingConflict);

    for (const char* title : {"", "[a](https://b)", "x [a](file:///b)", "x [a](nothing)",
                              "x [](a:b)", "x [a](https://b) y", "x ]( [a"})
        EXPECT_EQ(ComboTitle::parse(title).text, QString(title));
}

TEST_F(ComboVMTest, TheEditorKeepsTheRules) {
    store({{.id = "k", .action = {ActionType::keyPress, "command+left_bracket+a"}}});
    vm.edit("k");
    ShortcutEditVM& editor = *vm.editor();
    EXPECT_EQ(editor.outputCaps(), (QStringList{"left_command", "a"}));
    for (const quint32 refused : {4099U, 57U, 255U, 224U}) {
        editor.pickMainKey(refused);
        EXPECT_TRUE(editor.keyPressMainInvalid());
        EXPECT_FALSE(editor.canSave());
        EXPECT_EQ(editor.value(), "command+left_bracket+a");
    }
    editor.toggleOutputModifier("left_shift");
    EXPECT_EQ(editor.value(), "left_command+left_shift+a");
    EXPECT_TRUE(editor.keyPressMainInvalid()) << "until a key is accepted";
    editor.pickMainKey(80);
    EXPECT_EQ(editor.value(), "left_command+left_shift+left_arrow");
    EXPECT_TRUE(editor.canSave());
    editor.setAction(ShortcutEditVM::TypeText);
    EXPECT_EQ(editor.value(), "");
    EXPECT_EQ(editor.valueMessage(), "Type Text cannot be empty.");
    editor.setAction(ShortcutEditVM::KeyPress);
    EXPECT_EQ(editor.value(), "left_command+left_shift+left_arrow") << "the draft is kept";

    editor.setHoldMode(true);
    EXPECT_EQ(editor.editedShortcut().actionUp, (ShortcutAction{ActionType::openURL, ""}));
    EXPECT_FALSE(editor.canSave());
    EXPECT_EQ(editor.upMessage(), "");
    editor.setUpValue("file:///tmp");
    EXPECT_EQ(editor.upMessage(), "Enter a valid URL with a scheme (file: is not allowed).");
    editor.setUpAction(ShortcutEditVM::Command);
    EXPECT_TRUE(editor.canSave());
    editor.setHoldMode(false);
    EXPECT_FALSE(editor.editedShortcut().actionUp);
    editor.recordTrigger(4, {"left_shift", "fn"});
    EXPECT_EQ(editor.editedShortcut().keys, (KeyDefinition{4, {"left_shift", "fn"}}));
}

} // namespace tamsel
