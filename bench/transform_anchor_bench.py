#!/usr/bin/env python3
"""The language transforms beside the tools people use for each job today:
agreement with the tool (characters and lines) and throughput of both, each
run as a command on a file.

    python3 bench/transform_anchor_bench.py [path/to/varnice] [megabytes]

Rows whose tool is not installed are skipped (Debian: nkf, kakasi, opencc).
For every row the most frequent disagreements are listed as tool -> ours.
"""
import collections
import difflib
import gettext
import glob
import html
import os
import shutil
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
DATA = os.path.join(ROOT, "bench", "data")


def run(command, path):
    with open(path, "rb") as f:
        return subprocess.run(command, stdin=f, capture_output=True, check=True).stdout.decode(errors="replace")


def seconds(command, path):
    best = None
    for _ in range(3):
        start = time.perf_counter()
        with open(path, "rb") as f:
            subprocess.run(command, stdin=f, stdout=subprocess.DEVNULL, check=True)
        elapsed = time.perf_counter() - start
        best = elapsed if best is None else min(best, elapsed)
    return best


def catalogue_text(language):
    """The translated messages of the system's message catalogues for a
    language, one a line: real interface text, when the machine has it."""
    lines = []
    for path in sorted(glob.glob(f"/usr/share/locale/{language}/LC_MESSAGES/*.mo")):
        try:
            with open(path, "rb") as f:
                catalogue = gettext.GNUTranslations(f)._catalog
        except Exception:
            continue
        for key, value in catalogue.items():
            if key and isinstance(value, str):
                lines.extend(part for part in value.splitlines() if part.strip())
    return "\n".join(lines) + "\n" if lines else None


def agreement(theirs, ours):
    """Share of the tool's characters and lines that ours matches. Lines are
    aligned first, since a tool may join or drop lines."""
    a_lines, b_lines = theirs.splitlines(), ours.splitlines()
    same_chars = same_lines = 0
    total = sum(len(a) for a in a_lines)
    kinds = collections.Counter()
    lines = difflib.SequenceMatcher(None, a_lines, b_lines, autojunk=False)
    for op, i1, i2, j1, j2 in lines.get_opcodes():
        if op == "equal":
            same_lines += i2 - i1
            same_chars += sum(len(a) for a in a_lines[i1:i2])
            continue
        for a, b in zip(a_lines[i1:i2], b_lines[j1:j2]):
            m = difflib.SequenceMatcher(None, a, b, autojunk=False)
            same_chars += sum(block.size for block in m.get_matching_blocks())
            for o, x1, x2, y1, y2 in m.get_opcodes():
                if o != "equal":
                    kinds[(a[x1:x2], b[y1:y2])] += 1
    return same_chars / max(total, 1), same_lines / max(len(a_lines), 1), kinds


def main():
    varnice = sys.argv[1] if len(sys.argv) > 1 else os.path.join(ROOT, "build/tools/cli/varnice")
    megabytes = float(sys.argv[2]) if len(sys.argv) > 2 else 4
    with tempfile.TemporaryDirectory() as tmp:
        def sample(name, text=None):
            text = text if text is not None else open(os.path.join(DATA, name), encoding="utf-8").read()
            path = os.path.join(tmp, name)
            big = os.path.join(tmp, "big-" + name)
            with open(path, "w", encoding="utf-8") as f:
                f.write(text)
            with open(big, "w", encoding="utf-8") as f:
                f.write(text * int(megabytes * 1e6 // len(text.encode()) + 1))
            return path, big

        half = subprocess.run([varnice, "convert", "-f", "UTF-8", "-t", "UTF-8", "-x", "hankaku-katakana",
                               os.path.join(DATA, "japanese_katakana.txt")],
                              capture_output=True, check=True).stdout.decode()
        phrases = "".join(line.split("\t")[0] + ("\n" if i % 20 == 19 else "")
                          for i, line in enumerate(open(os.path.join(ROOT, "data/opencc/STPhrases.txt"),
                                                        encoding="utf-8")))
        entities = html.entities.html5
        entity_text = "".join(f"x&{n}y{i % 7}" + ("\n" if i % 16 == 15 else "")
                              for i, n in enumerate(sorted(k for k in entities if k.endswith(";"))))
        entity_text += "".join(f"&#{c};&#x{c:X};" + ("\n" if c % 32 == 0 else "")
                               for c in range(0xA0, 0x3000, 7))
        rows = [
            ("hankaku-katakana", ["nkf", "-w", "-x", "-Z4"], "japanese_katakana.txt", None),
            ("zenkaku-katakana", ["nkf", "-w", "-X"], "japanese_halfwidth.txt", half),
            ("hepburn", ["kakasi", "-iutf8", "-outf8", "-Ha", "-Ka"], "japanese_kana.txt", None),
            ("kunrei", ["kakasi", "-iutf8", "-outf8", "-Ha", "-Ka", "-rkunrei"], "japanese_kana.txt", None),
            ("traditional", ["opencc", "-c", "s2t.json"], "chinese_simplified.txt", None),
            ("simplified", ["opencc", "-c", "t2s.json"], "chinese_traditional.txt", None),
            ("traditional", ["opencc", "-c", "s2t.json"], "every_st_phrase_run_together.txt", phrases),
            ("entities", ["python3", "-c", "import html,sys;sys.stdout.write(html.unescape(sys.stdin.read()))"],
             "every_entity.txt", entity_text),
        ]
        for language, name, tool in [("zh_CN", "traditional", ["opencc", "-c", "s2t.json"]),
                                     ("zh_TW", "simplified", ["opencc", "-c", "t2s.json"]),
                                     ("ja", "hankaku-katakana", ["nkf", "-w", "-x", "-Z4"]),
                                     ("ja", "hepburn", ["kakasi", "-iutf8", "-outf8", "-Ha", "-Ka"])]:
            text = catalogue_text(language)
            if text is not None:
                rows.append((name, tool, f"messages-{language}.txt", text))
        print(f"{'transform':17} {'anchor':22} {'text':34} {'chars':>8} {'lines':>7} "
              f"{'ours MB/s':>9} {'tool MB/s':>9}")
        for name, tool, text_name, text in rows:
            if shutil.which(tool[0]) is None:
                print(f"{name:17} {tool[0]:22} (not installed)")
                continue
            path, big = sample(text_name, text)
            ours_cmd = [varnice, "convert", "-f", "UTF-8", "-t", "UTF-8", "-x", name]
            theirs = run(tool, path)
            ours = run(ours_cmd, path)
            chars, lines, kinds = agreement(theirs, ours)
            size = os.path.getsize(big) / 1e6
            ours_speed = size / seconds(ours_cmd, big)
            tool_speed = size / seconds(tool, big)
            label = "html.unescape" if tool[0] == "python3" else " ".join(tool[:1] + tool[-1:])
            print(f"{name:17} {label:22} {text_name:34} {chars:8.2%} {lines:7.1%} "
                  f"{ours_speed:9.1f} {tool_speed:9.1f}")
            for (a, b), n in kinds.most_common(6):
                print(f"    {n:4} x  {a!r} -> {b!r}")


if __name__ == "__main__":
    main()
