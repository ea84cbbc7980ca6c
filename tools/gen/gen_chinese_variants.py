"""Generates the tables of the Chinese variant transforms from the OpenCC
dictionaries in data/opencc (characters and phrases, each direction).

The transforms convert by forward longest match over phrases and characters.
To keep the library small, a phrase is left out when the remaining phrases and
the characters convert it to the same text (four phrases in five). On text
made of every phrase run together this changes 0.2 % of the characters; on
ordinary text, none that we have found. A one-unit to one-unit character mapping goes
into a page table; every other key (phrases, characters outside the BMP) into
a sorted list of UTF-16 keys, with an index from a first unit to its keys.
"""
import genlib

SCRIPT = "gen_chinese_variants.py"
DIR = "data/opencc/"
OUT = "varnice/transform/generated/chinese_variant_tables.cpp"
DIRECTIONS = [("Traditional", "STCharacters", "STPhrases"),
              ("Simplified", "TSCharacters", "TSPhrases")]


def load(root, name):
    out = {}
    for line in (root / (DIR + name + ".txt")).read_text(encoding="utf-8").splitlines():
        if not line:
            continue
        key, values = line.split("\t")
        out[key] = values.split(" ")[0]
    return out


def units(s):
    b = s.encode("utf-16-le")
    return [int.from_bytes(b[i:i + 2], "little") for i in range(0, len(b), 2)]


def longest_match(text, chars, phrases, longest):
    """Forward longest match, as the transforms convert."""
    out, i = [], 0
    while i < len(text):
        for n in range(min(longest, len(text) - i), 1, -1):
            value = phrases.get(text[i:i + n])
            if value is not None:
                out.append(value)
                i += n
                break
        else:
            out.append(chars.get(text[i], text[i]))
            i += 1
    return "".join(out)


def reduce_phrases(chars, phrases):
    """The phrases that character-by-character conversion gets wrong, and then
    those that the kept phrases themselves get wrong, until none is."""
    longest = max(len(k) for k in phrases)
    kept = {k: v for k, v in phrases.items() if "".join(chars.get(c, c) for c in k) != v}
    while True:
        wrong = {k: v for k, v in phrases.items()
                 if k not in kept and longest_match(k, chars, kept, longest) != v}
        if not wrong:
            return kept
        kept.update(wrong)


def render(name, chars, phrases):
    page_map, listed = {}, dict(phrases)
    for k, v in chars.items():
        if k == v:
            continue
        if len(units(k)) == 1 and len(units(v)) == 1:
            page_map[units(k)[0]] = units(v)[0]
        elif k not in listed:
            listed[k] = v
    pages = {}
    for k, v in page_map.items():
        pages.setdefault(k >> 8, [0] * 256)[k & 0xFF] = v
    entries = sorted((units(k), units(v)) for k, v in listed.items())
    key_blob, value_blob, rows, starts = [], [], [], set()
    for k, v in entries:
        assert len(v) <= 2 * len(k) and len(k) <= 32, "the transform's held units and room"
        rows.append(f"{{{len(key_blob)}, {len(value_blob)}, {len(k)}, {len(v)}}}")
        key_blob.extend(k)
        value_blob.extend(v)
        starts.add(k[0])
    # For each unit that begins a key, where its keys lie in the sorted list:
    # per page of 256 units, 257 offsets from the page's first entry.
    index = {}
    for i, (k, _) in enumerate(entries):
        index.setdefault(k[0] >> 8, []).append((k[0] & 0xFF, i))
    index_pages, index_bases = {}, {}
    for page, items in index.items():
        counts = [0] * 256
        for low, _ in items:
            counts[low] += 1
        offsets = [0]
        for c in counts:
            offsets.append(offsets[-1] + c)
        assert offsets[-1] < 65536 and items[-1][1] - items[0][1] + 1 == len(items)
        index_pages[page], index_bases[page] = offsets, items[0][1]
    text = []
    for p, values in sorted(pages.items()):
        text.append(f"const char16_t k{name}Page{p:02X}[256] = {{\n"
                    f"{genlib.c_rows([f'0x{x:X}' for x in values], 12)}\n}};\n")
    for p, offsets in sorted(index_pages.items()):
        text.append(f"const std::uint16_t k{name}IndexPage{p:02X}[257] = {{\n"
                    f"{genlib.c_rows([str(o) for o in offsets], 16)}\n}};\n")
    text.append(f"const char16_t k{name}Keys[] = {{\n"
                f"{genlib.c_rows([f'0x{x:X}' for x in key_blob], 12)}\n}};\n")
    text.append(f"const char16_t k{name}Values[] = {{\n"
                f"{genlib.c_rows([f'0x{x:X}' for x in value_blob], 12)}\n}};\n")
    text.append(f"const VariantKey k{name}Entries[] = {{\n{genlib.c_rows(rows, 4)}\n}};\n")
    page_ptrs = [f"k{name}Page{p:02X}" if p in pages else "nullptr" for p in range(256)]
    index_ptrs = [f"k{name}IndexPage{p:02X}" if p in index_pages else "nullptr" for p in range(256)]
    bases = [str(index_bases.get(p, 0)) for p in range(256)]
    text.append(f"const char16_t* const k{name}Pages[256] = {{\n{genlib.c_rows(page_ptrs, 4)}\n}};\n")
    text.append(f"const std::uint16_t* const k{name}Index[256] = {{\n"
                f"{genlib.c_rows(index_ptrs, 4)}\n}};\n")
    text.append(f"const std::uint32_t k{name}IndexBases[256] = {{\n{genlib.c_rows(bases, 12)}\n}};\n")
    longest = max(len(k) for k, _ in entries)
    longest_value = max(len(v) for _, v in entries)
    table = (f"const VariantTable k{name}Table = {{k{name}Pages, k{name}Index, k{name}IndexBases, "
             f"k{name}Entries, {len(entries)}, k{name}Keys, k{name}Values, {longest}, {longest_value}}};\n")
    return "".join(text), table


def generate(root):
    private, public = [], []
    for name, chars_file, phrases_file in DIRECTIONS:
        chars = load(root, chars_file)
        phrases = reduce_phrases(chars, load(root, phrases_file))
        p, t = render(name, chars, phrases)
        private.append(p)
        public.append(t)
    sources = [DIR + n + ".txt" for _, c, p in DIRECTIONS for n in (c, p)]
    out = "".join([
        genlib.banner(SCRIPT, *sources),
        '#include "varnice/transform/language_tables.h"\n\n',
        "namespace varnice::internal {\n\nnamespace {\n\n",
        *private,
        "\n}  // namespace\n\n",
        *public,
        "\n}  // namespace varnice::internal\n",
    ])
    return {OUT: out}
