"""The relauncher on copies that are shell scripts: what it puts in place, and what it takes back."""

import os
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

RELAUNCHER = sys.argv[1]


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

    def run_it(self, does, before_end=lambda: None, patience="10"):
        self.make(self.tree, "two", does)
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

    def test_without_an_exchange_the_old_one_starts_again(self):
        status, said = self.run_it("", lambda: shutil.rmtree(self.tree))
        self.assertEqual(status, 1)
        self.assertIn("can't be replaced: No such file or directory", said)
        self.assertEqual(self.in_place(), "one")
        self.wait_for("one --update-failed 2")
        self.assertEqual(len(self.log()), 1)
        usage = subprocess.run([RELAUNCHER, "x"], capture_output=True, text=True, check=False)
        self.assertEqual((usage.returncode, len(usage.stderr.splitlines())), (1, 1))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
