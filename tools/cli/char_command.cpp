// varnice char: what the property tables say about characters.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "tools/cli/cli.h"
#include "varnice/varnice.h"

namespace cli {

namespace {

NamedCharacterProperty const* const* const kCategories[] = {
    &UppercaseLetter,  &LowercaseLetter,    &TitlecaseLetter,  &ModifierLetter,
    &OtherLetter,      &NonSpacingMark,     &CombiningMark,    &EnclosingMark,
    &DecimalNumber,    &LetterNumber,       &OtherNumber,      &ConnectorPunctuation,
    &DashPunctuation,  &OpenPunctuation,    &ClosePunctuation, &InitialPunctuation,
    &FinalPunctuation, &OtherPunctuation,   &MathSymbol,       &CurrencySymbol,
    &ModifierSymbol,   &OtherSymbol,        &SpaceSeparator,   &LineSeparator,
    &ParagraphSeparator, &ControlCharacter, &FormatCharacter,  &OtherCharacter,
    &SurrogateCharacter, &NonCharacter,
};
NamedCharacterScript const* const* const kScripts[] = {
    &UndefinedScript, &GeneralScript,  &LatinScript,      &GreekScript,     &CyrillicScript,
    &ArmenianScript,  &HebrewScript,   &ArabicScript,     &DevanagariScript, &BengaliScript,
    &GurmukhiScript,  &GujaratiScript, &OriyaScript,      &TamilScript,     &TeluguScript,
    &KannadaScript,   &MalayalamScript, &ThaiScript,      &LaoScript,       &TibetanScript,
    &GeorgianScript,  &HangulJamoScript, &HiraganaScript, &KatakanaScript,  &BopomofoScript,
    &CJKScript,       &HangulScript,
};
NamedCharacterProperty const* const* const kWidths[] = {&UndefinedWidth, &Fullwidth, &Halfwidth};

template <class Test, std::size_t N>
std::string NameOfFirstMatch(Test const* const* const (&tests)[N], unsigned long c) {
  for (Test const* const* t : tests) {
    if ((*t)->Test(c)) return (*t)->Name().c_str();
  }
  return "-";
}

std::string Utf8(unsigned long c) {
  std::string out;
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | (c >> 6));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | (c >> 12));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (c >> 18));
    out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
  return out;
}

// The code points of an argument: one for U+XXXX or 0xXXXX, else the UTF-8
// text's characters. A byte that is not UTF-8 is reported and skipped.
bool Decode(const char* arg, std::vector<unsigned long>& out) {
  const bool uPlus = (arg[0] == 'U' || arg[0] == 'u') && arg[1] == '+';
  const bool zeroX = arg[0] == '0' && (arg[1] == 'x' || arg[1] == 'X');
  if ((uPlus || zeroX) && arg[2] != '\0') {
    char* end = nullptr;
    const unsigned long c = std::strtoul(arg + 2, &end, 16);
    if (*end == '\0' && c <= 0x10FFFF) {
      out.push_back(c);
      return true;
    }
  }
  bool ok = true;
  const auto* p = reinterpret_cast<const unsigned char*>(arg);
  while (*p != 0) {
    const int trail = *p < 0x80   ? 0
                      : *p < 0xC2 ? -1
                      : *p < 0xE0 ? 1
                      : *p < 0xF0 ? 2
                      : *p < 0xF5 ? 3
                                  : -1;
    unsigned long c = *p & (0x7F >> (trail > 0 ? trail + 1 : 0));
    int i = 1;
    for (; trail > 0 && i <= trail && (p[i] & 0xC0) == 0x80; ++i) c = (c << 6) | (p[i] & 0x3F);
    if (trail < 0 || i <= trail) {
      std::fprintf(stderr, "varnice: byte 0x%02X is not UTF-8; skipped\n", *p);
      ok = false;
      ++p;
      continue;
    }
    out.push_back(c);
    p += trail + 1;
  }
  return ok;
}

}  // namespace

int RunChar(int count, char** args) {
  if (count == 0) {
    std::fputs("usage: varnice char X... (U+XXXX, 0xXXXX or text)\n", stderr);
    return 2;
  }
  std::vector<unsigned long> chars;
  bool ok = true;
  for (int i = 0; i < count; ++i) ok = Decode(args[i], chars) && ok;
  for (unsigned long c : chars) {
    if (c > 0xFFFF) {
      std::printf("U+%05lX  above U+FFFF: no properties (each UTF-16 unit has its own)  %s\n",
                  c, Utf8(c).c_str());
      continue;
    }
    const std::string category = NameOfFirstMatch(kCategories, c);
    // Show the character itself only when it prints as one.
    const bool shown = !(ControlCharacter->Test(c) || FormatCharacter->Test(c) ||
                         SurrogateCharacter->Test(c) || NonCharacter->Test(c) ||
                         LineSeparator->Test(c) || ParagraphSeparator->Test(c));
    const auto unit = static_cast<unsigned short>(c);
    // The character goes last: its display width would upset the columns.
    std::printf("U+%04lX  %-20s  %-16s  %-14s  upper U+%04X  lower U+%04X%s%s\n", c,
                category.c_str(), NameOfFirstMatch(kScripts, c).c_str(),
                NameOfFirstMatch(kWidths, c).c_str(), qz_towupper(unit), qz_towlower(unit),
                shown ? "  " : "", shown ? Utf8(c).c_str() : "");
  }
  return ok ? 0 : 1;
}

}  // namespace cli
