"""Updates on real copies: a portable copy finds the next version on an https server, fetches it,
asks, puts it in place and is started again as that version; or as itself, when that one fails."""

import functools
import http.server
import os
import plistlib
import shutil
import ssl
import subprocess
import threading
import time

import desktop
import harness
from desktop import Window, focus_window, type_keys
from harness import BUILD, SandboxTest, wait_for_line, wait_until

RELEASE = os.path.join(BUILD, "bin", "tamsel-release")


def run(*words):
    done = subprocess.run(words, capture_output=True, text=True, check=False)
    if done.returncode:
        raise AssertionError(f"{words}: {done.stderr}")
    return done.stdout.strip()


class SlowFiles(http.server.SimpleHTTPRequestHandler):
    """Files at a pace that a person can watch."""

    pause = 0.0

    def copyfile(self, source, outputfile):
        while block := source.read(256 * 1024):
            outputfile.write(block)
            time.sleep(SlowFiles.pause)

    def log_message(self, *_):
        pass


class Restarted:
    """The copy's process that another program has started."""

    def __init__(self, copy, before, log):
        self.log = log
        self.pid = wait_until(lambda: self._find(copy, before), "the copy to start again", 30)

    @staticmethod
    def _find(copy, before):
        for pid in map(int, filter(str.isdigit, os.listdir("/proc"))):
            try:
                program = os.readlink(f"/proc/{pid}/exe")
            except OSError:
                continue
            if pid != before and program == f"{copy}/bin/tamsel":
                return pid
        return None

    def poll(self):
        """None while it runs; nobody but its parent learns what it ended with."""
        try:
            with open(f"/proc/{self.pid}/stat", encoding="utf-8") as stat:
                return 0 if stat.read().rsplit(")", 1)[1].split()[0] == "Z" else None
        except (FileNotFoundError, ProcessLookupError):
            return 0  # reaped, perhaps while this read


class Updates(SandboxTest):
    def setUp(self):
        super().setUp()
        self.stand_in()
        self.served = f"{self.sandbox.folder}/served"
        os.mkdir(self.served)
        self.key = f"{self.sandbox.folder}/key"
        self.public = run(RELEASE, "keys", self.key)
        self.start_server()
        self.copy = f"{self.sandbox.folder}/place/tamsel"
        run("cmake", "--install", BUILD, "--prefix", self.copy)
        shutil.rmtree(f"{self.copy}/lib")
        self.describe(self.copy, "1", "1.0.0")
        SlowFiles.pause = 0.0

    def start_server(self):
        key, self.authority = f"{self.sandbox.folder}/tls.key", f"{self.sandbox.folder}/ca.pem"
        run("openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256",
            "-nodes", "-days", "2", "-subj", "/CN=test", "-addext", "subjectAltName=IP:127.0.0.1",
            "-keyout", key, "-out", self.authority)
        handler = functools.partial(SlowFiles, directory=self.served)
        server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler)
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(self.authority, key)
        server.socket = context.wrap_socket(server.socket, server_side=True)
        threading.Thread(target=server.serve_forever, daemon=True).start()
        self.addCleanup(server.server_close)
        self.addCleanup(server.shutdown)
        self.url = f"https://127.0.0.1:{server.server_port}"

    def describe(self, folder, build, version):
        path = f"{folder}/share/tamsel/Info.plist"
        with open(path, "rb") as file:
            info = plistlib.load(file)
        info.update(CFBundleVersion=build, CFBundleShortVersionString=version,
                    QLFeedURL=f"{self.url}/feed.xml", QLPublicKey=self.public)
        with open(path, "wb") as file:
            plistlib.dump(info, file)
        shutil.copy(self.authority, f"{folder}/share/tamsel/ca.pem")
        run(RELEASE, "contents", folder)

    def publish(self, program=None):
        """Makes version 2 of this copy, with another program if one is given, and announces it."""
        top = f"{self.sandbox.folder}/made"
        shutil.copytree(self.copy, f"{top}/tamsel-2")
        self.describe(f"{top}/tamsel-2", "2", "2.0.0")
        if program:
            os.unlink(f"{top}/tamsel-2/bin/tamsel")
            with open(f"{top}/tamsel-2/bin/tamsel", "w", encoding="utf-8") as file:
                file.write(program)
            os.chmod(f"{top}/tamsel-2/bin/tamsel", 0o755)
        run("tar", "-C", top, "-czf", f"{self.served}/two.tar.gz", "tamsel-2")
        self.assertEqual(run(RELEASE, "publish", f"{self.served}/two.tar.gz", "--key", self.key,
                             "--url", f"{self.url}/two.tar.gz", "--feed",
                             f"{self.served}/feed.xml"), "2")
        self.daemon.version = "2"

    def start(self):
        app = self.sandbox.start(f"{self.copy}/bin/tamsel", QT_QPA_PLATFORM="xcb",
                                 QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        window = Window(app)
        window.press("page tab", "About")
        return app, window

    def beside(self):
        return sorted(os.listdir(f"{self.sandbox.folder}/place"))

    def test_a_version_is_found_fetched_and_started(self):
        self.publish()
        SlowFiles.pause = 0.05
        self.sandbox.put(1, "DisableAutoUpdateCheck")
        self.sandbox.start("/usr/bin/trayer")
        app, window = self.start()
        window.find("label", "v1.0.0 (Build 1)")
        wait_until(lambda: desktop.x11_windows("^Tamsel tray icon"), "the tray to have the icon")
        window.press("push button", "Check Update")
        window.find(None, "v2.0.0")
        wait_until(lambda: desktop.x11_windows("^Tamsel tray icon: Version 2.0.0 is available$"),
                   "the tray's words")
        window.press("push button", "Install")
        seen = set()

        def loaded():
            seen.update(node.get_name() for node in window.all("label")
                        if node.get_name().endswith("%"))
            return window.all(None, "Ready — admin password required to install")

        wait_until(loaded, "the download", 60)
        self.assertGreater(len(seen), 2, "the progress moves")
        self.assertEqual(self.beside()[1:], ["tamsel"])
        window.press("push button", "Restart")
        self.assertEqual(app.wait(20), 0)
        again = Restarted(self.copy, app.pid, app.log)
        window = Window(again)
        window.press("page tab", "About")
        window.find("label", "v2.0.0 (Build 2)")
        wait_for_line(again, "[Quorel] 安裝完成")
        wait_until(lambda: self.beside() == ["tamsel"], "the old copy to go")
        window.press("push button", "Check Update")
        window.find(None, "Up to date")

    def test_a_version_that_does_not_start_is_taken_back(self):
        self.publish(program="#!/bin/sh\nexit 1\n")
        reason = "Version 2 did not start. The version before it is back."
        app, window = self.start()  # looks by itself, and fetches what it finds
        window.find(None, "Ready — admin password required to install", timeout=60)
        focus_window()
        type_keys("u")
        self.assertEqual(app.wait(20), 0)
        again = Restarted(self.copy, app.pid, app.log)
        window = Window(again)
        window.press("page tab", "About")
        window.find("label", "v1.0.0 (Build 1)")
        wait_until(lambda: f"[Quorel] didAbortWithError: {reason}" in harness.log_lines(again),
                   "the reason")
        wait_until(lambda: self.beside() == ["tamsel"], "the other copy to go")
        window.find(None, "Up to date")  # it is not fetched again unless somebody asks
        focus_window()
        type_keys("1")
        window.find("label", reason)  # told until it is read
        window.press("push button", "OK")
        window.gone("label", reason)
        self.assertEqual(self.sandbox.stored("FailedUpdate"), "")

    def test_a_version_counts_when_it_has_called_its_daemon(self):
        reader, writer = os.pipe()
        with open(f"{self.sandbox.folder}/start.err", "wb") as log:
            app = subprocess.Popen(
                [f"{self.copy}/bin/tamsel", "--report-to", str(writer)], pass_fds=[writer],
                env={**self.sandbox.env, "QT_QPA_PLATFORM": "offscreen",
                     "DBUS_SESSION_BUS_ADDRESS": "disabled:"}, stderr=log)
        self.addCleanup(app.wait)
        self.addCleanup(app.kill)
        os.close(writer)
        with os.fdopen(reader) as report:
            self.assertEqual(report.read(), "1\n")
        app.log = log.name
        self.assertIn("[DaemonXPC] 已連接到 Daemon", harness.log_lines(app))
        self.assertIn("[Quorel] 安裝完成", harness.log_lines(app))

    def test_keys_tabs_and_errors_of_the_screen(self):
        self.sandbox.put(1, "DisableAutoUpdateCheck")
        app, window = self.start()
        focus_window()
        window.find("text", "What's New")
        # A server without a feed: the row says so; the check after it is not refused.
        type_keys("u")
        window.find(None, "The update server refused (status 404).")
        self.publish()
        with open(f"{self.served}/two.tar.gz", "r+b") as archive:
            archive.seek(1000)
            archive.write(b"\x00flipped")
        type_keys("u")
        window.find(None, "v2.0.0")
        type_keys("u")
        window.find(None, "The update is not the one that was announced.")
        self.assertEqual(self.beside(), ["tamsel"])
        window.press("page tab", "Logs")
        window.press("push button", "Clear")
        window.find("label", "No logs yet. Logs will be recorded automatically during operations.")
        window.press("page tab", "Advanced")
        window.press("push button", "Uninstall")
        window.find("label", "This will unregister the keyboard driver and daemon service.")
        type_keys("l", "Escape")
        window.gone("push button", "Cancel")
        window.press("push button", "Uninstall")
        window.press("push button", "Uninstall", index=1)
        wait_for_line(app, "系統組件已卸載（Daemon + System Extension）")
        self.assertEqual(harness.other_output(app), [], "the toolkit printed warnings")


if __name__ == "__main__":
    desktop.run_tests()
