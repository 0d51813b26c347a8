"""The file system of a machine that lives in memory: busybox, udev, and the programs under test
with the libraries that they need."""

import os
import re
import shutil
import subprocess
import tempfile

from packages import run, unpacked

MODULES = ("evdev", "uinput", "psmouse", "xhci_pci", "usbhid", "hid_generic")
TOOLS = ("/usr/libexec/libinput/libinput-quirks",)
INIT = """#!/bin/sh
export PATH=/bin
/bin/busybox --install -s /bin
mount -t devtmpfs dev /dev
mount -t proc proc /proc
mount -t sysfs sys /sys
mount -t tmpfs run /run
for module in $(cat /modules/order); do insmod /modules/$module || echo "no module $module"; done
/bin/systemd-udevd --daemon --resolve-names=never
udevadm trigger --action=add --type=subsystems
udevadm trigger --action=add --subsystem-match=input --subsystem-match=misc
udevadm settle
exec /bin/vm_guest /dev/ttyS1
"""


def libraries(program):
    listed = run("ldd", program)
    return re.findall(r"(/\S+) \(0x", listed)


class Initramfs:
    def __init__(self):
        self.root = tempfile.mkdtemp(prefix="tamsel-vm-")

    def close(self):
        shutil.rmtree(self.root, ignore_errors=True)

    def put(self, source, target):
        path = os.path.join(self.root, target.lstrip("/"))
        os.makedirs(os.path.dirname(path), exist_ok=True)
        shutil.copy(source, path)

    def put_program(self, source, target):
        """Without its debug information, and with its libraries."""
        self.put(source, target)
        subprocess.run(["strip", os.path.join(self.root, target.lstrip("/"))], check=False)
        for library in libraries(source):
            if not os.path.exists(self.root + library):
                self.put(library, library)

    def text(self, target, text, mode=0o644):
        path = os.path.join(self.root, target.lstrip("/"))
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        os.chmod(path, mode)

    def pack(self, path):
        names = subprocess.run(["find", "."], cwd=self.root, check=True, capture_output=True)
        with open(path, "wb") as file:
            subprocess.run(["cpio", "--quiet", "-o", "-H", "newc", "-R", "0:0"], cwd=self.root,
                           input=names.stdout, stdout=file, check=True)


def make(kernel, cache, programs, path):
    """Packs the machine's files; `programs` are paths, each of which ends up in /bin."""
    fs = Initramfs()
    try:
        for folder in ("dev", "proc", "sys", "run", "tmp"):
            os.makedirs(os.path.join(fs.root, folder))
        fs.put("/bin/busybox", "/bin/busybox")
        os.symlink("busybox", os.path.join(fs.root, "bin/sh"))
        order = kernel.load_order(*MODULES)
        for module in order:
            fs.put(module, "/modules/" + os.path.basename(module))
        fs.text("/modules/order", "".join(os.path.basename(each) + "\n" for each in order))
        udev = unpacked(cache, "udev")
        # One program with two names.
        fs.put_program(os.path.join(udev, "bin/udevadm"), "/bin/udevadm")
        os.symlink("/bin/udevadm", os.path.join(fs.root, "bin/systemd-udevd"))
        shutil.copytree(os.path.join(udev, "lib/udev"), os.path.join(fs.root, "lib/udev"),
                        ignore=shutil.ignore_patterns("hwdb.d"))
        shutil.copytree(os.path.join(unpacked(cache, "libinput-bin"), "usr/share/libinput"),
                        os.path.join(fs.root, "usr/share/libinput"))
        for program in (*programs, *TOOLS):
            fs.put_program(program, "/bin/" + os.path.basename(program))
        fs.text("/etc/passwd", "root:x:0:0::/:/bin/sh\n")
        fs.text("/etc/group", "root:x:0:\ninput:x:101:\ntty:x:5:\nkmem:x:15:\ndisk:x:6:\n"
                              "video:x:44:\nlp:x:7:\ncdrom:x:24:\ndialout:x:20:\nkvm:x:102:\n"
                              "render:x:103:\nsgx:x:104:\ntape:x:26:\naudio:x:29:\n")
        fs.text("/init", INIT, 0o755)
        fs.pack(path)
    finally:
        fs.close()
