"""From a click in the window to a rewritten key: the real application, the real daemon on simulated
devices, and a person's hands on the accessibility bus and the keyboard."""

import plistlib
import signal
import subprocess

import desktop
import harness
from desktop import Window, WindowTest, focus_window, type_keys
from harness import SENT, SimulatedDaemon, wait_for_line, wait_until



class TheWindow(WindowTest):
    def choose_key(self, window, field, key):
        window.press("combo box", field)
        window.press("list item", key, showing=False)  # entries out of sight are there, too
        window.gone("list item", key)

    def test_a_mapping_made_in_the_window_rewrites_keys(self):
        daemon = SimulatedDaemon(self.sandbox)
        app = desktop.start_app(self.sandbox)
        wait_for_line(app, SENT)
        daemon.rewrites(57, 57)
        window = Window(app)
        window.press("page tab", "Mapping")
        window.press("push button", "Add Mapping")
        self.choose_key(window, "From: Choose a key", "caps_lock")
        self.choose_key(window, "To: Choose a key", "left_control")
        window.find("combo box", "From: caps_lock")
        window.find("combo box", "To: left_control")
        wait_for_line(app, SENT, 4)
        daemon.rewrites(57, 224)
        stored = plistlib.loads(self.sandbox.stored())
        self.assertEqual([(m["enabled"], m["from"]["keyCode"], m["to"]["keyCode"])
                          for m in stored["mappings"]], [(True, 57, 224)])

        # The daemon dies and comes back: it has the same configuration soon, by itself.
        daemon.kill()
        daemon.start()
        wait_for_line(app, SENT, 5, timeout=3)
        daemon.rewrites(57, 224, timeout=3)

        # The row's switch, and deleting it: the built-in row it had covered is back.
        window.press("check box", "caps_lock to left_control")
        wait_for_line(app, SENT, 6)
        daemon.rewrites(57, 57)
        window.press("push button", "Delete caps_lock to left_control")
        wait_for_line(app, SENT, 7)
        self.assertEqual(plistlib.loads(self.sandbox.stored())["mappings"], [])

        # Turning the built-in row on makes it the user's own.
        window.press("check box", "caps_lock to left_control")
        wait_for_line(app, SENT, 8)
        daemon.rewrites(57, 224)
        mapping, = plistlib.loads(self.sandbox.stored())["mappings"]
        self.assertRegex(mapping["id"], r"^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$")
        window.find("push button", "Delete caps_lock to left_control")
        self.assertEqual(harness.other_output(app), [], "the toolkit printed warnings")

    def test_the_keyboard_alone_does_it(self):
        daemon = self.stand_in()
        app = desktop.start_app(self.sandbox)
        window = Window(app)
        wait_for_line(app, SENT)
        focus_window()
        type_keys("2")
        window.find("push button", "Add Mapping")
        type_keys("a")
        window.find("combo box", "From: Choose a key")
        # The new row's record button has the focus, its first field stands before it: the menu
        # opens, typing filters, Return takes.
        type_keys("shift+Tab", "space")
        for key in "page_up":
            type_keys("underscore" if key == "_" else key)
        type_keys("Return")
        window.find("combo box", "From: page_up")
        # What was typed has chosen no other screen and added no other row.
        self.assertEqual(len(plistlib.loads(self.sandbox.stored())["mappings"]), 1)
        type_keys("Delete")
        window.gone("combo box", "From: page_up")
        self.assertEqual(plistlib.loads(self.sandbox.stored())["mappings"], [])
        for key, page in (("3", "Combo"), ("1", "Dash"), ("5", "About"), ("4", "Devices")):
            type_keys(key)
            wait_until(lambda page=page: window.is_selected(page), f"the page {page}")

    def test_shows_whether_the_daemon_is_there(self):
        app = desktop.start_app(self.sandbox)
        window = Window(app)
        window.find("heading", "Checking permissions...")
        daemon = self.stand_in()
        window.find("label", "Running normally")
        daemon.die()
        window.find("heading", "Background service not responding", timeout=20)
        self.assertTrue(window.find("label", "Running normally"), "the last it said")
        daemon.come_back()
        window.gone("heading", "Background service not responding")

    def test_the_clipboards_text_of_another_program(self):
        daemon = self.stand_in()
        app = desktop.start_app(self.sandbox)
        wait_for_line(app, SENT)
        # Another X client owns the clipboard; large texts travel in pieces.
        for text in ("grüße\n你好", "x" * 3_000_000):
            owner = subprocess.Popen(["xclip", "-selection", "clipboard", "-loops", "1", "-quiet"],
                                     stdin=subprocess.PIPE, stderr=subprocess.DEVNULL)
            owner.stdin.write(text.encode())
            owner.stdin.close()
            try:
                wait_until(lambda text=text: daemon.ask_app(
                    "requestClipboardText", None, "(bs)") == (True, text), "the clipboard's text")
            finally:
                owner.kill()
                owner.wait()
        # An owner that has stopped costs a bounded wait, and the window stays awake meanwhile.
        owner = subprocess.Popen(["xclip", "-selection", "clipboard", "-quiet"],
                                 stdin=subprocess.PIPE, stderr=subprocess.DEVNULL)
        owner.stdin.write(b"frozen")
        owner.stdin.close()
        try:
            wait_until(lambda: daemon.ask_app("requestClipboardText", None, "(bs)") ==
                       (True, "frozen"), "the owner")
            owner.send_signal(signal.SIGSTOP)
            self.assertEqual(daemon.ask_app("requestClipboardText", None, "(bs)"), (False, ""))
        finally:
            owner.kill()
            owner.wait()


if __name__ == "__main__":
    desktop.run_tests()
