"""The devices screen by the keyboard alone, and with more devices than anybody has."""

import json
import plistlib
import time
import unittest

import desktop
import harness
from desktop import Window, focus_window, type_keys
from harness import Sandbox, StandInDaemon, wait_for_line, wait_until

SENT = "[DaemonXPC] 配置發送成功"
QUESTION = "Mouse takeover is enabled for {}. Confirm within {} seconds or Tamsel will turn it off."
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

    def take_over(self, name):
        self.window.press("check box", f"Take over: {name}")
        self.window.find("push button", "Confirm")

    def focused(self, role, name):
        wait_until(lambda: self.window.find(role, name).get_state_set().contains(
            desktop.Atspi.StateType.FOCUSED), f"the focus on {name}")

    def calm(self):
        self.assertEqual(harness.other_output(self.app), [], "the toolkit printed warnings")

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
        self.take_over("Rodent")
        self.window.find("push button", "Refresh").grab_focus()
        for key, role, name in (("Tab", "push button", "Cancel"), ("Tab", "push button", "Confirm"),
                                ("Tab", "check box", "Listen: Unknown"),
                                ("shift+Tab", "push button", "Confirm"),
                                ("shift+Tab", "push button", "Cancel"),
                                ("Tab", "push button", "Confirm")):
            type_keys(key)
            self.focused(role, name)
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
        self.window.find("label", QUESTION.format(last, 9))
        self.window.press("push button", "Cancel")
        self.calm()


if __name__ == "__main__":
    desktop.run_in_desktop()
    unittest.main(verbosity=2)
