"""A private desktop (X server, session bus, accessibility bus), and a window driven through it."""

import os
import subprocess
import time
import unittest

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

from guardian import run_guarded
from harness import SENT, SandboxTest, other_output, wait_for_line, wait_until


def run_in_desktop():
    """Starts this test program again inside a desktop of its own, unless it is in one already."""
    # xvfb-run picks a free display; the bus ends with the test.
    run_guarded("env", "GTK_MODULES=", "xvfb-run", "-a", "-s", "-screen 0 1280x900x24",
                "dbus-run-session", "--", "sh", "-c",
                '/usr/libexec/at-spi-bus-launcher --launch-immediately & exec "$@"', "sh")


def start_app(sandbox, *arguments, **env):
    return sandbox.start("tamsel", *arguments, **{
        "QT_QPA_PLATFORM": "xcb", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", **env})


def x11_windows(name="^Tamsel$", what="--name"):
    """The ids of the windows in sight that are called so, or are of the class."""
    return subprocess.run(["xdotool", "search", "--onlyvisible", what, name],
                          capture_output=True, text=True, check=False).stdout.split()


def _nodes(node, depth=0):
    if node is None or depth > 60:
        return
    yield node
    for index in range(node.get_child_count()):
        yield from _nodes(node.get_child_at_index(index), depth + 1)


class Window:
    """The application's window as assistive technology sees it."""

    def __init__(self, process):
        self.process = process
        self.application = wait_until(self._find_application, "the application on the bus", 15)

    def _find_application(self):
        desktop = Atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            application = desktop.get_child_at_index(index)
            if application and application.get_process_id() == self.process.pid and \
                    application.get_child_count() > 0:
                return application
        return None

    def all(self, role=None, name=None, showing=True):
        found = []
        for node in _nodes(self.application):
            node.clear_cache()
            try:
                if (role is None or node.get_role_name() == role) and \
                        (name is None or node.get_name() == name) and \
                        (not showing or node.get_state_set().contains(Atspi.StateType.SHOWING)):
                    found.append(node)
            except gi.repository.GLib.Error:
                pass  # the control went away meanwhile
        return found

    def find(self, role=None, name=None, index=0, timeout=10, showing=True):
        def found():
            nodes = self.all(role, name, showing)
            return nodes[index] if len(nodes) > index else None
        try:
            return wait_until(found, f"{role} “{name}”", timeout)
        except AssertionError as error:
            raise AssertionError(f"{error}; the window shows: {self.describe()}") from None

    def gone(self, role=None, name=None):
        wait_until(lambda: not self.all(role, name), f"{role} “{name}” to go")

    def describe(self):
        return [(node.get_role_name(), node.get_name()) for node in self.all() if node.get_name()]

    def press(self, role, name, index=0, showing=True):
        node = self.find(role, name, index, showing=showing)
        wait_until(lambda: act(node), f"{role} “{name}” to take a press")
        return node

    def has(self, state, role, name):
        return self.find(role, name).get_state_set().contains(state)

    def is_checked(self, role, name):
        return self.has(Atspi.StateType.CHECKED, role, name)

    def is_selected(self, page):
        return self.has(Atspi.StateType.SELECTED, "page tab", page)

    def focused(self, role, name):
        wait_until(lambda: self.has(Atspi.StateType.FOCUSED, role, name), f"the focus on {name}")


def act(node):
    """Runs the control's press, toggle or first action."""
    names = [Atspi.Action.get_action_name(node, i) for i in range(Atspi.Action.get_n_actions(node))]
    wanted = [name for name in ("Press", "Toggle") if name in names] or names
    return bool(wanted) and Atspi.Action.do_action(node, names.index(wanted[0]))


def focus_window(name="^Tamsel$", what="--name"):
    """Gives one of the application's windows the keyboard; there is no window manager to do it."""
    window = wait_until(lambda: x11_windows(name, what), "a visible window")[0]
    subprocess.run(["xdotool", "windowfocus", "--sync", window], check=False)
    return window


def type_keys(*keys):
    subprocess.run(["xdotool", "key", "--delay", "30", *keys], check=True)
    time.sleep(0.05)


def type_text(text):
    subprocess.run(["xdotool", "type", "--delay", "20", text], check=True)
    time.sleep(0.05)


class WindowTest(SandboxTest):
    def start(self, page=None, **env):
        self.app = start_app(self.sandbox, **env)
        wait_for_line(self.app, SENT)
        self.window = Window(self.app)
        focus_window()
        if page:
            self.window.press("page tab", page)

    def start_weston(self):
        """A Wayland compositor inside this desktop; gives what a program needs to be its client."""
        self.sandbox.start(
            "/usr/bin/weston", "--backend=x11-backend.so", "--use-pixman", "--width=1240",
            "--height=860", "--socket=wayland-test")
        socket = os.path.join(self.sandbox.env["XDG_RUNTIME_DIR"], "wayland-test")
        wait_until(lambda: os.path.exists(socket), "the compositor")
        return {"QT_QPA_PLATFORM": "wayland", "WAYLAND_DISPLAY": "wayland-test"}

    def calm(self):
        self.assertEqual(other_output(self.app), [], "the toolkit printed warnings")


def run_tests():
    run_in_desktop()
    unittest.main(verbosity=2)
