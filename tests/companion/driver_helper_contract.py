"""The driver helper on a root folder of the build tree: what it does, says and leaves behind."""

import fcntl
import os
import shutil
import stat
import subprocess
import sys
import unittest

INSTALLED, IN_TEST_ROOT, ROOT, RULE_TEXT = sys.argv[1:5]
RULE = f"{ROOT}/etc/udev/rules.d/60-tamsel-uinput.rules"
PACKAGED = f"{ROOT}/usr/lib/udev/rules.d/60-tamsel-uinput.rules"
NODE = f"{ROOT}/dev/uinput"
TRIGGER = "udevadm trigger --action=add --settle --name-match=/dev/uinput"
RELOAD = "udevadm control --reload"


def put(path, text="", mode=0o644):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)
    os.chmod(path, mode)


def run(*arguments, program=IN_TEST_ROOT, **env):
    """Exit status and what was said; a line each time something fails, else nothing at all."""
    done = subprocess.run([program, *arguments], env=env, capture_output=True, text=True,
                          timeout=60, check=False)
    assert done.stdout == "", done.stdout
    lines = done.stderr.splitlines()
    assert len(lines) == (1 if done.returncode else 0), done.stderr
    assert all(line.startswith("tamsel-driver-helper: ") for line in lines), lines
    return done.returncode


class DriverHelper(unittest.TestCase):
    def setUp(self):
        shutil.rmtree(ROOT, ignore_errors=True)
        for folder in ("run", "etc/udev", "dev", "log"):
            os.makedirs(f"{ROOT}/{folder}")

    def program(self, name, ends="exit 0"):
        """A system program that notes its words and its environment."""
        put(f"{ROOT}/usr/{name}", f'#!/bin/sh\necho "${{0##*/}} $*" >>{ROOT}/log/calls\n'
            f"env >>{ROOT}/log/env\ncat /proc/$PPID/cmdline >{ROOT}/log/parent\n{ends}\n", 0o755)

    def calls(self):
        path = f"{ROOT}/log/calls"
        if not os.path.exists(path):
            return []
        with open(path, encoding="utf-8") as log:
            lines = log.read().splitlines()
        os.unlink(path)
        return lines

    def test_takes_one_of_three_words_and_nothing_else(self):
        for arguments in ([], ["load", "grant"], [""], ["grant;rm"], ["Grant"], ["grant "],
                          ["--help"], ["load\n"], ["/dev/uinput"]):
            for program in (INSTALLED, IN_TEST_ROOT):
                self.assertEqual(run(*arguments, program=program), 2, arguments)
        self.assertEqual(os.listdir(f"{ROOT}/run"), [])

    def test_nothing_of_the_caller_reaches_the_programs_it_runs(self):
        self.program("sbin/modprobe")
        self.assertEqual(run("load", PATH="/evil", LD_PRELOAD="", IFS="x", MODPROBE_OPTIONS="-r"), 0)
        with open(f"{ROOT}/log/env", encoding="utf-8") as log:
            env = dict(line.split("=", 1) for line in log.read().splitlines())
        self.assertEqual(env.pop("PATH"), "/usr/sbin:/usr/bin:/sbin:/bin")
        self.assertEqual(env.pop("LC_ALL"), "C")
        self.assertLessEqual(set(env), {"PWD", "_", "OLDPWD", "SHLVL"})  # the shell's own
        with open(f"{ROOT}/log/parent", "rb") as log:
            self.assertEqual(log.read(), b"app.tamsel.driver.virtualhid\0load\0")

    def test_load(self):
        self.assertEqual(run("load"), 7)  # no modprobe
        self.program("sbin/modprobe", "exit 1")
        self.assertEqual(run("load"), 4)
        self.program("sbin/modprobe")
        self.assertEqual(run("load"), 0)
        self.assertEqual(self.calls(), ["modprobe -q uinput"] * 2)
        put(f"{ROOT}/sys/module/uinput/initstate", "going\n")
        self.assertEqual(run("load"), 11)
        put(NODE)
        self.assertEqual(run("load"), 0)
        self.assertEqual(self.calls(), [])

    def test_grant_installs_the_rule_and_applies_it(self):
        with open(RULE_TEXT, encoding="utf-8") as file:
            rule = file.read()
        self.program("bin/udevadm")
        old_mask = os.umask(0o077)
        self.addCleanup(os.umask, old_mask)
        for before in (None, "# tamsel-access 0\n"):
            if before:
                put(RULE, before, 0o600)
            self.assertEqual(run("grant"), 0)
            with open(RULE, encoding="utf-8") as file:
                self.assertEqual(file.read(), rule)
            self.assertEqual(stat.S_IMODE(os.stat(RULE).st_mode), 0o644)
            self.assertEqual(os.listdir(os.path.dirname(RULE)), [os.path.basename(RULE)])
        self.assertEqual(self.calls(), [RELOAD] * 2)
        put(NODE)
        self.assertEqual(run("grant"), 0)
        self.assertEqual(self.calls(), [RELOAD, TRIGGER])

    def test_grant_without_a_running_udev(self):
        self.assertEqual(run("grant"), 0)  # no device either: nothing to apply the rule to
        self.program("bin/udevadm", "exit 1")
        put(NODE)
        with open("/etc/group", encoding="utf-8") as groups:
            has_group = any(line.startswith("tamsel:") for line in groups)
        self.assertIn(run("grant"), (0, 6) if has_group else (6,))
        self.assertTrue(os.path.exists(RULE))

    def test_a_rule_that_cannot_be_written_leaves_nothing(self):
        shutil.rmtree(f"{ROOT}/etc")
        self.assertEqual(run("grant"), 5)
        os.makedirs(RULE)  # a folder under the rule's name
        self.assertEqual(run("grant"), 5)
        self.assertEqual(run("revoke"), 5)
        self.assertEqual(os.listdir(os.path.dirname(RULE)), [os.path.basename(RULE)])

    def test_revoke_takes_rule_and_access_back(self):
        self.assertEqual(run("revoke"), 0)  # nothing there
        self.program("bin/udevadm")
        put(NODE, mode=0o660)
        self.assertEqual(run("grant"), 0)
        self.calls()
        self.assertEqual(run("revoke"), 0)
        self.assertFalse(os.path.lexists(RULE))
        self.assertEqual(stat.S_IMODE(os.stat(NODE).st_mode), 0o600)
        self.assertEqual(self.calls(), [RELOAD, TRIGGER])

    def test_a_packaged_rule_is_covered_and_uncovered(self):
        put(PACKAGED, "# tamsel-access 1\n")
        for _ in range(2):
            self.assertEqual(run("revoke"), 0)
            self.assertEqual(os.readlink(RULE), "/dev/null")
        self.assertEqual(run("grant"), 0)
        self.assertFalse(os.path.islink(RULE))
        self.assertTrue(os.path.exists(PACKAGED))

    def test_a_helper_that_is_stuck_is_reported(self):
        with open(f"{ROOT}/run/tamsel-driver.lock", "w", encoding="utf-8") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX)
            for word in ("load", "grant", "revoke"):
                self.assertEqual(run(word), 11)
        self.assertFalse(os.path.exists(RULE))
        self.assertEqual(run("grant"), 0)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
