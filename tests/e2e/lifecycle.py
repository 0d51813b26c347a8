"""The application's life: one instance, hiding in the tray and
coming back, quitting, and how little it does meanwhile."""

import os
import re
import signal
import subprocess
import time

from gi.repository import Gio, GLib

import desktop
import harness
from desktop import Window, WindowTest, focus_window, type_keys, x11_windows
from harness import log_lines, wait_for_line, wait_until

CONFIGURED = "[AppDelegate] Daemon 設置完成，版本: 1"
ENDED = "[AppDelegate] App 退出，XPC 已斷開"
WATCHER = "org.kde.StatusNotifierWatcher"
ITEM = "org.kde.StatusNotifierItem"


class Bus(harness.LoopThread):
    """A connection to the session bus with names and signals of its own."""

    def __init__(self):
        super().__init__()
        self.call(self._connect)

    def _connect(self):
        self.connection = Gio.DBusConnection.new_for_address_sync(
            os.environ["DBUS_SESSION_BUS_ADDRESS"],
            Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT |
            Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)

    def ask(self, name, path, interface, method, arguments=None):
        return self.connection.call_sync(name, path, interface, method, arguments, None,
                                         Gio.DBusCallFlags.NONE, 5000, None).unpack()

    def bus(self, method, *arguments):
        kinds = {"RequestName": "(su)", "ReleaseName": "(s)"}
        return self.ask("org.freedesktop.DBus", "/", "org.freedesktop.DBus", method,
                        GLib.Variant(kinds[method], arguments))

    def application(self, method, *arguments):
        kinds = {"Activate": "(a{sv})", "Open": "(asa{sv})", "ActivateAction": "(sava{sv})"}
        return self.ask("app.tamsel", "/app/tamsel", "org.freedesktop.Application", method,
                        GLib.Variant(kinds[method], (*arguments, {})))

    def close(self):
        self.connection.close_sync(None)


class Panel(Bus):
    """A panel that shows status notifier items."""

    INTROSPECTION = f"""<node><interface name="{WATCHER}">
        <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
        <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
        </interface></node>"""

    def __init__(self):
        super().__init__()
        self.items = []
        self.call(self._export)
        self.come()

    def _export(self):
        interface = Gio.DBusNodeInfo.new_for_xml(self.INTROSPECTION).interfaces[0]
        self.connection.register_object("/StatusNotifierWatcher", interface, self._called,
                                        lambda *_: GLib.Variant("b", True), None)

    def _called(self, _connection, _sender, _path, _interface, _method, arguments, invocation):
        self.items.append(arguments.unpack()[0])
        invocation.return_value(None)

    def come(self):
        self.bus("RequestName", WATCHER, 4)

    def go(self):
        self.items.clear()
        self.bus("ReleaseName", WATCHER)

    def item(self, count=1):
        wait_until(lambda: len(self.items) >= count, "the item")
        return self.items[-1]

    def property(self, name):
        return self.ask(self.item(), "/StatusNotifierItem", "org.freedesktop.DBus.Properties",
                        "Get", GLib.Variant("(ss)", (ITEM, name)))[0]

    def click(self):
        self.ask(self.items[-1], "/StatusNotifierItem", ITEM, "Activate",
                 GLib.Variant("(ii)", (0, 0)))

    def has_item(self):
        return any(self.ask("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "NameHasOwner",
                            GLib.Variant("(s)", (item,)))[0] for item in self.items)


def switches(process):
    """How often the process has gone to sleep of itself."""
    total = 0
    for thread in os.listdir(f"/proc/{process.pid}/task"):
        with open(f"/proc/{process.pid}/task/{thread}/status", encoding="utf-8") as status:
            total += int(re.search(r"^voluntary_ctxt_switches:\s*(\d+)", status.read(), re.M)[1])
    return total


class Lifecycle(WindowTest):
    def start_configured(self, *arguments, **env):
        daemon = self.stand_in()
        app = desktop.start_app(self.sandbox, *arguments, **env)
        wait_for_line(app, CONFIGURED)
        return daemon, app

    def run_again(self, *arguments):
        """A second start; its standard error."""
        app = desktop.start_app(self.sandbox, *arguments)
        self.assertEqual(app.wait(10 * harness.PATIENCE), 0, log_lines(app))
        self.assertEqual(log_lines(app), [])

    def hidden(self):
        wait_until(lambda: not x11_windows(), "the window to go")

    def shown(self):
        wait_until(x11_windows, "the window")

    def end(self, app):
        app.send_signal(signal.SIGTERM)
        self.assertEqual(app.wait(10 * harness.PATIENCE), 0)
        self.assertEqual(log_lines(app)[-1], ENDED)
        self.assertEqual(harness.other_output(app), [], "the toolkit printed warnings")

    def test_a_second_start_hands_over_to_the_first(self):
        _, app = self.start_configured("tamsel://mapping")
        window = Window(app)
        window.find("push button", "Add Mapping")
        self.run_again("tamsel://devices")
        window.find("heading", "Devices")
        self.run_again("TAMSEL://mapping", "https://example.com/")
        self.run_again("tamsel://about", "tamsel://nonsense")
        window.find("check box", "Disable Auto Check")
        # Hidden (there is no tray), it comes back with what it showed.
        focus_window()
        type_keys("ctrl+q")
        self.run_again()
        window.find("check box", "Disable Auto Check")
        self.assertIsNone(app.poll())

        began = time.monotonic()
        app.send_signal(signal.SIGSTOP)
        try:
            other = desktop.start_app(self.sandbox)
            self.assertEqual(other.wait(10 * harness.PATIENCE), 1)
        finally:
            app.send_signal(signal.SIGCONT)
        self.assertGreater(time.monotonic() - began, 1.9)
        lines = log_lines(other)
        self.assertEqual(len(lines), 1, lines)
        self.assertIn("tamsel: ", lines[0])
        self.end(app)
        # The name is free again; also after a kill.
        app = desktop.start_app(self.sandbox)
        wait_for_line(app, CONFIGURED)
        app.kill()
        app.wait()
        wait_for_line(desktop.start_app(self.sandbox), CONFIGURED)

    def test_of_many_starts_at_once_one_stays(self):
        self.stand_in()
        apps = [desktop.start_app(self.sandbox, "tamsel://combo") for _ in range(6)]
        wait_until(lambda: sum(app.poll() is None for app in apps) == 1, "the others to end", 20)
        first, = (app for app in apps if app.poll() is None)
        self.assertEqual({app.returncode for app in apps if app is not first}, {0})
        Window(first).find("heading", "Combo")
        self.end(first)

    def test_it_lives_in_a_panel(self):
        panel = Panel()
        self.addCleanup(panel.close)
        daemon, app = self.start_configured()
        first = panel.item()
        pixmaps = panel.property("IconPixmap")
        self.assertTrue(all(len(bytes(data)) == 4 * width * height
                            for width, height, data in pixmaps))
        self.assertIn(22, [width for width, _, _ in pixmaps])
        self.assertEqual(panel.property("ItemIsMenu"), False)
        self.assertEqual(panel.property("ToolTip"), ("", [], "Tamsel", ""))

        # Closed: hidden, alive, resting.
        self.shown()
        focus_window()
        type_keys("ctrl+w")
        self.hidden()
        wait_until(lambda: panel.items[-1] != first, "the icon made anew")
        self.assertTrue(panel.has_item())
        time.sleep(0.5)
        polls = daemon.calls.count("getStatus")
        before = switches(app)
        time.sleep(4)
        self.assertLessEqual(switches(app) - before, 2, "it wakes up while it is hidden")
        self.assertEqual(daemon.calls.count("getStatus"), polls)

        panel.click()
        self.shown()
        wait_until(lambda: daemon.calls.count("getStatus") > polls, "the dashboard's question")
        # Another panel takes the place of the first; without any the window keeps its place.
        panel.go()
        panel.come()
        panel.item()
        # The switch takes the icon away at once, and brings it back.
        Window(app).press("check box", "Show in Menu Bar")
        wait_until(lambda: not panel.has_item(), "the icon to go")
        Window(app).press("check box", "Show in Menu Bar")
        wait_until(panel.has_item, "the icon")
        for page in "2345":
            focus_window()
            type_keys(page)
        type_keys("super+w")
        self.hidden()
        panel.click()
        self.shown()
        self.end(app)

    def test_it_lives_in_a_tray_of_the_x_server(self):
        self.sandbox.start("/usr/bin/openbox")
        wait_until(lambda: "window id" in subprocess.run(
            ["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"], capture_output=True, text=True,
            check=False).stdout, "the window manager")
        _, app = self.start_configured()
        window, = (w for w in wait_until(x11_windows, "the window"))

        def state():
            return subprocess.run(["xprop", "-id", window, "WM_STATE"], capture_output=True,
                                  text=True, check=True).stdout

        # Nowhere to hide: in the task bar.
        subprocess.run(["xdotool", "windowactivate", "--sync", window], check=True)
        type_keys("ctrl+q")
        wait_until(lambda: "Iconic" in state(), "the window to be minimised")
        # A tray that comes later is taken.
        tray = self.sandbox.start("/usr/bin/trayer", "--height", "24")
        wait_until(lambda: "Iconic" not in state(), "the window to go")

        def point_at_icon(*then):
            # It is made anew soon after the window has gone.
            icon = wait_until(lambda: x11_windows("^Tamsel tray icon$"), "the icon")[0]
            return subprocess.run(["xdotool", "mousemove", "--window", icon, "8", "8", *then],
                                  stderr=subprocess.DEVNULL, check=False).returncode == 0
        wait_until(lambda: point_at_icon() and x11_windows("^Tamsel tool tip$"), "its words")
        subprocess.run(["xdotool", "mousemove", "600", "400"], check=True)
        wait_until(lambda: not x11_windows("^Tamsel tool tip$"), "the end of the words")
        self.assertTrue(point_at_icon("click", "1"))
        wait_until(lambda: "Normal" in state(), "the window")
        type_keys("alt+F4")  # as its close button
        self.hidden()
        # The tray goes: back to the task bar, from which the user may call it.
        tray.kill()
        wait_until(lambda: "Iconic" in state(), "the window in the task bar")
        subprocess.run(["xdotool", "windowactivate", window], check=True)
        wait_until(lambda: "Normal" in state(), "the window")
        self.end(app)

    def test_it_lives_on_wayland(self):
        self.stand_in()
        app = self.sandbox.start("tamsel", **self.start_weston())

        def share():
            """How much of the screen has the window's colour."""
            return float(subprocess.run(
                "import -silent -window root png:- | "
                "convert - -fill black +opaque '#F5F3EF' -format '%[fx:mean]' info:",
                shell=True, capture_output=True, text=True, check=True).stdout)
        wait_until(lambda: share() > 0.1, "the window")
        wait_for_line(app, CONFIGURED)
        bus = Bus()
        self.addCleanup(bus.close)
        for call in ((lambda: bus.application("Open", ["tamsel://devices"])),
                     (lambda: bus.application("Activate"))):
            bus.application("ActivateAction", "quit", [])  # there is no tray
            wait_until(lambda: share() < 0.01, "the window to go")
            call()
            wait_until(lambda: share() > 0.1, "the window")
        self.end(app)

    def test_an_ordinary_end_hides_and_a_power_off_ends(self):
        bus = Bus()
        self.addCleanup(bus.close)
        bus.bus("RequestName", "org.freedesktop.login1", 4)
        address = os.environ["DBUS_SESSION_BUS_ADDRESS"]
        _, app = self.start_configured(DBUS_SYSTEM_BUS_ADDRESS=address)
        bus.application("ActivateAction", "quit", [])
        time.sleep(0.5)
        self.assertIsNone(app.poll())
        bus.connection.emit_signal(None, "/org/freedesktop/login1",
                                   "org.freedesktop.login1.Manager", "PrepareForShutdown",
                                   GLib.Variant("(b)", (True,)))

        def ends():
            # The announcement comes over another connection, so it may come after the first wish.
            if app.poll() is None:
                try:
                    bus.application("ActivateAction", "quit", [])
                except GLib.Error:
                    pass  # it is about to go
            return app.poll() is not None
        wait_until(ends, "its end")
        self.assertEqual(app.returncode, 0)
        self.assertEqual(log_lines(app)[-1], ENDED)

    def test_the_end_of_the_session_ends_it(self):
        manager = subprocess.Popen([os.path.join(harness.BUILD, "tests", "session_manager")],
                                   stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.addCleanup(manager.communicate)
        _, app = self.start_configured(SESSION_MANAGER=manager.stdout.readline().strip())
        Window(app)
        manager.stdin.write("end\n")
        manager.stdin.flush()
        self.assertEqual(app.wait(10 * harness.PATIENCE), 0)
        self.assertEqual(log_lines(app)[-1], ENDED)


if __name__ == "__main__":
    desktop.run_tests()
