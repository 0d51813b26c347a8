#include "config/default_config.h"

#include "keys/key_codes.h"

#include <array>
#include <initializer_list>
#include <string_view>
#include <utility>

// The built-in records. Keys are looked up by their catalogue names.

namespace tamsel {

namespace {

using Modifiers = std::vector<std::string>;

KeyDefinition key(std::string_view name, Modifiers modifiers = {}) {
    const KeyCodeDef* entry = KeyCodes::find(name);
    return {entry != nullptr ? entry->code : KeyCodes::noKey, std::move(modifiers)};
}

ShortcutAction command(std::string value) {
    return {ActionType::command, std::move(value)};
}
ShortcutAction keyPress(std::string value) {
    return {ActionType::keyPress, std::move(value)};
}
ShortcutAction openURL(std::string value) {
    return {ActionType::openURL, std::move(value)};
}

Shortcut combo(std::string id, std::string title, KeyDefinition keys, ShortcutAction action) {
    return {.id = std::move(id),
            .title = std::move(title),
            .keys = std::move(keys),
            .action = std::move(action)};
}

/// A combo on the right option key that opens an application.
Shortcut opener(std::string id, std::string title, std::string_view keyName, std::string line) {
    return combo(std::move(id), std::move(title), key(keyName, {"right_option"}),
                 command(std::move(line)));
}

std::vector<Shortcut> inputCombos() {
    Shortcut dictation = combo("default_dictation_ptt_wenlo_voice",
                               "Wenlo輸入法語音AI轉錄 [Website](https://wenlo.app)", key("f5"),
                               openURL("wenlo://voice?action=start"));
    dictation.actionUp = openURL("wenlo://voice?action=stop");
    return {
        combo("default_shift_space_wenlo", "Wenlo輸入法切換簡正 [Website](https://wenlo.app)",
              key("space", {"right_shift"}), command("open -g 'wenlo://charset?toggle'")),
        std::move(dictation),
    };
}

std::vector<Shortcut> screenshotCombos() {
    return {
        combo("default_cmd_shift_4_snapko_area", "Snapko Screenshot (Area)",
              key("4", {"command", "shift"}), command("open -g 'snapko://capture?mode=area'")),
        combo("default_cmd_shift_3_snapko_full", "Snapko Screenshot (Fullscreen)",
              key("3", {"command", "shift"}),
              command("open -g 'snapko://capture?mode=fullscreen'")),
        combo("default_cmd_shift_5_snapko_scroll", "Snapko Screenshot (Scrolling)",
              key("5", {"command", "shift"}), command("open -g 'snapko://capture?mode=scroll'")),
        combo("default_cmd_shift_1_snapko_record", "Snapko Screen Recording",
              key("1", {"command", "shift"}), command("open -g 'snapko://capture?mode=record'")),
    };
}

std::vector<Shortcut> openCombos() {
    return {
        opener("default_ropt_y_snapko", "Open Snapko [Website](https://snapko.app)", "y",
               "open -a 'Snapko'"),
        opener("default_ropt_x_xcode", "Open Xcode", "x", "open -a 'Xcode'"),
        opener("default_ropt_t_iterm", "Open iTerm [Website](https://iterm2.com)", "t",
               "open '/Applications/iTerm.app'"),
        opener("default_ropt_s_signal", "Open Signal [Website](https://signal.org)", "s",
               "open -a 'Signal'"),
        opener("default_ropt_v_vscode", "Open VSCode [Website](https://code.visualstudio.com)", "v",
               "open -a 'Visual Studio Code'"),
        opener("default_ropt_g_sublmerge",
               "Open Sublime Merge [Website](https://www.sublimemerge.com)", "g",
               "open -a 'Sublime Merge'"),
        opener("default_ropt_q_imessage", "Open iMessage", "q", "open -a 'Messages'"),
        opener("default_ropt_b_chrome", "Open Chrome [Website](https://www.google.com/chrome/)",
               "b", "open -a 'Google Chrome'"),
        opener("default_ropt_a_safari", "Open Safari", "a", "open -a 'Safari'"),
        opener("default_ropt_b_brave", "Open Brave [Website](https://brave.com)", "b",
               "open -a 'Brave Browser'"),
        opener("default_ropt_b_ganjing", "Open Gan Jing Browser [Website](https://www.ganjing.com)",
               "b", "open -a 'Gan Jing Browser'"),
        opener("default_ropt_d_tableplus", "Open TablePlus [Website](https://tableplus.com)", "d",
               "open -a 'TablePlus'"),
        opener("default_ropt_c_pellam", "Open Pellam [Website](https://pellam.app)", "c",
               "open -b app.pellam"),
        opener("default_ropt_k_vaultby", "Open Vaultby [Website](https://vaultby.app)", "k",
               "open -a 'Vaultby'"),
        opener("default_ropt_m_mail", "Open Mail", "m", "open -a 'Mail'"),
        opener("default_ropt_m_thunderbird",
               "Open Thunderbird [Website](https://www.thunderbird.net)", "m",
               "open -a 'Thunderbird'"),
        opener("default_ropt_z_simulator", "Open Simulator", "z", "open -a 'Simulator'"),
        opener("default_ropt_f_finder", "Open Finder", "f", "open -a 'Finder'"),
        opener("default_ropt_o_tarrow", "Open Tarrow [Website](https://tarrow.app)", "o",
               "open -a 'Tarrow'"),
    };
}

std::vector<Shortcut> navigationCombos() {
    return {
        combo("default_fn_lbracket_back", "Fn+[ Go Back", key("open_bracket", {"fn"}),
              keyPress("left_bracket+left_command")),
        combo("default_fn_rbracket_forward", "Fn+] Go Forward", key("close_bracket", {"fn"}),
              keyPress("right_bracket+left_command")),
        combo("default_fn_comma_pgup", "Fn+, Page Up", key("comma", {"fn"}), keyPress("page_up")),
        combo("default_fn_period_pgdn", "Fn+. Page Down", key("period", {"fn"}),
              keyPress("page_down")),
        combo("default_fn_j_left", "Fn+J Left Arrow", key("j", {"fn"}), keyPress("left_arrow")),
        combo("default_fn_k_down", "Fn+K Down Arrow", key("k", {"fn"}), keyPress("down_arrow")),
        combo("default_fn_i_up", "Fn+I Up Arrow", key("i", {"fn"}), keyPress("up_arrow")),
        combo("default_fn_l_right", "Fn+L Right Arrow", key("l", {"fn"}), keyPress("right_arrow")),
    };
}

std::vector<Shortcut> otherCombos() {
    return {
        combo("default_cmd_h_disable", "Disable Cmd+H", key("h", {"command"}), keyPress("")),
        combo("default_cmd_shift_v_clipboard_to_text", "Clipboard to Type Text",
              key("v", {"command", "shift"}), ShortcutAction{ActionType::pasteClipboard}),
    };
}

} // namespace

std::span<const KeyMapping> defaultMappings() {
    static const std::array mappings = {
        KeyMapping{
            .id = "default_capslock_ctrl", .from = key("caps_lock"), .to = key("left_control")},
        KeyMapping{.id = "default_rcmd_fn", .from = key("right_command"), .to = key("fn")},
    };
    return mappings;
}

std::span<const Shortcut> defaultShortcuts() {
    static const std::vector<Shortcut> shortcuts = [] {
        std::vector<Shortcut> all;
        for (const auto& part :
             {inputCombos(), screenshotCombos(), openCombos(), navigationCombos(), otherCombos()}) {
            all.insert(all.end(), part.begin(), part.end());
        }
        return all;
    }();
    return shortcuts;
}

} // namespace tamsel
