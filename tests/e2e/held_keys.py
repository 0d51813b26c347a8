"""Keys that are held down, rows that are scrolled away, windows that go in the middle of a record:
what a held key must not do, with real keys, under an X server and in a Wayland compositor."""

import json
import plistlib
import subprocess
import time

import desktop
from desktop import Window, WindowTest, focus_window, type_keys
from harness import SENT, wait_for_line, wait_until

HINT = "Press any key · Esc to cancel"
# Long enough for the auto-repeat of any server to begin and to go on.
HELD = 1.2
RIGHT_CONTROL = "105"


def xdotool(*arguments):
    subprocess.run(["xdotool", *arguments], check=True)


def hold(*keys, seconds=HELD):
    for key in keys:
        xdotool("keydown", key)
    time.sleep(seconds)
    for key in reversed(keys):
        xdotool("keyup", key)
    time.sleep(0.2)


def combo(number):
    return {"id": f"id {number}", "enabled": True, "title": f"Combo {number}",
            "keys": {"keyCode": 4 + number, "modifiers": ["command", "shift"]},
            "action": {"type": "command", "value": f"echo {number}"}}


def mapping(number):
    return {"id": f"id {number}", "enabled": True, "from": {"keyCode": 4 + number, "modifiers": []},
            "to": {"keyCode": 30, "modifiers": []}}


class HeldKeys(WindowTest):
    def setUp(self):
        super().setUp()
        self.stand_in()

    def start(self, page, wayland, mappings=0, combos=0):
        subprocess.run(["xset", "r", "on"], check=True)
        self.sandbox.put(plistlib.dumps(
            {"version": "1.0", "mappings": [mapping(i) for i in range(mappings)],
             "shortcuts": [combo(i) for i in range(combos)], "excludedKeyboards": [],
             "mouseDevices": [], "grabScope": "all", "allowedDevices": []},
            fmt=plistlib.FMT_BINARY))
        self.app = desktop.start_app(self.sandbox, **(self.compositor() if wayland else {}))
        wait_for_line(self.app, SENT)
        self.window = Window(self.app)
        focus_window(*(("weston", "--class") if wayland else ()))
        self.window.press("page tab", page)
        self.window.find("heading", page)

    def compositor(self):
        """Another desktop inside this one; its keys are this server's, which its clients repeat."""
        subprocess.run(["xset", "r", "off"], check=True)
        return self.start_weston()

    def on_both(self, test):
        for wayland in (False, True):
            with self.subTest(wayland=wayland):
                try:
                    test(wayland)
                finally:
                    for process in self.sandbox.processes:
                        process.kill()
                        process.wait()
                    self.daemon.calls.clear()

    def stored(self, part):
        return plistlib.loads(self.sandbox.stored())[part]

    def ids(self, part):
        return [record["id"] for record in self.stored(part)]

    def focus(self, role, name):
        node = self.window.find(role, name)
        node.grab_focus()
        wait_until(lambda: self.window.find(role, name).get_state_set().contains(
            desktop.Atspi.StateType.FOCUSED), f"the focus on {name}")

    def record(self, button=0):
        self.window.press("push button", "Record a key", button)
        self.window.find(name=HINT)

    def test_a_recorded_key_does_nothing_until_it_is_let_go(self):
        def test(wayland):
            self.start("Mapping", wayland, mappings=12)
            for key, name in (("Delete", "delete_forward"), ("space", "space"), ("a", "a")):
                self.record(3)
                hold(key)
                self.window.find("combo box", f"To: {name}")
                self.assertEqual(len(self.stored("mappings")), 12, name)
            self.window.press("page tab", "Combo")
            self.window.press("push button", "Edit Open Xcode")
            self.window.find("dialog", "Combo")
            for keys in (("Control_R", "Return"), ("Control_R", "w"), ("Escape",)):
                self.record()
                hold(*keys)
                self.window.gone(name=HINT)
                self.window.find("dialog", "Combo")
                self.assertEqual(self.stored("shortcuts"), [], keys)
        self.on_both(test)

    def test_a_held_key_acts_once(self):
        def test(wayland):
            self.start("Combo", wayland, combos=8)
            self.focus("check box", "Combo 3")
            sent = len(self.daemon.configs)
            hold("Return")
            self.assertEqual(len(self.daemon.configs), sent + 1)
            self.assertEqual([c["enabled"] for c in self.stored("shortcuts")].count(False), 1)
            hold("Delete")
            self.assertEqual(len(self.stored("shortcuts")), 7)
            self.focus("push button", "Delete Combo 5")
            hold("Return")
            self.assertEqual(len(self.stored("shortcuts")), 6)
            hold("Tab")  # moves on and on
            self.assertEqual(len(self.stored("shortcuts")), 6)

            self.window.press("page tab", "Mapping")
            self.window.press("push button", "Add Mapping")
            self.focus("combo box", "From: Choose a key")
            hold("Return")
            self.window.find("text", "Search keys")
            self.window.find("combo box", "From: Choose a key", showing=False)
            hold("b", seconds=HELD)  # types
            self.window.find("label", "No key has this name")
            type_keys("Escape")
            self.assertEqual(self.stored("mappings")[0]["from"]["keyCode"], 0)
        self.on_both(test)

    def scroll_away(self, role, name):
        type_keys("End")
        self.window.gone(role, name)

    def test_keys_do_not_act_on_what_is_scrolled_away(self):
        def test(wayland):
            self.start("Mapping", wayland, mappings=20, combos=60)
            # Out of sight, yet still there: seen again before anything happens to it.
            everything = self.stored("mappings")
            self.focus("push button", "Delete a to 1")
            for key in ("Delete", "space", "Return"):
                self.scroll_away("push button", "Delete a to 1")
                type_keys(key)
                self.window.find("push button", "Delete a to 1")
            self.assertEqual(self.stored("mappings"), everything)
            # Where rows are made as they are seen, its item shows another one by now.
            self.window.press("page tab", "Combo")
            everything = self.stored("shortcuts")
            self.focus("check box", "Combo 0")
            self.scroll_away("check box", "Combo 0")
            type_keys("Delete", "space", "Return")
            time.sleep(0.3)
            self.assertEqual(self.stored("shortcuts"), everything)
            self.assertEqual(self.window.all("dialog"), [])
            type_keys("Tab")
            self.window.find("check box", "Combo 0")
            type_keys("space")
            wait_until(lambda: [c["id"] for c in self.stored("shortcuts") if not c["enabled"]] ==
                       ["id 0"], "the row that had the keyboard")
        self.on_both(test)

        self.daemon.devices = json.dumps([
            {"vendorID": 1, "productID": i, "product": f"Keys {i:02}", "manufacturer": "Maker",
             "transport": "USB", "isSeized": False, "isAllowed": True, "isMouse": False}
            for i in range(60)]).encode()
        self.start("Devices", wayland=False)
        self.focus("check box", "Listen: Keys 00")
        self.scroll_away("check box", "Listen: Keys 00")
        type_keys("space", "Return")
        time.sleep(0.3)
        self.assertEqual(self.stored("excludedKeyboards"), [])
        type_keys("Tab", "space")
        wait_until(lambda: [d["productID"] for d in self.stored("excludedKeyboards")] == [0],
                   "the row that had the keyboard")

    def test_a_record_ends_with_its_window_and_its_button(self):
        def ended():
            wait_until(lambda: self.daemon.calls.count("subscribeKeyViewer") ==
                       self.daemon.calls.count("unsubscribeKeyViewer") > 0, "the end of the record")

        def test(wayland):
            self.start("Mapping", wayland, mappings=2)
            before = self.stored("mappings")
            for leave in (["quit"], ["tamsel://devices"]):
                self.window.press("page tab", "Mapping")
                self.record(2)
                wait_until(lambda: self.daemon.calls.count("subscribeKeyViewer") >
                           self.daemon.calls.count("unsubscribeKeyViewer"), "the subscription")
                if leave == ["quit"]:
                    subprocess.run(
                        ["gdbus", "call", "--session", "--dest", "app.tamsel", "--object-path",
                         "/app/tamsel", "--method", "org.freedesktop.Application.ActivateAction",
                         "quit", "[]", "{}"], check=True, stdout=subprocess.DEVNULL)
                else:
                    self.sandbox.start("tamsel", *leave).wait(10)
                ended()
                self.daemon.tell_key(4097, True, 0, 4097, False)
                self.sandbox.start("tamsel").wait(10)
                wait_until(lambda: self.window.all("page tab", "Mapping"), "the window")
                self.assertEqual(self.stored("mappings"), before)
        self.on_both(test)


if __name__ == "__main__":
    desktop.run_tests()
