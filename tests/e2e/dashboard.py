"""The dashboard: what it shows of the daemon and what it tells it."""

import os
import signal
import time

import desktop
import harness
from desktop import WindowTest, type_keys
from harness import SENT, SimulatedDaemon, wait_for_line, wait_until

MASTER = "Tamsel"


class Dashboard(WindowTest):
    def look_again(self, *status):
        """Leaves the dashboard and comes back, which asks the daemon at once."""
        self.daemon.status = status
        type_keys("2")
        self.window.find("heading", "Mapping")
        self.daemon.calls.clear()
        type_keys("1")

    def test_each_status_has_its_line_and_card(self):
        self.stand_in()
        self.start()
        self.window.find("label", "Running normally")
        # The driver was loaded: that orders a start of its own.
        wait_until(lambda: "startGrabbing" in self.daemon.calls, "the driver's order")
        cards = {"Driver Connection", "Input Monitoring Permission", "Checking permissions...",
                 "Background service not responding"}
        for status, line, card in (
                ((False, False, "DRIVER_DISCONNECTED"), "Driver is not connected.",
                 "Driver Connection"),
                ((True, True, "strange\u202e<b>"), "strange\u202e<b>", None),
                ((False, True, "TCC_DENIED"), "Input Monitoring permission is missing.",
                 "Input Monitoring Permission")):
            with self.subTest(status=status):
                self.look_again(*status)
                self.window.find("label", line)
                shown = {node.get_name() for node in self.window.all("heading")} & cards
                self.assertEqual(shown, {card} if card else set())

        # The guide that stands in for a settings pane: what helps, to be copied.
        self.window.press("push button", "Open Input Monitoring Settings")
        self.window.find("dialog", "Input Monitoring")
        self.window.press("push button", "Look Again")
        if self.window.all("push button", "Copy the command"):
            self.window.press("push button", "Copy the command")
            wait_until(lambda: self.daemon.ask_app("requestClipboardText", None, "(bs)")[1]
                       .startswith("sudo usermod -aG "), "the command on the clipboard")
        type_keys("Escape")
        self.window.gone("dialog", "Input Monitoring")

        # The master switch, and the daemon is kept in line with it.
        self.look_again(True, True, "RUNNING")
        self.window.press("check box", MASTER)
        wait_until(lambda: self.daemon.calls.count("stopGrabbing") == 2, "two orders to stop")
        self.look_again(False, True, "USER_STOPPED")
        self.window.find("label", "Keyboard remapping is currently disabled")
        self.assertEqual(self.sandbox.stored("KeyboardRemappingEnabled"), 0)

        # Only the dashboard asks.
        type_keys("2")
        self.window.find("heading", "Mapping")
        self.daemon.calls.clear()
        time.sleep(3.5)
        self.assertEqual(self.daemon.calls, [])
        self.calm()

    def test_the_release_chord_holds(self):
        daemon = SimulatedDaemon(self.sandbox)
        self.start()
        self.window.find("label", "Running normally")
        daemon.rewrites(4, 4)
        daemon.comes_out(["41 down", "42 down", "40 down", "40 up", "42 up", "41 up"],
                         ["41 down", "42 down", "41 up", "42 up"])
        self.window.find("label", "Keyboard remapping is currently disabled")
        time.sleep(3.5)  # a poll, with its order to start
        self.window.find("label", "Keyboard remapping is currently disabled")
        daemon.comes_out(["4 down", "4 up"], [])
        # The user turns it on again.
        self.window.press("check box", MASTER)
        self.window.press("check box", MASTER)
        self.window.find("label", "Running normally")
        daemon.rewrites(4, 4)
        self.calm()

    def own_programs(self, name):
        """The pids of the application's own programs of this name."""
        pids = []
        with open(f"/proc/{self.app.pid}/task/{self.app.pid}/children", encoding="ascii") as file:
            for pid in file.read().split():
                with open(f"/proc/{pid}/comm", encoding="ascii") as comm:
                    if comm.read().strip() == name[:15]:
                        pids.append(int(pid))
        return pids

    def test_a_service_that_died_is_installed_again(self):
        self.start(TAMSEL_DAEMON_ADDRESS="")  # with a daemon of its own
        daemon, = wait_until(lambda: self.own_programs("tamsel-daemon"), "the daemon")
        sent = harness.log_lines(self.app).count(SENT)
        os.kill(daemon, signal.SIGKILL)
        self.window.find("heading", "Background Service")
        type_keys("2")
        self.window.find(name="Input Monitoring Permission")
        self.window.press("push button", "Open System Settings")
        self.window.gone("push button", "Open System Settings")
        type_keys("1")
        self.window.gone("heading", "Background Service")
        wait_for_line(self.app, SENT, sent + 1)
        # The full quit ends both programs before the application.
        daemon, = wait_until(lambda: self.own_programs("tamsel-daemon"), "the daemon")
        self.calm()
        self.window.press("push button", "Full Quit")
        self.window.press("push button", "Quit and Stop Daemon")
        self.assertEqual(self.app.wait(10 * harness.PATIENCE), 0)
        self.assertFalse(os.path.exists(f"/proc/{daemon}"))

    def test_its_switches_and_the_full_quit(self):
        self.stand_in()
        self.start()
        self.window.press("check box", "Show in Menu Bar")
        wait_until(lambda: self.sandbox.stored("ShowInMenuBar") == 0, "the stored switch")
        was = self.window.is_checked("check box", "Launch at Login")
        self.window.press("check box", "Launch at Login")
        wait_until(lambda: self.window.is_checked("check box", "Launch at Login") != was,
                   "the login item")
        self.window.press("push button", "Full Quit")
        self.window.find("dialog", "Full Quit")
        type_keys("1", "Escape")
        self.window.gone("dialog", "Full Quit")
        # The keyboard starts on "Cancel".
        self.window.press("push button", "Full Quit")
        self.window.find("dialog", "Full Quit")
        type_keys("Return")
        self.window.gone("dialog", "Full Quit")
        self.calm()


if __name__ == "__main__":
    desktop.run_tests()
