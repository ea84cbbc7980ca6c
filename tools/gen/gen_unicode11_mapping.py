"""The Unicode 1.1 <-> 2.0 code point mapping of Unicode11Encoding.

Only characters whose code point changed between the versions are listed. In
practice that is the Hangul block: 1.1 placed 6656 syllables at U+3400-U+4DFF,
2.0 encodes all 11172 at U+AC00-U+D7A3 in an order computed from their jamo.
A 1.1 syllable is matched to its 2.0 code point through the jamo decomposition
(field 5) that 1.1 gives; every other 1.1 character is matched by name (its
2.1 name or its 1.0 name), which finds only renames at the same code point
(the AE ligatures became letters), so nothing else moves. The generator fails
if a 1.1 character can be placed nowhere, so a data change cannot silently
drop one.

Both directions are 256 row pointers indexed by the high byte of a code unit;
a row holds 256 targets indexed by the low byte. A null row or a zero entry
means "unchanged": 2.0 syllables that 1.1 lacked map to themselves.
"""
import genlib

SCRIPT = "gen_unicode11_mapping.py"
OUT = "varnice/encoding/unicode/generated/unicode11_mapping_tables.cpp"

S_BASE, L_BASE, V_BASE, T_BASE = 0xAC00, 0x1100, 0x1161, 0x11A7
L_COUNT, V_COUNT, T_COUNT = 19, 21, 28


def compose_hangul(jamo):
    """The 2.0 syllable for a leading, vowel and optional trailing jamo, or None."""
    if len(jamo) not in (2, 3):
        return None
    l, v = jamo[0] - L_BASE, jamo[1] - V_BASE
    t = jamo[2] - T_BASE if len(jamo) == 3 else 0
    if not (0 <= l < L_COUNT and 0 <= v < V_COUNT and 0 <= t < T_COUNT):
        return None
    if len(jamo) == 3 and t == 0:
        return None
    return S_BASE + (l * V_COUNT + v) * T_COUNT + t


def build_mapping(root):
    u11 = dict(genlib.read_unicode_data(root / "data/unicode-1.1/UnicodeData.txt"))
    u20 = dict(genlib.read_unicode_data(root / "data/unicode-2.1.8/UnicodeData.txt"))
    by_name = {}
    for cp, fields in u20.items():
        for name in (fields[1], fields[10]):
            if name and not name.startswith("<"):
                by_name.setdefault(name, cp)

    to20 = {}
    for cp, fields in sorted(u11.items()):
        name = fields[1]
        if name.startswith("HANGUL SYLLABLE "):
            target = compose_hangul([int(x, 16) for x in fields[5].split()])
            if target is None:
                raise SystemExit(f"{SCRIPT}: U+{cp:04X} has no 2.0 syllable")
        elif name.startswith("<"):
            continue  # ranges and representatives keep their place
        elif cp in u20 and name in (u20[cp][1], u20[cp][10]):
            continue
        elif name in by_name:
            target = by_name[name]
        elif cp in u20:
            continue  # renamed in place
        else:
            raise SystemExit(f"{SCRIPT}: U+{cp:04X} {name} is not in 2.0")
        if target != cp:
            to20[cp] = target

    from20 = {v: k for k, v in to20.items()}
    if len(from20) != len(to20):
        raise SystemExit(f"{SCRIPT}: two 1.1 characters map to one 2.0 character")
    return to20, from20


def render_rows(prefix, mapping):
    rows = sorted({cp >> 8 for cp in mapping})
    out = []
    for hi in rows:
        values = [f"0x{mapping.get((hi << 8) | lo, 0):04X}" for lo in range(256)]
        out.append(f"const unsigned short k{prefix}Row{hi:02X}[256] = {{\n"
                   f"{genlib.c_rows(values, 8)}\n}};\n")
    pointers = [f"k{prefix}Row{hi:02X}" if hi in rows else "nullptr" for hi in range(256)]
    return rows, "\n".join(out), pointers


def generate(root):
    to20, from20 = build_mapping(root)
    parts = [
        genlib.banner(SCRIPT, "data/unicode-1.1/UnicodeData.txt",
                      "data/unicode-2.1.8/UnicodeData.txt"),
        f"// {len(to20)} code points move from 1.1 to 2.0 and {len(from20)} back;\n"
        "// a null row or a zero entry leaves a code unit unchanged.\n",
        '#include "varnice/encoding/unicode/unicode_data_tables.h"\n',
        "namespace varnice::internal {\n",
        "namespace {\n",
    ]
    tables = []
    for prefix, mapping in (("To20", to20), ("From20", from20)):
        _, rows_text, pointers = render_rows(prefix, mapping)
        parts.append(rows_text)
        tables.append(pointers)
    parts.append("}  // namespace\n")
    for (name, pointers) in zip(("kUnicode11to20Rows", "kUnicode20to11Rows"), tables):
        parts.append(f"const unsigned short* const {name}[256] = {{\n"
                     f"{genlib.c_rows(pointers, 8)}\n}};\n")
    parts.append("}  // namespace varnice::internal\n")
    return {OUT: "\n".join(parts)}
