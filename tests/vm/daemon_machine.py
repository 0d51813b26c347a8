"""A machine with the real daemon in it, and what the tests of real devices have in common."""

import json
import os
import plistlib
import shlex
import time

import initramfs
import machine
import packages

BUILD = os.environ["TAMSEL_BUILD"]
CACHE = os.path.join(BUILD, "vm")
SOCKET = "/run/tamsel.sock"
USB_KEYBOARD, USB_MOUSE = "QEMU QEMU USB Keyboard", "QEMU QEMU USB Mouse"
PS2_KEYBOARD = "AT Translated Set 2 keyboard"
VIRTUAL, BUILT_IN = "Tamsel Virtual Keyboard", "Tamsel Virtual Built-in Keyboard"
POINTER = "Tamsel Virtual Pointer"


def key(code, *modifiers):
    return {"keyCode": code, "modifiers": list(modifiers)}


def mapping(source, target):
    return {"id": f"{source}", "enabled": True, "from": key(source), "to": key(target)}


def combo(trigger, kind, value, **more):
    return {"id": f"c{trigger['keyCode']}", "enabled": True, "keys": trigger, "title": "",
            "action": {"type": kind, "value": value}, **more}


def cfg(*mappings, **more):
    root = {"version": "1.0", "mappings": list(mappings), "shortcuts": [], "mouseDevices": [],
            "excludedKeyboards": [], "grabScope": "all", "allowedDevices": []}
    return plistlib.dumps({**root, **more}, fmt=plistlib.FMT_BINARY)


def boot():
    os.makedirs(CACHE, exist_ok=True)
    kernel = packages.Kernel(CACHE)
    image = os.path.join(CACHE, "input.cpio")
    initramfs.make(kernel, CACHE, [os.path.join(BUILD, "bin/tamsel-daemon"),
                                   os.path.join(BUILD, "tests/vm_guest")], image)
    return DaemonMachine(kernel.image, image)


class DaemonMachine(machine.Machine):
    def start_daemon(self):
        self.ask("start", "daemon", "/bin/busybox", "env", f"TAMSEL_DAEMON_ADDRESS=unix:path={SOCKET}",
                 "/bin/tamsel-daemon", "--state-dir", "/run/state", "--seize-virtual")
        self.ask("connect", SOCKET)

    def send(self, configuration):
        return self.ask("call", "updateCfg", configuration.hex())

    def status(self):
        return self.ask("call", "getStatus")

    def devices(self):
        return json.loads(self.ask("call", "getSeenDevices"))

    def is_seized(self, name, mouse=False):
        return any(each["product"] == name and each["isMouse"] == mouse and each["isSeized"]
                   for each in self.devices())

    def wait_seized(self, name, mouse=False, seized=True):
        self.until(lambda: self.is_seized(name, mouse) == seized, f"{name} {seized}")

    def names(self):
        return self.ask("names").split("|")

    def shell(self, command):
        return self.ask("shell", command).split("|")

    def watch(self, label, name):
        self.until(lambda: name in self.names(), name)
        self.ask("watch", label, *shlex.split(name))

    def tap(self, name):
        self.monitor.key(name, True)
        self.monitor.key(name, False)

    def press_until_seen(self, name, label, code):
        """A device just plugged in may lose its first keys: the driver's probe has not returned."""
        deadline = time.monotonic() + machine.STEP
        while f"1/{code}/0" not in " ".join(self.taken(label)):
            if time.monotonic() > deadline:
                raise AssertionError(f"the canary {name} does not come through\n{self.tail()}")
            self.tap(name)
            time.sleep(0.15)
        time.sleep(0.3)
        self.taken(label)
