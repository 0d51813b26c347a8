"""The application against an independent daemon: what it sends, serves, survives and reports."""

import json
import os
import plistlib
import re
import signal
import sqlite3
import stat
import time
import unittest

from gi.repository import GLib

import harness
from guardian import run_guarded
from harness import Sandbox, StandInDaemon, log_lines, wait_for_line, wait_until

SENT = "[DaemonXPC] 配置發送成功"
TABLES = os.path.join(os.path.dirname(__file__), "..", "data", "built_in_records.json")


class ApplicationContract(unittest.TestCase):
    def setUp(self):
        self.sandbox = Sandbox()
        self.addCleanup(self.sandbox.close)

    def daemon(self):
        daemon = StandInDaemon(self.sandbox.address)
        self.addCleanup(daemon.die)
        return daemon

    def test_sends_every_built_in_record_as_the_tables_say(self):
        daemon = self.daemon()
        app = self.sandbox.start_app()
        wait_for_line(app, SENT)
        self.assertEqual(daemon.configs[0][:8], b"bplist00")
        cfg = plistlib.loads(daemon.configs[0])
        self.assertEqual(set(cfg), {"version", "mappings", "shortcuts", "excludedKeyboards",
                                    "mouseDevices", "grabScope", "allowedDevices"})
        self.assertEqual((cfg["version"], cfg["grabScope"]), ("1.0", "all"))
        for name in ("excludedKeyboards", "mouseDevices", "allowedDevices"):
            self.assertEqual(cfg[name], [])
        with open(TABLES, encoding="utf-8") as file:
            tables = json.load(file)
        self.assertEqual(cfg["mappings"], [
            {"id": row["id"], "enabled": False, "from": {"keyCode": row["from"], "modifiers": []},
             "to": {"keyCode": row["to"], "modifiers": []}} for row in tables["mappings"]])
        self.assertEqual(len(cfg["shortcuts"]), 35)
        for row, shortcut in zip(tables["shortcuts"], cfg["shortcuts"]):
            title = shortcut.pop("title")
            if row["linked"]:
                self.assertRegex(title, re.escape(row["title"]) + r" \[Website\]\(https://[^ )]+\)$")
            else:
                self.assertEqual(title, row["title"])
            expected = {"id": row["id"], "enabled": False,
                        "keys": {"keyCode": row["keyCode"], "modifiers": row["modifiers"]},
                        "action": {"type": row["type"], "value": row["value"]}}
            if "actionUp" in row:
                expected["actionUp"] = row["actionUp"]
            self.assertEqual(shortcut, expected)
        self.assertIsNone(self.sandbox.stored(), "nothing is stored before the first edit")

    def test_a_damaged_value_is_reported_and_stays(self):
        self.sandbox.put(b"bplist00 but damaged")
        daemon = self.daemon()
        app = self.sandbox.start_app()
        wait_for_line(app, SENT)
        self.assertEqual(len(plistlib.loads(daemon.configs[0])["shortcuts"]), 35)
        wait_for_line(app, "[StorageMgr] 載入配置失敗（數據已損壞，重置為預設值）: ")
        self.assertEqual(self.sandbox.stored(), b"bplist00 but damaged")

    def test_a_store_that_is_no_database_is_set_aside(self):
        os.makedirs(os.path.dirname(self.sandbox.store))
        with open(self.sandbox.store, "wb") as file:
            file.write(b"no database")
        self.daemon()
        wait_for_line(self.sandbox.start_app(), SENT)
        with open(self.sandbox.store + ".damaged-1", "rb") as file:
            self.assertEqual(file.read(), b"no database")
        self.assertEqual(stat.S_IMODE(os.stat(os.path.dirname(self.sandbox.store)).st_mode), 0o700)

    def test_reconnects_and_sends_the_same_configuration_once(self):
        cfg = {"version": "1.0", "mappings": [], "shortcuts": []}
        self.sandbox.put(plistlib.dumps(cfg, fmt=plistlib.FMT_BINARY))
        daemon = self.daemon()
        app = self.sandbox.start_app()
        wait_for_line(app, SENT)
        wait_until(lambda: "startGrabbing" in daemon.calls, "the driver's order to start")
        for round_number in (2, 3):
            daemon.die()
            wait_for_line(app, "[DaemonXPC] 連接已中斷，清除連接以便自動重連", round_number - 1)
            daemon.come_back()
            began = time.monotonic()
            wait_until(lambda: len(daemon.configs) == round_number, "the configuration", 3)
            self.assertLess(time.monotonic() - began, 3 * harness.PATIENCE)
            wait_for_line(app, SENT, round_number)
        self.assertEqual(len(set(daemon.configs)), 1)
        # The dashboard's question may have come before the reconnect; the configuration went once
        # all the same.
        time.sleep(2)
        self.assertEqual(len(daemon.configs), 3)
        self.assertLessEqual(
            sum("已自動重連並重新發送配置" in line for line in log_lines(app)), 2)

    def test_a_reconnect_made_by_a_caller_sends_the_configuration_once(self):
        # The order to start, a second after the driver is there, finds the connection lost.
        daemon = self.daemon()
        app = self.sandbox.start_app()
        wait_for_line(app, SENT)
        daemon.die()
        daemon.come_back()
        wait_until(lambda: "startGrabbing" in daemon.calls, "the driver's order to start")
        wait_for_line(app, SENT, 2)
        time.sleep(2)  # the reconnect's time passes without another one
        self.assertEqual(len(daemon.configs), 2)

    def test_starts_without_a_daemon_and_finds_it_later(self):
        app = self.sandbox.start_app()
        wait_for_line(app, "[DaemonXPC] 代理錯誤: ", 2)
        wait_for_line(app, "[DaemonXPC] 連接已失效", 2)
        daemon = self.daemon()
        wait_until(lambda: daemon.configs, "the configuration", 3)

    def test_refusals_and_error_replies_keep_the_connection(self):
        daemon = self.daemon()
        daemon.accepts = False
        app = self.sandbox.start_app()
        wait_for_line(app, "[DaemonXPC] 配置發送失敗")
        self.assertEqual(len(daemon.connections), 1)
        daemon.error = "not today"
        daemon.die()
        daemon.come_back()
        wait_for_line(app, "[DaemonXPC] 代理錯誤: not today")
        self.assertEqual(len(daemon.connections), 1)
        self.assertEqual(sum("已失效" in line for line in log_lines(app)), 0)

    def test_serves_the_daemons_calls(self):
        daemon = self.daemon()
        app = self.sandbox.start_app()
        wait_for_line(app, SENT)
        event = GLib.Variant("(ubyub)", (57, True, 2, 224, False))
        self.assertEqual(daemon.ask_app("onKeyEvent", event), ())
        self.assertEqual(daemon.ask_app("requestClipboardText", None, "(bs)"), (False, ""))
        wait_for_line(app, "[DaemonXPC] 已回覆剪貼簿文字請求（chars=0）")
        uptime = time.clock_gettime(time.CLOCK_MONOTONIC)
        for url, deadline, line in (
                ("https://tamsel.app", uptime - 1, "[DaemonXPC] openURL 請求已過期，跳過（防雙開）"),
                ("https://tamsel.app", float("nan"), "[DaemonXPC] openURL 請求已過期，跳過（防雙開）"),
                ("file:///etc/passwd", uptime + 60, "[DaemonXPC] openURL 非法 URL，拒絕")):
            answer = daemon.ask_app("openURL", GLib.Variant("(sd)", (url, deadline)), "(b)")
            self.assertEqual(answer, (False,))
            wait_for_line(app, line)
        for method, arguments in (("openURL", GLib.Variant("((sd))", (("a:b", 1.0),))),
                                  ("onKeyEvent", GLib.Variant("(s)", ("x",))), ("noSuch", None)):
            with self.assertRaises(GLib.Error):
                daemon.ask_app(method, arguments)
        self.assertEqual(daemon.ask_app("requestClipboardText", None, "(bs)"), (False, ""))

    def test_opens_urls_with_the_desktops_opener(self):
        # An opener of our own stands first in the PATH and tells what it was given.
        opened = os.path.join(self.sandbox.folder, "opened")
        opener = os.path.join(self.sandbox.folder, "xdg-open")
        with open(opener, "w", encoding="utf-8") as file:
            file.write(f'#!/bin/sh\necho "$1" >> {opened}\n'
                       'case "$1" in fails:*) exit 3;; esac\n')
        os.chmod(opener, 0o755)
        self.sandbox.env["PATH"] = self.sandbox.folder + ":" + self.sandbox.env["PATH"]
        daemon = self.daemon()
        app = self.sandbox.start_app()
        wait_for_line(app, SENT)
        deadline = time.clock_gettime(time.CLOCK_MONOTONIC) + 60
        for url in ("wenlo://voice?action=start&x='$(id)'", "fails:x"):
            answer = daemon.ask_app("openURL", GLib.Variant("(sd)", (url, deadline)), "(b)")
            self.assertEqual(answer, (True,))
        wait_for_line(app, "[DaemonXPC] openURL 打開失敗: ")
        with open(opened, encoding="utf-8") as file:
            self.assertEqual(sorted(file.read().split()),
                             ["fails:x", "wenlo://voice?action=start&x='$(id)'"])

    def test_ends_cleanly_on_a_signal(self):
        self.daemon()
        for number in (signal.SIGTERM, signal.SIGINT):
            app = self.sandbox.start_app()
            wait_for_line(app, SENT)
            app.send_signal(number)
            self.assertEqual(app.wait(10 * harness.PATIENCE), 0)
            self.assertEqual(log_lines(app)[-1], "[AppDelegate] App 退出，XPC 已斷開")

    def test_says_in_one_line_why_it_cant_start(self):
        with open(os.path.join(self.sandbox.env["XDG_CONFIG_HOME"], "tamsel"), "w"):
            pass
        app = self.sandbox.start_app()
        self.assertNotEqual(app.wait(10 * harness.PATIENCE), 0)
        lines = log_lines(app)
        self.assertEqual(len(lines), 1, lines)
        self.assertTrue(lines[0].startswith("tamsel: the settings can't be opened: "), lines)

    def test_two_processes_share_the_store(self):
        self.daemon()
        apps = [self.sandbox.start_app() for _ in range(2)]
        for app in apps:
            wait_for_line(app, SENT)
        self.assertEqual([name for name in os.listdir(os.path.dirname(self.sandbox.store))
                          if "damaged" in name], [])
        with sqlite3.connect(self.sandbox.store) as database:
            self.assertEqual(database.execute("PRAGMA integrity_check").fetchone(), ("ok",))


if __name__ == "__main__":
    run_guarded()
    unittest.main(verbosity=2)
