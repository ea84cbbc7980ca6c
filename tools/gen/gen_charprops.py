"""Character property tables (category, script, width runs) and the upper- and
lower-case row tables, from the Unicode 2.1.8 character database.

Category: the general-category field of UnicodeData.txt, one run per stretch
of equal category; code points UnicodeData leaves out are not listed, so the
lookup default NonCharacter answers for them. Co (private use) is
OtherCharacter.

Script: each block of Blocks.txt is given a ScriptSystem value (BLOCK_SCRIPT).
A block that belongs to a script (its letters, extensions, compatibility and
presentation forms) covers its whole block range, unassigned code points
included, so script boundaries are block boundaries. A block without a script
of its own (punctuation, symbols, modifiers, general combining marks,
specials) gives GeneralScript to the characters 2.1.8 assigns in it and
nothing to the rest. Two mixed blocks are split by their parts (SPLIT_BLOCKS).
Surrogates and private use get no script. Last, controls (Cc), format
characters (Cf) and space separators (Zs) are GeneralScript wherever they lie:
this is what makes U+0020 GeneralScript beside the LatinScript of U+0021-U+007E.

Width: East_Asian_Width of the Unicode 15.0 file over the characters 2.1.8
assigns: F and W are Fullwidth, H and Na Halfwidth, A and N get no width
(UndefinedWidth). The few old symbols that Unicode 9.0 made W for their emoji
presentation (EMOJI_WIDE) keep the neutral width they had when the 2.1 data
was current.

Case rows: 256 row pointers indexed by the high byte, rows of 256 entries by
the low byte, as UCS2toupper and UTF8toupper read them. A row is present when
some character of it has a simple upper-case mapping; in a present row a
character without one is stored as itself. The UTF-8 rows hold the upper-case
form's UTF-8 bytes packed in memory order. The lower-case rows hold the simple
lower-case mapping and 0 where there is none.
"""
import genlib

SCRIPT = "gen_charprops.py"
UCD = "data/unicode-2.1.8/UnicodeData.txt"
BLOCKS = "data/unicode-2.1.8/Blocks.txt"
EAW = "data/unicode-15.0/EastAsianWidth.txt"
PROPERTY_OUT = "varnice/charprops/generated/property_tables.cpp"
CASE_OUT = "varnice/charprops/generated/case_tables.cpp"

CATEGORIES = [
    "Lu", "Ll", "Lt", "Lm", "Lo", "Mn", "Mc", "Me", "Nd", "Nl", "No", "Pc", "Pd", "Ps",
    "Pe", "Pi", "Pf", "Po", "Sm", "Sc", "Sk", "So", "Zs", "Zl", "Zp", "Cc", "Cf", "Co",
    "Cs", "Cn",
]
CATEGORY_NAMES = [
    "UppercaseLetter", "LowercaseLetter", "TitlecaseLetter", "ModifierLetter", "OtherLetter",
    "NonSpacingMark", "CombiningMark", "EnclosingMark", "DecimalNumber", "LetterNumber",
    "OtherNumber", "ConnectorPunctuation", "DashPunctuation", "OpenPunctuation",
    "ClosePunctuation", "InitialPunctuation", "FinalPunctuation", "OtherPunctuation",
    "MathSymbol", "CurrencySymbol", "ModifierSymbol", "OtherSymbol", "SpaceSeparator",
    "LineSeparator", "ParagraphSeparator", "ControlCharacter", "FormatCharacter",
    "OtherCharacter", "SurrogateCharacter", "NonCharacter",
]

GENERAL = "GeneralScript"
NO_SCRIPT = None
BLOCK_SCRIPT = {
    "Basic Latin": "LatinScript",
    "Latin-1 Supplement": "LatinScript",
    "Latin Extended-A": "LatinScript",
    "Latin Extended-B": "LatinScript",
    "IPA Extensions": "LatinScript",
    "Spacing Modifier Letters": GENERAL,
    "Combining Diacritical Marks": GENERAL,
    "Greek": "GreekScript",
    "Cyrillic": "CyrillicScript",
    "Armenian": "ArmenianScript",
    "Hebrew": "HebrewScript",
    "Arabic": "ArabicScript",
    "Devanagari": "DevanagariScript",
    "Bengali": "BengaliScript",
    "Gurmukhi": "GurmukhiScript",
    "Gujarati": "GujaratiScript",
    "Oriya": "OriyaScript",
    "Tamil": "TamilScript",
    "Telugu": "TeluguScript",
    "Kannada": "KannadaScript",
    "Malayalam": "MalayalamScript",
    "Thai": "ThaiScript",
    "Lao": "LaoScript",
    "Tibetan": "TibetanScript",
    "Georgian": "GeorgianScript",
    "Hangul Jamo": "HangulJamoScript",
    "Latin Extended Additional": "LatinScript",
    "Greek Extended": "GreekScript",
    "General Punctuation": GENERAL,
    "Superscripts and Subscripts": GENERAL,
    "Currency Symbols": GENERAL,
    "Combining Marks for Symbols": GENERAL,
    "Letterlike Symbols": GENERAL,
    "Number Forms": GENERAL,
    "Arrows": GENERAL,
    "Mathematical Operators": GENERAL,
    "Miscellaneous Technical": GENERAL,
    "Control Pictures": GENERAL,
    "Optical Character Recognition": GENERAL,
    "Enclosed Alphanumerics": GENERAL,
    "Box Drawing": GENERAL,
    "Block Elements": GENERAL,
    "Geometric Shapes": GENERAL,
    "Miscellaneous Symbols": GENERAL,
    "Dingbats": GENERAL,
    "CJK Symbols and Punctuation": "CJKScript",
    "Hiragana": "HiraganaScript",
    "Katakana": "KatakanaScript",
    "Bopomofo": "BopomofoScript",
    "Hangul Compatibility Jamo": "HangulJamoScript",
    "Kanbun": "CJKScript",
    "Enclosed CJK Letters and Months": "CJKScript",
    "CJK Compatibility": "CJKScript",
    "CJK Unified Ideographs": "CJKScript",
    "Hangul Syllables": "HangulScript",
    "High Surrogates": NO_SCRIPT,
    "High Private Use Surrogates": NO_SCRIPT,
    "Low Surrogates": NO_SCRIPT,
    "Private Use": NO_SCRIPT,
    "CJK Compatibility Ideographs": "CJKScript",
    "Alphabetic Presentation Forms": "split",
    "Arabic Presentation Forms-A": "ArabicScript",
    "Combining Half Marks": GENERAL,
    "CJK Compatibility Forms": "CJKScript",
    "Small Form Variants": GENERAL,
    "Arabic Presentation Forms-B": "ArabicScript",
    "Halfwidth and Fullwidth Forms": "split",
    "Specials": GENERAL,
}

# The parts of the mixed blocks, as (first, last, script).
SPLIT_BLOCKS = {
    "Alphabetic Presentation Forms": [
        (0xFB00, 0xFB12, "LatinScript"),      # Latin ligatures
        (0xFB13, 0xFB1C, "ArmenianScript"),   # Armenian ligatures
        (0xFB1D, 0xFB4F, "HebrewScript"),     # Hebrew presentation forms
    ],
    "Halfwidth and Fullwidth Forms": [
        (0xFF00, 0xFF5E, "LatinScript"),      # fullwidth ASCII
        (0xFF5F, 0xFF64, "CJKScript"),        # halfwidth CJK punctuation
        (0xFF65, 0xFF9F, "KatakanaScript"),   # halfwidth katakana
        (0xFFA0, 0xFFDF, "HangulJamoScript"),  # halfwidth jamo
        (0xFFE0, 0xFFEF, GENERAL),            # fullwidth and halfwidth symbols
    ],
}

SCRIPT_NEUTRAL_CATEGORIES = {"Cc", "Cf", "Zs"}

WIDTH_OF = {"F": "Fullwidth", "W": "Fullwidth", "H": "Halfwidth", "Na": "Halfwidth"}
# Wide since Unicode 9.0 (emoji presentation); neutral in the older data.
EMOJI_WIDE = set(range(0x231A, 0x231B + 1)) | set(range(0x2648, 0x2653 + 1))


def read_blocks(root):
    out = []
    for line in (root / BLOCKS).read_text(encoding="utf-8").splitlines():
        line = line.split("#", 1)[0].strip()
        if not line:
            continue
        first, last, name = (part.strip() for part in line.split(";"))
        out.append((int(first, 16), int(last, 16), name))
    return out


def unicode_data(root):
    return {cp: fields for cp, fields in genlib.read_unicode_data(root / UCD) if cp <= 0xFFFF}


def categories(data):
    return {cp: CATEGORY_NAMES[CATEGORIES.index(f[2])] for cp, f in data.items()}


def scripts(root, data):
    out = {}

    def give(first, last, script, assigned_only):
        for cp in range(first, last + 1):
            if cp in out or (assigned_only and cp not in data):
                continue
            out[cp] = script

    for first, last, name in read_blocks(root):
        script = BLOCK_SCRIPT[name]  # a KeyError here means a block is unmapped
        if script == "split":
            for part_first, part_last, part_script in SPLIT_BLOCKS[name]:
                give(part_first, part_last, part_script, part_script == GENERAL)
        elif script is not NO_SCRIPT:
            give(first, last, script, script == GENERAL)
    for cp, fields in data.items():
        if fields[2] in SCRIPT_NEUTRAL_CATEGORIES:
            out[cp] = GENERAL
    return out


def widths(root, data):
    out = {}
    for first, last, value in genlib.read_property_ranges(root / EAW):
        width = WIDTH_OF.get(value)
        if width is None:
            continue
        for cp in range(first, min(last, 0xFFFF) + 1):
            if cp in data and cp not in EMOJI_WIDE:
                out[cp] = width
    return out


def page_index(runs):
    """For each 256-unit page, the first run that reaches into it and the
    number of runs that touch it, so a lookup searches only those."""
    out = []
    for page in range(256):
        lo, hi = page << 8, (page << 8) | 0xFF
        touching = [i for i, (a, b, _) in enumerate(runs) if a <= hi and b >= lo]
        first = touching[0] if touching else 0
        out.append(f"{{{first}, {len(touching)}}}")
    return out


def run_table(record, name, alias, runs):
    rows = [f"{{0x{a:04X}, 0x{b:04X}, {alias}::{v}}}" for a, b, v in runs]
    return (f"const {record} {name}[] = {{\n{genlib.c_rows(rows, 3)}\n}};\n"
            f"const long {name}Count = sizeof {name} / sizeof {name}[0];\n"
            f"const RunPage {name}Pages[256] = {{\n{genlib.c_rows(page_index(runs), 8)}\n}};\n")


def property_file(root, data):
    cat_runs = genlib.runs(categories(data))
    script_runs = genlib.runs(scripts(root, data))
    width_runs = genlib.runs(widths(root, data))
    return "\n".join([
        genlib.banner(SCRIPT, UCD, BLOCKS, EAW),
        f"// Runs: {len(cat_runs)} category, {len(script_runs)} script, {len(width_runs)} width.\n"
        "// See the generator for how blocks become scripts and how widths are chosen.\n",
        '#include "varnice/charprops/property_tables.h"\n',
        "namespace varnice::internal {\n",
        "using Cat = CharacterCategory;\nusing Scr = ScriptSystem;\nusing Wid = CharacterWidth;\n",
        run_table("ChunkTableEntryUSCharCat", "kCategoryRuns", "Cat", cat_runs),
        run_table("ChunkTableEntryUSScrSys", "kScriptRuns", "Scr", script_runs),
        run_table("ChunkTableEntryUSCharWid", "kWidthRuns", "Wid", width_runs),
        "}  // namespace varnice::internal\n",
    ])


def utf8(cp):
    return list(chr(cp).encode("utf-8"))


def rows_table(kind, name, rows, render, per_line):
    parts = []
    for page in sorted(rows):
        items = [render(v) for v in rows[page]]
        body = genlib.c_rows(items, per_line)
        parts.append(f"const {kind} {name}{page:02X}[256] = {{\n{body}\n}};\n")
    pointers = [f"{name}{page:02X}" if page in rows else "nullptr" for page in range(256)]
    parts.append(f"const {kind}* const {name}s[256] = {{\n{genlib.c_rows(pointers, 8)}\n}};\n")
    return "\n".join(parts)


def case_file(data):
    upper = {cp: int(f[12], 16) for cp, f in data.items() if f[12]}
    lower = {cp: int(f[13], 16) for cp, f in data.items() if f[13]}
    upper_pages = sorted({cp >> 8 for cp in upper})
    lower_pages = sorted({cp >> 8 for cp in lower})
    ucs2 = {p: [upper.get(cp, cp) for cp in range(p << 8, (p + 1) << 8)] for p in upper_pages}
    utf8_rows = {p: [utf8(v) for v in ucs2[p]] for p in upper_pages}
    low = {p: [lower.get(cp, 0) for cp in range(p << 8, (p + 1) << 8)] for p in lower_pages}

    def u8(b):
        return "U8(" + ", ".join(f"0x{x:02X}" for x in b) + ")"

    return "\n".join([
        genlib.banner(SCRIPT, UCD),
        f"// {len(upper)} simple upper-case mappings on pages "
        f"{', '.join(f'{p:02X}' for p in upper_pages)};\n"
        f"// {len(lower)} simple lower-case mappings on pages "
        f"{', '.join(f'{p:02X}' for p in lower_pages)}.\n",
        '#include "varnice/charprops/property_tables.h"\n',
        "namespace varnice::internal {\n",
        "namespace {\n\n"
        "// Bytes b0 b1 ... as a 32-bit word that holds them in this order in memory.\n"
        "template <class... B>\n"
        "constexpr std::uint32_t U8(B... bytes) {\n"
        "  return PackBytesInMemoryOrder({static_cast<std::uint8_t>(bytes)...});\n"
        "}\n\n"
        "}  // namespace\n",
        rows_table("unsigned short", "kUcs2UpperRow", ucs2, lambda v: f"0x{v:04X}", 8),
        rows_table("std::uint32_t", "kUtf8UpperRow", utf8_rows, u8, 6),
        rows_table("unsigned short", "kLowerRow", low, lambda v: f"0x{v:04X}", 8),
        "}  // namespace varnice::internal\n",
    ])


def generate(root):
    data = unicode_data(root)
    return {PROPERTY_OUT: property_file(root, data), CASE_OUT: case_file(data)}
