"""Generates the constant tables of the transforms from the Unicode 2.1.8
character database:

- HalfwidthMappingTable / FullwidthMappingTable: the <wide> and <narrow>
  compatibility decompositions, read as width pairs (gap tables);
- DecompositionTable: full canonical decompositions of exactly two units;
- CompositionTable: the same pairs read backwards (lowest code point wins when
  two characters share a decomposition, so U+00C5 rather than U+212B);
- CombiningMarkTable / SpacingMarkTable: spacing diacritics whose compatibility
  decomposition is a space followed by one combining mark (the first spacing
  character of a mark wins the way back);
- CanonicalTable: characters on pages F9-FF whose full decomposition
  (canonical or compatibility) is one or two units.
"""
import genlib

SCRIPT = "gen_transforms.py"
UCD = "data/unicode-2.1.8/UnicodeData.txt"
OUT = "varnice/transform/generated/transform_tables.cpp"

# Keys closer than this share one gap run (the hole costs less than a run).
GAP_RUN_JOIN = 8


def decompositions(root):
    """{code point: (tag or None, [units])} for every character with a
    decomposition."""
    out = {}
    for cp, fields in genlib.read_unicode_data(root / UCD):
        if not fields[5]:
            continue
        parts = fields[5].split()
        tag = parts.pop(0) if parts[0].startswith("<") else None
        out[cp] = (tag, [int(p, 16) for p in parts])
    return out


def full(decomp, cp, canonical_only):
    entry = decomp.get(cp)
    if entry is None or (canonical_only and entry[0] is not None):
        return [cp]
    return [u for part in entry[1] for u in full(decomp, part, canonical_only)]


def width_pairs(decomp):
    """(wide, narrow) pairs: a <wide> character and what it widens, a <narrow>
    character and what it narrows."""
    half = {}
    for cp, (tag, units) in decomp.items():
        if len(units) != 1 or cp > 0xFFFF:
            continue
        if tag == "<wide>":
            half[cp] = units[0]
        elif tag == "<narrow>":
            half[units[0]] = cp
    return half


def gap_table(mapping):
    """Sorted runs of keys with the offsets that move them into one value
    array; holes inside a run hold 0 (no mapping)."""
    keys = sorted(mapping)
    runs = []
    for k in keys:
        if runs and k - runs[-1][1] <= GAP_RUN_JOIN:
            runs[-1][1] = k
        else:
            runs.append([k, k])
    values, gaps = [], []
    for first, last in runs:
        delta = len(values) - first
        gaps.append((first, last, delta))
        values.extend(mapping.get(c, 0) for c in range(first, last + 1))
    return gaps, values


def planes(mapping):
    """{high byte: [256 values]} of a plane table; 0 is the missing value."""
    out = {}
    for cp, value in mapping.items():
        out.setdefault(cp >> 8, [0] * 256)[cp & 0xFF] = value
    return out


def render_gap(name, gaps, values):
    gap_rows = genlib.c_rows(
        [f"{{0x{a:04X}, 0x{b:04X}, {d}}}" for a, b, d in gaps], 3)
    value_rows = genlib.c_rows([f"0x{v:04X}" for v in values], 10)
    return (
        f"const ChunkTableEntryUSL k{name}Gaps[] = {{\n{gap_rows}\n}};\n"
        f"const unsigned short k{name}Values[] = {{\n{value_rows}\n}};\n"
    )


def render_planes(name, table):
    """(the planes, private; the pointer array and its entry count, public)."""
    private = []
    for page in sorted(table):
        rows = genlib.c_rows([f"0x{v:X}" for v in table[page]], 8)
        private.append(f"const std::uint32_t k{name}Page{page:02X}[256] = {{\n{rows}\n}};\n")
    pointers = [f"k{name}Page{p:02X}" if p in table else "nullptr" for p in range(256)]
    entries = sum(1 for t in table.values() for v in t if v)
    public = (
        f"std::uint32_t const* const {name}[256] = {{\n{genlib.c_rows(pointers, 4)}\n}};\n"
        f"const long {name}Entries = {entries};\n\n")
    return "".join(private), public


def render_bit_pages(name, units):
    """A plane of bit sets: 32 bytes per page of 256 units, null pages empty."""
    pages = {}
    for u in units:
        pages.setdefault(u >> 8, [0] * 32)[(u & 0xFF) >> 3] |= 1 << (u & 7)
    private = "".join(
        f"const std::uint8_t k{name}Page{p:02X}[32] = {{\n"
        f"{genlib.c_rows([f'0x{b:02X}' for b in bits], 16)}\n}};\n"
        for p, bits in sorted(pages.items()))
    pointers = [f"k{name}Page{p:02X}" if p in pages else "nullptr" for p in range(256)]
    public = (f"std::uint8_t const* const k{name}[256] = {{\n{genlib.c_rows(pointers, 4)}\n}};\n\n")
    return private, public


def render_sparse(name, record, pairs, key_digits):
    rows = genlib.c_rows(
        [f"{{0x{k:0{key_digits}X}, 0x{v:04X}}}" for k, v in sorted(pairs.items())], 4)
    return (
        f"const {record} {name}[] = {{\n{rows}\n}};\n"
        f"const long {name}Count = {len(pairs)};\n\n")


def tables(root):
    decomp = decompositions(root)
    half = width_pairs(decomp)
    full_width = {v: k for k, v in half.items()}
    assert len(full_width) == len(half), "width pairs must be one-to-one"

    decomposition, composition = {}, {}
    for cp in sorted(decomp):
        if cp > 0xFFFF:
            continue
        units = full(decomp, cp, canonical_only=True)
        if len(units) == 2 and units != [cp]:
            decomposition[cp] = (units[0] << 16) | units[1]
            composition.setdefault(decomposition[cp], cp)

    combining = {
        cp: units[1]
        for cp, (tag, units) in decomp.items()
        if tag in ("<compat>", "<isolated>") and len(units) == 2 and units[0] == 0x0020
    }
    spacing = {}
    for cp in sorted(combining):
        spacing.setdefault(combining[cp], cp)

    canonical = {}
    for cp in sorted(decomp):
        if not 0xF900 <= cp <= 0xFFFF:
            continue
        units = full(decomp, cp, canonical_only=False)
        if len(units) == 1:
            canonical[cp] = units[0]
        elif len(units) == 2:
            canonical[cp] = (units[0] << 16) | units[1]
    # U+FFEF has always mapped to itself here; hosts compare against it.
    canonical[0xFFEF] = 0xFFEF

    return half, full_width, decomposition, composition, combining, spacing, canonical


def generate(root):
    half, full_width, decomposition, composition, combining, spacing, canonical = tables(root)
    hg, hv = gap_table(half)
    fg, fv = gap_table(full_width)
    decomposition_planes, decomposition_public = render_planes("DecompositionTable",
                                                                planes(decomposition))
    canonical_planes, canonical_public = render_planes("CanonicalTable", planes(canonical))
    seconds_pages, seconds_public = render_bit_pages(
        "CompositionSeconds", {key & 0xFFFF for key in composition})
    text = [
        genlib.banner(SCRIPT, UCD),
        '#include "varnice/transform/transform_tables.h"\n\n',
        "namespace {\n\n",
        render_gap("Halfwidth", hg, hv),
        render_gap("Fullwidth", fg, fv),
        decomposition_planes,
        canonical_planes,
        seconds_pages,
        "\n}  // namespace\n\n",
        f"const GapMappingTable HalfwidthMappingTable = {{kHalfwidthGaps, {len(hg)}, "
        f"kHalfwidthValues, {len(hv)}}};\n",
        f"const GapMappingTable FullwidthMappingTable = {{kFullwidthGaps, {len(fg)}, "
        f"kFullwidthValues, {len(fv)}}};\n\n",
        decomposition_public,
        canonical_public,
        render_sparse("CompositionTable", "SparseTableEntryULUS", composition, 8),
        render_sparse("CombiningMarkTable", "SparseTableEntryUSUS", combining, 4),
        render_sparse("SpacingMarkTable", "SparseTableEntryUSUS", spacing, 4),
        "namespace varnice::internal {\n\n",
        seconds_public,
        "}  // namespace varnice::internal\n",
    ]
    return {OUT: "".join(text).rstrip("\n") + "\n"}
