"""Holds the running daemon against its wire, as a client that shares no code with it.

Usage: daemon_contract.py BUILD_NUMBER [unittest options]
"""

import contextlib
import glob
import json
import os
import plistlib
import random
import re
import signal
import socket
import stat
import subprocess
import sys
import threading
import time
import unittest

import harness
from guardian import run_guarded
from harness import (APP_INTERFACE, APP_PATH, BUILD, DAEMON_INTERFACE, DAEMON_PATH, NOBODY,
                     PATIENCE, Gio, GLib, wait_until)

BUILD_NUMBER = sys.argv[1]
DAEMON = os.path.join(BUILD, "bin", "tamsel-daemon")
APP_XML = f"""<node><interface name="{APP_INTERFACE}"><method name="onKeyEvent">
<arg type="u" direction="in"/><arg type="b" direction="in"/><arg type="y" direction="in"/>
<arg type="u" direction="in"/><arg type="b" direction="in"/></method></interface></node>"""
LONGEST = 20 * PATIENCE  # seconds that an answer may take


def device(vendor=2, product="Keys", mouse=False):
    return dict(vendorID=vendor, productID=7, product=product, manufacturer="Maker",
                transport="USB", isSeized=False, isAllowed=False, isMouse=mouse)


def key(code, *modifiers):
    return dict(keyCode=code, modifiers=list(modifiers))


def cfg(mappings=((57, 224),), **more):
    root = dict(version="1.0", shortcuts=[], excludedKeyboards=[], mouseDevices=[],
                grabScope="all", allowedDevices=[],
                mappings=[{"id": "x", "enabled": True, "from": key(a), "to": key(b)}
                          for a, b in mappings])
    return plistlib.dumps({**root, **more}, fmt=plistlib.FMT_BINARY)


class Client:
    """One peer-to-peer connection, with the application's callback object on it."""

    def __init__(self, address):
        self.events = []
        self.connection = Gio.DBusConnection.new_for_address_sync(
            address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT, None, None)
        self.connection.set_exit_on_close(False)
        node = Gio.DBusNodeInfo.new_for_xml(APP_XML)
        self.connection.register_object(APP_PATH, node.interfaces[0], self._called, None, None)

    def _called(self, _connection, _sender, _path, _interface, method, arguments, invocation):
        flags = invocation.get_message().get_flags()
        assert flags & Gio.DBusMessageFlags.NO_REPLY_EXPECTED
        assert arguments.get_type_string() == "(ubyub)", arguments.get_type_string()
        assert method == "onKeyEvent"
        self.events.append(arguments.unpack())

    def call(self, method, arguments=None, path=DAEMON_PATH, interface=DAEMON_INTERFACE):
        reply = self.connection.call_sync(None, path, interface, method, arguments, None,
                                          Gio.DBusCallFlags.NONE, int(LONGEST * 1000), None)
        self.signature = reply.get_type_string()
        return reply.unpack()

    def flag(self, method):
        answer = self.call(method)
        assert self.signature == "(b)", self.signature
        return answer[0]

    def update(self, encoded):
        array = GLib.Variant.new_from_bytes(GLib.VariantType("ay"), GLib.Bytes(encoded), True)
        return self.call("updateCfg", GLib.Variant.new_tuple(array))[0]

    def status(self):
        answer = self.call("getStatus")
        assert self.signature == "(bbs)", self.signature
        return answer

    def devices(self):
        return json.loads(bytes(self.call("getSeenDevices")[0]))

    def close(self):
        self.connection.close_sync(None)


def raw_client(path, *messages, patient=False):
    """A socket on which the end of the authentication and the messages went out in one piece,
    after the daemon's consent or, impatiently, together with the whole authentication."""
    peer = socket.socket(socket.AF_UNIX)
    peer.settimeout(LONGEST)
    peer.connect(path)
    identity = str(os.getuid()).encode().hex().encode()
    blobs = [m.to_blob(Gio.DBusCapabilityFlags.NONE) for m in messages]
    opening, rest = b"\0AUTH EXTERNAL " + identity + b"\r\n", b"BEGIN\r\n" + b"".join(blobs)
    if patient:
        peer.sendall(opening)
        assert peer.recv(1000).startswith(b"OK ")
        opening = b""
    peer.sendall(opening + rest)
    return peer


def message(method, serial=1):
    made = Gio.DBusMessage.new_method_call(None, DAEMON_PATH, DAEMON_INTERFACE, method)
    made.set_serial(serial)
    return made


class DaemonTest(harness.SandboxTest):
    devices = [device()]

    def setUp(self):
        super().setUp()
        self.root = self.sandbox.folder
        self.simulation = os.path.join(self.root, "sim")
        os.mkdir(self.simulation)
        with open(os.path.join(self.simulation, "devices.json"), "w") as file:
            json.dump(self.devices, file)
        self.socket = os.path.join(self.root, "run", "deep", "daemon.sock")
        self.address = "unix:path=" + self.socket
        self.process = None
        self.addCleanup(self.finish)

    def command(self, *options):
        return [DAEMON, "--state-dir", os.path.join(self.root, "state"), *options]

    def start(self, simulate=True, address=None, around=()):
        options = ["--simulate", self.simulation] if simulate else []
        self.process = self.sandbox.start(*around, *self.command(*options),
                                          TAMSEL_DAEMON_ADDRESS=address or self.address)
        return wait_until(lambda: self.connect(address), "the daemon's socket")

    def connect(self, address=None):
        self.assertIsNone(self.process.poll(), "the daemon has ended")
        with contextlib.suppress(GLib.Error):
            client = Client(address or self.address)
            self.addCleanup(lambda: client.connection.is_closed() or client.close())
            return client

    def kill(self):
        self.process.kill()
        self.process.wait()

    def finish(self):
        """Whatever a test did to it, a daemon that still runs ends cleanly when it is told to."""
        if self.process and self.process.returncode is None:
            self.terminate()

    def terminate(self, how=signal.SIGTERM):
        self.process.send_signal(how)
        self.assertEqual(self.process.wait(LONGEST), 0)

    def send(self, *lines):
        with open(os.path.join(self.simulation, "in"), "w") as fifo:
            fifo.write("".join(line + "\n" for line in lines))

    def output(self):
        with open(os.path.join(self.simulation, "out")) as file:
            return file.read().splitlines()

    def expect_output(self, *lines):
        wait_until(lambda: self.output() == list(lines), f"output {lines}")

    def standard_error(self):
        with open(self.process.log) as file:
            return file.read()

    def refused(self, *arguments, address=None):
        return harness.refused(arguments or self.command(), {
            **self.sandbox.env, "TAMSEL_DAEMON_ADDRESS": address or self.address})


class Interface(DaemonTest):
    devices = [device(1452), device(2), device(2, mouse=True)]

    def test_everyday_life(self):
        client = self.start()
        self.assertEqual(stat.S_IMODE(os.stat(self.socket).st_mode), 0o600)
        self.assertEqual(stat.S_IMODE(os.stat(os.path.dirname(self.socket)).st_mode), 0o700)
        self.assertEqual(client.call("getVersion"), (BUILD_NUMBER,))
        self.assertEqual(client.status(), (False, True, "DRIVER_CONNECTED_NOT_GRABBING"))
        self.assertIs(client.flag("startGrabbing"), False)
        self.assertIs(client.update(cfg(excludedKeyboards=[
            dict(vendorID=2, productID=7, product="Keys")])), True)
        self.assertEqual(client.status(), (True, True, "RUNNING"))
        expected = [{**d, "isSeized": seized, "isAllowed": seized}
                    for d, seized in zip(self.devices, (True, False, False))]
        self.assertEqual(client.devices(), expected)
        self.assertEqual(client.signature, "(ay)")

        self.send("0 0 57 down", "10 1 4 down", "20", "30 2 4097 down", "40 0 57 up")
        self.send("50 0 57 down")
        self.expect_output("224 down", "224 up", "224 down")
        self.assertIs(client.flag("stopGrabbing"), True)
        self.expect_output("224 down", "224 up", "224 down", "224 up")
        self.assertEqual(client.status(), (False, True, "USER_STOPPED"))
        self.assertFalse(any(d["isSeized"] for d in client.devices()))
        self.assertIs(client.flag("startGrabbing"), True)
        self.assertEqual(client.status(), (True, True, "RUNNING"))

        self.send("60 0 57 up", "60 0 5 down")
        wait_until(lambda: self.output()[-1] == "5 down", "the key")
        self.terminate()
        self.assertEqual(self.output()[-1], "5 up")
        self.assertFalse(os.path.exists(self.socket))

    def test_bad_configurations_keep_the_last_good_one(self):
        client = self.start()
        good = cfg()
        self.assertTrue(client.update(good))
        bad = [b"", good[:-1], cfg(grabScope="secret word"), b"x" * (16 * 1024 * 1024 + 1)]
        for encoded in bad:
            with self.subTest(start=encoded[:60], size=len(encoded)):
                self.assertIs(client.update(encoded), False)
        self.assertEqual(client.status(), (True, True, "RUNNING"))
        self.send("0 0 57 down")
        self.expect_output("224 down")
        self.assertNotIn("secret", self.standard_error())

    def test_key_viewers(self):
        viewer = self.start()
        other, bystander = self.connect(), self.connect()
        viewer.update(cfg([(57, 224), (4, 127)], excludedKeyboards=[]))
        self.assertIs(viewer.flag("subscribeKeyViewer"), True)
        self.assertIs(other.flag("subscribeKeyViewer"), True)
        self.send("0 0 57 down", "0 1 57 up", "1 1 4 down", "2 0 6 down", "3 2 4097 down")
        seen = [(57, True, 2, 224, True), (4, True, 3, 127, False), (6, True, 0, 6, True)]
        wait_until(lambda: viewer.events == seen and other.events == seen, "the key events")

        self.assertIs(other.flag("unsubscribeKeyViewer"), True)
        viewer.close()
        self.send("4 0 6 up", "5 0 57 up")
        self.expect_output("224 down", "127 down", "6 down", "6 up", "224 up")
        self.assertTrue(bystander.status()[0])
        self.assertEqual(other.status(), (True, True, "RUNNING"))
        self.assertEqual((other.events, bystander.events), (seen, []))

    def test_a_viewer_that_reads_gets_every_key_of_a_burst(self):
        viewer = self.start()
        viewer.update(cfg())
        viewer.flag("subscribeKeyViewer")
        self.send(*["0 0 4 down", "0 0 4 up"] * 1500)
        wait_until(lambda: len(viewer.events) == 3000, "3000 key events")

    def test_busctl_and_gdbus(self):
        client = self.start()
        target = ["app.tamsel.daemon", DAEMON_PATH]
        for command, expected in (
                (["busctl", f"--address={self.address}", "call", *target, DAEMON_INTERFACE,
                  "getStatus"],
                 'bbs false true "DRIVER_CONNECTED_NOT_GRABBING"'),
                (["gdbus", "call", "--address", self.address, "--dest", target[0],
                  "--object-path", DAEMON_PATH, "--method", f"{DAEMON_INTERFACE}.getStatus"],
                 "(false, true, 'DRIVER_CONNECTED_NOT_GRABBING')")):
            with self.subTest(command=command[0]):
                answer = subprocess.run(command, capture_output=True, text=True, timeout=LONGEST)
                self.assertEqual(answer.stdout.strip(), expected, answer.stderr)
        bus = dict(path="/org/freedesktop/DBus", interface="org.freedesktop.DBus")
        name = GLib.Variant("(s)", ("app.tamsel.daemon",))
        self.assertEqual(client.call("NameHasOwner", name, **bus), (True,))
        self.assertEqual(client.call("GetNameOwner", name, **bus), (":1.0",))
        self.assertRegex(client.call("GetId", **bus)[0], r"\A[0-9a-f]{32}\Z")
        with self.assertRaisesRegex(GLib.Error, "NameHasNoOwner"):
            client.call("GetNameOwner", GLib.Variant("(s)", ("no.such.name",)), **bus)
        xml = client.call("Introspect", interface="org.freedesktop.DBus.Introspectable")[0]
        described = xml.split(DAEMON_INTERFACE)[1].split("</inter")[0]
        self.assertEqual(described.count("<method"), 8)

    def test_wrong_calls_are_errors_and_the_connection_stays(self):
        client = self.start()
        wrong = [("updateCfg", GLib.Variant("(s)", ("x",))), ("getStatus", GLib.Variant("(u)", (1,))),
                 ("noSuchMethod", None)]
        for method, arguments in wrong:
            with self.subTest(method=method), self.assertRaises(GLib.Error):
                client.call(method, arguments)
        self.assertEqual(client.status()[2], "DRIVER_CONNECTED_NOT_GRABBING")


class Simulation(DaemonTest):
    def test_bad_lines_are_reported_by_number_and_skipped(self):
        client = self.start()
        client.update(cfg())
        self.send("100 0 4 down", "99 0 5 down", "nonsense 73", "100 0 57 sideways", "100 1 57 up",
                  "9" * 5000, "200", "150 0 6 down", "200 0 57 down")
        self.expect_output("4 down", "224 down")
        wait_until(lambda: re.findall(r"line (\d+)", self.standard_error()) ==
                   ["2", "3", "4", "5", "6", "8"], "six reports")
        for word in ("57", "73", "sideways", "999"):
            self.assertNotIn(word, re.sub(r"\[[\d:]+\]", "", self.standard_error()))

    def test_an_idle_daemon_sleeps_though_its_writers_have_gone(self):
        self.start().update(cfg())
        self.send("0 0 4 down")
        self.expect_output("4 down")

        before = harness.ticks(self.process.pid)
        time.sleep(0.5)
        self.assertLess(harness.ticks(self.process.pid) - before, 10)

    def test_environments_that_cannot_work(self):
        path = os.path.join(self.simulation, "devices.json")
        simulate = self.command("--simulate", self.simulation)
        for content in (None, "", "{}", "[{}]", '[{"vendorID": "x"}]', "[" * 100000):
            with self.subTest(content=content and content[:20]):
                if content is None:
                    os.remove(path)
                else:
                    with open(path, "w") as file:
                        file.write(content)
                self.assertIn(path, self.refused(*simulate))
        with open(path, "w") as file:
            file.write("[]")
        fifo = os.path.join(self.simulation, "in")
        with contextlib.suppress(FileNotFoundError):
            os.remove(fifo)
        with open(fifo, "w") as file:
            file.write("kept")
        self.assertIn("not a FIFO", self.refused(*simulate))
        with open(fifo) as file:
            self.assertEqual(file.read(), "kept")
        for options in (["--simulate"], ["--simulate", ""], ["--frobnicate"], ["stray"]):
            with self.subTest(options=options):
                self.refused(DAEMON, *options)


class Socket(DaemonTest):
    def test_on_the_machine_itself(self):
        try:
            os.close(os.open("/dev/uinput", os.O_RDWR | os.O_NONBLOCK))
            words = {"DRIVER_CONNECTED_NOT_GRABBING", "TCC_DENIED"}
        except OSError:
            words = {"DRIVER_DISCONNECTED", "TCC_DENIED"}
        nodes = glob.glob("/dev/input/event*")
        if all(os.access(node, os.R_OK) for node in nodes):
            words.discard("TCC_DENIED")
        client = self.start(simulate=False)
        for order in (None, "startGrabbing"):
            if order:
                self.assertTrue(client.update(cfg()))
                self.assertIs(client.flag(order), False)
            grabbing, connected, word = client.status()
            self.assertIn(word, words)
            self.assertEqual((grabbing, connected),
                             (False, "DRIVER_CONNECTED_NOT_GRABBING" in words))

    def test_a_stop_outlives_the_daemon(self):
        client = self.start()
        client.update(cfg())
        client.flag("stopGrabbing")
        self.terminate(signal.SIGINT)
        client = self.start()
        self.assertTrue(client.update(cfg()))
        self.assertEqual(client.status(), (False, True, "USER_STOPPED"))
        self.assertIs(client.flag("startGrabbing"), True)
        self.kill()
        client = self.start()
        client.update(cfg())
        self.assertEqual(client.status(), (True, True, "RUNNING"))

    def test_a_killed_daemons_socket_is_taken_over(self):
        for _ in range(5):
            self.start()
            self.kill()
            self.assertTrue(os.path.exists(self.socket))
        self.assertTrue(self.start().status()[1])

    def test_a_socket_of_systemds_is_used_and_stays(self):
        os.makedirs(os.path.dirname(self.socket))
        client = self.start(around=("/usr/bin/systemd-socket-activate", "-l", self.socket, "-E",
                                    "TAMSEL_DAEMON_ADDRESS=" + self.address))
        self.assertTrue(client.status()[1])
        self.terminate()
        self.assertEqual(os.listdir(os.path.dirname(self.socket)), ["daemon.sock"])

    def test_a_second_daemon_is_refused(self):
        client = self.start()
        self.assertIn(self.socket, self.refused())
        os.remove(self.socket)
        self.assertIn(self.socket, self.refused(), "the lock decides, not the socket")
        self.assertTrue(client.status()[1])

    def test_a_strangers_place_is_left_alone(self):
        os.makedirs(os.path.dirname(self.socket))
        with open(self.socket, "w") as file:
            file.write("kept")
        self.assertIn("not a socket", self.refused())
        with open(self.socket) as file:
            self.assertEqual(file.read(), "kept")
        os.remove(self.socket)
        with socket.socket(socket.AF_UNIX) as stranger:
            stranger.bind(self.socket)
            stranger.listen()
            self.assertIn("listening", self.refused())
        if os.geteuid() == 0:
            os.chown(os.path.dirname(self.socket), NOBODY, NOBODY)
            self.assertIn("another user", self.refused())

    def test_addresses_it_cannot_listen_at(self):
        for address in ("tcp:host=localhost,port=1", "unix:path=", "unix:path=relative.sock",
                        "nonsense", "unix:path=/" + "x" * 200, "unix:path=/%00"):
            with self.subTest(address=address):
                self.refused(address=address)

    def test_first_calls_that_come_with_the_authentication(self):
        self.start()
        calls = [message("getStatus", i) for i in range(1, 6)]
        for attempt in range(200):
            # A single call fits beside the authentication's end in one read; five do not.
            count = (1, 1, 5)[attempt % 3]
            with raw_client(self.socket, *calls[:count], patient=attempt % 2 == 0) as peer:
                got = b""
                while got.count(b"DRIVER_CONNECTED") < count:
                    part = peer.recv(65536)
                    self.assertTrue(part, "the daemon hung up")
                    got += part

    def test_garbage_ends_its_own_connection_only(self):
        client = self.start()
        client.update(cfg())
        chance = random.Random(1)
        blob = message("getStatus").to_blob(Gio.DBusCapabilityFlags.NONE)
        for size in (1, 10, 1000, 100000):
            broken = bytearray(blob)
            broken[chance.randrange(len(broken))] ^= 0xFF
            for garbage in (chance.randbytes(size), b"\0" + chance.randbytes(size),
                            b"\0AUTH EXTERNAL 39393939\r\n", bytes(broken)):
                with socket.socket(socket.AF_UNIX) as peer, contextlib.suppress(OSError):
                    peer.connect(self.socket)
                    peer.sendall(garbage)
                with raw_client(self.socket) as peer, contextlib.suppress(OSError):
                    peer.sendall(garbage)
        self.send("0 0 57 down")
        self.expect_output("224 down")
        self.assertEqual(client.status(), (True, True, "RUNNING"))

    def test_a_viewer_that_never_reads_is_dropped_and_delays_no_key(self):
        client = self.start()
        client.update(cfg())
        with raw_client(self.socket, message("subscribeKeyViewer")) as silent:
            self.assertTrue(silent.recv(1), "the subscription's reply")
            events = 40000
            self.send(*["0 0 4 down", "0 0 4 up"] * (events // 2))
            wait_until(lambda: len(self.output()) == events, "all the keys", 20)
            while silent.recv(1 << 20):
                pass  # what was on its way; then the end of the connection
        self.assertEqual(client.status(), (True, True, "RUNNING"))

    def test_one_user_has_a_bounded_number_of_connections(self):
        client = self.start()
        with contextlib.ExitStack() as stack:
            crowd = [stack.enter_context(raw_client(self.socket, message("getStatus")))
                     for _ in range(40)]
            answered = 0
            for peer in crowd:
                with contextlib.suppress(ConnectionResetError):
                    answered += bool(peer.recv(1))
        self.assertEqual(answered, 31)
        self.assertTrue(client.status()[1])
        wait_until(self.connect, "room for a new client")

    def test_a_caller_that_never_reads_is_dropped(self):
        client = self.start()
        blob = message("getSeenDevices").to_blob(Gio.DBusCapabilityFlags.NONE) * 1000
        with raw_client(self.socket) as silent, self.assertRaises(OSError):
            for _ in range(1000):
                silent.sendall(blob)
        self.assertTrue(client.status()[1])

    @unittest.skipUnless(os.geteuid() == 0, "needs a second user")
    def test_another_user_is_answered_with_access_denied(self):
        address = f"unix:abstract=tamsel-contract-{os.getpid()}"
        client = self.start(address=address)
        script = f"""if True:
            from gi.repository import Gio
            peer = Gio.DBusConnection.new_for_address_sync(
                {address!r}, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT, None, None)
            for method in ("getStatus", "subscribeKeyViewer", "stopGrabbing", "getStatus"):
                try:
                    peer.call_sync(None, {DAEMON_PATH!r}, {DAEMON_INTERFACE!r}, method,
                                   None, None, 0, 20000)
                except Exception as error:
                    print(Gio.DBusError.get_remote_error(error))
            """
        stranger = subprocess.run([sys.executable, "-c", script], user=NOBODY, cwd="/",
                                  capture_output=True, text=True, timeout=LONGEST)
        denied = "org.freedesktop.DBus.Error.AccessDenied"
        self.assertEqual(stranger.stdout.split(), [denied] * 4, stranger.stderr)
        self.assertEqual(client.status()[2], "DRIVER_CONNECTED_NOT_GRABBING")


if __name__ == "__main__":
    run_guarded()
    # GDBus delivers calls on the default context.
    threading.Thread(target=GLib.MainLoop().run, daemon=True).start()
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
