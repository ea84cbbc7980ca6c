"""Code-page tables: for each table-driven code page, the to-Unicode byte trie
(an MBCStoUnicodeTable action array) and the from-Unicode lookup table, one
generated .cpp per code page under varnice/codepages/generated/.

Inputs are the .ucm mappings of data/codepages (see data/SOURCES.md): flag 0
(round trip) serves both directions, flag 3 (fallback) to Unicode only, flags 1
(best fit) and 2 (substitution) are ignored, so a character without a round
trip mapping is outside the code page's repertoire. JIS X 0201 is made by rule,
JIS X 0208 is cut out of EUC-JP, and Shift_JIS gets its user-defined area.

The list of pages and every fact about them (numbers, names, MIME names, code
page numbers, ASCII flag, table shapes, mapping file) is data/codepages/
catalogue.txt; from it this generator also writes the encodings' factories and
registry entries (generated/code_page_catalogue.cpp), and checks the factory
declarations of external_encoding.h against it.

Trie: state 0 reads the first byte; every distinct proper prefix of a code gets
a state of its own, numbered by (length, bytes), so the lead bytes come first in
ascending order and the EUC-JP 0x8F second bytes after them. 0xFFFF marks a lead
byte, 0xFFFD an invalid byte (next state 0).
"""
import collections
import pathlib
import re

import genlib

OUT_DIR = "varnice/codepages/generated"
SCRIPT = "gen_codepages.py"
INVALID = 0xFFFD
LEAD = 0xFFFF

CATALOGUE = "data/codepages/catalogue.txt"
HEADER = "varnice/encoding/external_encoding.h"
COLUMNS = ("number", "factory", "cls", "tables", "mime", "code_page", "ascii", "mapping",
           "shape", "missing", "nicknames")
Page = collections.namedtuple("Page", COLUMNS)
# The classes a catalogue line may name, and where each is declared.
CLASSES = {
    "MBCSEncoding": "varnice/codepages/mbcs_encoding.h",
    "ISO2022JPEncoding": "varnice/codepages/iso2022_encoding.h",
}
SHAPES = ("plane", "delta", "gap")


def read_catalogue(root):
    """The lines of data/codepages/catalogue.txt as Pages, in file order; a
    dash stands for None. Refuses a file that breaks its own rules."""
    pages = []
    text = (root / CATALOGUE).read_text(encoding="utf-8")
    for number, line in enumerate(text.splitlines(), 1):
        if not line.strip() or line.startswith("#"):
            continue
        cells = [c.strip() for c in line.split("|")]
        where = "%s:%d" % (CATALOGUE, number)
        if len(cells) != len(COLUMNS):
            raise ValueError("%s: %d columns, not %d" % (where, len(cells), len(COLUMNS)))
        cells = [None if c == "-" else c for c in cells]
        page = Page(*cells)._replace(
            number=int(cells[0]), code_page=int(cells[5]),
            ascii={"yes": True, "no": False, None: None}[cells[6]],
            missing=None if cells[9] is None else int(cells[9]),
            nicknames=[n.strip() for n in (cells[10] or "").split(",")])
        table_driven = page.cls == "MBCSEncoding"
        if page.cls not in CLASSES:
            raise ValueError("%s: unknown class %s" % (where, page.cls))
        if table_driven != all(v is not None for v in (page.tables, page.ascii, page.mapping,
                                                        page.shape, page.missing)):
            raise ValueError("%s: a table-driven page needs tables, ASCII, mapping, shape "
                             "and missing; any other class none of them" % where)
        if page.shape not in SHAPES + (None,):
            raise ValueError("%s: unknown shape %s" % (where, page.shape))
        if not 0 <= page.number <= 141 or (pages and page.number <= pages[-1].number):
            raise ValueError("%s: numbers must rise within 0-141" % where)
        if any(page.factory == p.factory or (page.tables and page.tables == p.tables)
               for p in pages):
            raise ValueError("%s: factory or tables named twice" % where)
        pages.append(page)
    return pages


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
        "  static const %s table(256, %d, kActions);\n"
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
    ) % (missing, len(rows), render_actions(rows), data, name,
         # A page of two-byte codes only (JIS X 0208 between ISO-2022 escapes)
         # keeps a flat array of them: its text is all pairs.
         "CodePageToUnicodeTable" if all(a[0] == LEAD or a[0] == INVALID for a in rows[0])
         else "MBCStoUnicodeTable", len(rows), name, make))


def render_header(names):
    decls = "\n".join(
        "MBCStoUnicodeTable const& %sToUnicodeTable();\n"
        "LookupUnsignedLongTable<unsigned short> const& %sFromUnicodeTable();" % (n, n)
        for n in names)
    return (
        genlib.banner(SCRIPT, CATALOGUE, "data/codepages")
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


def c_string(text):
    return "nullptr" if text is None else '"%s"' % text


def render_factory(page):
    """The definition of ExternalEncoding::<factory>(): the encoding is a
    function-local static made on first call."""
    opening = "  static %s encoding(" % page.cls
    lines = ["TextEncodingID(%d), k%sNames, %s, %d" % (page.number, page.factory,
                                                     c_string(page.mime), page.code_page)]
    if page.cls == "MBCSEncoding":
        lines += ["varnice::internal::%sToUnicodeTable()" % page.factory,
                  "varnice::internal::%sFromUnicodeTable(), %s"
                  % (page.factory, "true" if page.ascii else "false")]
    return ("ExternalEncoding* ExternalEncoding::%s() {\n%s%s);\n  return &encoding;\n}\n"
            % (page.factory, opening, (",\n" + " " * len(opening)).join(lines)))


def render_catalogue(pages):
    includes = sorted({CLASSES[p.cls] for p in pages}
                      | {"varnice/codepages/code_page_catalogue.h",
                         OUT_DIR + "/code_page_tables.h"})
    names = "".join("const char* k%sNames[] = {%s, nullptr};\n"
                    % (p.factory, ", ".join(c_string(n) for n in p.nicknames)) for p in pages)
    creates = "".join("  ExternalEncoding::%s();\n" % p.factory for p in pages)
    return (
        genlib.banner(SCRIPT, CATALOGUE)
        + "// The registry entries and factories of the code pages and ISO-2022-JP. The\n"
        "// tables of a page are made before its encoding, while the constructor's\n"
        "// arguments are evaluated, so at exit they are destroyed after it.\n"
        + "".join('#include "%s"\n' % i for i in includes)
        + "\nnamespace {\n\n// The nicknames, the primary name first.\n%s\n}  // namespace\n\n" % names
        + "\n".join(render_factory(p) for p in pages)
        + "\nvoid varnice::internal::CreateCodePages() {\n%s}\n" % creates)


DECLARATION = re.compile(r"\s*static ExternalEncoding\* (\w+)\(\);")


def problems(root):
    """Where the hand-written factory declarations of external_encoding.h
    disagree with the catalogue: the declarations that follow the comment
    naming the catalogue must list its factories, in its order."""
    lines = (root / HEADER).read_text(encoding="utf-8").splitlines()
    marks = [i for i, line in enumerate(lines) if CATALOGUE in line]
    if not marks:
        return ["%s: no comment names %s above the code-page factories" % (HEADER, CATALOGUE)]
    i = marks[0]
    while i < len(lines) and lines[i].strip().startswith("//"):
        i += 1
    declared = []
    while i < len(lines) and DECLARATION.match(lines[i]):
        declared.append(DECLARATION.match(lines[i]).group(1))
        i += 1
    listed = [p.factory for p in read_catalogue(root)]
    if declared == listed:
        return []
    out = ["%s declares %s() but %s does not list it" % (HEADER, f, CATALOGUE)
           for f in declared if f not in listed]
    out += ["%s lists %s but %s does not declare %s()" % (CATALOGUE, f, HEADER, f)
            for f in listed if f not in declared]
    return out or ["%s declares the factories in another order than %s" % (HEADER, CATALOGUE)]


def generate(root):
    pages = read_catalogue(root)
    tabled = [p for p in pages if p.cls == "MBCSEncoding"]
    files = {}
    for p in tabled:
        _, _, text = render_page(p.factory, p.mapping, p.shape, p.missing, mappings(root, p.mapping))
        files["%s/%s.cpp" % (OUT_DIR, p.tables)] = text
    files[OUT_DIR + "/code_page_tables.h"] = render_header([p.factory for p in tabled])
    files[OUT_DIR + "/code_page_catalogue.cpp"] = render_catalogue(pages)
    return files


if __name__ == "__main__":
    # Prints each page's state count and from-Unicode shape.
    root = pathlib.Path(__file__).resolve().parents[2]
    for p in read_catalogue(root):
        if p.cls == "MBCSEncoding":
            rows, summary, _ = render_page(p.factory, p.mapping, p.shape, p.missing,
                                           mappings(root, p.mapping))
            print("%-20s %4d states  %s" % (p.factory, len(rows), summary))
