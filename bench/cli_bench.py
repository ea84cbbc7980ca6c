#!/usr/bin/env python3
"""Throughput of `varnice convert` on a large file beside iconv and uconv (ICU).

Each tool runs as a person would run it, file in and standard output to
/dev/null; the figure is MB/s of input, best of three runs.

    python3 bench/cli_bench.py [path/to/varnice] [megabytes]
"""
import os
import shutil
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


def best_seconds(command):
    best = None
    for _ in range(3):
        start = time.perf_counter()
        subprocess.run(command, stdout=subprocess.DEVNULL, check=True)
        elapsed = time.perf_counter() - start
        best = elapsed if best is None else min(best, elapsed)
    return best


def main():
    varnice = sys.argv[1] if len(sys.argv) > 1 else os.path.join(ROOT, "build-bench/tools/cli/varnice")
    megabytes = int(sys.argv[2]) if len(sys.argv) > 2 else 64
    with open(os.path.join(ROOT, "examples/samples/japanese.utf8.txt"), encoding="utf-8") as f:
        japanese = f.read()
    text = japanese * (megabytes * 1_000_000 // len(japanese.encode()) + 1)
    with tempfile.TemporaryDirectory() as tmp:
        files = {"UTF-8": os.path.join(tmp, "ja.utf8"), "CP932": os.path.join(tmp, "ja.cp932")}
        with open(files["UTF-8"], "wb") as f:
            f.write(text.encode("utf-8"))
        with open(files["CP932"], "wb") as f:
            f.write(text.encode("cp932"))
        size = os.path.getsize(files["UTF-8"])
        print(f"input: {size} bytes of Japanese text in UTF-8 "
              f"({os.path.getsize(files['CP932'])} in CP932); MB/s of input, best of 3")
        tools = {
            "varnice": lambda f, t, p: [varnice, "convert", "-f", f, "-t", t, p],
            "iconv": lambda f, t, p: ["iconv", "-f", f, "-t", t, p],
            "uconv": lambda f, t, p: ["uconv", "-f", f, "-t", t, p],
        }
        # Names each tool knows the encodings by.
        names = {"varnice": {"UTF-8": "UTF-8", "CP932": "CP932", "UTF-16": "big-endian", "auto": "auto"},
                 "iconv": {"UTF-8": "UTF-8", "CP932": "CP932", "UTF-16": "UTF-16BE"},
                 "uconv": {"UTF-8": "UTF-8", "CP932": "windows-31j", "UTF-16": "UTF-16BE"}}
        for source, target in [("UTF-8", "CP932"), ("CP932", "UTF-8"), ("auto", "UTF-8"), ("UTF-8", "UTF-16")]:
            path = files["CP932" if source == "auto" else source]
            for tool, make in tools.items():
                if source not in names[tool] or shutil.which(make("", "", "")[0]) is None:
                    continue
                seconds = best_seconds(make(names[tool][source], names[tool][target], path))
                print(f"{tool:8} {source:>6} -> {target:7} {os.path.getsize(path) / seconds / 1e6:8.0f} MB/s")


if __name__ == "__main__":
    main()
