"""The devices screen: what it shows and stores, a mouse taken over and taken back, by the keyboard
alone, and with more devices than anybody has."""

import json
import plistlib
import signal
import time
import unittest

import desktop
import harness
from desktop import Window, focus_window, type_keys
from harness import Sandbox, StandInDaemon, wait_for_line, wait_until

SENT = "[DaemonXPC] 配置發送成功"
TAKEOVER = "Mouse takeover is enabled for {}. Confirm within "
BOTH, MOUSE = (1133, 50475), (9, 9)


def device(vendor, product, name, mouse, seized=False):
    return {"vendorID": vendor, "productID": product, "product": name, "manufacturer": "Maker",
            "transport": "USB", "isSeized": seized, "isAllowed": True, "isMouse": mouse}


DESK = [device(1452, 591, "Keys", False, True), device(*BOTH, "Receiver", False),
        device(*BOTH, "Receiver", True), device(*MOUSE, "Rodent", True),
        device(-1, 641, "", False)]


class Devices(unittest.TestCase):
    def setUp(self):
        self.sandbox = Sandbox()
        self.addCleanup(self.sandbox.close)
        self.daemon = StandInDaemon(self.sandbox.address)
        self.addCleanup(self.daemon.die)

    def start(self):
        self.app = desktop.start_app(self.sandbox)
        wait_for_line(self.app, SENT)
        self.window = Window(self.app)
        focus_window()
        type_keys("4")
        self.window.find("heading", "Devices")

    def report(self, devices):
        self.daemon.devices = devices if isinstance(devices, bytes) else json.dumps(
            devices).encode()

    @staticmethod
    def listed(config, part):
        return [(entry["vendorID"], entry["productID"]) for entry in plistlib.loads(config)[part]]

    def expect(self, excluded, mice, timeout=10):
        """Both what is stored and what the daemon was told last."""
        def lists(config):
            return self.listed(config, "excludedKeyboards"), self.listed(config, "mouseDevices")

        for where, config in (("stored", self.sandbox.stored),
                              ("sent", lambda: self.daemon.configs[-1])):
            wait_until(lambda config=config: lists(config()) == (excluded, mice),
                       f"{excluded}, {mice} to be {where}", timeout)

    def sent(self, part):
        return self.listed(self.daemon.configs[-1], part)

    def seconds_left(self, name):
        """What the banner says."""
        def said():
            begin, end = TAKEOVER.format(name), " seconds or Tamsel will turn it off."
            return [text for node in self.window.all("label")
                    if (text := node.get_name()).startswith(begin) and text.endswith(end)]
        return int(wait_until(said, "the banner")[0].split(" within ")[1].split()[0])

    def take_over(self, name):
        self.window.press("check box", f"Take over: {name}")
        self.window.find("push button", "Confirm")

    def focused(self, role, name):
        wait_until(lambda: self.window.find(role, name).get_state_set().contains(
            desktop.Atspi.StateType.FOCUSED), f"the focus on {name}")

    def calm(self):
        self.assertEqual(harness.other_output(self.app), [], "the toolkit printed warnings")

    def test_the_choice_of_devices(self):
        self.report(DESK)
        self.start()
        for row in ("Keys, Keyboard, 05AC:024F, Active", "Receiver, Keyboard + Mouse, 046D:C52B",
                    "Rodent, Mouse, 0009:0009", "Unknown, Keyboard, Built-in"):
            self.window.find("list item", row)
        wait_until(lambda: self.sent("excludedKeyboards") == [(1133, 50475)], "the default")
        self.window.press("check box", "Listen: Keys")
        wait_until(lambda: (1452, 591) in self.sent("excludedKeyboards"), "the keyboard left alone")
        self.assertFalse(self.window.is_checked("check box", "Listen: Keys"))

        # Left alone, a takeover ends by itself, whatever screen is shown.
        started = time.monotonic()
        self.window.press("check box", "Take over: Receiver")
        left = self.seconds_left("Receiver")
        wait_until(lambda: self.seconds_left("Receiver") < left, "the seconds to run")
        wait_until(lambda: self.sent("mouseDevices") == [(1133, 50475)], "the takeover")
        self.assertNotIn((1133, 50475), self.sent("excludedKeyboards"))
        type_keys("2")
        self.window.find("heading", "Mapping")
        wait_until(lambda: self.sent("mouseDevices") == [], "the takeover's end", 15)
        self.assertGreater(time.monotonic() - started, 9)
        self.assertIn((1133, 50475), self.sent("excludedKeyboards"))
        type_keys("4")
        wait_until(lambda: not self.window.is_checked("check box", "Take over: Receiver"), "off")

        # Escape takes it back at once; Confirm keeps it.
        self.window.press("check box", "Take over: Rodent")
        self.window.find("push button", "Confirm")
        self.window.find("check box", "Take over: Rodent").grab_focus()
        focus_window()
        type_keys("Escape")
        self.window.gone("push button", "Confirm")
        wait_until(lambda: self.sent("mouseDevices") == [], "the takeover's end")
        self.window.press("check box", "Take over: Rodent")
        self.window.press("push button", "Confirm")
        self.window.gone("push button", "Confirm")
        self.assertEqual(self.sent("mouseDevices"), [(9, 9)])
        self.calm()

        # What was not confirmed when the application died is taken back before anything is sent.
        self.window.press("check box", "Take over: Receiver")
        wait_until(lambda: len(self.sent("mouseDevices")) == 2, "the takeover")
        self.app.send_signal(signal.SIGKILL)
        self.app.wait()
        self.daemon.configs.clear()
        self.start()
        for config in self.daemon.configs:
            self.assertEqual([entry["product"] for entry in
                              plistlib.loads(config)["mouseDevices"]], ["Rodent"])
        self.calm()

    def test_bad_reports(self):
        self.start()
        self.window.find("label", "No devices detected yet.")
        many = [device(i, i, f"\x1b[2J\n\u202eDevice {i:05}", False) for i in range(10000)]
        for reply in (b"", b"no JSON", b"[{}]", b"[" * 100000, b"[1]"):
            self.report(DESK)
            self.window.press("push button", "Refresh")
            self.window.find("list item", "Rodent, Mouse, 0009:0009")
            self.report(reply)
            self.window.press("push button", "Refresh")
            self.window.find("label", "No devices detected yet.")
        self.report(many)
        with harness.Hitches(self.daemon) as hitches:
            self.window.press("push button", "Refresh")
            self.window.find("list item", "·[2J↵·Device 00000, Keyboard, 0000:0000")
        print(f"10,000 devices: {hitches.worst * 1000:.0f} ms at most")
        self.assertLess(hitches.worst, 0.5 * harness.PATIENCE)
        self.report([device(3, 3, "n" * 1000000, False)])
        self.window.press("push button", "Refresh")
        self.window.find("list item", "n" * 400 + ", Keyboard, 0003:0003")
        self.calm()

    def test_the_keyboard_alone_answers(self):
        self.report(DESK)
        self.start()
        self.window.find("check box", "Take over: Rodent").grab_focus()
        focus_window()
        type_keys("space")
        self.window.find("push button", "Confirm")
        self.focused("check box", "Take over: Rodent")  # a second press must not confirm
        type_keys("Escape")
        self.window.gone("push button", "Confirm")
        self.expect([BOTH], [])

        # From the header on: the question's buttons, then the rows; and back.
        unknown = ("check box", "Listen: Unknown")
        cancel, confirm = ("push button", "Cancel"), ("push button", "Confirm")
        for start, keys in ((("push button", "Refresh"),
                             (("Tab", cancel), ("Tab", confirm), ("Tab", unknown))),
                            (unknown, (("shift+Tab", confirm), ("shift+Tab", cancel)))):
            self.take_over("Rodent")
            self.window.find(*start).grab_focus()
            for key, stop in keys:
                type_keys(key)
                self.focused(*stop)
            type_keys("Escape")
            self.window.gone(*confirm)
        self.take_over("Rodent")
        self.window.find(*confirm).grab_focus()
        type_keys("Return")
        self.window.gone("push button", "Confirm")
        self.focused("push button", "Refresh")
        time.sleep(11)
        self.expect([BOTH], [MOUSE])
        self.calm()

    def test_ten_thousand_combined_devices(self):
        self.start()
        # Combined ones, so that all of them are chosen, stored and sent as well.
        self.report([device(i, 1, f"\x1b[2J\n\u202eDevice {i:05}", mouse)
                     for i in range(10000) for mouse in (False, True)])
        with harness.Hitches(self.daemon) as hitches:
            self.window.press("push button", "Refresh")
            self.window.find("list item", "·[2J↵·Device 00000, Keyboard + Mouse, 0000:0001")
        print(f"10,000 devices: {hitches.worst * 1000:.0f} ms at most")
        self.assertLess(hitches.worst, 1.0 * harness.PATIENCE)
        # Far down in a long list the question still comes into sight.
        focus_window()
        type_keys("End")
        last = "·[2J↵·Device 09999"
        self.window.press("check box", f"Take over: {last}")
        self.assertGreater(self.seconds_left(last), 0)
        self.window.press("push button", "Cancel")
        self.calm()


if __name__ == "__main__":
    desktop.run_in_desktop()
    unittest.main(verbosity=2)
