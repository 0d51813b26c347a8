"""Whether the house is in order: rooms, sizes, the share of tests. Called by tools/check."""

import subprocess
import sys

import rooms
import sizes


def main():
    names = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], check=True,
                           capture_output=True, text=True).stdout.splitlines()
    texts = {}
    for name in names:
        if name.endswith((".h", ".cpp", ".in", ".py", ".qml", ".md", "CMakeLists.txt")):
            try:
                with open(name, encoding="utf-8") as file:
                    texts[name] = file.read()
            except FileNotFoundError:  # deleted, not committed yet
                pass
    failures = 0
    for check in (sizes.check_files, sizes.check_functions, sizes.check_test_share,
                  rooms.check_links, rooms.check_picture):
        for failure in check(texts):
            print(f"check: {failure}", file=sys.stderr)
            failures += 1
    return failures > 0


sys.exit(main())
