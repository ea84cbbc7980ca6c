#!/usr/bin/env python3
"""Rows per second of varnice_decode in the sqlite3 shell, beside SQLite's own
CAST(x AS TEXT) on the same text in UTF-8, in one run (rows per CPU second).
usage: sqlite_bench.py EXTENSION [ROWS]"""
import glob
import os
import re
import subprocess
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
SOURCE = os.path.dirname(HERE)


def japanese_lines():
    """Real Japanese prose: the project's sample and detection texts, by line."""
    paths = [os.path.join(SOURCE, "examples", "samples", "japanese.utf8.txt")]
    paths += sorted(glob.glob(os.path.join(SOURCE, "tests", "detect", "corpus", "ja-*.txt")))
    lines = []
    for path in paths:
        with open(path, encoding="utf-8") as f:
            lines += [line.strip() for line in f if line.strip()]
    return lines


def main():
    extension = os.path.splitext(os.path.abspath(sys.argv[1]))[0]
    rows = int(sys.argv[2]) if len(sys.argv) > 2 else 200000
    lines = japanese_lines()
    values = ",".join("('" + line.replace("'", "''") + "')" for line in lines)
    queries = {
        "scan only: sum(length(blob))": "SELECT sum(length(utf8)) FROM t;",
        "CAST(utf8 AS TEXT)": "SELECT sum(length(CAST(utf8 AS TEXT))) FROM t;",
        "varnice_decode(utf8, 'UTF-8')": "SELECT sum(length(varnice_decode(utf8, 'UTF-8'))) FROM t;",
        "varnice_decode(sjis, 'Shift_JIS')": "SELECT sum(length(varnice_decode(sjis, 'Shift_JIS'))) FROM t;",
        "varnice_decode(euc, 'EUC-JP')": "SELECT sum(length(varnice_decode(euc, 'EUC-JP'))) FROM t;",
    }
    script = [f"CREATE TABLE src(line TEXT); INSERT INTO src VALUES {values};",
              "CREATE TABLE t(utf8 BLOB, sjis BLOB, euc BLOB);",
              # Lines that Shift_JIS and EUC-JP both hold exactly.
              "DELETE FROM src WHERE varnice_decode(varnice_encode(line, 'Shift_JIS'), 'Shift_JIS') <> line"
              " OR varnice_decode(varnice_encode(line, 'EUC-JP'), 'EUC-JP') <> line;",
              f"WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < {rows})"
              " INSERT INTO t SELECT CAST(line AS BLOB), varnice_encode(line, 'Shift_JIS', 'strict'),"
              " varnice_encode(line, 'EUC-JP', 'strict')"
              f" FROM (SELECT line FROM n, src LIMIT {rows});",
              "SELECT count(*), sum(length(utf8)), sum(length(sjis)), (SELECT count(*) FROM src) FROM t;",
              ".timer on"]
    repeats = 3
    for sql in queries.values():
        script += [sql] * repeats
    run = subprocess.run(["sqlite3", "-batch", "-bail", "-cmd", f".load {extension}", ":memory:"],
                         input="\n".join(script) + "\n", capture_output=True, text=True)
    if run.returncode != 0:
        sys.exit(run.stderr)
    out = run.stdout.splitlines()
    count, utf8_bytes, sjis_bytes, distinct = (int(x) for x in out[0].split("|"))
    # CPU time (user + system) rather than wall time: steadier on a shared machine.
    times = [float(m.group(1)) + float(m.group(2))
             for m in re.finditer(r"Run Time: real [0-9.]+ user ([0-9.]+) sys ([0-9.]+)", run.stdout)]
    results = [out[i] for i in range(1, len(out)) if not out[i].startswith("Run Time")]
    print(f"{count} rows of Japanese text ({distinct} distinct lines), "
          f"{utf8_bytes / count:.0f} bytes a row in UTF-8, {sjis_bytes / count:.0f} in Shift_JIS; "
          f"best of {repeats}, CPU time")
    for k, name in enumerate(queries):
        best = min(times[k * repeats:(k + 1) * repeats])
        print(f"  {name:36s} {count / best / 1e6:6.2f} M rows/s  ({best * 1000:7.1f} ms)"
              f"  sum={results[k * repeats]}")


if __name__ == "__main__":
    main()
