#include "varnice/detect/text_plausibility_detector.h"

#include <climits>

#include "varnice/codepages/mbcs_encoding.h"
#include "varnice/encoding/external_encoding.h"
#include "varnice/encoding/unicode_lib_behavior.h"
#include "varnice/stream/char16_sink.h"
#include "varnice/stream/char_sink.h"

namespace {

using Kind = TextPlausibilityDetector::Kind;

// Roughly twice the bits of surprise a character of each kind carries in
// ordinary Japanese or European text, ASCII being the baseline. A decoding
// error outweighs any run of unlikely but valid characters.
constexpr int kCosts[TextPlausibilityDetector::kKindCount] = {
    0,    // ASCII
    2,    // kana
    3,    // Japanese punctuation
    4,    // common kanji
    5,    // accented Latin
    5,    // Latin-1 signs
    6,    // typographic punctuation
    4,    // halfwidth katakana
    9,    // symbols
    11,   // rare kanji
    14,   // kanji outside JIS
    12,   // other scripts
    8,    // Japanese next to a Latin letter
    4,    // accented letters or signs in a row
    4,    // lone Japanese characters
    3,    // halfwidth katakana starting a run
    3,    // encoded-looking ASCII, per byte
    30,   // controls
    30,   // private use
    100,  // errors
};

constexpr const char* kNames[TextPlausibilityDetector::kKindCount] = {
    "ASCII",
    "kana",
    "Japanese punctuation",
    "common kanji",
    "accented Latin letters",
    "Latin-1 signs",
    "typographic punctuation",
    "halfwidth katakana",
    "symbols",
    "rare kanji",
    "kanji outside JIS",
    "other scripts",
    "Japanese/Latin boundaries",
    "accented letters or signs in a row",
    "lone Japanese characters",
    "halfwidth katakana runs",
    "encoded-looking ASCII bytes",
    "control characters",
    "private-use characters",
    "unreadable bytes",
};

// Neighbourhoods for the mixing charge: only Japanese next to a letter (ASCII
// or accented) costs; punctuation and symbols go with anything.
enum Group : unsigned char { kNeutral = 0, kAsciiLetter = 1, kLatinLetter = 2, kJapanese = 3 };
// Accented letters and Latin-1 signs seldom come two in a row in European
// text, but do when the bytes of other encodings are read as Latin-1.
constexpr unsigned char kLatinFlag = 4;

struct Entry {
  unsigned char kind;
  unsigned char group;  // a Group, plus kLatinFlag
};

bool IsWindowsPunctuation(unsigned u) {
  switch (u) {
    case 0x0152: case 0x0153: case 0x0160: case 0x0161: case 0x0178: case 0x017D: case 0x017E:
    case 0x0192: case 0x02C6: case 0x02DC: case 0x20AC: case 0x2122:
      return true;
    default:
      return u >= 0x2010 && u <= 0x203B && u != 0x2017;
  }
}

// The kind of every UTF-16 code unit, built once. Kanji are split by their
// JIS row, read from the EUC-JP table: lead bytes 0xB0-0xCF are level 1,
// 0xD0-0xF4 level 2; three-byte codes are JIS X 0212, outside the common set.
const Entry* KindTable() {
  static const Entry* const table = [] {
    auto* t = new Entry[65536];
    const auto* euc = dynamic_cast<const MBCSEncoding*>(ExternalEncoding::EUCPkdFmtJapanese());
    for (unsigned u = 0; u < 65536; ++u) {
      Kind k = Kind::kOther;
      Group g = kNeutral;
      if (u < 0x80) {
        const bool letter = (u | 0x20) >= 'a' && (u | 0x20) <= 'z';
        const bool space = u == '\t' || u == '\n' || u == '\r' || u == '\f';
        k = (u >= 0x20 && u < 0x7F) || space ? Kind::kAscii : Kind::kControl;
        g = letter ? kAsciiLetter : kNeutral;
      } else if (u < 0xA0) {
        k = Kind::kControl;
      } else if (u < 0xC0 || u == 0xD7 || u == 0xF7) {
        k = Kind::kLatinSign;
        g = static_cast<Group>(kNeutral | kLatinFlag);
      } else if (IsWindowsPunctuation(u)) {
        k = Kind::kPunctuation;
      } else if (u < 0x250) {
        k = Kind::kLatin;
        g = static_cast<Group>(kLatinLetter | kLatinFlag);
      } else if ((u >= 0x370 && u < 0x530) || (u >= 0x2100 && u < 0x2C00) || (u >= 0x3200 && u < 0x3400)) {
        k = Kind::kSymbol;
      } else if ((u >= 0x3000 && u < 0x3040) || (u >= 0xFF01 && u <= 0xFF5E) || (u >= 0xFFE0 && u <= 0xFFE6)) {
        k = Kind::kJapanesePunct;
        g = kJapanese;
      } else if (u >= 0x3041 && u < 0x3100) {
        k = Kind::kKana;
        g = kJapanese;
      } else if (u >= 0x4E00 && u < 0xA000) {
        const unsigned long code = euc != nullptr ? euc->FromUnicode(static_cast<unsigned short>(u)) : 0xFFFD;
        const unsigned lead = (code >> 8) & 0xFF;
        k = code == 0xFFFD || code < 0x100 || code > 0xFFFF ? Kind::kKanjiOutsideJis
            : lead < 0xD0                  ? Kind::kKanjiCommon
                                           : Kind::kKanjiRare;
        g = kJapanese;
      } else if (u >= 0xFF61 && u <= 0xFF9F) {
        k = Kind::kHalfwidthKana;
        g = kJapanese;
      } else if (u >= 0xE000 && u < 0xF900) {
        k = Kind::kPrivateUse;
      } else if (u == 0xFFFD) {
        k = Kind::kError;
      } else if (u == 0xFEFF) {
        k = Kind::kAscii;  // a byte-order mark says nothing against the reading
      } else if (u >= 0xFFF0) {
        k = Kind::kControl;
      }
      t[u] = {static_cast<unsigned char>(k), static_cast<unsigned char>(g)};
    }
    return t;
  }();
  return table;
}

constexpr bool Mixes(int a, int b) {
  a &= 3;
  b &= 3;
  return (a == kJapanese && (b == kAsciiLetter || b == kLatinLetter)) ||
         (b == kJapanese && (a == kAsciiLetter || a == kLatinLetter));
}

// What a unit adds in context, by the groups of the two units before it and
// its own: bit 0 a Japanese/Latin boundary, bit 1 a Latin pair, bit 2 a lone
// Japanese character just ended.
struct Neighbours {
  unsigned char flags[512];
  constexpr Neighbours() : flags() {
    for (int before = 0; before < 8; ++before) {
      for (int previous = 0; previous < 8; ++previous) {
        for (int current = 0; current < 8; ++current) {
          const bool lone = (previous & 3) == kJapanese && (before & 3) != kJapanese && (current & 3) != kJapanese;
          flags[before << 6 | previous << 3 | current] = static_cast<unsigned char>(
              Mixes(previous, current) | ((previous & current & kLatinFlag) != 0) << 1 | lone << 2);
        }
      }
    }
  }
};
constexpr Neighbours kNeighbours;

bool IsBase64(unsigned char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '+' || c == '/';
}

// What the readers run under: problems become U+FFFD, never an exception or
// a message, whatever the process's default behaviour is.
UnicodeLibBehavior gScoringBehavior;

}  // namespace

void TextPlausibilityDetector::Scorer::Add(const unsigned short* begin, const unsigned short* end) {
  const Entry* table = KindTable();
  unsigned context = (beforePrevious_ << 3 | previous_) & 63;  // the last two groups
  long mixed = 0;
  long latinPairs = 0;
  long lone = 0;
  long halfwidthRuns = 0;
  bool halfwidth = previousHalfwidth_;
  for (const unsigned short* p = begin; p != end; ++p) {
    const Entry e = table[*p];
    ++counts[e.kind];
    const bool isHalfwidth = e.kind == kHalfwidthKana;
    halfwidthRuns += isHalfwidth && !halfwidth;
    halfwidth = isHalfwidth;
    const unsigned flags = kNeighbours.flags[context << 3 | e.group];
    mixed += flags & 1;
    latinPairs += (flags >> 1) & 1;
    lone += flags >> 2;
    context = (context << 3 | e.group) & 63;
  }
  previous_ = static_cast<unsigned char>(context & 7);
  beforePrevious_ = static_cast<unsigned char>(context >> 3);
  counts[kMixedScript] += mixed;
  counts[kLatinPair] += latinPairs;
  counts[kLoneJapanese] += lone;
  counts[kHalfwidthRun] += halfwidthRuns;
  previousHalfwidth_ = halfwidth;
  long long total = 0;
  for (int k = 0; k < kKindCount; ++k) total += static_cast<long long>(counts[k]) * kCosts[k];
  cost = total;
}

// The decoded text's destination: scores it and keeps nothing.
class TextPlausibilityDetector::Reader : public Char16Sink {
 public:
  Reader() : UnicodeLibActor(&gScoringBehavior), Char16Sink(static_cast<const UnicodeLibActor*>(nullptr)) {
    SetBehavior(&gScoringBehavior);
  }
  void Flush() override {}
  void PutBuffer(const unsigned short* begin, const unsigned short* end) override { scorer.Add(begin, end); }

  Scorer scorer;
};

const char* TextPlausibilityDetector::KindName(Kind kind) { return kNames[kind]; }
int TextPlausibilityDetector::KindCost(Kind kind) { return kCosts[kind]; }

ExternalEncodingDetector* TextPlausibilityDetector::Create(const ExternalEncoding& encoding,
                                                           UnicodeLibAllocator& allocator) {
  for (const ExternalEncoding* twoByte : {ExternalEncoding::Unicode20ByteStream(), ExternalEncoding::Unicode11ByteStream(),
                                          ExternalEncoding::Unicode20BigEndian(), ExternalEncoding::Unicode11BigEndian()}) {
    if (&encoding == twoByte) return encoding.CreateEncodingDetector(allocator);
  }
  return new (allocator) TextPlausibilityDetector(encoding, allocator);
}

TextPlausibilityDetector::TextPlausibilityDetector(const ExternalEncoding& encoding, UnicodeLibAllocator& allocator)
    : ExternalEncodingDetector(encoding, 0, 0),
      reader_(new Reader),
      decoder_(encoding.CreateCharSinkToUnicode(*reader_, allocator)),
      asciiBased_(encoding.IsBasedOnASCII()),
      isUtf7_(&encoding == ExternalEncoding::Unicode20UTF7() || &encoding == ExternalEncoding::Unicode11UTF7()),
      isIso2022_(&encoding == ExternalEncoding::ISO2022JP()) {
  if (decoder_ != nullptr) decoder_->SetBehavior(&gScoringBehavior);
}

TextPlausibilityDetector::~TextPlausibilityDetector() {
  delete decoder_;
  delete reader_;
}

long TextPlausibilityDetector::Count(Kind kind) const { return reader_->scorer.counts[kind]; }
long long TextPlausibilityDetector::Cost() const { return reader_->scorer.cost; }

void TextPlausibilityDetector::Scan(const char*, const char* begin, const char* end) {
  if (begin == end) return;
  if (gaveUpAfter_ > 0) {
    bytesSkipped_ += end - begin;
    Update();
    return;
  }
  bytesRead_ += end - begin;
  if (decoder_ == nullptr) {
    reader_->scorer.counts[kError] += end - begin;
  } else {
    decoder_->PutBuffer(begin, end);
  }
  if (asciiBased_) {
    ScanAsciiPatterns(reinterpret_cast<const unsigned char*>(begin), reinterpret_cast<const unsigned char*>(end));
  }
  Update();
  if (bytesRead_ >= kGiveUpAfter && reader_->scorer.counts[kError] * 16 >= bytesRead_) {
    gaveUpAfter_ = bytesRead_;
    costWhenGivingUp_ = reader_->scorer.cost;
  }
}

void TextPlausibilityDetector::Finish(const char*, const char*) {
  if (gaveUpAfter_ > 0) return;
  if (decoder_ != nullptr) {
    // A line end completes no character: a reader left inside one reports
    // it as unreadable rather than dropping it silently.
    decoder_->PutBuffer("\n", "\n" + 1);
    decoder_->Flush();
  }
  EndPlusRun(-1);
  Update();
}

void TextPlausibilityDetector::ScanAsciiPatterns(const unsigned char* begin, const unsigned char* end) {
  long encodedLooking = 0;
  for (const unsigned char* p = begin; p != end; ++p) {
    const unsigned char c = *p;
    if (escape_ > 0) {
      escapeBytes_[escape_ - 1] = c;
      if (++escape_ == 3) {
        escape_ = 0;
        if (escapeBytes_[0] == '$' && (escapeBytes_[1] == 'B' || escapeBytes_[1] == '@')) shifted_ = true;
        if (escapeBytes_[0] == '(') shifted_ = false;
      }
      continue;
    }
    if (c == 0x1B) {
      EndPlusRun(-1);
      escape_ = 1;
      continue;
    }
    if (shifted_) {
      if (!isIso2022_ && c > 0x20 && c < 0x7F) ++encodedLooking;
      continue;
    }
    if (plusRun_ >= 0) {
      if (IsBase64(c)) {
        ++plusRun_;
        continue;
      }
      EndPlusRun(c);
    }
    if (c == '+') plusRun_ = 0;
  }
  reader_->scorer.counts[kEncodedLooking] += encodedLooking;
}

// A "+" run has ended: for UTF-7 it must have held at least one UTF-16 unit
// and left fewer than six bits over; for everything else its letters look
// encoded.
void TextPlausibilityDetector::EndPlusRun(int terminator) {
  if (plusRun_ < 0) return;
  if (plusRun_ == 0) {
    // "+-" is how UTF-7 writes a plus sign; plain text seldom says it.
    if (!isUtf7_ && terminator == '-') ++reader_->scorer.counts[kEncodedLooking];
    plusRun_ = -1;
    return;
  }
  if (isUtf7_) {
    const int bits = plusRun_ * 6;
    if (bits < 16 || bits % 16 >= 6) ++reader_->scorer.counts[kError];
  } else {
    reader_->scorer.counts[kEncodedLooking] += plusRun_;
  }
  plusRun_ = -1;
}

void TextPlausibilityDetector::Update() {
  Scorer& s = reader_->scorer;
  long long total = 0;
  for (int k = 0; k < kKindCount; ++k) total += static_cast<long long>(s.counts[k]) * kCosts[k];
  if (gaveUpAfter_ > 0) total += costWhenGivingUp_ * bytesSkipped_ / gaveUpAfter_;
  s.cost = total;
  score_ = total >= INT_MAX ? INT_MIN + 1 : static_cast<int>(-total);
}
