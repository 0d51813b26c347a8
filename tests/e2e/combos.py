"""Combos all the way: from the configuration and from the window, through the real application, the
daemon on simulated devices and the agent, to what a combo does."""

import os
import plistlib

import desktop
import harness
from desktop import WindowTest, type_keys, type_text
from harness import SENT, SimulatedDaemon, lines, wait_for_line, wait_until



def combo(number, key, modifiers, action, action_up=None):
    made = {"id": f"combo {number}", "enabled": True, "title": f"Combo {number}",
            "keys": {"keyCode": key, "modifiers": modifiers},
            "action": dict(zip(("type", "value"), action))}
    if action_up:
        made["actionUp"] = dict(zip(("type", "value"), action_up))
    return made


class Combos(WindowTest):
    def setUp(self):
        super().setUp()
        self.opened = self.put_opener()
        self.daemon = SimulatedDaemon(self.sandbox)

    def start_agent(self):
        """Starts the agent and waits until it has announced itself: its first command works."""
        agent = self.sandbox.start("tamsel-agent")
        lock = os.path.join(self.sandbox.env["XDG_RUNTIME_DIR"], "tamsel", "agent.lock")
        wait_until(lambda: os.path.exists(lock) and os.path.getsize(lock), "the agent")
        return agent

    def start_with(self, *combos):
        """An application with these combos, and a mapping of caps lock to c."""
        self.sandbox.put(plistlib.dumps({
            "version": "1.0", "shortcuts": combos,
            "mappings": [{"id": "m", "enabled": True, "from": {"keyCode": 57, "modifiers": []},
                          "to": {"keyCode": 6, "modifiers": []}}]}, fmt=plistlib.FMT_BINARY))
        app = self.sandbox.start_app()
        wait_for_line(app, SENT)
        return app

    def test_what_combos_do(self):
        ran = os.path.join(self.sandbox.folder, "ran")
        self.start_with(
            combo(1, 4, ["command"], ("keyPress", "left_control+tab")),
            combo(3, 6, ["left_shift"], ("command", f'echo "$((6 * 7))" >> {ran}'),
                  ("openURL", "wenlo://voice?action=stop")),
            combo(4, 7, ["fn"], ("typeText", "Hi\n")),
            combo(5, 8, [], ("typeText", "caf\u00e9 \u2603")),
            combo(6, 9, [], ("pasteClipboard", "")))
        self.start_agent()
        comes_out = self.daemon.comes_out

        # A chord: the trigger's modifier is lifted while it is held.
        chord = ['action keyPress "left_control+tab"', "231 up", "224 down", "43 down"]
        comes_out(["231 down", "4 down", "4 up", "231 up"],
                  ["231 down", *chord, "43 up", "224 up", "231 down", "231 up"])
        # A mapped key sets it off. The command is the agent's, the address the application's.
        command = f'action command "echo \\"$((6 * 7))\\" >> {ran}"'
        for attempt in range(2):
            comes_out(["225 down", "57 down", "57 up", "225 up"],
                      ["225 down", command, 'action openURL "wenlo://voice?action=stop"', "225 up"])
        wait_until(lambda: lines(ran) == ["42"] * 2, "the commands")
        wait_until(lambda: self.opened() == ["wenlo://voice?action=stop"] * 2,
                   "the addresses")
        # Text, with fn lifted; what a US layout cannot type is not begun; an empty clipboard.
        comes_out(["255 down", "7 down", "7 up", "255 up"],
                  ["255 down", 'action typeText "Hi\\n"', "255 up", "225 down", "11 down", "11 up",
                   "225 up", "12 down", "12 up", "40 down", "40 up", "255 down", "255 up"])
        comes_out(["8 down", "8 up"], ['action typeText "caf\\u00e9 \\u2603"'])
        comes_out(["9 down", "9 up"], ['action pasteClipboard ""'])
        self.daemon.rewrites(30, 30)
        complaints = harness.log_lines(self.daemon.process)
        self.assertEqual(complaints,
                         ["a text has a character that no key of a US layout types"])

    def test_without_anybody_to_run_them(self):
        app = self.start_with(combo(1, 4, [], ("command", "secret")),
                              combo(2, 5, [], ("openURL", "secret:x")),
                              combo(3, 6, [], ("pasteClipboard", "")))
        app.kill()
        app.wait()
        self.daemon.comes_out(["4 down", "4 up", "5 down", "5 up", "6 down", "6 up"],
                              ['action command "secret"', 'action openURL "secret:x"',
                               'action pasteClipboard ""'])
        log = wait_until(lambda: len(lines := harness.log_lines(self.daemon.process)) == 3 and lines,
                         "three complaints")
        self.assertNotIn("secret", " ".join(log))
        self.daemon.rewrites(30, 30)

    def test_a_combo_made_in_the_window_runs(self):
        self.start("Combo")
        app, window = self.app, self.window
        self.start_agent()
        ran = os.path.join(self.sandbox.folder, "ran")
        type_keys("a")
        window.find("dialog", "Combo")
        type_text("Kept")
        window.press("push button", "Record a key")
        window.find(name="Press any key · Esc to cancel")
        type_keys("F9")
        window.find("label", "f9")
        window.find("text", "Command").grab_focus()
        type_text(f"touch {ran}")
        type_keys("ctrl+Return")
        window.gone("dialog", "Combo")
        wait_for_line(app, SENT, 2)
        self.daemon.comes_out(["66 down", "66 up"], [f'action command "touch {ran}"'])
        wait_until(lambda: os.path.exists(ran), "the command")

        # Its title goes to the clipboard, and from there through the daemon to the keys.
        window.press("push button", "Edit Kept")
        window.find("text", "Title").grab_focus()
        type_keys("ctrl+a", "ctrl+c")
        window.press("radio button", "Paste Clipboard")
        type_keys("ctrl+Return")
        window.gone("dialog", "Combo")
        wait_for_line(app, SENT, 3)
        self.daemon.comes_out(
            ["66 down", "66 up"],
            ['action pasteClipboard ""', "225 down", "14 down", "14 up", "225 up",
             "8 down", "8 up", "19 down", "19 up", "23 down", "23 up"])
        self.calm()


if __name__ == "__main__":
    desktop.run_tests()
