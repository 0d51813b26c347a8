"""Real keys, real plugs and odd devices through the real daemon."""

import time
import unittest

from daemon_machine import BUILT_IN, PS2_KEYBOARD, USB_KEYBOARD, VIRTUAL, boot, cfg, mapping

CAPS_IS_CONTROL = mapping(57, 224)
ODD, LONELY = "Odd Keyboard", "Lonely Keyboard"
SIGKILL, SIGTERM, SIGCONT, SIGSTOP = 9, 15, 18, 19
# Bus USB, a vendor, and what a keyboard has: 255 keys, and the lights.
KEYBOARD = "1:1-254 4:4 17:0-4"


class RealKeys(unittest.TestCase):
    """One machine for all; each test leaves the daemon running and nothing held."""

    @classmethod
    def setUpClass(cls):
        cls.machine = boot()
        cls.machine.monitor.plug("usb-kbd", "keyboard")
        cls.make("odd", ODD, 3, 0x1234, 1, KEYBOARD)
        cls.start()

    @classmethod
    def tearDownClass(cls):
        cls.machine.close()

    @classmethod
    def make(cls, label, name, bus, vendor, product, codes):
        cls.machine.ask("make", label, name.replace(" ", "_"), bus, vendor, product, codes)

    @classmethod
    def start(cls, configuration=cfg(CAPS_IS_CONTROL), seized=ODD):
        cls.machine.start_daemon()
        cls.machine.watch("out", VIRTUAL)
        cls.machine.watch("built-in", BUILT_IN)
        cls.use(configuration, seized)

    @classmethod
    def use(cls, configuration, seized=ODD):
        if cls.machine.send(configuration) != "true":
            raise AssertionError("the configuration is refused")
        if seized:
            cls.machine.wait_seized(seized)

    def setUp(self):
        # The test before has failed and left no daemon, or one with something else.
        if self.machine.taken("daemon"):
            self.start()
        self.machine.taken("out")

    def emit(self, label, *events):
        self.machine.ask("emit", label, *events)

    def end_daemon(self, number):
        self.machine.ask("signal", "daemon", number)
        self.machine.until(lambda: self.machine.taken("daemon"), "the daemon's end")

    def test_keys_are_rewritten_by_where_they_come_from(self):
        machine = self.machine
        machine.wait_seized(USB_KEYBOARD)
        machine.wait_seized(PS2_KEYBOARD)
        self.assertEqual(machine.status(), "true true RUNNING")
        machine.press_until_seen("f9", "out", 67)
        machine.tap("caps_lock")
        machine.tap("a")
        machine.expect("out", "1/29/1", "1/29/0", "1/30/1", "1/30/0")
        # Without another keyboard the keys go to the one of the PS/2 port, which is built in.
        machine.monitor.unplug("keyboard")
        machine.until(lambda: USB_KEYBOARD not in machine.names(), "the unplugging")
        machine.press_until_seen("f9", "built-in", 67)
        machine.tap("caps_lock")
        machine.expect("built-in", "1/29/1", "1/29/0")
        self.assertEqual(machine.taken("out"), [])
        machine.monitor.plug("usb-kbd", "keyboard")
        machine.wait_seized(USB_KEYBOARD)

    def test_what_no_table_knows_passes_in_order_and_frames_stay_frames(self):
        self.emit("odd", "4/4/458756", "1/30/1", "1/148/1", "1/58/1")
        self.emit("odd", "1/30/2")
        self.emit("odd", "1/30/0", "1/148/0", "1/58/0")
        self.machine.expect("out", "1/30/1 1/148/1 1/29/1", "1/30/0 1/148/0 1/29/0")

    def test_libinput_takes_one_of_them_for_the_built_in_one(self):
        quirks = dict(line.split("=", 1) for line in self.machine.shell(
            "for e in /sys/class/input/event*; do echo $(cat $e/device/name)="
            "$(libinput-quirks list /dev/input/${e##*/} 2>&1); done"))
        self.assertIn("AttrKeyboardIntegration=internal", quirks[PS2_KEYBOARD])
        self.assertIn("AttrKeyboardIntegration=internal", quirks[BUILT_IN])
        self.assertNotIn("internal", quirks[VIRTUAL])

    def test_lights_reach_the_keyboard(self):
        self.machine.ask("write", "out", "17/1/0")
        time.sleep(0.3)
        self.machine.taken("odd")
        self.machine.ask("write", "out", "17/1/1")
        self.machine.expect("odd", "17/1/1")
        self.machine.ask("write", "out", "17/1/0")
        self.machine.expect("odd", "17/1/0")

    def test_a_held_key_is_released_by_a_stop_and_by_a_configuration(self):
        for end in (lambda: self.machine.ask("call", "stopGrabbing"),
                    lambda: self.use(cfg(CAPS_IS_CONTROL, mapping(4, 5)))):
            self.emit("odd", "1/58/1", "1/148/1")
            self.machine.expect("out", "1/29/1 1/148/1")
            end()
            self.machine.until(lambda: not self.machine.ask("held", VIRTUAL).startswith("29"),
                               "the release")
            self.emit("odd", "1/58/0", "1/148/0")
            self.machine.ask("call", "startGrabbing")
            self.machine.wait_seized(ODD)
            self.assertEqual(self.machine.ask("held", VIRTUAL), "")
            self.machine.taken("out")
        self.use(cfg(CAPS_IS_CONTROL))

    def test_a_key_held_at_the_start_is_not_stuck(self):
        machine = self.machine
        self.end_daemon(SIGTERM)
        machine.watch("other", ODD)
        self.emit("odd", "1/28/1")
        machine.expect("other", "1/28/1")
        began = time.monotonic()
        self.start()
        self.assertGreater(time.monotonic() - began, 2)
        machine.expect("other", "1/28/0")
        self.emit("odd", "1/28/0")
        self.emit("odd", "1/30/1")
        self.emit("odd", "1/30/0")
        machine.expect("out", "1/30/1", "1/30/0")
        self.assertEqual(machine.taken("other"), [])
        machine.ask("unwatch", "other")

    def test_a_key_released_in_time_is_seen_by_others_and_then_seized(self):
        machine = self.machine
        machine.ask("call", "stopGrabbing")
        machine.wait_seized(ODD, seized=False)
        machine.watch("other", ODD)
        self.emit("odd", "1/28/1")
        machine.ask("call", "startGrabbing")
        time.sleep(0.5)
        self.assertFalse(machine.is_seized(ODD))
        self.emit("odd", "1/28/0")
        machine.expect("other", "1/28/1", "1/28/0")
        machine.wait_seized(ODD)
        self.assertEqual(machine.taken("out"), [])
        machine.ask("unwatch", "other")

    def test_a_killed_daemon_leaves_nothing_held(self):
        for number in (SIGKILL, SIGTERM):
            self.emit("odd", "1/58/1")
            self.machine.expect("out", "1/29/1")
            self.machine.watch("other", ODD)
            self.end_daemon(number)
            self.assertNotIn(VIRTUAL, self.machine.names())
            self.machine.ask("grab", "other", 1)
            self.machine.ask("grab", "other", 0)
            self.emit("odd", "1/58/0")
            self.emit("odd", "1/30/1")
            self.emit("odd", "1/30/0")
            self.machine.expect("other", "1/58/0", "1/30/1", "1/30/0")
            self.machine.ask("unwatch", "other")
            self.start()
            self.machine.taken("out")

    def test_an_unplugged_keyboard_releases_its_keys(self):
        self.make("lonely", LONELY, 3, 0x1234, 2, KEYBOARD)
        self.machine.wait_seized(LONELY)
        self.emit("lonely", "1/58/1", "1/148/1")
        self.machine.expect("out", "1/29/1 1/148/1")
        self.machine.ask("drop", "lonely")
        self.machine.until(lambda: self.machine.ask("held", VIRTUAL) == "", "the release")
        self.machine.until(lambda: all(each["product"] != LONELY for each in
                                       self.machine.devices()), "the end of the device")

    def test_a_second_grabber_is_named_and_outlived(self):
        machine = self.machine
        self.make("lonely", LONELY, 3, 0x1234, 2, KEYBOARD)
        machine.ask("call", "stopGrabbing")
        machine.watch("other", LONELY)
        machine.ask("grab", "other", 1)
        machine.ask("call", "startGrabbing")
        machine.wait_seized(ODD)
        machine.until(lambda: "cannot be seized" in machine.console(), "the complaint", 10)
        self.assertIn(f"{LONELY}: cannot be seized: Device or resource busy", machine.console())
        self.assertEqual(machine.status(), "true true RUNNING")
        self.assertFalse(machine.is_seized(LONELY))
        machine.ask("grab", "other", 0)
        machine.ask("call", "startGrabbing")
        machine.wait_seized(LONELY)
        machine.ask("unwatch", "other")
        machine.ask("drop", "lonely")

    def test_events_that_the_kernel_dropped_are_made_up_for(self):
        self.emit("odd", "1/42/1")
        self.machine.expect("out", "1/42/1")
        self.machine.ask("signal", "daemon", SIGSTOP)
        self.machine.ask("flood", "odd", 600, "1/30/1")
        self.emit("odd", "1/31/1", "1/42/0")
        self.machine.ask("signal", "daemon", SIGCONT)
        self.machine.until(lambda: self.machine.ask("held", VIRTUAL) == "31", "what is held now")
        self.emit("odd", "1/31/0")
        self.machine.until(lambda: self.machine.ask("held", VIRTUAL) == "", "the release")

    def test_the_lock_out_chord_frees_everything(self):
        self.emit("odd", "1/1/1")
        self.emit("odd", "1/14/1")
        self.emit("odd", "1/28/1")
        self.machine.wait_seized(ODD, seized=False)
        self.assertEqual(self.machine.ask("held", VIRTUAL), "")
        self.assertEqual(self.machine.status(), "false true USER_STOPPED")
        self.emit("odd", "1/1/0", "1/14/0", "1/28/0")
        self.machine.ask("call", "stopGrabbing")
        self.machine.ask("call", "startGrabbing")
        self.machine.wait_seized(ODD)

    def test_hot_plugging_loses_no_key_elsewhere(self):
        machine = self.machine
        facts = "ls /proc/$(pidof tamsel-daemon)/fd | wc -l; grep VmRSS /proc/$(pidof tamsel-daemon)/status"
        before = None
        for turn in range(20):
            self.make("lonely", LONELY, 3, 0x1234, 2, KEYBOARD)
            self.emit("odd", "1/30/1")
            machine.wait_seized(LONELY)
            self.emit("odd", "1/30/0")
            machine.ask("drop", "lonely")
            self.emit("odd", "1/31/1")
            machine.until(lambda: LONELY not in [each["product"] for each in machine.devices()],
                          "the end of the device")
            self.emit("odd", "1/31/0")
            machine.expect("out", "1/30/1", "1/30/0", "1/31/1", "1/31/0")
            if turn == 2:
                before = machine.shell(facts)
        after = machine.shell(facts)
        self.assertEqual(after[0], before[0], "descriptors")
        grown = int(after[1].split()[1]) - int(before[1].split()[1])
        # The engine keeps the place of a device that is gone.
        self.assertLess(grown, 17 * 100, "kilobytes")


if __name__ == "__main__":
    unittest.main(verbosity=2)
