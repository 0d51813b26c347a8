"""An emulated machine: what it says, what is plugged into it, and the words of the guest in it."""

import collections
import json
import os
import shutil
import socket
import subprocess
import tempfile
import threading
import time

# A busy host is several times slower than an idle one.
STEP, BOOT = 20.0, 120.0


class Monitor:
    """QEMU's own monitor: keys, buttons and plugs."""

    def __init__(self, path):
        self.socket = connected(path)
        self.file = self.socket.makefile("rw")
        self.file.readline()
        self("qmp_capabilities")

    def __call__(self, command, **arguments):
        self.file.write(json.dumps({"execute": command, "arguments": arguments}) + "\n")
        self.file.flush()
        while True:
            answer = json.loads(self.file.readline())
            if "error" in answer:
                raise RuntimeError(f"{command}: {answer['error']}")
            if "return" in answer:
                return answer["return"]

    def send(self, *events):
        self("input-send-event", events=[{"type": kind, "data": data} for kind, data in events])

    def key(self, name, down):
        self.send(("key", {"down": down, "key": {"type": "qcode", "data": name}}))

    def button(self, name, down):
        self.send(("btn", {"down": down, "button": name}))

    def move(self, x, y):
        self.send(("rel", {"axis": "x", "value": x}), ("rel", {"axis": "y", "value": y}))

    def plug(self, driver, name):
        self("device_add", driver=driver, id=name, bus="xhci.0")

    def unplug(self, name):
        self("device_del", id=name)


def connected(path):
    deadline = time.monotonic() + STEP
    while True:
        connection = socket.socket(socket.AF_UNIX)
        try:
            connection.connect(path)
            return connection
        except OSError:
            connection.close()
            if time.monotonic() > deadline:
                raise
            time.sleep(0.01)


class Machine:
    """One processor, no acceleration needed. The first serial line is the console, the second one
    the guest's: a line of words is answered by a line "= ..."; what it sees comes as
    "@LABEL ..."."""

    def __init__(self, kernel, initrd, *more):
        self.folder = tempfile.mkdtemp(prefix="tamsel-vm-")
        paths = [os.path.join(self.folder, name) for name in ("console", "guest", "monitor")]
        console, guest, monitor = paths
        self.process = subprocess.Popen(
            ["qemu-system-x86_64", "-nodefaults", "-no-user-config", "-no-reboot",
             "-display", "none", "-accel", "tcg", "-M", "q35,usb=off", "-cpu", "max", "-smp", "1",
             "-m", "512", "-device", "qemu-xhci,id=xhci,p2=15,p3=15", "-kernel", kernel,
             "-initrd", initrd, "-append",
             "console=ttyS0 quiet panic=-1 tsc=reliable no_timer_check mitigations=off nokaslr "
             "random.trust_cpu=on cryptomgr.notests",
             "-serial", f"file:{console}", "-serial", f"unix:{guest},server=on,wait=off",
             "-qmp", f"unix:{monitor},server=on,wait=off", *more],
            stdin=subprocess.DEVNULL)
        self.console_path = console
        self.changed = threading.Condition()
        self.lines = collections.defaultdict(list)
        self.answers = []
        self.has_ended = False
        self.guest = connected(guest)
        self.monitor = Monitor(monitor)
        threading.Thread(target=self._listen, daemon=True).start()
        self.expect("guest", "ready", timeout=BOOT)

    def close(self):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()
        self.guest.close()
        self.monitor.socket.close()
        shutil.rmtree(self.folder, ignore_errors=True)

    def console(self):
        with open(self.console_path, encoding="utf-8", errors="replace") as file:
            return file.read().replace("\r", "")

    def _listen(self):
        for line in self.guest.makefile("r", encoding="utf-8", errors="replace"):
            line = line.rstrip("\r\n")
            with self.changed:
                if line.startswith("="):
                    self.answers.append(line[1:].strip())
                elif line.startswith("@"):
                    label, _, text = line[1:].partition(" ")
                    self.lines[label].append(text)
                self.changed.notify_all()
        with self.changed:
            self.has_ended = True
            self.changed.notify_all()

    def ask(self, *words, timeout=STEP):
        """Has the guest do something and returns its answer."""
        with self.changed:
            count = len(self.answers)
            self.guest.sendall((" ".join(str(word) for word in words) + "\n").encode())
            if not self.changed.wait_for(lambda: len(self.answers) > count or self.has_ended,
                                         timeout) or self.has_ended:
                raise AssertionError(f"the guest does not answer: {words[:2]}\n{self.tail()}")
            answer = self.answers[-1]
        if answer.startswith("failed"):
            raise AssertionError(f"{words[:3]}: {answer}")
        return answer

    def taken(self, label):
        """What has come under a label since it was last asked."""
        with self.changed:
            return self.lines.pop(label, [])

    def expect(self, label, *wanted, timeout=STEP):
        """Waits until the lines under a label begin with the wanted ones, takes these away, and
        fails on others."""
        with self.changed:
            seen = lambda: self.lines[label]  # noqa: E731
            self.changed.wait_for(
                lambda: len(seen()) >= len(wanted) or self.has_ended, timeout)
            got = seen()[:len(wanted)]
            if got != list(wanted):
                raise AssertionError(f"@{label}: wanted {wanted}, got {seen()}\n{self.tail()}")
            del seen()[:len(wanted)]

    def until(self, condition, what, timeout=STEP):
        deadline = time.monotonic() + timeout
        while True:
            found = condition()
            if found:
                return found
            if time.monotonic() > deadline:
                raise AssertionError(f"waited in vain for {what}\n{self.tail()}")
            time.sleep(0.02)

    def tail(self):
        return "\n".join(self.console().splitlines()[-25:])
