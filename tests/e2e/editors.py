"""The editors by hand: keys recorded and combos made, with real keys under a real X server."""

import plistlib
import subprocess
import time
import unittest

import desktop
import harness
from desktop import Window, focus_window, type_keys
from harness import Sandbox, StandInDaemon, wait_for_line, wait_until

SENT = "[DaemonXPC] 配置發送成功"
HINT = "Press any key · Esc to cancel"
KEY_CONFLICT = "Key conflict: same keys used by another combo"
REMAPPED = "Trigger key is remapped in Mapping — this combo will not trigger"
HIDES_APP = "Overrides macOS Hide App (⌘ H) — Tamsel will intercept this keystroke before macOS"


# Key codes: for their symbols xdotool brings other modifiers along.
LEFT_SHIFT, RIGHT_CONTROL, RIGHT_COMMAND, H = "50", "105", "134", "43"


def hold(*keys):
    for key in keys:
        subprocess.run(["xdotool", "keydown", key], check=True)


def let_go(*keys):
    for key in keys:
        subprocess.run(["xdotool", "keyup", key], check=True)


class Editors(unittest.TestCase):
    def setUp(self):
        self.sandbox = Sandbox()
        self.addCleanup(self.sandbox.close)
        self.daemon = StandInDaemon(self.sandbox.address)
        self.addCleanup(self.daemon.die)

    def start(self, page):
        self.app = desktop.start_app(self.sandbox)
        wait_for_line(self.app, SENT)
        self.window = Window(self.app)
        focus_window()
        self.window.press("page tab", page)

    def stored(self, part):
        return plistlib.loads(self.sandbox.stored())[part]

    def record(self, button=0):
        self.window.press("push button", "Record a key", button)
        self.window.find(name=HINT)

    def selected(self, page):
        return self.window.find("page tab", page).get_state_set().contains(
            desktop.Atspi.StateType.SELECTED)

    def test_keys_are_recorded_as_what_they_are(self):
        self.start("Mapping")
        type_keys("a")
        self.window.find("combo box", "From: Choose a key")
        # What the toolkit, the window or the row would act on, and what has no virtual key code
        # (84 is the key code of the keypad's five; its symbol would bring Num Lock along).
        for key, name in (("Tab", "tab"), ("Return", "return_or_enter"), ("3", "3"), ("a", "a"),
                          ("Delete", "delete_forward"), ("84", "keypad_5"),
                          ("KP_Enter", "keypad_enter"), ("Caps_Lock", "caps_lock"),
                          ("Print", "print_screen"), ("space", "space"), ("F6", "f6")):
            self.record()
            type_keys(key)
            self.window.find("combo box", f"From: {name}")
            self.window.gone(name=HINT)
            self.assertEqual(len(self.stored("mappings")), 1, key)
        type_keys("Caps_Lock")  # as it was
        self.assertTrue(self.selected("Mapping"))
        self.assertEqual(self.stored("mappings")[0]["from"], {"keyCode": 63, "modifiers": []})

        # Escape cancels, a modifier alone ends nothing, and one held with a key is left out.
        self.record(1)
        hold(LEFT_SHIFT)
        let_go(LEFT_SHIFT)
        self.window.find(name=HINT)
        type_keys("Escape")
        self.window.gone(name=HINT)
        self.window.find("combo box", "To: Choose a key")
        self.record(1)
        hold(LEFT_SHIFT, RIGHT_CONTROL)
        type_keys("b")
        let_go(RIGHT_CONTROL, LEFT_SHIFT)
        self.window.find("combo box", "To: b")
        self.assertEqual(self.stored("mappings")[0]["to"], {"keyCode": 5, "modifiers": []})

        # With the keyboard alone: Return on the button starts a record and does not answer it.
        hold("Return")
        time.sleep(0.4)  # long enough for auto-repeat
        let_go("Return")
        self.window.find(name=HINT)
        type_keys("c")
        self.window.find("combo box", "To: c")

        # A mouse button comes from the daemon, its keyboard keys are not listened to; and recording
        # on a built-in row makes it the user's.
        self.record(2)
        wait_until(lambda: "subscribeKeyViewer" in self.daemon.calls, "the subscription")
        for usage in (20, 4100):
            self.daemon.tell_key(usage, True, 0, usage, False)
        self.window.find("combo box", "From: button4")
        self.assertEqual([m["from"]["keyCode"] for m in self.stored("mappings")], [4100, 63])
        wait_until(lambda: self.daemon.calls.count("subscribeKeyViewer") ==
                   self.daemon.calls.count("unsubscribeKeyViewer"), "the end of the subscriptions")

        # Ten seconds end it.
        self.record()
        started = time.monotonic()
        wait_until(lambda: not self.window.all(name=HINT), "the time-out", 15)
        self.assertGreater(time.monotonic() - started, 9)
        self.assertEqual(harness.other_output(self.app), [], "the toolkit printed warnings")

    def edit(self, title):
        self.window.press("push button", f"Edit {title}")
        self.window.find("dialog", "Combo")

    def save(self):
        self.window.press("push button", "Save")
        self.window.gone("dialog", "Combo")

    def test_combos_are_promoted_edited_saved_and_deleted(self):
        self.start("Combo")
        self.window.press("check box", "Open Safari", showing=False)
        wait_until(lambda: [c["title"] for c in self.stored("shortcuts")] == ["Open Safari"],
                   "the promoted combo")
        self.edit("Open Safari")
        field = self.window.find("text", "Title")
        field.grab_focus()
        focus_window()
        type_keys("ctrl+a", "1", "a", "5")
        self.assertTrue(self.selected("Combo"), "typing chooses no screen")
        self.record()
        hold(LEFT_SHIFT, RIGHT_COMMAND)
        type_keys(H)
        let_go(RIGHT_COMMAND, LEFT_SHIFT)
        self.window.gone(name=HINT)
        for cap in ("left_shift", "right_command", "h"):
            self.window.find("label", cap)
        self.window.press("check box", "Left Shift")
        self.window.press("radio button", "Open URL")
        self.window.find("text", "URL / deeplink").grab_focus()
        type_keys("x")
        self.window.find(name="Enter a valid URL with a scheme (file: is not allowed).")
        type_keys("ctrl+Return")
        self.window.find("dialog", "Combo")
        type_keys("colon", "y", "ctrl+Return")
        self.window.gone("dialog", "Combo")
        combo, = self.stored("shortcuts")
        self.assertEqual((combo["title"], combo["enabled"], combo["keys"], combo["action"]),
                         ("1a5", True, {"keyCode": 11, "modifiers": ["right_command"]},
                          {"type": "openURL", "value": "x:y"}))

        # The three marks come and go.
        self.window.find("label", HIDES_APP)
        type_keys("a")
        self.window.find("dialog", "Combo")
        type_keys("2", "Tab", "Tab", "Return")
        self.window.find(name=HINT)
        hold(RIGHT_COMMAND)
        type_keys(H)
        let_go(RIGHT_COMMAND)
        self.window.gone(name=HINT)
        self.save()
        wait_until(lambda: len(self.window.all("image", KEY_CONFLICT)) == 2, "both marked")
        self.assertEqual({mark.get_description() for mark in
                          self.window.all("image", KEY_CONFLICT)}, {"1a5", "2"})
        self.window.press("check box", "2")
        self.window.gone("image", KEY_CONFLICT)
        self.window.press("page tab", "Mapping")
        self.window.press("push button", "Add Mapping")
        self.record()
        type_keys("h")
        self.window.find("combo box", "From: h")
        self.window.press("page tab", "Combo")
        wait_until(lambda: len(self.window.all("image", REMAPPED)) >= 2, "the mapping's mark")
        for _ in range(2):
            title = self.stored("shortcuts")[0]["title"]
            self.window.press("push button", f"Delete {title}")
            self.window.gone("push button", f"Delete {title}")
        wait_until(lambda: not self.stored("shortcuts"), "the empty list")
        self.window.gone("label", HIDES_APP)

        # Escape leaves the editor without a trace.
        self.edit("Open Xcode")
        type_keys("Escape")
        self.window.gone("dialog", "Combo")
        self.assertEqual(self.stored("shortcuts"), [])
        self.assertEqual(harness.other_output(self.app), [], "the toolkit printed warnings")

    def test_ten_thousand_combos(self):
        combos = [{"id": f"id {i}", "enabled": True, "title": f"Combo {i}",
                   "keys": {"keyCode": 4 + i % 90, "modifiers": ["command", "shift"]},
                   "action": {"type": "command", "value": f"echo {i}"}} for i in range(10000)]
        self.sandbox.put(plistlib.dumps(
            {"version": "1.0", "mappings": [], "shortcuts": combos, "excludedKeyboards": [],
             "mouseDevices": [], "grabScope": "all", "allowedDevices": []},
            fmt=plistlib.FMT_BINARY))
        self.start("Dash")

        def hitches(action, limit, what):
            with harness.Hitches(self.daemon) as found:
                action()
                time.sleep(0.3)  # what was asked for is on the screen
            print(f"{what}: {found.worst * 1000:.0f} ms at most")
            self.assertLess(found.worst, limit * harness.PATIENCE, what)

        def scroll():
            subprocess.run(["xdotool", "mousemove", "640", "500"], check=True)
            for _ in range(40):
                subprocess.run(["xdotool", "click", "5"], check=True)
            type_keys(*["Next"] * 20)

        hitches(lambda: type_keys("3"), 0.5, "opening")
        hitches(scroll, 0.15, "scrolling")
        self.window.gone("panel", "Combo 0")  # nothing pulls the rows back
        type_keys("End")
        self.window.find("panel", "Fn+[ Go Back")
        type_keys("Home")
        # The marks, the stored configuration and the daemon's are made anew with every edit.
        hitches(lambda: self.window.press("check box", "Combo 1"), 0.3, "an edit")
        wait_until(lambda: not self.stored("shortcuts")[1]["enabled"], "the edit")
        # What is deleted leaves the keyboard on the next row.
        self.window.press("push button", "Edit Combo 2")
        type_keys("Escape")
        hitches(lambda: type_keys("Delete"), 0.3, "deleting")
        self.window.gone("push button", "Delete Combo 2")
        type_keys("Delete")
        self.window.gone("push button", "Delete Combo 3")
        self.assertEqual([c["title"] for c in self.stored("shortcuts")[:4]],
                         ["Combo 0", "Combo 1", "Combo 4", "Combo 5"])
        self.assertEqual(harness.other_output(self.app), [], "the toolkit printed warnings")


if __name__ == "__main__":
    desktop.run_in_desktop()
    unittest.main(verbosity=2)
