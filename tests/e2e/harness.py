"""Real processes in a private home: started, watched with bounded waits, and ended by their pids."""

import contextlib
import json
import os
import re
import shutil
import signal
import sqlite3
import subprocess
import tempfile
import threading
import time
import unittest

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

BUILD = os.environ["TAMSEL_BUILD"]
DAEMON_PATH = "/app/tamsel/daemon"
DAEMON_INTERFACE = "app.tamsel.TamselDaemonProtocol"
APP_PATH = "/app/tamsel/app"
APP_INTERFACE = "app.tamsel.TamselAppCallbackProtocol"
KEYBOARD = {"vendorID": 1133, "productID": 50475, "product": "Keyboard", "manufacturer": "Maker",
            "transport": "usb", "isSeized": False, "isAllowed": True, "isMouse": False}
SENT = "[DaemonXPC] 配置發送成功"
NOBODY = 65534  # another user
# Sanitized programs are several times slower.
SANITIZED = os.environ.get("TAMSEL_SANITIZED") == "1"
PATIENCE = 4.0 if SANITIZED else 1.0


def wait_until(condition, what, timeout=10.0):
    """Polls until the condition gives something true, and returns that."""
    deadline = time.monotonic() + timeout * PATIENCE
    while True:
        found = condition()
        if found:
            return found
        if time.monotonic() > deadline:
            raise AssertionError(f"timed out waiting for {what}")
        time.sleep(0.01)


def refused(command, env):
    """Runs a program that cannot start and returns its one line."""
    ended = subprocess.run(command, env=env, capture_output=True, text=True, timeout=20 * PATIENCE)
    assert ended.returncode != 0
    assert re.fullmatch(os.path.basename(command[0]) + r": [^\n]+\n", ended.stderr), ended.stderr
    return ended.stderr


def ticks(pid):
    """The processors' time that the process has had."""
    with open(f"/proc/{pid}/stat", encoding="utf-8") as stat:
        return sum(map(int, stat.read().rsplit(")", 1)[1].split()[11:13]))


class Sandbox:
    """A private home with its own XDG folders, and the programs started in it."""

    def __init__(self):
        self.folder = tempfile.mkdtemp(prefix="tamsel-e2e-")
        self.address = f"unix:path={self.folder}/daemon.sock"
        self.processes = []
        keep = ("PATH", "DISPLAY", "XAUTHORITY", "DBUS_SESSION_BUS_ADDRESS", "AT_SPI_BUS_ADDRESS",
                "ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS")
        self.env = {name: os.environ[name] for name in keep if name in os.environ}
        self.env.update(HOME=self.folder, LANG="C.UTF-8", TZ="UTC", QT_QUICK_BACKEND="software",
                        TAMSEL_DAEMON_ADDRESS=self.address)
        for name in ("CONFIG", "STATE", "DATA", "CACHE", "RUNTIME"):
            path = os.path.join(self.folder, name.lower())
            os.mkdir(path, 0o700)
            self.env["XDG_RUNTIME_DIR" if name == "RUNTIME" else f"XDG_{name}_HOME"] = path

    def start(self, program, *arguments, stdin=subprocess.DEVNULL, **env):
        """Starts a program of the build, or another by its path; its standard error goes to a file
        of its own."""
        number = len(self.processes)
        log = os.path.join(self.folder, f"{os.path.basename(program)}-{number}.err")
        with open(log, "wb") as stderr:
            process = subprocess.Popen(
                [os.path.join(BUILD, "bin", program), *arguments], env={**self.env, **env},
                stdin=stdin, stdout=subprocess.DEVNULL, stderr=stderr)
        process.log = log
        self.processes.append(process)
        return process

    def start_app(self, *arguments, **env):
        """Without a window system and a session bus, so that any number may run side by side."""
        return self.start("tamsel", *arguments,
                          **{"QT_QPA_PLATFORM": "offscreen",
                             "DBUS_SESSION_BUS_ADDRESS": "disabled:", **env})

    def _inhabitants(self):
        """Whoever lives in this home, whether the test has started it or one of its programs."""
        found = [process.pid for process in self.processes if process.poll() is None]
        for pid in map(int, filter(str.isdigit, os.listdir("/proc"))):
            try:
                with open(f"/proc/{pid}/environ", "rb") as environment:
                    if self.folder.encode() in environment.read():
                        found.append(pid)
            except OSError:
                pass  # it is gone, or another user's
        return found

    def close(self):
        while inhabitants := self._inhabitants():
            for pid in inhabitants:
                with contextlib.suppress(ProcessLookupError):
                    os.kill(pid, signal.SIGKILL)
            time.sleep(0.01)
        shutil.rmtree(self.folder, ignore_errors=True)

    # The application's store, as other programs see it.

    @property
    def store(self):
        return os.path.join(self.env["XDG_CONFIG_HOME"], "tamsel", "defaults.sqlite")

    def stored(self, key="tamsel_config"):
        with sqlite3.connect(f"file:{self.store}?mode=ro", uri=True) as database:
            row = database.execute("SELECT value FROM defaults WHERE key = ?", (key,)).fetchone()
        return row[0] if row else None

    def put(self, value, key="tamsel_config"):
        os.makedirs(os.path.dirname(self.store), exist_ok=True)
        with sqlite3.connect(self.store) as database:
            database.execute(
                "CREATE TABLE IF NOT EXISTS defaults(key TEXT PRIMARY KEY, value)")
            database.execute("INSERT OR REPLACE INTO defaults VALUES(?, ?)", (key, value))
        database.close()


def log_lines(process):
    """The texts of a program's log lines so far, without their times."""
    with open(process.log, encoding="utf-8", errors="replace") as log:
        return [re.sub(r"^\[.*?\] ", "", line.rstrip("\n")) for line in log]


def other_output(process):
    """What a program wrote that is no log line: warnings of its libraries, say."""
    with open(process.log, encoding="utf-8", errors="replace") as log:
        return [line for line in log if not line.startswith("[")]


def lines(path):
    """Those in a file that may not be there yet."""
    if not os.path.exists(path):
        return []
    with open(path, encoding="utf-8") as file:
        return file.read().splitlines()


def wait_for_line(process, text, count=1, timeout=10.0):
    def seen():
        if process.poll() is not None:
            raise AssertionError(f"the program ended ({process.poll()}): {log_lines(process)}")
        return sum(line.startswith(text) for line in log_lines(process)) >= count

    try:
        wait_until(seen, text, timeout)
    except AssertionError as error:
        raise AssertionError(f"{error}; the log: {log_lines(process)}") from None


class SimulatedDaemon:
    """The real daemon on a folder of simulated devices."""

    def __init__(self, sandbox):
        self.sandbox = sandbox
        self.folder = os.path.join(sandbox.folder, "devices")
        os.mkdir(self.folder)
        with open(os.path.join(self.folder, "devices.json"), "w", encoding="utf-8") as file:
            json.dump([KEYBOARD], file)
        self.time = 0
        self.start()

    def start(self):
        self.process = self.sandbox.start("tamsel-daemon", "--simulate", self.folder)
        wait_until(lambda: os.path.exists(os.path.join(self.folder, "in")), "the daemon's FIFO")

    def kill(self):
        self.process.send_signal(signal.SIGKILL)
        self.process.wait()

    def output(self):
        return lines(os.path.join(self.folder, "out"))

    def comes_out(self, keys, expected, timeout=10):
        """What the keys' presses and releases ("57 down") come out as."""
        before = len(self.output())
        with open(os.path.join(self.folder, "in"), "w", encoding="utf-8") as file:
            file.writelines(f"{self.time} 0 {key}\n" for key in keys)
        self.time += 10
        try:
            wait_until(lambda: self.output()[before:] == expected, "the output", timeout)
        except AssertionError:
            raise AssertionError(f"{keys} came out as {self.output()[before:]}") from None

    def rewrites(self, usage, expected, timeout=10):
        """A press and release of the key come out as the expected one."""
        self.comes_out([f"{usage} down", f"{usage} up"],
                       [f"{expected} down", f"{expected} up"], timeout)


class LoopThread:
    """A thread with a main loop of its own, apart from the default one, which the accessibility
    library uses from the test's thread."""

    def __init__(self):
        self.context = GLib.MainContext.new()
        ready = threading.Event()
        threading.Thread(target=self._run, args=(ready,), daemon=True).start()
        ready.wait()

    def _run(self, ready):
        self.context.push_thread_default()
        ready.set()
        GLib.MainLoop.new(self.context, False).run()

    def call(self, function):
        """Runs the function on the loop's thread and waits for it."""
        done = threading.Event()
        failures = []

        def run(*_):
            try:
                function()
            except Exception as error:  # handed to the caller
                failures.append(error)
            done.set()
            return False

        source = GLib.idle_source_new()
        source.set_callback(run)
        source.attach(self.context)
        done.wait()
        if failures:
            raise failures[0]


class StandInDaemon:
    """An independent daemon on GDBus: records what it is asked and answers as it is told."""

    INTROSPECTION = f"""<node><interface name="{DAEMON_INTERFACE}">
        <method name="updateCfg"><arg type="ay" direction="in"/><arg type="b" direction="out"/></method>
        <method name="getStatus"><arg type="b" direction="out"/><arg type="b" direction="out"/>
            <arg type="s" direction="out"/></method>
        <method name="getVersion"><arg type="s" direction="out"/></method>
        <method name="stopGrabbing"><arg type="b" direction="out"/></method>
        <method name="startGrabbing"><arg type="b" direction="out"/></method>
        <method name="subscribeKeyViewer"><arg type="b" direction="out"/></method>
        <method name="unsubscribeKeyViewer"><arg type="b" direction="out"/></method>
        <method name="getSeenDevices"><arg type="ay" direction="out"/></method>
        </interface></node>"""

    def __init__(self, address):
        self.address = address
        self.configs = []
        self.calls = []
        self.connections = []
        self.accepts = True
        self.version = "1"  # None: no answer, ever
        self.error = None
        self.status = (True, True, "RUNNING")
        self.devices = b"[]"
        self.loop = LoopThread()
        self.loop.call(self._listen)

    def _listen(self):
        path = self.address.removeprefix("unix:path=")
        if os.path.exists(path):
            os.unlink(path)
        self.server = Gio.DBusServer.new_sync(
            self.address, Gio.DBusServerFlags.NONE, Gio.dbus_generate_guid(), None, None)
        self.server.connect("new-connection", self._connected)
        self.server.start()

    def _connected(self, _server, connection):
        interface = Gio.DBusNodeInfo.new_for_xml(self.INTROSPECTION).interfaces[0]
        connection.register_object(DAEMON_PATH, interface, self._called, None, None)
        self.connections.append(connection)
        return True

    def _called(self, _connection, _sender, _path, _interface, method, arguments, invocation):
        self.calls.append(method)
        if self.error:
            invocation.return_dbus_error("app.tamsel.Error", self.error)
        elif method == "updateCfg":
            self.configs.append(arguments.get_child_value(0).get_data_as_bytes().get_data())
            invocation.return_value(GLib.Variant("(b)", (self.accepts,)))
        elif method == "getStatus":
            invocation.return_value(GLib.Variant("(bbs)", self.status))
        elif method == "getVersion":
            if self.version is not None:
                invocation.return_value(GLib.Variant("(s)", (self.version,)))
        elif method == "getSeenDevices":
            # Not by "(ay)", which makes a variant of each byte.
            array = GLib.Variant.new_from_bytes(GLib.VariantType("ay"), GLib.Bytes(self.devices),
                                                True)
            invocation.return_value(GLib.Variant.new_tuple(array))
        else:
            invocation.return_value(GLib.Variant("(b)", (True,)))

    def die(self):
        self.loop.call(self._close)

    def _close(self):
        self.server.stop()
        for connection in self.connections:
            if not connection.is_closed():
                connection.close_sync(None)
        self.connections.clear()

    def come_back(self):
        self.loop.call(self._listen)

    def tell_key(self, *event):
        """Reports a key event: usage, whether it went down, action, output usage, from Apple."""
        self.connections[-1].call(
            None, APP_PATH, APP_INTERFACE, "onKeyEvent", GLib.Variant("(ubyub)", event),
            None, Gio.DBusCallFlags.NONE, 5000, None, None)

    def ask_app(self, method, arguments=None, reply=None):
        return self.connections[-1].call_sync(
            None, APP_PATH, APP_INTERFACE, method, arguments, reply and GLib.VariantType(reply),
            Gio.DBusCallFlags.NONE, 5000, None).unpack()


class SandboxTest(unittest.TestCase):
    def setUp(self):
        self.sandbox = Sandbox()
        self.addCleanup(self.sandbox.close)

    def stand_in(self):
        self.daemon = StandInDaemon(self.sandbox.address)
        self.addCleanup(self.daemon.die)
        return self.daemon

    def put_opener(self, script=""):
        """An opener of our own stands first in the PATH; gives what it was asked to open so far."""
        path, opener = (os.path.join(self.sandbox.folder, name) for name in ("opened", "xdg-open"))
        with open(opener, "w", encoding="utf-8") as file:
            file.write(f'#!/bin/sh\necho "$1" >> {path}\n{script}')
        os.chmod(opener, 0o755)
        self.sandbox.env["PATH"] = self.sandbox.folder + ":" + self.sandbox.env["PATH"]
        return lambda: lines(path)
