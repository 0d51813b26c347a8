"""Ends whatever a program of tests has started, whatever the program itself ends by: an exception, a
signal, SIGKILL included. The tests run below a process of their own to which everything that has
lost its parent falls, so nothing that lets go of its parent gets away; that process outlives the
tests, and ends with the program that wanted them."""

import ctypes
import json
import os
import signal
import subprocess
import sys
import threading

PR_SET_PDEATHSIG = 1
PR_SET_CHILD_SUBREAPER = 36
COMMAND = "TAMSEL_GUARDED_COMMAND"
GUARDED = "TAMSEL_GUARDED"


def run_guarded(*around):
    """Starts this program again below a guardian, unless it is there already, and ends with its
    status. `around` is a command whose last words are to be a program and its arguments."""
    if os.environ.get(GUARDED) == "1":
        return
    env = {**os.environ, GUARDED: "1",
           COMMAND: json.dumps([*around, sys.executable, *sys.argv])}
    # A session of its own, and a command line without the tests' name: nobody who ends the tests
    # ends their guardian by the same stroke.
    guardian = subprocess.Popen([sys.executable, os.path.abspath(__file__)], env=env,
                                stdin=subprocess.PIPE, start_new_session=True)
    try:
        guardian.wait()
    finally:
        guardian.stdin.close()
        guardian.wait()
    sys.exit(guardian.returncode)


def prctl(option, value):
    if ctypes.CDLL(None, use_errno=True).prctl(option, value, 0, 0, 0) != 0:
        raise OSError(ctypes.get_errno(), os.strerror(ctypes.get_errno()))


def kill_children():
    with open(f"/proc/self/task/{os.getpid()}/children", encoding="ascii") as children:
        for pid in children.read().split():
            os.kill(int(pid), signal.SIGKILL)


def end_all():
    """Kills generation after generation: the children of each fall to this process."""
    while True:
        kill_children()
        try:
            os.wait()
        except ChildProcessError:
            return


def follow_owner():
    """Ends the tests once nobody holds the other end of the standard input any more."""
    os.read(sys.stdin.fileno(), 1)
    kill_children()


def main():
    prctl(PR_SET_CHILD_SUBREAPER, 1)
    signal.signal(signal.SIGTERM, lambda *_: kill_children())
    command = json.loads(os.environ.pop(COMMAND))
    tests = subprocess.Popen(command, stdin=subprocess.DEVNULL,
                             preexec_fn=lambda: prctl(PR_SET_PDEATHSIG, signal.SIGKILL))
    threading.Thread(target=follow_owner, daemon=True).start()
    pid = None
    while pid != tests.pid:
        pid, status = os.wait()
    end_all()
    status = os.waitstatus_to_exitcode(status)
    return status if status >= 0 else 128 - status


if __name__ == "__main__":
    sys.exit(main())
