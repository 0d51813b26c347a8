"""The devices screen: what it shows and stores, a mouse taken over and taken back, by the keyboard
alone, and with devices that say nonsense."""

import json
import plistlib

import desktop
from desktop import WindowTest, focus_window, type_keys
from harness import wait_until

TAKEOVER = "Mouse takeover is enabled for {}. Confirm within "
BOTH, MOUSE = (1133, 50475), (9, 9)


def device(vendor, product, name, mouse, seized=False):
    return {"vendorID": vendor, "productID": product, "product": name, "manufacturer": "Maker",
            "transport": "USB", "isSeized": seized, "isAllowed": True, "isMouse": mouse}


DESK = [device(1452, 591, "Keys", False, True), device(*BOTH, "Receiver", False),
        device(*BOTH, "Receiver", True), device(*MOUSE, "Rodent", True),
        device(-1, 641, "", False)]


class Devices(WindowTest):
    def setUp(self):
        super().setUp()
        self.stand_in()

    def start(self):
        super().start()
        type_keys("4")
        self.window.find("heading", "Devices")

    def report(self, devices):
        self.daemon.devices = devices if isinstance(devices, bytes) else json.dumps(
            devices).encode()

    @staticmethod
    def listed(config, part):
        return [(entry["vendorID"], entry["productID"]) for entry in plistlib.loads(config)[part]]

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

        # Confirmed, a takeover stays; left alone, it ends by itself, whatever screen is shown.
        self.window.press("check box", "Take over: Rodent")
        self.window.press("push button", "Confirm")
        self.window.gone("push button", "Confirm")
        self.window.press("check box", "Take over: Receiver")
        left = self.seconds_left("Receiver")
        wait_until(lambda: self.seconds_left("Receiver") < left, "the seconds to run")
        self.assertEqual(len(self.sent("mouseDevices")), 2)
        type_keys("2")
        self.window.find("heading", "Mapping")
        wait_until(lambda: self.sent("mouseDevices") == [MOUSE], "the takeover's end", 15)
        self.assertIn(BOTH, self.sent("excludedKeyboards"))
        type_keys("4")
        wait_until(lambda: not self.window.is_checked("check box", "Take over: Receiver"), "off")

        # What was not confirmed when the application died is taken back before anything is sent.
        self.window.press("check box", "Take over: Receiver")
        wait_until(lambda: len(self.sent("mouseDevices")) == 2, "the takeover")
        self.app.kill()
        self.app.wait()
        self.daemon.configs.clear()
        self.start()
        for config in self.daemon.configs:
            self.assertEqual([entry["product"] for entry in
                              plistlib.loads(config)["mouseDevices"]], ["Rodent"])
        self.calm()

    def test_odd_reports(self):
        self.start()
        self.window.find("label", "No devices detected yet.")
        self.report([device(i, i, f"\x1b[2J\n\u202eDevice {i:02}", True) for i in range(40)]
                    + [device(99, 3, "n" * 1000000, False)])
        self.window.press("push button", "Refresh")
        self.window.find("list item", "·[2J↵·Device 00, Mouse, 0000:0000")
        # Far down in a long list the question still comes into sight.
        focus_window()
        type_keys("End")
        self.window.find("list item", "n" * 400 + ", Keyboard, 0063:0003")
        self.take_over("·[2J↵·Device 39")
        self.window.press("push button", "Cancel")
        self.calm()

    def test_the_keyboard_alone_answers(self):
        self.report(DESK)
        self.start()
        self.window.find("check box", "Take over: Rodent").grab_focus()
        focus_window()
        type_keys("space")
        self.window.find("push button", "Confirm")
        self.window.focused("check box", "Take over: Rodent")  # a second press must not confirm
        type_keys("Escape")
        self.window.gone("push button", "Confirm")
        wait_until(lambda: self.sent("mouseDevices") == [], "the takeover's end")

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
                self.window.focused(*stop)
            type_keys("Escape")
            self.window.gone(*confirm)
        self.take_over("Rodent")
        self.window.find(*confirm).grab_focus()
        type_keys("Return")
        self.window.gone("push button", "Confirm")
        self.window.focused("push button", "Refresh")
        self.assertEqual(self.sent("mouseDevices"), [MOUSE])
        self.assertEqual(self.listed(self.sandbox.stored(), "mouseDevices"), [MOUSE])
        self.calm()


if __name__ == "__main__":
    desktop.run_tests()
