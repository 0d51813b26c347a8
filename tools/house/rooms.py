"""Which room includes and links which, held against each other and against the picture."""

import re

SIDES = {"src": ("src", "common"), "companion": ("companion", "common"), "common": ("common",)}
# Headers that another target makes, by the name under which they are included.
GENERATED = {"protocol/access_rule_text.h"}


def commands(text):
    """The (function, words) of a CMake list file."""
    text = re.sub(r"#.*", "", text)
    for name, words in re.findall(r"(\w+)\s*\(([^()]*)\)", text):
        yield name, words.split()


def targets(texts):
    """Of the three sides: target -> (folder, linked targets)."""
    out = {}
    for path, text in texts.items():
        folder = path.rpartition("/")[0]
        if not path.endswith("CMakeLists.txt") or folder.split("/")[0] not in SIDES:
            continue
        for name, words in commands(text):
            if name in ("tamsel_room", "tamsel_program", "add_executable", "qt_add_library"):
                out.setdefault(words[0], (folder, set()))
                linked = name.startswith("tamsel_")
            elif name == "target_link_libraries":
                linked = True
            else:
                continue
            if linked and words[0] in out:
                # Of a list of sources only links are names without a dot.
                out[words[0]][1].update(w for w in words[1:] if w.startswith("tamsel_"))
    return out


def include_edges(texts):
    """(folder, folder) -> one file that makes it."""
    out = {}
    for path, text in texts.items():
        side = path.split("/")[0]
        if side not in SIDES or not path.endswith((".h", ".cpp", ".in")):
            continue
        folder = path.rpartition("/")[0]
        for name in re.findall(r'^#include "([^"]+)"', text, re.M):
            if name in GENERATED:
                name = name.replace(name.rpartition("/")[2], "driver_helper.h")
            found = next((f"{root}/{name}" for root in SIDES[side] if f"{root}/{name}" in texts), None)
            # Without a folder it is a system's header, or one that a tool makes.
            other = found.rpartition("/")[0] if found else name.rpartition("/")[0]
            if other and other != folder:
                out.setdefault((folder, other), path)
    return out


def closure(start, edges):
    seen, todo = set(), [start]
    while todo:
        for other in edges.get(todo.pop(), ()):
            if other not in seen:
                seen.add(other)
                todo.append(other)
    return seen


def circle(edges):
    return next((node for node in edges if node in closure(node, edges)), None)


def by_source(pairs):
    out = {}
    for one, other in pairs:
        out.setdefault(one, set()).add(other)
    return out


def check_links(texts):
    edges = include_edges(texts)
    made = targets(texts)
    links = {name: linked for name, (_, linked) in made.items()}
    folders = by_source((folder, name) for name, (folder, _) in made.items())
    for (folder, other), path in sorted(edges.items()):
        reached = set().union(*(closure(name, links) for name in folders.get(folder, ())))
        if not reached & folders.get(other, set()):
            yield f"{path} includes {other}, which {folder} does not link"
    included = by_source(edges)
    for name, (folder, linked) in made.items():
        for other in linked:
            where = made.get(other, (None,))[0]
            own = {where} | {made[each][0] for each in closure(other, links) if each in made}
            if where and where != folder and not included.get(folder, set()) & own:
                yield f"{name} links {other} and includes nothing of it"


def picture(text):
    """The arrows of the Mermaid picture, between folders."""
    block = re.search(r"```mermaid\n(.*?)```", text, re.S)
    names = dict(re.findall(r"^\s*(\w+)\[([^\]]+)\]", block.group(1), re.M))
    for one, others in re.findall(r"^\s*(\w+) --> (.+)$", block.group(1), re.M):
        for other in others.split(" & "):
            yield names[one], names[other.strip()]


def drawn_as(folder, drawn):
    """The room in the picture that a folder is part of, else itself."""
    place = folder
    while place and place not in drawn:
        place = place.rpartition("/")[0]
    return place or folder


def check_picture(texts):
    shown = set(picture(texts["docs/architecture.md"]))
    drawn = {folder for edge in shown for folder in edge}
    code = include_edges(texts)
    if node := circle(by_source(code)):
        yield f"the rooms include each other in a circle through {node}"
    code = {(one, other) for one, other in ((drawn_as(a, drawn), drawn_as(b, drawn)) for a, b in code)
            if one != other}
    if node := circle(by_source(shown)):
        yield f"the picture of the rooms has a circle through {node}"
    reach = by_source(shown)
    for one, other in sorted(code):
        if other not in closure(one, reach):
            yield f"{one} includes {other}, and the picture shows no way down"
    for one, other in sorted(shown - code):
        yield f"the picture shows {one} --> {other}, and nothing is included"
