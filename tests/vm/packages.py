"""What a machine is made of: Debian packages, unpacked once into the build folder."""

import glob
import lzma
import os
import shutil
import struct
import subprocess


def run(*command, **options):
    return subprocess.run(command, check=True, capture_output=True, text=True, **options).stdout


def unpacked(cache, name):
    """The folder with a package's files; the newest version there was when the cache was made."""
    folder = os.path.join(cache, name)
    if os.path.isdir(folder):
        return folder
    download, fresh = folder + ".download", folder + ".new"
    for path in (download, fresh):
        shutil.rmtree(path, ignore_errors=True)
        os.makedirs(path)
    run("apt-get", "-qq", "download", name, cwd=download)
    run("dpkg", "-x", *glob.glob(os.path.join(download, "*.deb")), fresh)
    shutil.rmtree(download)
    os.rename(fresh, folder)
    return folder


class Kernel:
    """Debian's kernel, as an image that starts at once and with its modules."""

    def __init__(self, cache):
        depends = run("apt-cache", "depends", "linux-image-amd64")
        name = next(line.split()[-1] for line in depends.splitlines() if "Depends:" in line)
        self.root = unpacked(cache, name)
        self.version, = os.listdir(os.path.join(self.root, "lib/modules"))
        if not os.path.exists(os.path.join(self.modules, "modules.dep")):
            run("depmod", "-b", self.root, self.version)
        self.image = os.path.join(self.root, "vmlinux")
        if not os.path.exists(self.image):
            self._unpack_image()

    @property
    def modules(self):
        return os.path.join(self.root, "lib/modules", self.version)

    def load_order(self, *wanted):
        """The files of these modules and of those that they need, in the order of loading."""
        files = []
        for module in wanted:
            shown = run("modprobe", "-S", self.version, "-d", self.root, "--show-depends", module)
            for line in shown.splitlines():
                if line.startswith("insmod") and line.split()[1] not in files:
                    files.append(line.split()[1])
        return files

    def _unpack_image(self):
        """An uncompressed kernel saves three seconds of unpacking on an emulated processor."""
        with open(os.path.join(self.root, "boot", "vmlinuz-" + self.version), "rb") as file:
            image = file.read()
        # Documentation/x86/boot.rst: setup_sects, payload_offset and payload_length.
        setup = (image[0x1F1] or 4) + 1
        offset, length = struct.unpack_from("<II", image, 0x248)
        begin = setup * 512 + offset
        kernel = lzma.LZMADecompressor().decompress(image[begin:begin + length])
        if not kernel.startswith(b"\x7fELF"):
            raise RuntimeError("the kernel's image is packed in a way not known here")
        with open(self.image + ".new", "wb") as file:
            file.write(kernel)
        os.rename(self.image + ".new", self.image)
