#!/usr/bin/env python3
"""Regenerates every generated source file from data/.

Each generator is a module tools/gen/gen_*.py with a function
    generate(root: pathlib.Path) -> dict[str, str]
that returns the generated files (path relative to the repository root -> text),
and may have a function
    problems(root: pathlib.Path) -> list[str]
naming hand-written text that disagrees with its data; any problem fails both modes.
Generators use the Python standard library only.

    python3 tools/gen/regen.py          # write the files
    python3 tools/gen/regen.py --check  # fail if any committed file differs
"""
import importlib.util
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
HERE = pathlib.Path(__file__).resolve().parent


def generators():
    for path in sorted(HERE.glob("gen_*.py")):
        module_spec = importlib.util.spec_from_file_location(path.stem, path)
        module = importlib.util.module_from_spec(module_spec)
        sys.path.insert(0, str(HERE))
        module_spec.loader.exec_module(module)
        yield path.stem, module


def main(argv):
    check = "--check" in argv
    stale = []
    count = 0
    written = set()
    failed = 0
    for name, module in generators():
        wrong = module.problems(ROOT) if hasattr(module, "problems") else []
        for p in wrong:
            print(f"disagrees with its data: {p} (checked by {name})")
        failed += len(wrong)
        for rel, text in module.generate(ROOT).items():
            count += 1
            written.add(rel)
            if "/generated/" not in rel:
                stale.append(f"{rel} (from {name}) is outside a generated/ folder")
            target = ROOT / rel
            old = target.read_text(encoding="utf-8") if target.exists() else None
            if old == text:
                continue
            if check:
                stale.append(f"{rel} (from {name})")
            else:
                target.parent.mkdir(parents=True, exist_ok=True)
                target.write_text(text, encoding="utf-8")
                print(f"wrote {rel}")
    if check:
        # A file in a generated/ folder that no generator writes is stale too.
        for path in sorted(ROOT.glob("varnice/**/generated/*")):
            rel = str(path.relative_to(ROOT))
            if rel not in written:
                stale.append(f"{rel} is written by no generator")
        for s in stale:
            print(f"out of date: {s}")
        print(f"{count} generated files checked, {len(stale)} out of date, {failed} disagreement(s)")
        return 1 if stale or failed else 0
    print(f"{count} generated files up to date")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
