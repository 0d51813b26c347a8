"""The background services: as units of a systemd that is played here, and as the application's own
programs."""

import os
import shutil
import signal
import subprocess
import unittest

from gi.repository import Gio, GLib

import harness
from guardian import run_guarded
from harness import BUILD, SENT, SandboxTest, log_lines, wait_until

DATA = os.path.join(os.path.dirname(__file__), "..", "..", "data")
UNITS = {"system": "app.tamsel.daemon.service", "session": "app.tamsel.agent.service"}
MANAGER = "org.freedesktop.systemd1.Manager"
INTERACTIVE = Gio.DBusMessageFlags.ALLOW_INTERACTIVE_AUTHORIZATION
DENIED = "org.freedesktop.DBus.Error.AccessDenied"

UNKNOWN = "[DaemonMgr] 狀態: 未安裝 (SMAppService status=0)"
RUNNING = "[DaemonMgr] 狀態: 運行中 (SMAppService status=1)"
AWAITING = "[DaemonMgr] 狀態: 等待用戶批准 (SMAppService status=2)"
NOT_FOUND = "[DaemonMgr] 狀態: 未安裝 (SMAppService status=3)"
REGISTERED = ["[DaemonMgr] Daemon 已註冊", "[DaemonMgr] Agent 已註冊"]
REGISTERED_ALREADY = ["[DaemonMgr] Daemon 已處於註冊狀態", "[DaemonMgr] Agent 已處於註冊狀態"]
UNREGISTERED = ["[DaemonMgr] Daemon 已取消註冊", "[DaemonMgr] Agent 已取消註冊"]
REFUSED = "The authorization was refused."


class Probe:
    """The services as the application sees them; obeys words, and its lines are read in order."""

    def __init__(self, sandbox, *arguments, **env):
        self.process = sandbox.start(
            os.path.join(BUILD, "tests", "service_probe"), *arguments, stdin=subprocess.PIPE,
            **{"QT_QPA_PLATFORM": "offscreen", **env})
        self.read = 0

    def close(self):
        self.process.stdin.close()

    def say(self, word):
        self.process.stdin.write(word.encode() + b"\n")
        self.process.stdin.flush()

    def expect(self, *lines):
        """The next lines are these, exactly."""
        def news():
            return log_lines(self.process)[self.read:]

        try:
            wait_until(lambda: len(news()) >= len(lines), "lines")
        except AssertionError:
            pass
        found = news()[:len(lines)]
        assert found == list(lines), f"expected {lines}, got {news()}"
        self.read += len(lines)

    def quit(self):
        self.say("quit")
        assert self.process.wait(10 * harness.PATIENCE) == 0


class PlayedSystemd:
    """A manager with one unit, on a bus of its own. Its answers are scripted by fields; calls that
    need an authorization wait in `prompts` while `asks` is set."""

    XML = f"""<node><interface name="{MANAGER}">
        <method name="Subscribe"/><method name="Reload"/>
        <method name="GetUnitFileState"><arg type="s" direction="in"/><arg type="s" direction="out"/></method>
        <method name="EnableUnitFiles"><arg type="as" direction="in"/><arg type="b" direction="in"/>
            <arg type="b" direction="in"/><arg type="b" direction="out"/><arg type="a(sss)" direction="out"/></method>
        <method name="DisableUnitFiles"><arg type="as" direction="in"/><arg type="b" direction="in"/>
            <arg type="a(sss)" direction="out"/></method>
        <method name="StartUnit"><arg type="s" direction="in"/><arg type="s" direction="in"/>
            <arg type="o" direction="out"/></method>
        <method name="StopUnit"><arg type="s" direction="in"/><arg type="s" direction="in"/>
            <arg type="o" direction="out"/></method>
        </interface><interface name="org.freedesktop.systemd1.Unit">
        <property name="ActiveState" type="s" access="read"/></interface></node>"""

    def __init__(self, unit):
        self.unit = unit
        self.bus = subprocess.Popen(
            ["dbus-daemon", "--session", "--nofork", "--print-address=1"], stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL)
        self.address = self.bus.stdout.readline().decode().strip()
        self.file_state = "disabled"  # None: there is no such unit
        self.active = "inactive"
        self.install_section = True
        self.after_start = ("done", "active")
        self.errors = {}
        self.asks = False
        self.prompts = []
        self.calls = []
        self.jobs = 0
        self.connection = Gio.DBusConnection.new_for_address_sync(
            self.address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        self.loop = harness.LoopThread()
        self.loop.call(self._serve)

    def _serve(self):
        manager, unit_interface = Gio.DBusNodeInfo.new_for_xml(self.XML).interfaces
        self.unit_path = "/org/freedesktop/systemd1/unit/" + self.unit.replace(".", "_2e")
        self.connection.register_object("/org/freedesktop/systemd1", manager, self._called, None, None)
        self.connection.register_object(
            self.unit_path, unit_interface, None,
            lambda *_: GLib.Variant("s", self.active), None)
        self.connection.call_sync(
            "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
            GLib.Variant("(su)", ("org.freedesktop.systemd1", 4)), None, 0, 5000, None)

    def close(self):
        self.connection.close_sync(None)
        self.bus.terminate()
        self.bus.wait()
        self.bus.stdout.close()

    def _called(self, _connection, _sender, _path, _interface, method, arguments, invocation):
        if method in ("Subscribe", "GetUnitFileState"):
            return self._answer(method, invocation)
        assert invocation.get_message().get_flags() & INTERACTIVE, method
        if method != "Reload":
            named = arguments.unpack()[0]
            assert named in (self.unit, [self.unit]), arguments
        self.calls.append(method)
        if self.asks:
            return self.prompts.append((method, invocation))
        self._answer(method, invocation)

    def settle(self, error=None):
        """The user answers the prompt: approves it, and what follows from it, or not."""
        wait_until(lambda: self.prompts, "the prompt")
        method, invocation = self.prompts.pop(0)
        self.asks = False
        if error:
            self.errors[method] = error
        self.loop.call(lambda: self._answer(method, invocation))

    def _answer(self, method, invocation):
        changed = [("symlink", "/a", "/b")]
        if method in self.errors:
            return invocation.return_dbus_error(self.errors.pop(method), "played")
        if method == "GetUnitFileState" and self.file_state is None:
            return invocation.return_dbus_error("org.freedesktop.DBus.Error.FileNotFound", "played")
        if method == "GetUnitFileState":
            return invocation.return_value(GLib.Variant("(s)", (self.file_state,)))
        if method == "EnableUnitFiles":
            changed = changed if self.install_section and self.file_state != "enabled" else []
            if self.install_section:
                self.file_state = "enabled"
            return invocation.return_value(
                GLib.Variant("(ba(sss))", (self.install_section, changed)))
        if method == "DisableUnitFiles":
            self.file_state = "disabled"
            return invocation.return_value(GLib.Variant("(a(sss))", (changed,)))
        if method in ("StartUnit", "StopUnit"):
            return self._run_job(method, invocation)
        invocation.return_value(None)

    def _run_job(self, method, invocation):
        self.jobs += 1
        job = f"/org/freedesktop/systemd1/job/{self.jobs}"
        result, self.active = self.after_start if method == "StartUnit" else ("done", "inactive")

        def removed():
            self.emit("/org/freedesktop/systemd1", MANAGER, "JobRemoved",
                      GLib.Variant("(uoss)", (self.jobs, job, self.unit, result)))

        # A job may be over before its caller learns of it.
        if self.jobs % 2:
            removed()
        invocation.return_value(GLib.Variant("(o)", (job,)))
        if not self.jobs % 2:
            removed()

    def emit(self, path, interface, name, arguments):
        self.connection.emit_signal(None, path, interface, name, arguments)

    def become(self, active):
        self.active = active
        self.emit(self.unit_path, "org.freedesktop.DBus.Properties", "PropertiesChanged",
                  GLib.Variant("(sa{sv}as)", ("org.freedesktop.systemd1.Unit",
                                              {"ActiveState": GLib.Variant("s", active)}, [])))


class Units(SandboxTest):
    def setUp(self):
        super().setUp()
        self.daemon = PlayedSystemd(UNITS["system"])
        self.addCleanup(self.daemon.close)
        self.agent = PlayedSystemd(UNITS["session"])
        self.addCleanup(self.agent.close)

    def probe(self, **env):
        probe = Probe(self.sandbox, "/nowhere", "systemd", **{
            "DBUS_SYSTEM_BUS_ADDRESS": self.daemon.address,
            "DBUS_SESSION_BUS_ADDRESS": self.agent.address, **env})
        self.addCleanup(probe.close)
        return probe

    def run_already(self):
        for service in (self.daemon, self.agent):
            service.file_state, service.active = "enabled", "active"

    def test_registers_once_and_unregisters(self):
        probe = self.probe()
        probe.expect(UNKNOWN)
        probe.say("register")
        probe.expect(*REGISTERED, AWAITING, RUNNING)
        for service in (self.daemon, self.agent):
            wait_until(lambda: service.active == "active", "the start")
            self.assertEqual(service.calls, ["EnableUnitFiles", "Reload", "StartUnit"])
            service.calls.clear()
        probe.say("register")
        probe.expect(*REGISTERED_ALREADY, RUNNING)
        probe.say("unregister")
        probe.expect(*UNREGISTERED, AWAITING, UNKNOWN)
        for service in (self.daemon, self.agent):
            wait_until(lambda: service.active == "inactive", "the stop")
            self.assertEqual(service.calls, ["DisableUnitFiles", "Reload", "StopUnit"])
        self.assertEqual(self.daemon.file_state, "disabled")

    def test_waits_for_the_user_without_blocking(self):
        for error, outcome in ((None, [RUNNING]), (DENIED, [
                f"[DaemonMgr] Daemon 註冊失敗: {REFUSED}", UNKNOWN]), (
                "org.freedesktop.DBus.Error.InteractiveAuthorizationRequired", [
                    f"[DaemonMgr] Daemon 註冊失敗: {REFUSED}", UNKNOWN])):
            with self.subTest(error=error):
                self.daemon.file_state, self.daemon.active = "disabled", "inactive"
                self.agent.file_state, self.agent.active = "enabled", "active"
                self.daemon.asks = True
                self.daemon.calls.clear()
                probe = self.probe()
                probe.expect(UNKNOWN)
                probe.say("register")
                probe.expect("[DaemonMgr] Daemon 已註冊")
                probe.read += 1  # the agent's line; it may be known by now that it runs
                probe.expect(AWAITING)
                probe.say("register")  # no second prompt
                probe.expect("[DaemonMgr] Daemon 已處於註冊狀態")
                probe.read += 1
                probe.expect(AWAITING)
                wait_until(lambda: self.daemon.calls == ["EnableUnitFiles"], "the one call")
                self.daemon.settle(error)
                probe.expect(*outcome)
                probe.quit()

    def test_the_last_of_several_orders_counts(self):
        self.daemon.asks = True
        probe = self.probe()
        probe.expect(UNKNOWN)
        for word, lines in (("register", REGISTERED), ("unregister", UNREGISTERED)):
            probe.say(word)
            probe.expect(*lines, AWAITING)
        self.daemon.settle()
        probe.expect(UNKNOWN)
        self.assertEqual((self.daemon.file_state, self.daemon.active), ("disabled", "inactive"))

    def test_a_unit_that_is_not_found_is_registered_again(self):
        self.daemon.file_state = None
        probe = self.probe()
        probe.expect(UNKNOWN, NOT_FOUND)
        probe.say("unregister")
        probe.expect(f"[DaemonMgr] Daemon 取消註冊失敗: There is no unit {UNITS['system']}.",
                     UNREGISTERED[1], NOT_FOUND)
        self.daemon.file_state = "disabled"
        probe.say("register")
        probe.expect(*REGISTERED, AWAITING, RUNNING)
        self.assertNotIn("DisableUnitFiles", self.daemon.calls)

    def test_failures_that_show_later(self):
        unit = UNITS["system"]
        for fields, text in (
                ({"install_section": False, "file_state": "static"},
                 f"The unit {unit} says nothing of its installation."),
                ({"after_start": ("failed", "failed")}, 'systemd\'s job ended as "failed".'),
                ({"after_start": ("done", "failed")},
                 f"The unit {unit} does not run (enabled, failed)."),
                ({"errors": {"Reload": "org.freedesktop.DBus.Error.Failed"}}, "played"),
                ({"errors": {"StartUnit": DENIED}}, REFUSED)):
            with self.subTest(text=text):
                for name, value in {"file_state": "disabled", "active": "inactive",
                                    "install_section": True, "after_start": ("done", "active"),
                                    **fields}.items():
                    setattr(self.daemon, name, value)
                probe = self.probe()
                probe.expect(UNKNOWN)
                probe.say("register")
                probe.expect("[DaemonMgr] Daemon 已註冊")
                probe.read += 1
                probe.expect(AWAITING, f"[DaemonMgr] Daemon 註冊失敗: {text}", UNKNOWN)
                probe.quit()

    def test_a_refused_unregistration_leaves_it_running(self):
        self.run_already()
        self.daemon.errors = {"DisableUnitFiles": DENIED}
        probe = self.probe()
        probe.expect(UNKNOWN, RUNNING)
        probe.say("unregister")
        probe.expect(*UNREGISTERED, AWAITING, f"[DaemonMgr] Daemon 取消註冊失敗: {REFUSED}", RUNNING)

    def test_an_end_and_a_return_are_noticed_by_themselves(self):
        self.run_already()
        probe = self.probe()
        probe.expect(UNKNOWN, RUNNING)
        for state, line in (("failed", UNKNOWN), ("active", RUNNING)):
            self.daemon.become(state)
            probe.expect(line)

    def test_without_a_bus_registering_fails(self):
        probe = self.probe(DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nowhere")
        probe.expect(UNKNOWN)
        probe.say("register")
        probe.expect("[DaemonMgr] Daemon 註冊失敗: The message bus can't be reached.", REGISTERED[1],
                     UNKNOWN)

    def test_the_unit_files_are_sound(self):
        folder = os.path.join(self.sandbox.folder, "units")
        os.mkdir(folder)
        shutil.copy(os.path.join(DATA, "systemd", "app.tamsel.daemon.socket"), folder)
        for scope, unit in (("--system", UNITS["system"]), ("--user", UNITS["session"])):
            with open(os.path.join(BUILD, "data", "systemd", unit), encoding="utf-8") as file:
                text = file.read()
            self.assertIn("/libexec/tamsel/tamsel-", text)
            self.assertIn("[Install]\nWantedBy=", text)
            path = os.path.join(folder, unit)
            with open(path, "w", encoding="utf-8") as file:
                for line in text.splitlines():
                    file.write(("ExecStart=/bin/true" if line.startswith("ExecStart=") else line)
                               + "\n")
            verified = subprocess.run(["systemd-analyze", scope, "verify", "--man=no", path],
                                      capture_output=True, text=True, env=self.sandbox.env)
            complaints = [line for line in verified.stderr.splitlines() if unit in line]
            self.assertEqual(complaints, [])


class OwnPrograms(SandboxTest):
    def setUp(self):
        super().setUp()
        del self.sandbox.env["TAMSEL_DAEMON_ADDRESS"]
        # Copies, so that what runs them can be told from everything else on this machine.
        self.programs = os.path.join(self.sandbox.folder, "programs")
        os.mkdir(self.programs)
        for program in ("tamsel-daemon", "tamsel-agent"):
            shutil.copy2(os.path.join(BUILD, "bin", program), self.programs)
        self.socket = os.path.join(self.sandbox.env["XDG_RUNTIME_DIR"], "tamsel", "daemon.sock")
        self.addCleanup(lambda: [os.kill(pid, signal.SIGKILL) for pid in self.running()])

    def probe(self):
        probe = Probe(self.sandbox, self.programs, "embedded")
        self.addCleanup(probe.close)
        return probe

    def running(self, program=""):
        """Who runs one of the programs; a process that has ended does not."""
        pids = []
        for name in filter(str.isdigit, os.listdir("/proc")):
            try:
                executable = os.readlink(f"/proc/{name}/exe")
            except OSError:
                continue
            if executable.startswith(os.path.join(self.programs, program)):
                pids.append(int(name))
        return pids

    def serving(self):
        """The daemon's process, once it listens and holds its place alone, and the agent its."""
        wait_until(lambda: os.path.exists(self.socket), "the socket")
        wait_until(lambda: len(self.running()) == 2, "both programs")
        wait_until(self.agent_is_locked, "the agent's lock")
        return self.running("tamsel-daemon")[0]

    def agent_is_locked(self):
        try:
            with open(os.path.join(os.path.dirname(self.socket), "agent.lock")) as file:
                return file.read().strip() == str(self.running("tamsel-agent")[0])
        except OSError:
            return False

    def registered(self):
        probe = self.probe()
        probe.expect(UNKNOWN)
        probe.say("register")
        probe.expect(*REGISTERED, RUNNING)
        return probe, self.serving()

    def expect_nothing_left(self):
        wait_until(lambda: not self.running(), "the end of both")
        self.assertFalse(os.path.exists(self.socket))

    def test_one_daemon_for_everybody(self):
        first, daemon = self.registered()
        second = self.probe()
        second.expect(RUNNING)
        second.say("register")
        second.expect(*REGISTERED_ALREADY, RUNNING)
        first.process.kill()
        first.process.wait()
        second.say("refresh")
        second.expect(RUNNING)
        self.assertEqual(self.serving(), daemon)
        second.quit()  # it has not started it
        self.assertEqual(self.serving(), daemon)
        third = self.probe()
        third.expect(RUNNING)
        third.say("unregister")
        third.expect(*UNREGISTERED, UNKNOWN, UNKNOWN)
        self.expect_nothing_left()

    def test_a_killed_daemon_is_noticed_and_replaced(self):
        probe, daemon = self.registered()
        os.kill(daemon, signal.SIGKILL)
        probe.expect(UNKNOWN)
        probe.say("register")
        probe.expect("[DaemonMgr] Daemon 已註冊", REGISTERED_ALREADY[1], RUNNING)
        wait_until(lambda: self.running("tamsel-daemon") not in ([], [daemon]), "another daemon")
        self.assertNotEqual(self.serving(), daemon)
        os.kill(self.serving(), signal.SIGKILL)
        probe.expect(UNKNOWN)
        probe.say("unregister")
        probe.expect(*UNREGISTERED, UNKNOWN)
        self.expect_nothing_left()

    def test_a_daemon_that_does_not_listen_is_killed_and_replaced(self):
        probe, daemon = self.registered()
        os.kill(daemon, signal.SIGSTOP)
        probe.say("unregister")
        probe.say("register")
        probe.expect(*UNREGISTERED, UNKNOWN, *REGISTERED, AWAITING, RUNNING)
        self.assertNotEqual(self.serving(), daemon)
        os.kill(self.serving(), signal.SIGSTOP)
        probe.quit()
        self.expect_nothing_left()

    def test_failures(self):
        os.unlink(os.path.join(self.programs, "tamsel-agent"))
        os.makedirs(self.socket)  # something is in the daemon's place
        probe = self.probe()
        probe.expect(UNKNOWN)
        probe.say("register")
        missing = "[DaemonMgr] Agent 註冊失敗: The program is not there."
        probe.expect(REGISTERED[0], missing, RUNNING,
                     "[DaemonMgr] Daemon 註冊失敗: The program ended with status 1.", UNKNOWN)
        os.rmdir(self.socket)
        probe.say("register")
        probe.expect(REGISTERED[0], missing, RUNNING)
        wait_until(lambda: os.path.exists(self.socket), "the socket")
        probe.quit()
        self.expect_nothing_left()

    def test_the_application_takes_along_what_it_has_started(self):
        application = os.path.join(self.programs, "tamsel")
        shutil.copy2(os.path.join(BUILD, "bin", "tamsel"), application)
        for end in (signal.SIGKILL, signal.SIGTERM):
            app = self.sandbox.start(application, QT_QPA_PLATFORM="offscreen",
                                     TAMSEL_BUNDLE=os.path.join(BUILD, "share", "tamsel"))
            harness.wait_for_line(app, RUNNING)
            harness.wait_for_line(app, SENT)
            app.send_signal(end)
            app.wait(10 * harness.PATIENCE)
            # A crash leaves them; the next run finds them and, not having started them, leaves
            # them as well.
            self.assertEqual(len(self.running("tamsel-daemon")), 1)
        self.assertIn(REGISTERED_ALREADY[0], log_lines(app))
        os.kill(self.serving(), signal.SIGTERM)
        wait_until(lambda: not self.running("tamsel-daemon"), "the daemon's end")
        app = self.sandbox.start(application, QT_QPA_PLATFORM="offscreen",
                                     TAMSEL_BUNDLE=os.path.join(BUILD, "share", "tamsel"))
        harness.wait_for_line(app, SENT)
        app.send_signal(signal.SIGTERM)
        self.assertEqual(app.wait(10 * harness.PATIENCE), 0)
        self.assertEqual(self.running("tamsel-daemon"), [])
        self.assertFalse(os.path.exists(self.socket))

    def test_a_daemon_elsewhere_is_left_alone(self):
        probe = Probe(self.sandbox, "/nowhere", TAMSEL_DAEMON_ADDRESS="unix:path=/elsewhere")
        self.addCleanup(probe.close)
        probe.expect(RUNNING)
        probe.say("register")
        probe.expect(*REGISTERED_ALREADY, RUNNING)
        probe.say("unregister")
        probe.expect(*UNREGISTERED, RUNNING)
        self.assertEqual(self.running(), [])


if __name__ == "__main__":
    run_guarded()
    unittest.main(verbosity=2)
