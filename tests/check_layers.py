#!/usr/bin/env python3
"""Checks that no file includes a header of a layer above its own.

The layers are the numbered list under "## Layer order" in docs/ARCHITECTURE.md;
each item names paths in backquotes, and a file belongs to the layer of the
longest of those paths that starts its own path. Every library file must
belong to some layer, so a new folder has to be placed in the order.

    python3 tests/check_layers.py [ROOT]
"""
import pathlib
import re
import sys

CHECKED = ("varnice", "tools/cli")
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"')


def read_layers(doc):
    layers, in_section = [], False
    for line in doc.read_text(encoding="utf-8").splitlines():
        if line.startswith("## "):
            in_section = line.strip() == "## Layer order"
            continue
        item = re.match(r"(\d+)\. ", line)
        if in_section and item:
            layers.append((int(item.group(1)), []))
        elif not (in_section and layers and line.startswith("   ")):
            continue  # an item goes on over its indented lines
        layers[-1][1].extend(p for p in re.findall(r"`([^`]+)`", line) if "/" in p)
    return {path: number for number, paths in layers for path in paths}


def layer_of(rel, prefixes):
    best = None
    for prefix in prefixes:
        if rel == prefix or (prefix.endswith("/") and rel.startswith(prefix)):
            if best is None or len(prefix) > len(best):
                best = prefix
    return prefixes.get(best)


def resolve(including, target, root):
    """The repository path an include names: from the root, else beside the file."""
    if (root / target).is_file():
        return target
    beside = (root / including).parent / target
    return str(beside.resolve().relative_to(root)) if beside.is_file() else None


def check(root):
    prefixes = read_layers(root / "docs" / "ARCHITECTURE.md")
    if not prefixes:
        return ["docs/ARCHITECTURE.md has no '## Layer order' list"]
    problems, files = [], []
    for top in CHECKED:
        files += [p for p in (root / top).rglob("*") if p.suffix in (".h", ".c", ".cpp")]
    for path in sorted(files):
        rel = str(path.relative_to(root))
        own = layer_of(rel, prefixes)
        if own is None:
            problems.append(f"{rel}: in no layer of the order")
            continue
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            m = INCLUDE.match(line)
            target = m and resolve(rel, m.group(1), root)
            if not target:
                continue
            theirs = layer_of(target, prefixes)
            if theirs is not None and theirs > own:
                problems.append(f"{rel}:{number}: layer {own} includes {target} of layer {theirs}")
    return problems


def main(argv):
    root = pathlib.Path(argv[1] if len(argv) > 1 else pathlib.Path(__file__).resolve().parents[1]).resolve()
    problems = check(root)
    for p in problems:
        print(p)
    print(f"{len(problems)} include(s) against the layer order")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
