"""The application against an independent daemon: what it sends, serves, survives and reports."""

import json
import os
import plistlib
import re
import signal
import time
import unittest

from gi.repository import GLib

import harness
from guardian import run_guarded
from harness import SENT, SandboxTest, log_lines, wait_for_line

TABLES = os.path.join(os.path.dirname(__file__), "..", "data", "built_in_records.json")


class ApplicationContract(SandboxTest):
    def test_sends_every_built_in_record_as_the_tables_say(self):
        daemon = self.stand_in()
        app = self.sandbox.start_app()
        wait_for_line(app, SENT)
        self.assertEqual(daemon.configs[0][:8], b"bplist00")
        cfg = plistlib.loads(daemon.configs[0])
        self.assertEqual(set(cfg), {"version", "mappings", "shortcuts", "excludedKeyboards",
                                    "mouseDevices", "grabScope", "allowedDevices"})
        self.assertEqual((cfg["version"], cfg["grabScope"]), ("1.0", "all"))
        self.assertEqual([cfg["excludedKeyboards"], cfg["mouseDevices"], cfg["allowedDevices"]],
                         [[]] * 3)
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

    def test_refusals_and_error_replies_keep_the_connection(self):
        daemon = self.stand_in()
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
        daemon = self.stand_in()
        app = self.sandbox.start_app()
        wait_for_line(app, SENT)
        event = GLib.Variant("(ubyub)", (57, True, 2, 224, False))
        self.assertEqual(daemon.ask_app("onKeyEvent", event), ())
        self.assertEqual(daemon.ask_app("requestClipboardText", None, "(bs)"), (False, ""))
        wait_for_line(app, "[DaemonXPC] 已回覆剪貼簿文字請求（chars=0）")
        for method, arguments in (("openURL", GLib.Variant("((sd))", (("a:b", 1.0),))),
                                  ("onKeyEvent", GLib.Variant("(s)", ("x",))), ("noSuch", None)):
            with self.assertRaises(GLib.Error):
                daemon.ask_app(method, arguments)
        self.assertEqual(daemon.ask_app("requestClipboardText", None, "(bs)"), (False, ""))

    def test_opens_urls_with_the_desktops_opener(self):
        opened = self.put_opener('case "$1" in fails:*) exit 3;; esac\n')
        daemon = self.stand_in()
        app = self.sandbox.start_app()
        wait_for_line(app, SENT)
        deadline = time.clock_gettime(time.CLOCK_MONOTONIC) + 60
        for url, late, opens in (("wenlo://voice?action=start&x='$(id)'", 0, True),
                                 ("fails:x", 0, True), ("https://tamsel.app", 61, False),
                                 ("file:///etc/passwd", 0, False)):
            answer = daemon.ask_app("openURL", GLib.Variant("(sd)", (url, deadline - late)), "(b)")
            self.assertEqual(answer, (opens,))
        wait_for_line(app, "[DaemonXPC] openURL 打開失敗: ")
        self.assertEqual(sorted(opened()), ["fails:x", "wenlo://voice?action=start&x='$(id)'"])

    def test_ends_cleanly_on_a_signal(self):
        self.stand_in()
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


if __name__ == "__main__":
    run_guarded()
    unittest.main(verbosity=2)
