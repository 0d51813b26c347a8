"""Mice, and devices that are mouse and keyboard in one, through the real daemon."""

import unittest

from daemon_machine import (POINTER, USB_KEYBOARD, USB_MOUSE, VIRTUAL, boot, cfg, combo, key,
                            mapping)

MOUSE, BOTH = "Odd Mouse", "Two In One"
# Left to extra button, both axes, both wheels with their fine steps.
MOUSE_CODES = "1:272-276 2:0-1,6,8,11-12"
SIDE = 0x1004
CAPS_IS_CONTROL = mapping(57, 224)


def identity(product):
    return {"vendorID": 0x4321, "productID": product, "product": ""}


class RealMice(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.machine = machine = boot()
        machine.ask("make", "mouse", MOUSE.replace(" ", "_"), 3, 0x4321, 1, MOUSE_CODES)
        machine.ask("make", "both", BOTH.replace(" ", "_"), 3, 0x4321, 2, "1:1-127 " + MOUSE_CODES)
        machine.start_daemon()
        machine.watch("out", VIRTUAL)
        machine.watch("pointer", POINTER)

    @classmethod
    def tearDownClass(cls):
        cls.machine.close()

    def setUp(self):
        for label in ("out", "clone", "pointer"):
            self.machine.taken(label)

    def use(self, *mappings, **more):
        self.assertEqual(self.machine.send(cfg(*mappings, **more)), "true")

    def emit(self, label, *events):
        self.machine.ask("emit", label, *events)

    def test_a_mouse_that_nobody_chose_is_left_alone(self):
        self.use(CAPS_IS_CONTROL)
        self.machine.wait_seized(BOTH)
        self.machine.watch("free", MOUSE)
        self.emit("mouse", "2/0/5", "1/272/1")
        self.machine.expect("free", "2/0/5 1/272/1")
        self.emit("both", "1/58/1")
        self.machine.expect("out", "1/29/1")
        self.machine.ask("make", "gone", "Third_Mouse", 3, 0x4321, 3, MOUSE_CODES)
        self.machine.until(lambda: "Third Mouse" in [each["product"] for each in
                                                     self.machine.devices()], "the mouse")
        self.machine.ask("drop", "gone")
        self.machine.until(lambda: "Third Mouse" not in [each["product"] for each in
                                                         self.machine.devices()], "its end")
        self.assertEqual(self.machine.ask("held", VIRTUAL), "29", "its end releases nothing")
        self.emit("both", "1/58/0")
        self.emit("mouse", "1/272/0")
        self.machine.expect("out", "1/29/0")
        self.machine.ask("unwatch", "free")

    def test_a_chosen_mouse_goes_through_a_stand_in_as_it_was(self):
        chosen = [identity(1)]
        trigger = combo(key(SIDE), "keyPress", "left_command+a")
        self.use(mapping(0x1002, 4), shortcuts=[trigger], mouseDevices=chosen)
        self.machine.wait_seized(MOUSE, mouse=True)
        self.assertEqual(self.machine.names().count(MOUSE), 2)
        self.machine.watch("clone", MOUSE)
        for frame in (("2/0/5", "2/1/-3"), ("2/8/1", "2/11/120"), ("2/12/30",), ("1/272/1",),
                      ("1/272/0",), ("1/276/1", "2/0/1"), ("1/276/0",)):
            self.emit("mouse", *frame)
            self.machine.expect("clone", " ".join(frame))
        self.emit("mouse", "1/273/1", "2/0/1")
        self.emit("mouse", "1/273/0")
        self.machine.expect("out", "1/30/1", "1/30/0")
        self.machine.expect("clone", "2/0/1")
        self.emit("mouse", "1/275/1")
        self.emit("mouse", "1/275/0")
        self.machine.expect("out", "1/125/1 1/30/1", "1/30/0 1/125/0")
        self.assertEqual(self.machine.taken("clone"), [])
        self.use()
        self.machine.wait_seized(MOUSE, mouse=True, seized=False)
        self.machine.until(lambda: self.machine.names().count(MOUSE) == 1, "the stand-in's end")

    def test_a_key_can_be_a_button(self):
        self.use(mapping(57, 0x1001))
        self.machine.wait_seized(BOTH)
        self.machine.watch("clone", BOTH)
        self.emit("both", "1/58/1")
        self.emit("both", "1/58/0")
        self.machine.expect("clone", "1/272/1", "1/272/0")
        self.use(mapping(57, 0x1010))
        self.emit("both", "1/58/1")
        self.emit("both", "1/58/0")
        self.machine.expect("pointer", "1/287/1", "1/287/0")

    def test_half_of_a_device_is_chosen(self):
        self.use(CAPS_IS_CONTROL, mapping(SIDE, 4))
        self.machine.wait_seized(BOTH)
        self.machine.watch("clone", BOTH)
        self.emit("both", "1/58/1", "2/0/7", "1/275/1")
        self.emit("both", "1/58/0", "2/11/15", "1/275/0")
        self.machine.expect("clone", "2/0/7 1/275/1", "2/11/15 1/275/0")
        self.machine.expect("out", "1/29/1", "1/29/0")
        halves = {each["isMouse"]: each["isSeized"] for each in self.machine.devices()
                  if each["product"] == BOTH}
        self.assertEqual(halves, {False: True, True: False})
        self.use(CAPS_IS_CONTROL, mapping(SIDE, 4), excludedKeyboards=[identity(2)],
                 mouseDevices=[identity(2)])
        self.machine.wait_seized(BOTH, mouse=True)
        self.machine.wait_seized(BOTH, seized=False)
        self.emit("both", "1/58/1", "1/275/1")
        self.emit("both", "1/58/0", "1/275/0")
        self.machine.expect("out", "1/58/1 1/30/1", "1/58/0 1/30/0")

    def test_a_real_mouse_and_its_keyboard_are_one_device(self):
        machine = self.machine
        real = {"vendorID": 0x0627, "productID": 1, "product": "either"}
        machine.monitor.plug("usb-mouse", "m")
        machine.monitor.plug("usb-kbd", "k")
        self.use(CAPS_IS_CONTROL, mouseDevices=[real])
        machine.wait_seized(USB_MOUSE, mouse=True)
        machine.wait_seized(USB_KEYBOARD)
        machine.watch("clone", USB_MOUSE)
        machine.until(lambda: machine.monitor.move(3, 0) or machine.taken("clone"), "a move")
        machine.monitor.button("side", True)
        machine.monitor.button("side", False)
        machine.until(lambda: "1/275/0" in " ".join(machine.lines["clone"]), "the button")
        self.use(CAPS_IS_CONTROL, excludedKeyboards=[real])
        machine.wait_seized(USB_MOUSE, mouse=True, seized=False)
        machine.wait_seized(USB_KEYBOARD, seized=False)


if __name__ == "__main__":
    unittest.main(verbosity=2)
