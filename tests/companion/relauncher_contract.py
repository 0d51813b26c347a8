"""The relauncher on copies that are shell scripts: what it puts in place, and what it takes back."""

import os
import random
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

RELAUNCHER, PROBE = sys.argv[1:3]
KILLS = int(os.environ.get("TAMSEL_KILLS", "20"))


def put(path, text):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)
    os.chmod(path, 0o755)


class Relauncher(unittest.TestCase):
    def setUp(self):
        self.top = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.top, ignore_errors=True)
        self.copy = f"{self.top}/tamsel"
        self.staging = f"{self.top}/.tamsel.update-x"
        self.tree = f"{self.staging}/new/tamsel-2"
        self.make(self.copy, "one", "")

    def make(self, folder, version, does):
        """A copy that notes what it is told and then does something."""
        put(f"{folder}/bin/tamsel", f'#!/bin/sh\necho "{version} $*" >>{self.top}/log\n{does}\n')
        put(f"{folder}/share/tamsel/Info.plist", version)

    def run_it(self, does, before_end=lambda: None, patience="10"):
        os.mkdir(self.staging, 0o700)
        self.make(self.tree, "two", does)
        shutil.copy(f"{self.copy}/share/tamsel/Info.plist", f"{self.staging}/before")
        began = subprocess.Popen(
            [RELAUNCHER, self.copy, self.tree, self.staging, "2", patience],
            stdin=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        before_end()
        _, said = began.communicate(timeout=60)  # ends its standard input, as a process's end does
        return began.returncode, said

    def log(self):
        """What was started so far, in order; the last start is not waited for by the relauncher."""
        try:
            with open(f"{self.top}/log", encoding="utf-8") as file:
                return file.read().splitlines()
        except FileNotFoundError:
            return []

    def in_place(self):
        with open(f"{self.copy}/bin/tamsel", encoding="utf-8") as file:
            return "two" if "two" in file.read() else "one"

    def test_a_copy_that_reports_stays(self):
        def nothing_yet():
            time.sleep(0.3)
            self.assertEqual(self.in_place(), "one", "while the application runs")
        self.assertEqual(self.run_it("echo 2 >&3", nothing_yet), (0, ""))
        self.assertEqual(self.in_place(), "two")
        self.assertEqual(self.log(), ["two --report-to 3"])
        self.assertEqual(os.listdir(self.top), [n for n in os.listdir(self.top)
                                                if n in ("tamsel", "log")], "nothing is left")

    def test_one_that_does_not_is_taken_back(self):
        stubborn = "trap '' TERM; while :; do sleep 0.2; done"
        for does, patience in (("exit 1", "10"), ("echo 3 >&3", "10"), ("printf 2 >&3", "10"),
                               ("exec 3>&-; exec sleep 60", "10"), ("exec sleep 60", "1"), (stubborn, "1"),
                               ("head -c 100000 /dev/zero >&3", "10")):
            with self.subTest(does):
                self.setUp()
                status, said = self.run_it(does, patience=patience)
                self.assertEqual(status, 1)
                self.assertEqual(said, "tamsel-relauncher: version 2 did not start; "
                                 "the one before it is back\n")
                self.assertEqual(self.in_place(), "one")
                self.wait_for("one --update-failed 2")
                # One that has little time may be ended before it has said anything.
                self.assertIn(self.log()[:-1], [["two --report-to 3"]] + [[]] * (patience == "1"))
                self.assertFalse(os.path.exists(self.staging))

    def wait_for(self, line):
        """The log's last line."""
        for _ in range(200):
            if self.log()[-1:] == [line]:
                return
            time.sleep(0.05)
        self.assertEqual(self.log()[-1:], [line])

    def test_a_copy_that_has_changed_meanwhile_is_left_alone(self):
        status, said = self.run_it("echo 2 >&3", lambda: self.make(self.copy, "three", ""))
        self.assertEqual((status, said), (1, "tamsel-relauncher: the copy is another one by now\n"))
        self.wait_for("three ")
        self.assertFalse(os.path.exists(self.staging))

    def test_without_an_exchange_the_old_one_starts_again(self):
        status, said = self.run_it("", lambda: shutil.rmtree(self.tree))
        self.assertEqual(status, 1)
        self.assertIn("is no copy in the staging folder", said)
        self.assertEqual(self.in_place(), "one")
        self.wait_for("one --update-failed 2")
        self.assertEqual(len(self.log()), 1)
        usage = subprocess.run([RELAUNCHER, "x"], capture_output=True, text=True, check=False)
        self.assertEqual((usage.returncode, len(usage.stderr.splitlines())), (1, 1))


class Kills(unittest.TestCase):
    """An update whose processes are killed at any moment, with the application's real start."""

    def make(self, folder, version, broken):
        for program, place in ((PROBE, "bin/tamsel"),
                               (RELAUNCHER, "libexec/tamsel/tamsel-relauncher")):
            os.makedirs(os.path.dirname(f"{folder}/{place}"))
            os.link(program, f"{folder}/{place}")
        put(f"{folder}/share/tamsel/Info.plist", "<plist><dict><key>CFBundleVersion</key>"
            f"<string>{version}</string></dict></plist>")
        if broken:
            put(f"{folder}/broken", "")

    def processes(self, name):
        """Those that run from this test's folder."""
        for pid in filter(str.isdigit, os.listdir("/proc")):
            try:
                program = os.readlink(f"/proc/{pid}/exe")
                with open(f"/proc/{pid}/stat", encoding="utf-8") as stat:
                    is_dead = stat.read().rsplit(")", 1)[1].split()[0] == "Z"
            except OSError:
                continue
            if program.startswith(self.top) and program.endswith(name) and not is_dead:
                yield int(pid)

    def kill(self, name):
        for pid in self.processes(name):
            try:
                os.kill(pid, signal.SIGKILL)
            except ProcessLookupError:
                pass

    def end(self):
        for _ in range(400):
            if not any(self.processes("")):
                return
            time.sleep(0.02)
        self.fail("something runs on")

    def version(self):
        with open(f"{self.copy}/share/tamsel/Info.plist", encoding="utf-8") as file:
            return int(file.read().split("<string>")[1][0])

    def round(self, chance, victims, broken):
        # Hard links need one file system; the programs' own has them.
        self.top = tempfile.mkdtemp(dir=os.path.dirname(PROBE))
        self.addCleanup(shutil.rmtree, self.top, ignore_errors=True)
        self.copy = f"{self.top}/place/tamsel"
        self.make(self.copy, 1, False)
        self.make(f"{self.top}/next", 2, broken)
        began = subprocess.Popen([f"{self.copy}/bin/tamsel", "update", f"{self.top}/next", "2"],
                                 stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        time.sleep(chance.uniform(0, 0.3))
        for name in victims:
            self.kill(name)
        began.wait()
        self.end()
        for _ in range(3):
            last = subprocess.run([f"{self.copy}/bin/tamsel"], capture_output=True, text=True,
                                  timeout=20, check=False)
            self.end()
            if last.returncode == 0:
                break
        self.assertEqual((last.returncode, last.stdout), (0, "started\n"))
        self.assertIn(self.version(), (1,) if broken else (1, 2))
        subprocess.run([f"{self.copy}/bin/tamsel"], capture_output=True, timeout=20, check=True)
        self.assertEqual(os.listdir(f"{self.top}/place"), ["tamsel"], "nothing is left")
        return self.version()

    def test_there_is_always_one_copy_that_works(self):
        chance = random.Random(11)
        ends = set()
        for i in range(KILLS):
            victims = (["relauncher"], ["bin/tamsel"], ["relauncher", "bin/tamsel"])[i % 3]
            with self.subTest(i=i, victims=victims):
                ends.add(self.round(chance, victims, broken=i % 4 == 3))
        self.assertEqual(ends, {1, 2}, "the kills come before and after the exchange")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
