"""Generates the romaji tables from data/romaji/kana_romaji.tsv (authored
here: no machine-readable romanization table is published):

- kKanaRomaji: hiragana syllables of one or two units -> Hepburn and Kunrei
  spellings, sorted by (first unit << 16 | second unit);
- kRomajiKana: every spelling read back (Hepburn, Kunrei and the other
  spellings of the last column) -> its hiragana, sorted by spelling. Two
  syllables may not share a spelling.
"""
import genlib

SCRIPT = "gen_romaji.py"
SOURCE = "data/romaji/kana_romaji.tsv"
OUT = "varnice/transform/generated/romaji_tables.cpp"


def rows(root):
    for line in (root / SOURCE).read_text(encoding="utf-8").splitlines():
        if not line or line.startswith("#"):
            continue
        kana, hepburn, kunrei, *rest = line.split("\t")
        others = [s for s in (rest[0].split(",") if rest else []) if s]
        assert 1 <= len(kana) <= 2 and all(0x3040 <= ord(c) < 0x30A0 for c in kana), line
        yield kana, hepburn, kunrei, others


def generate(root):
    blob, offsets = [], {}

    def place(s):
        if s not in offsets:
            offsets[s] = sum(len(b) for b in blob)
            blob.append(s)
        return offsets[s]

    writer, reader = {}, {}
    for kana, hepburn, kunrei, others in rows(root):
        units = [ord(c) for c in kana] + [0]
        key = (units[0] << 16) | units[1]
        assert key not in writer, kana
        writer[key] = (place(hepburn), len(hepburn), place(kunrei), len(kunrei))
        for spelling in dict.fromkeys([hepburn, kunrei] + others):
            assert len(spelling) <= 4 and spelling.isascii() and spelling.islower(), spelling
            assert reader.get(spelling, kana) == kana, f"{spelling}: {reader.get(spelling)} and {kana}"
            reader[spelling] = kana
    text = "".join(blob)
    writer_rows = [f"{{0x{k:08X}, {h}, {hl}, {r}, {rl}}}" for k, (h, hl, r, rl) in sorted(writer.items())]
    # Where each first unit's syllables begin; U+3040-U+309F, one past the end last.
    firsts = []
    keys = sorted(writer)
    assert len(keys) < 256, "kKanaRomajiFirsts holds bytes"
    for u in range(0x3040, 0x30A1):
        firsts.append(next((i for i, k in enumerate(keys) if k >> 16 >= u), len(keys)))
    reader_rows = []
    for spelling, kana in sorted(reader.items()):
        units = [ord(c) for c in kana] + [0]
        packed = int.from_bytes(spelling.encode().ljust(4, b"\0"), "big")
        reader_rows.append(f'{{0x{packed:08X}, {{0x{units[0]:04X}, 0x{units[1]:04X}}}}}  /* {spelling} */')
    out = "".join([
        genlib.banner(SCRIPT, SOURCE),
        '#include "varnice/transform/language_tables.h"\n\n',
        "namespace varnice::internal {\n\n",
        "const char kRomajiSpellings[] =\n",
        "\n".join(f'    "{text[i:i + 72]}"' for i in range(0, len(text), 72)), ";\n\n",
        "const KanaRomaji kKanaRomaji[] = {\n", genlib.c_rows(writer_rows, 3), "\n};\n",
        f"const long kKanaRomajiCount = {len(writer_rows)};\n",
        "const std::uint8_t kKanaRomajiFirsts[0x61] = {\n", genlib.c_rows([str(f) for f in firsts], 16),
        "\n};\n\n",
        "const RomajiKana kRomajiKana[] = {\n", genlib.c_rows(reader_rows, 2), "\n};\n",
        f"const long kRomajiKanaCount = {len(reader_rows)};\n\n",
        "}  // namespace varnice::internal\n",
    ])
    return {OUT: out}
