"""Code-page tables: for each table-driven code page, the to-Unicode byte trie
(an MBCStoUnicodeTable action array) and the from-Unicode lookup table, one
generated .cpp per code page under varnice/codepages/generated/.

Inputs are the .ucm mappings of data/codepages (see data/SOURCES.md): flag 0
(round trip) serves both directions, flag 3 (fallback) to Unicode only, flags 1
(best fit) and 2 (substitution) are ignored, so a character without a round
trip mapping is outside the code page's repertoire. JIS X 0201 is made by rule,
JIS X 0208 is cut out of EUC-JP, and Shift_JIS gets its user-defined area.

Trie: state 0 reads the first byte; every distinct proper prefix of a code gets
a state of its own, numbered by (length, bytes), so the lead bytes come first in
ascending order and the EUC-JP 0x8F second bytes after them. 0xFFFF marks a lead
byte, 0xFFFD an invalid byte (next state 0).
"""
import pathlib
import re

import genlib

OUT_DIR = "varnice/codepages/generated"
SCRIPT = "gen_codepages.py"
INVALID = 0xFFFD
LEAD = 0xFFFF

# (factory, file name, source file or rule, from-Unicode shape, missing value)
# The shapes keep each table small: planes for scattered data, delta runs
# where the mapping is mostly shifted blocks, gaps for sparse EBCDIC pages.
PAGES = [
    ("ASCII", "ascii", "windows-20127-2000.ucm", "delta", 26),
    ("CP1252", "cp1252", "windows-1252-2000.ucm", "plane", 26),
    ("EUCPkdFmtJapanese", "euc_jp", "glibc-EUC_JP-2.1.2.ucm", "plane", 26),
    ("HalfWidthKatakana", "jis_x0201", "rule:jisx0201", "plane", 26),
    ("ISO87JISX0208", "jis_x0208", "rule:jisx0208", "plane", 26),
    ("ISOLatin1", "iso_8859_1", "windows-28591-2000.ucm", "delta", 26),
    ("ISOLatin2", "iso_8859_2", "windows-28592-2000.ucm", "plane", 26),
    ("ISOLatin3", "iso_8859_3", "windows-28593-2000.ucm", "plane", 26),
    ("ISOLatin5", "iso_8859_9", "windows-28599-2000.ucm", "delta", 26),
    ("PC850Multilingual", "cp850", "windows-850-2000.ucm", "plane", 26),
    ("PC8CodePage437", "cp437", "windows-437-2000.ucm", "plane", 26),
    ("ShiftJIS", "shift_jis", "rule:sjis", "plane", 26),
    ("CP932", "cp932", "windows-932-2000.ucm", "plane", 26),
    ("CP852", "cp852", "windows-852-2000.ucm", "plane", 26),
    ("CP857", "cp857", "windows-857-2000.ucm", "plane", 26),
    ("CP860", "cp860", "windows-860-2000.ucm", "plane", 26),
    ("CP863", "cp863", "windows-863-2000.ucm", "plane", 26),
    ("CP870", "cp870", "windows-870-2000.ucm", "plane", 63),
    ("CP1250", "cp1250", "windows-1250-2000.ucm", "plane", 26),
    ("CP1254", "cp1254", "windows-1254-2000.ucm", "plane", 26),
    ("CP20105", "cp20105", "windows-20105-2000.ucm", "delta", 26),
    ("CP20290", "cp20290", "windows-20290-2000.ucm", "plane", 63),
    ("CP21027", "cp21027", "windows-21027-2000.ucm", "plane", 26),
    ("CP28599", "cp28599", "windows-28599-2000.ucm", "delta", 26),
    ("ISO_8859_15", "iso_8859_15", "windows-28605-2000.ucm", "delta", 26),
    ("CCSID290", "ccsid290", "ibm-290_P100-1995.ucm", "gap", 63),
    ("CCSID942", "ccsid942", "ibm-942_P12A-1999.ucm", "plane", 26),
    ("CCSID1027", "ccsid1027", "ibm-1027_P100-1995.ucm", "gap", 63),
]

RULE_SOURCES = {
    "rule:jisx0201": "the JIS X 0201 rule of data/SOURCES.md",
    "rule:jisx0208": "data/codepages/glibc-EUC_JP-2.1.2.ucm",
    "rule:sjis": "data/codepages/glibc-SJIS-2.1.2.ucm and its user-defined area",
}

UCM_LINE = re.compile(r"<U([0-9A-Fa-f]{4,6})>\s+((?:\\x[0-9A-Fa-f]{2})+)\s+\|([0-3])")


def read_ucm(path):
    """(code point, bytes, flag) for every mapping line of a .ucm file."""
    out = []
    for line in pathlib.Path(path).read_text(encoding="latin-1").splitlines():
        m = UCM_LINE.match(line)
        if m:
            code = bytes(int(h, 16) for h in m.group(2).split("\\x")[1:])
            out.append((int(m.group(1), 16), code, int(m.group(3))))
    return out


def sjis_user_area():
    """Lead bytes F0-F9 with trail bytes 40-7E, 80-FC map in order onto
    U+E000-U+E757."""
    u = 0xE000
    for lead in range(0xF0, 0xFA):
        for trail in list(range(0x40, 0x7F)) + list(range(0x80, 0xFD)):
            yield u, bytes((lead, trail)), 0
            u += 1


def mappings(root, source):
    """The (code point, bytes, flag) list of one code page, flags 0 and 3 only."""
    cp_dir = root / "data/codepages"
    if source == "rule:jisx0201":
        out = [(b, bytes((b,)), 0) for b in range(0x80)]
        out[0x5C] = (0x00A5, b"\x5c", 0)
        out[0x7E] = (0x203E, b"\x7e", 0)
        out += [(0xFF61 + b - 0xA1, bytes((b,)), 0) for b in range(0xA1, 0xE0)]
    elif source == "rule:jisx0208":
        out = [(u, bytes(x - 0x80 for x in code), flag)
               for u, code, flag in read_ucm(cp_dir / "glibc-EUC_JP-2.1.2.ucm")
               if len(code) == 2 and code[0] >= 0xA1]
    elif source == "rule:sjis":
        out = read_ucm(cp_dir / "glibc-SJIS-2.1.2.ucm") + list(sjis_user_area())
    else:
        out = read_ucm(cp_dir / source)
    out = [m for m in out if m[2] in (0, 3)]
    check(source, out)
    return out


def check(source, maps):
    seen_codes, seen_units = set(), set()
    for u, code, flag in maps:
        assert u <= 0xFFFF and u not in (INVALID, LEAD), (source, hex(u))
        assert code not in seen_codes, (source, code)
        seen_codes.add(code)
        if flag == 0:
            assert u not in seen_units, (source, hex(u))
            seen_units.add(u)
    for code in seen_codes:
        for k in range(1, len(code)):
            assert code[:k] not in seen_codes, (source, code)


def build_trie(maps):
    """The action rows: a list of states, each 256 (output, next) pairs."""
    prefixes = sorted({code[:k] for _, code, _ in maps for k in range(1, len(code))},
                      key=lambda p: (len(p), p))
    state_of = {b"": 0}
    for i, p in enumerate(prefixes):
        state_of[p] = i + 1
    rows = [[(INVALID, 0)] * 256 for _ in range(len(prefixes) + 1)]
    for p in prefixes:
        rows[state_of[p[:-1]]][p[-1]] = (LEAD, state_of[p])
    for u, code, _ in maps:
        rows[state_of[code[:-1]]][code[-1]] = (u, 0)
    return rows


def code_value(code):
    return int.from_bytes(code, "big")


def from_unicode(maps):
    return {u: code_value(code) for u, code, flag in maps if flag == 0}


def gap_runs(table):
    """Clusters the keys so that a hole inside a cluster (one stored value)
    costs no more than starting a new run (one chunk record, two values): keys
    with at most two unmapped keys between them share a run."""
    clusters = []
    for key in sorted(table):
        if clusters and key - clusters[-1][1] <= 3:
            clusters[-1][1] = key
        else:
            clusters.append([key, key])
    return clusters


def hexs(v):
    return "0x%X" % v


def render_actions(rows):
    lines = []
    for s, row in enumerate(rows):
        lines.append("    // state %d" % s)
        items = ["I" if a == (INVALID, 0) else "L(%d)" % a[1] if a[0] == LEAD
                 else "C(%X)" % a[0] for a in row]
        lines.append(genlib.c_rows(items, 16))
    return "\n".join(lines)


def render_from(name, shape, missing, table):
    """The constant data of the from-Unicode table and the expression that
    builds its table object."""
    parts = []
    if shape == "plane":
        planes = sorted({u >> 8 for u in table})
        for p in planes:
            items = [hexs(table[(p << 8) | q]) if ((p << 8) | q) in table else "M"
                     for q in range(256)]
            parts.append("const std::uint32_t kPlane%02X[256] = {\n%s\n};\n"
                         % (p, genlib.c_rows(items, 16)))
        ptrs = ["kPlane%02X" % p if p in planes else "nullptr" for p in range(256)]
        parts.append("const std::uint32_t* const kPlanes[256] = {\n%s\n};\n"
                     % genlib.c_rows(ptrs, 8))
        make = "static const CodePagePlaneTable table(M, kPlanes);"
        summary = "plane table, missing %d, %d planes" % (missing, len(planes))
    elif shape == "delta":
        runs = genlib.runs({u: code - u for u, code in table.items()})
        items = ["{%s, %s, %d}" % (hexs(f), hexs(l), d) for f, l, d in runs]
        parts.append("const ChunkTableEntryUSL kRuns[%d] = {\n%s\n};\n"
                     % (len(runs), genlib.c_rows(items, 4)))
        make = ("static const ChunkTable<unsigned short, long> deltas(0, kRuns, %d);\n"
                "  static const CodePageDeltaTable table(M, &deltas, kRuns, %d);"
                % (len(runs), len(runs)))
        summary = "delta table, missing %d, %d runs" % (missing, len(runs))
    else:
        clusters = gap_runs(table)
        runs, values = [], []
        for first, last in clusters:
            runs.append((first, last, len(values) - first))
            values += [table.get(k) for k in range(first, last + 1)]
        items = ["{%s, %s, %d}" % (hexs(f), hexs(l), d) for f, l, d in runs]
        parts.append("const ChunkTableEntryUSL kGaps[%d] = {\n%s\n};\n"
                     % (len(runs), genlib.c_rows(items, 4)))
        vals = ["M" if v is None else hexs(v) for v in values]
        parts.append("const std::uint32_t kValues[%d] = {\n%s\n};\n"
                     % (len(values), genlib.c_rows(vals, 16)))
        make = ("static const ChunkTable<unsigned short, long> gaps(0, kGaps, %d);\n"
                "  static const RangeTable<unsigned short, unsigned long> values(M, 0, %d, kValues);\n"
                "  static const GapTable<unsigned short, unsigned long> table(&gaps, &values);"
                % (len(runs), len(values)))
        summary = "gap table, missing %d, %d runs, %d values" % (missing, len(runs), len(values))
    return "".join(parts), make, summary


def render_page(name, source, shape, missing, maps):
    rows = build_trie(maps)
    table = from_unicode(maps)
    data, make, summary = render_from(name, shape, missing, table)
    src = RULE_SOURCES.get(source, "data/codepages/" + source)
    return rows, summary, ((
        genlib.banner(SCRIPT, src)
        + "// %s: %d states; from Unicode: %s.\n" % (name, len(rows), summary)
        + '#include "varnice/codepages/generated/code_page_tables.h"\n\n'
        "namespace varnice::internal {\n"
        "namespace {\n\n"
        "// Invalid byte, code unit (next state 0), lead byte.\n"
        "#define I {0xFFFD, 0}\n"
        "#define C(x) {0x##x, 0}\n"
        "#define L(s) {0xFFFF, s}\n"
        "// The from-Unicode table's missing value.\n"
        "#define M %d\n\n"
        "const FiniteStateMachineAction<unsigned short> kActions[%d * 256] = {\n%s\n};\n\n"
        "%s\n"
        "}  // namespace\n\n"
        "MBCStoUnicodeTable const& %sToUnicodeTable() {\n"
        "  static const MBCStoUnicodeTable table(256, %d, kActions);\n"
        "  return table;\n"
        "}\n\n"
        "LookupUnsignedLongTable<unsigned short> const& %sFromUnicodeTable() {\n"
        "  %s\n"
        "  return table;\n"
        "}\n\n"
        "#undef I\n"
        "#undef C\n"
        "#undef L\n"
        "#undef M\n\n"
        "}  // namespace varnice::internal\n"
    ) % (missing, len(rows), render_actions(rows), data, name, len(rows), name, make))


def render_header(names):
    decls = "\n".join(
        "MBCStoUnicodeTable const& %sToUnicodeTable();\n"
        "LookupUnsignedLongTable<unsigned short> const& %sFromUnicodeTable();" % (n, n)
        for n in names)
    return (
        genlib.banner(SCRIPT, "data/codepages")
        + "// The constant tables of every table-driven code page, built on first use.\n"
        "#ifndef VARNICE_CODEPAGES_GENERATED_CODE_PAGE_TABLES_H_\n"
        "#define VARNICE_CODEPAGES_GENERATED_CODE_PAGE_TABLES_H_\n\n"
        "#include <cstdint>\n\n"
        '#include "varnice/codepages/code_page_table_shapes.h"\n'
        '#include "varnice/codepages/mbcs_to_unicode_table.h"\n'
        '#include "varnice/tables/chunk_table.h"\n'
        '#include "varnice/tables/gap_table.h"\n'
        '#include "varnice/tables/lookup_records.h"\n'
        '#include "varnice/tables/range_table.h"\n\n'
        "namespace varnice::internal {\n\n%s\n\n}  // namespace varnice::internal\n\n"
        "#endif  // VARNICE_CODEPAGES_GENERATED_CODE_PAGE_TABLES_H_\n" % decls)


def generate(root):
    files = {}
    for name, slug, source, shape, missing in PAGES:
        maps = mappings(root, source)
        _, _, text = render_page(name, source, shape, missing, maps)
        files["%s/%s.cpp" % (OUT_DIR, slug)] = text
    files[OUT_DIR + "/code_page_tables.h"] = render_header([p[0] for p in PAGES])
    return files


if __name__ == "__main__":
    # Prints each page's state count and from-Unicode shape.
    root = pathlib.Path(__file__).resolve().parents[2]
    for name, _, source, shape, missing in PAGES:
        rows, summary, _ = render_page(name, source, shape, missing, mappings(root, source))
        print("%-20s %4d states  %s" % (name, len(rows), summary))
