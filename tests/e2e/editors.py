"""The editors by hand: keys recorded and combos made, with real keys under a real X server."""

import plistlib
import subprocess
import time

import desktop
from desktop import WindowTest, focus_window, type_keys
from harness import wait_until

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


class Editors(WindowTest):
    def setUp(self):
        super().setUp()
        self.stand_in()

    def stored(self, part):
        return plistlib.loads(self.sandbox.stored())[part]

    def record(self, button=0):
        self.window.press("push button", "Record a key", button)
        self.window.find(name=HINT)

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
        self.assertTrue(self.window.is_selected("Mapping"))
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
        self.calm()

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
        self.assertTrue(self.window.is_selected("Combo"), "typing chooses no screen")
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
        # What is deleted leaves the keyboard on the next row.
        self.edit(self.stored("shortcuts")[0]["title"])
        type_keys("Escape")
        self.window.gone("dialog", "Combo")
        for combo in self.stored("shortcuts"):
            type_keys("Delete")
            self.window.gone("push button", f"Delete {combo['title']}")
        wait_until(lambda: not self.stored("shortcuts"), "the empty list")
        self.window.gone("label", HIDES_APP)

        # Escape leaves the editor without a trace.
        self.edit("Open Xcode")
        type_keys("Escape")
        self.window.gone("dialog", "Combo")
        self.assertEqual(self.stored("shortcuts"), [])
        self.calm()


if __name__ == "__main__":
    desktop.run_tests()
