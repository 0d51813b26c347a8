"""The agent as a process: against the daemon, the daemon's bus with commands from this program, and
an independent daemon on GDBus."""

import contextlib
import json
import os
import shlex
import signal
import subprocess
import sys
import threading
import unittest

from guardian import run_guarded
from harness import (BUILD, DAEMON_PATH, NOBODY, PATIENCE, Gio, GLib, SandboxTest, StandInDaemon,
                     refused, ticks, wait_until)

AGENT_PATH, AGENT_INTERFACE = "/app/tamsel/agent", "app.tamsel.TamselAgentProtocol"
REGISTRY = "app.tamsel.TamselAgentRegistry"
AGENT_XML = f"""<node><interface name="{AGENT_INTERFACE}"><method name="runCommand">
<arg type="s" direction="in"/><arg type="b" direction="out"/></method></interface></node>"""
LONGEST = 128 * 1024 - 1
# What a command finds itself to be, as JSON in a file that appears whole.
PROBE = """
import json, os, signal, sys
me = dict(pid=os.getpid(), group=os.getpgid(0), session=os.getsid(0), parent=os.getppid(),
          folder=os.getcwd(), blocked=[int(s) for s in signal.pthread_sigmask(0, [])],
          files={name: os.readlink("/proc/self/fd/" + name) for name in ("0", "1", "2")},
          others=[fd for fd in range(3, 200) if os.path.exists(f"/proc/self/fd/{fd}")])
with open("/proc/self/status") as file:
    me["ignored"] = [line.split()[1] for line in file if line.startswith("SigIgn")][0]
print("nobody reads this")
with open(sys.argv[1] + ".part", "w") as file:
    json.dump(me, file)
os.rename(sys.argv[1] + ".part", sys.argv[1])
"""


def children(process):
    with open(f"/proc/{process.pid}/task/{process.pid}/children") as file:
        return [int(pid) for pid in file.read().split()]


def is_running(pid):
    with contextlib.suppress(FileNotFoundError), open(f"/proc/{pid}/stat") as file:
        return file.read().rsplit(")", 1)[1].split()[0] != "Z"
    return False


class CommandDaemon:
    """The daemon's bus, told by this program what to have run."""

    def __init__(self, sandbox):
        self.process = subprocess.Popen(
            [os.path.join(BUILD, "tests", "command_daemon")], env=sandbox.env, text=True,
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, bufsize=1)
        sandbox.processes.append(self.process)

    def run(self, command, user=None):
        self.process.stdin.write(f"{os.getuid() if user is None else user} {command}\n")
        return self.process.stdout.readline() == "true\n"


class HandAgent:
    """An agent on GDBus that only writes down what it is to run."""

    def __init__(self, address):
        self.commands = []
        self.connection = Gio.DBusConnection.new_for_address_sync(
            address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT, None, None)
        self.connection.set_exit_on_close(False)
        interface = Gio.DBusNodeInfo.new_for_xml(AGENT_XML).interfaces[0]
        self.connection.register_object(AGENT_PATH, interface, self._called, None, None)

    def _called(self, _connection, _sender, _path, _interface, _method, arguments, invocation):
        self.commands.append(arguments.unpack()[0])
        invocation.return_value(GLib.Variant("(b)", (True,)))

    def register(self):
        return self.connection.call_sync(None, DAEMON_PATH, REGISTRY, "register", None,
                                         GLib.VariantType("(b)"), 0, 10000, None).unpack()


class RegistryOnGDBus(StandInDaemon):
    """An independent daemon, as far as an agent sees it."""

    INTROSPECTION = f"""<node><interface name="{REGISTRY}"><method name="register">
        <arg type="b" direction="out"/></method></interface></node>"""

    def _called(self, connection, _sender, _path, _interface, _method, _arguments, invocation):
        self.calls.append(connection)
        invocation.return_value(GLib.Variant("(b)", (True,)))

    def run(self, command):
        return self.calls[-1].call_sync(
            None, AGENT_PATH, AGENT_INTERFACE, "runCommand", GLib.Variant("(s)", (command,)),
            GLib.VariantType("(b)"), 0, 20000, None).unpack()[0]


class AgentTest(SandboxTest):
    def setUp(self):
        super().setUp()
        self.lock = os.path.join(self.sandbox.env["XDG_RUNTIME_DIR"], "tamsel", "agent.lock")
        self.socket = self.sandbox.address.removeprefix("unix:path=")

    def path(self, name):
        return os.path.join(self.sandbox.folder, name)

    def appeared(self, name):
        wait_until(lambda: os.path.exists(self.path(name)), name)

    def start_agent(self):
        return self.sandbox.start("tamsel-agent")

    def start_command_daemon(self):
        daemon = CommandDaemon(self.sandbox)
        self.addCleanup(daemon.process.stdout.close)
        self.addCleanup(daemon.process.stdin.close)
        return daemon

    def connected(self):
        """How many clients the socket has."""
        with open("/proc/net/unix") as file:
            return sum(line.split()[5] == "03" for line in file if line.rstrip().endswith(self.socket))

    def kill(self, process):
        process.kill()
        process.wait()

    def refused(self, *arguments, **env):
        return refused([os.path.join(BUILD, "bin", "tamsel-agent"), *arguments],
                       {**self.sandbox.env, **env})

    def test_a_command_starts_clean(self):
        with open(self.path("probe.py"), "w") as file:
            file.write(PROBE)
        with open(self.path("probe.py")) as leaked:
            agent = subprocess.Popen(
                [os.path.join(BUILD, "bin", "tamsel-agent")], env=self.sandbox.env,
                pass_fds=[leaked.fileno()], stdin=leaked, cwd="/usr", stderr=subprocess.DEVNULL)
        self.sandbox.processes.append(agent)
        daemon = self.start_command_daemon()
        command = shlex.join(["exec", sys.executable, self.path("probe.py"), self.path("found")])
        wait_until(lambda: daemon.run(command), "the agent to announce itself")
        self.appeared("found")
        with open(self.path("found")) as file:
            found = json.load(file)
        self.assertEqual(found["parent"], agent.pid)
        self.assertEqual([found["group"], found["session"]], [found["pid"]] * 2)
        self.assertEqual(found["files"], dict.fromkeys("012", "/dev/null"))
        self.assertEqual(found["others"], [])
        self.assertEqual(found["blocked"], [])
        # Python ignores SIGPIPE and SIGXFSZ itself, and 32 and 33 are out of a program's reach.
        self.assertEqual(int(found["ignored"], 16) & ~(1 << 12 | 1 << 24 | 3 << 31), 0)
        self.assertEqual(found["folder"], self.sandbox.folder)
        wait_until(lambda: not children(agent), "the command to be reaped")

    def test_the_daemon_goes_and_comes_back(self):
        agent = self.start_agent()
        for round in range(3):
            daemon = self.start_command_daemon()
            wait_until(lambda: daemon.run(f"exec touch {self.path(f'made-{round}')}"), "an agent")
            self.appeared(f"made-{round}")
            self.kill(daemon.process)
            self.assertIsNone(agent.poll())
        self.assertLess(ticks(agent.pid), 50 * PATIENCE, "waiting costs nothing")

    def test_with_the_real_daemon(self):
        agent = self.start_agent()
        self.sandbox.start("tamsel-daemon")
        wait_until(lambda: self.connected() == 1, "the agent's connection")
        self.assertEqual(HandAgent(self.sandbox.address).register(), (True,))
        agent.terminate()
        self.assertEqual(agent.wait(10 * PATIENCE), 0)

    def test_the_newest_agent_counts_until_it_goes(self):
        daemon = self.start_command_daemon()
        wait_until(lambda: os.path.exists(self.socket), "the socket")
        self.assertFalse(daemon.run("true"), "nobody is there")
        first, second = HandAgent(self.sandbox.address), HandAgent(self.sandbox.address)
        self.assertFalse(daemon.run("true"), "nobody has announced itself")
        self.assertEqual(first.register(), (True,))
        self.assertTrue(daemon.run("one"))
        self.assertEqual(second.register(), (True,))
        self.assertTrue(daemon.run("two; 'ä'"))
        wait_until(lambda: (first.commands, second.commands) == (["one"], ["two; 'ä'"]), "commands")
        self.assertFalse(daemon.run("true", user=os.getuid() + 1), "another user's agent is none")
        for bad in ("", "x" * (LONGEST + 1), "cut\0short"):
            self.assertFalse(daemon.run(bad))
        second.connection.close_sync(None)
        wait_until(lambda: not daemon.run("true"), "the agent to be forgotten")
        self.assertEqual(first.register(), (True,))
        self.assertTrue(daemon.run("three"))
        wait_until(lambda: first.commands == ["one", "three"], "the third command")

    def test_what_it_does_not_run(self):
        daemon = RegistryOnGDBus(self.sandbox.address)
        agent = self.start_agent()
        wait_until(lambda: daemon.calls, "the agent to announce itself")
        self.assertIs(daemon.run(""), False)
        self.assertIs(daemon.run("x" * (LONGEST + 1)), False)
        padded = f"exec touch {self.path('long')} #"
        self.assertIs(daemon.run(padded.ljust(LONGEST, "x")), True)
        self.appeared("long")
        self.assertIs(daemon.run("-c nonsense"), True, "a shell's business, not an option of it")
        wait_until(lambda: not children(agent), "an idle agent")
        try:
            started = 0
            while started < 300 and daemon.run("exec sleep 600"):
                started += 1
            self.assertEqual(started, 256)
        finally:
            for pid in children(agent):
                os.kill(pid, signal.SIGKILL)
        wait_until(lambda: not children(agent), "all to be reaped")
        self.assertIs(daemon.run("true"), True)

    def test_one_agent_a_user(self):
        agent = self.start_agent()
        wait_until(lambda: os.path.exists(self.lock) and os.path.getsize(self.lock), "the lock")
        with open(self.lock) as file:
            self.assertEqual(file.read(), f"{agent.pid}\n")
        self.assertIn("another agent", self.refused())
        with open(self.lock) as file:
            self.assertEqual(file.read(), f"{agent.pid}\n", "the refused one wrote nothing")
        self.kill(agent)
        agent = self.start_agent()
        daemon = self.start_command_daemon()
        wait_until(lambda: daemon.run("exec sleep 600"), "the next agent")
        with open(self.lock) as file:
            self.assertEqual(file.read(), f"{agent.pid}\n")
        (command,) = wait_until(lambda: children(agent), "the command")
        try:
            agent.terminate()
            self.assertEqual(agent.wait(10 * PATIENCE), 0)
            self.assertTrue(is_running(command), "it goes on without the agent")
        finally:
            os.kill(command, signal.SIGKILL)

    def test_environments_that_cannot_work(self):
        self.refused("--frobnicate")
        for address in ("nonsense", "tcp:host=localhost,port=1", "unix:path=relative"):
            with self.subTest(address=address):
                self.refused(TAMSEL_DAEMON_ADDRESS=address)
        with open(self.path("file"), "w"):
            self.refused(XDG_RUNTIME_DIR=self.path("file"))
        os.makedirs(self.lock)
        self.assertIn("agent.lock", self.refused())
        os.rmdir(self.lock)
        os.symlink(self.path("elsewhere"), self.lock)
        self.refused()
        self.assertFalse(os.path.exists(self.path("elsewhere")))

    @unittest.skipUnless(os.geteuid() == 0, "needs a second user")
    def test_a_stranger_in_the_daemons_place_gets_no_word(self):
        os.chmod(self.sandbox.folder, 0o777)
        script = f"""if True:
            import socket
            place = socket.socket(socket.AF_UNIX)
            place.bind({self.socket!r})
            place.listen()
            peer, _ = place.accept()
            print(peer.recv(100), flush=True)
            """
        stranger = subprocess.Popen([sys.executable, "-c", script], user=NOBODY, cwd="/", text=True,
                                    stdout=subprocess.PIPE)
        self.sandbox.processes.append(stranger)
        wait_until(lambda: os.path.exists(self.socket), "the stranger's socket")
        os.chmod(self.socket, 0o666)
        self.start_agent()
        self.addCleanup(stranger.stdout.close)
        self.assertEqual(stranger.communicate(timeout=20 * PATIENCE)[0], "b''\n")


if __name__ == "__main__":
    run_guarded()
    # GDBus delivers calls on the default context.
    threading.Thread(target=GLib.MainLoop().run, daemon=True).start()
    unittest.main()
