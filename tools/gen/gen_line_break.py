"""Line-break tables of Unicode20Encoding: one value for the side before a
character and one for the side after it.

InternalEncoding::MayBreakLineBetween(a, b) takes after(a) and before(b),
keeps the larger, and allows a break exactly when its lowest bit is 0. Each
side therefore votes with one of four values, and the stronger vote wins:

  0  allow   - no objection; a break happens if the other side agrees
  1  object  - no break here unless the other side forces one
  2  force   - break here whatever the other side says, unless it vetoes
  3  veto    - never break here

Examples: a letter objects to a break after it (1) and allows one before it
(0), so two letters stay together but a letter after a space (after = 2)
starts a new line. Ideographs force a break before them (2) so that they can
follow a Latin letter on a new line, while an opening bracket vetoes the break
after it (3) and a closing one vetoes the break before it. Line ends force the
break after them and veto the one before them, so CR LF stays together; the
cost is that a run of line ends counts as one break opportunity, after its
last member.

Classes come from LineBreak.txt (Unicode 15.0) restricted to the characters
assigned by Unicode 2.1; code points that 2.1 left unassigned get 1 on both
sides (the lookup default), so they bind to their neighbours.
"""
import genlib

SCRIPT = "gen_line_break.py"
OUT = "varnice/encoding/unicode/generated/line_break_tables.cpp"
DEFAULT = 1

# class: (before, after)
SIDES = {
    # hard line ends, spaces and the zero-width space
    "BK": (3, 2), "CR": (3, 2), "LF": (3, 2), "NL": (3, 2),
    "SP": (3, 2), "ZW": (3, 2),
    # glue
    "WJ": (3, 3), "GL": (1, 3), "CM": (1, 1), "ZWJ": (1, 1), "SG": (1, 1),
    "QU": (1, 3), "IN": (1, 1),
    # opening and closing punctuation
    "OP": (0, 3), "BB": (2, 3),
    "CL": (3, 0), "CP": (3, 1), "EX": (3, 0), "IS": (3, 1), "SY": (3, 0),
    "NS": (1, 0), "CJ": (1, 0), "BA": (1, 0), "HY": (1, 0), "B2": (2, 0),
    # numbers and their affixes
    "PR": (0, 1), "PO": (1, 1), "NU": (0, 1),
    # letters; complex-context and unknown scripts behave as letters
    "AL": (0, 1), "HL": (0, 1), "AI": (0, 1), "SA": (0, 1), "XX": (0, 1),
    "CB": (0, 0),
    # ideographs and Hangul
    "ID": (2, 0), "EB": (2, 0), "EM": (2, 0), "H2": (2, 0), "H3": (2, 0),
    "JL": (0, 1), "JV": (1, 0), "JT": (1, 0),
    "RI": (0, 1),
}


def classes(root):
    assigned = {cp for cp in genlib.assigned_by(root, "2.1") if cp <= 0xFFFF}
    out = {cp: "XX" for cp in assigned}  # the file's @missing default
    path = root / "data/unicode-15.0/LineBreak.txt"
    for first, last, value in genlib.read_property_ranges(path):
        for cp in range(first, min(last, 0xFFFF) + 1):
            if cp in assigned:
                out[cp] = value
    unknown = sorted({v for v in out.values() if v not in SIDES})
    if unknown:
        raise SystemExit(f"{SCRIPT}: no sides for line-break classes {unknown}")
    return out


def table(name, runs):
    rows = [f"{{0x{a:04X}, 0x{b:04X}, {v}}}" for a, b, v in runs]
    return (f"const ChunkTableEntryUSUC {name}[] = {{\n{genlib.c_rows(rows, 4)}\n}};\n"
            f"const long {name}Count = sizeof {name} / sizeof {name}[0];\n")


def generate(root):
    by_cp = classes(root)
    before = genlib.runs({cp: SIDES[c][0] for cp, c in by_cp.items()}, DEFAULT)
    after = genlib.runs({cp: SIDES[c][1] for cp, c in by_cp.items()}, DEFAULT)
    text = "\n".join([
        genlib.banner(SCRIPT, "data/unicode-15.0/LineBreak.txt",
                      "data/unicode-15.0/DerivedAge.txt"),
        "// Values: 0 allow, 1 object (the default), 2 force, 3 veto; the larger\n"
        "// of after(a) and before(b) decides. See the generator for the scheme.\n",
        '#include "varnice/encoding/unicode/unicode_data_tables.h"\n',
        "namespace varnice::internal {\n",
        table("kLineBreakBefore", before),
        table("kLineBreakAfter", after),
        "}  // namespace varnice::internal\n",
    ])
    return {OUT: text}
