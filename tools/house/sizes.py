"""How large files, functions and the tests are."""

import ast
import re

# Files with two jobs, and functions that do too much.
MAX_LINES = {".h": 350, ".cpp": 350, ".py": 350, ".qml": 200}
MAX_FUNCTION = 40
# Lines of test for a hundred of code: the goal, and where the way there stands. The second only
# ever falls.
TEST_SHARE_GOAL = 40
TEST_SHARE = 43.0
# What is still larger, with the size that it must not pass on its way down.
LARGER_FILES = {
    "tests/e2e/daemon_contract.py": 506,
    "tests/e2e/services.py": 492,
}
LARGER_FUNCTIONS = {
    "companion/daemon/daemon.cpp:runDaemon": 42,
    "tools/preview/main.cpp:main": 59,
    "tools/preview/main.cpp:sampleCombos": 47,
    "tools/release/publish.cpp:publish": 42,
}


def ending(path):
    return path[path.rfind("."):]


def check_files(texts):
    for path, text in texts.items():
        lines = text.count("\n")
        limit = LARGER_FILES.get(path, MAX_LINES.get(ending(path)))
        if limit and lines > limit:
            yield f"{path} has {lines} lines and two jobs; {limit} are too many"
        if path in LARGER_FILES and lines <= MAX_LINES[ending(path)]:
            yield f"{path} is small enough now: take it out of LARGER_FILES"


def code_lines(path, text):
    """Without blanks and comments."""
    mark = "#" if path.endswith(".py") else "//"
    lines = [line.strip() for line in text.splitlines()]
    return sum(1 for line in lines if line and not line.startswith(mark))


def check_test_share(texts):
    count = {True: 0, False: 0}
    for path, text in texts.items():
        if ending(path) in MAX_LINES and path.split("/")[0] in (
                "tests", "src", "companion", "common", "tools"):
            count[path.startswith("tests/")] += code_lines(path, text)
    share = 100 * count[True] / count[False]
    print(f"check: {share:.1f} lines of test for 100 of code; the goal is {TEST_SHARE_GOAL}")
    if share > TEST_SHARE:
        yield f"the tests have grown to {share:.1f} lines for 100 of code; {TEST_SHARE} is the most"
    elif share < TEST_SHARE - 1 and TEST_SHARE > TEST_SHARE_GOAL:
        yield f"the tests have shrunk to {share:.1f} for 100: lower TEST_SHARE"


def braced_functions(text):
    """(name, lines) of formatted C++: what stands at the margin, or in a class at the margin, and
    ends with the same indentation."""
    lines = text.splitlines()
    in_class = False
    start = {}
    for number, line in enumerate(lines):
        indent = len(line) - len(line.lstrip())
        if indent == 0 and re.match(r"(class|struct)\b.*\{$", line):
            in_class = True
        if line.rstrip(";") == "}":
            in_class = False
        opens = line.endswith("{") and not re.match(
            r"\s*(namespace|class|struct|enum|union|extern|switch|public|private)\b", line)
        # The parameters or the initialisers may have begun on lines before.
        level = 0 if not in_class else 4
        if opens and level not in start and indent in (level, level + 4, level + 6):
            head = next((i for i in range(number, -1, -1) if
                         len(lines[i]) - len(lines[i].lstrip()) == level and lines[i].strip()), number)
            if "(" in lines[head] and "= {" not in line:
                start[level] = (head, number)
        for close_level in (0, 4):
            if line == " " * close_level + "}" and close_level in start:
                head, body = start.pop(close_level)
                name = re.search(r"([\w:~]+)\(", lines[head])
                yield (name.group(1) if name else lines[head], number - body - 1)


def python_functions(text):
    for node in ast.walk(ast.parse(text)):
        if isinstance(node, (ast.FunctionDef, ast.AsyncFunctionDef)):
            yield node.name, node.end_lineno - node.body[0].lineno + 1


def qml_functions(text):
    lines = text.splitlines()
    for number, line in enumerate(lines):
        if found := re.match(r"(\s*)function (\w+)\(.*\{$", line):
            end = lines.index(found.group(1) + "}", number)
            yield found.group(2), end - number - 1


def check_functions(texts):
    kinds = {".cpp": braced_functions, ".h": braced_functions, ".py": python_functions,
             ".qml": qml_functions}
    for path, text in texts.items():
        if path.startswith("tests/"):
            continue  # the tables of cases stand in the tests
        for name, lines in kinds.get(ending(path), lambda _: [])(text):
            limit = LARGER_FUNCTIONS.get(f"{path}:{name}", MAX_FUNCTION)
            if lines > limit:
                yield f"{path}: {name}() has {lines} lines; {limit} are too many"
