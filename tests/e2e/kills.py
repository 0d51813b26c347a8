"""The real application, killed while it saves: what is stored is always a complete old or new
configuration. The number of kills is the first argument (20 in the ordinary run of the tests)."""

import os
import plistlib
import random
import signal
import subprocess
import sys
import time
import unittest

import desktop
from desktop import Window, focus_window, type_keys
from harness import Sandbox, StandInDaemon, log_lines

ROUNDS = 20
CONFIGURED = "[AppDelegate] Daemon 設置完成"


class Kills(unittest.TestCase):
    def test_saves_survive_kills(self):
        sandbox = Sandbox()
        self.addCleanup(sandbox.close)
        daemon = StandInDaemon(sandbox.address)
        self.addCleanup(daemon.die)
        # Long enough that a save spans several pages.
        cfg = {"version": "1.0", "mappings": [
            {"id": f"{i}", "enabled": True, "from": {"keyCode": 4 + i % 26, "modifiers": []},
             "to": {"keyCode": 5, "modifiers": ["left_shift"] * 20}} for i in range(300)],
            "shortcuts": []}
        sandbox.put(plistlib.dumps(cfg, fmt=plistlib.FMT_BINARY))
        chance = random.Random(7)
        saves = 0
        for _ in range(ROUNDS):
            daemon.configs.clear()
            app = desktop.start_app(sandbox)
            focus_window()
            # The space bar, held, flips the first row's switch.
            type_keys("2")
            switch = Window(app).find("check box", "a to b")
            desktop.Atspi.Component.grab_focus(switch)
            keys = subprocess.Popen(["xdotool", "key", "--delay", "2", *["space"] * 400])
            time.sleep(chance.uniform(0.05, 0.4))
            app.send_signal(signal.SIGKILL)
            app.wait()
            keys.kill()
            keys.wait()
            # The start sends one, too, if it has come that far.
            saves += len(daemon.configs) - any(line.startswith(CONFIGURED)
                                               for line in log_lines(app))

            stored = plistlib.loads(sandbox.stored())
            first = stored["mappings"][0]
            self.assertIn(first["enabled"], (True, False))
            first["enabled"] = True
            self.assertEqual({key: stored[key] for key in cfg}, cfg)
        self.assertFalse([name for name in os.listdir(os.path.dirname(sandbox.store))
                          if "damaged" in name])
        self.assertGreater(saves, ROUNDS, "the application was killed before it saved anything")
        print(f"{ROUNDS} kills, {saves} saves seen", file=sys.stderr)


if __name__ == "__main__":
    desktop.run_in_desktop()
    if len(sys.argv) > 1:
        ROUNDS = int(sys.argv.pop(1))
    unittest.main(verbosity=2)
