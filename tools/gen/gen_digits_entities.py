"""Generates the tables of the Latin-number and entity transforms:

- DecimalDigitZeros: the first code point of every run of ten decimal digits
  (general category Nd) of Unicode 15.0, read from the category given in the
  comments of LineBreak.txt (the runs are 0-9 in order, so a digit's value is
  its distance from the run's zero);
- the named character references of HTML (data/html-entities/entities.json):
  the names that end in ';' (HTML 4's 252 are among them), sorted for binary
  search, with one or two code points each.
"""
import json
import re

import genlib

SCRIPT = "gen_digits_entities.py"
LINE_BREAK = "data/unicode-15.0/LineBreak.txt"
ENTITIES = "data/html-entities/entities.json"
OUT_DIGITS = "varnice/transform/generated/decimal_digit_table.cpp"
OUT_ENTITIES = "varnice/transform/generated/entity_table.cpp"

ND_RUN = re.compile(r"^([0-9A-F]+)\.\.([0-9A-F]+)\s*;\s*\w+\s*#\s*Nd\s+\[(\d+)\]\s+(.*)$")


def digit_zeros(root):
    zeros = []
    for line in (root / LINE_BREAK).read_text(encoding="utf-8").splitlines():
        m = ND_RUN.match(line)
        if not m:
            continue
        first, last = int(m.group(1), 16), int(m.group(2), 16)
        assert (last - first + 1) % 10 == 0 and "DIGIT ZERO" in m.group(4), line
        zeros.extend(range(first, last + 1, 10))
    return sorted(zeros)


def entities(root):
    data = json.loads((root / ENTITIES).read_text(encoding="utf-8"))
    out = {}
    for name, entry in data.items():
        if not name.endswith(";"):
            continue  # the legacy forms without ';' are not read as references
        cps = entry["codepoints"]
        assert 1 <= len(cps) <= 2, name
        out[name[1:-1]] = cps + [0] * (2 - len(cps))
    return dict(sorted(out.items(), key=lambda kv: kv[0].encode()))


def generate(root):
    zeros = digit_zeros(root)
    pages = {(z + d) >> 8 for z in zeros for d in range(10) if z + d <= 0xFFFF}
    digits = "".join([
        genlib.banner(SCRIPT, LINE_BREAK),
        '#include "varnice/transform/language_tables.h"\n\n',
        "namespace varnice::internal {\n\n",
        "const char32_t kDecimalDigitZeros[] = {\n",
        genlib.c_rows([f"0x{z:04X}" for z in zeros], 8), "\n};\n",
        f"const long kDecimalDigitZeroCount = {len(zeros)};\n",
        "const std::uint64_t kDecimalDigitPages[4] = {",
        ", ".join(f"0x{sum(1 << (p & 63) for p in pages if p >> 6 == w):016X}" for w in range(4)),
        "};\n\n",
        "}  // namespace varnice::internal\n",
    ])
    table = entities(root)
    names, rows, offset = [], [], 0
    for name, (first, second) in table.items():
        names.append(name)
        rows.append(f"{{{offset}, {len(name)}, 0x{first:04X}, 0x{second:04X}}}")
        offset += len(name)
    blob = "".join(names)
    blob_lines = "\n".join(f'    "{blob[i:i + 72]}"' for i in range(0, len(blob), 72))
    ents = "".join([
        genlib.banner(SCRIPT, ENTITIES),
        '#include "varnice/transform/language_tables.h"\n\n',
        "namespace varnice::internal {\n\n",
        f"const char kEntityNames[] =\n{blob_lines};\n\n",
        "const EntityEntry kEntities[] = {\n", genlib.c_rows(rows, 3), "\n};\n",
        f"const long kEntityCount = {len(rows)};\n\n",
        "}  // namespace varnice::internal\n",
    ])
    return {OUT_DIGITS: digits, OUT_ENTITIES: ents}
