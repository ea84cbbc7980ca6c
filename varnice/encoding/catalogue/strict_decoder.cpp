#include "varnice/encoding/catalogue/strict_decoder.h"

#include <cstdint>
#include <cstring>

#include "varnice/codepages/iso2022_encoding.h"
#include "varnice/codepages/iso2022_subencoding.h"
#include "varnice/codepages/mbcs_encoding.h"
#include "varnice/encoding/internal_encoding.h"
#include "varnice/unicodeforms/byte_order_mark.h"
#include "varnice/unicodeforms/ucs2.h"
#include "varnice/unicodeforms/utf8.h"
#include "varnice/widec/utf16_units.h"

using varnice::internal::HighSurrogateOf;
using varnice::internal::LowSurrogateOf;

namespace {

constexpr unsigned short kNoOutput = 0xFFFF;
constexpr unsigned short kInvalid = 0xFFFD;
constexpr unsigned char kEsc = 0x1B;

// The Unicode 2.0 side of a form: only those read without a mapping step.
bool IsPlainUnicode(const InternalEncoding& internal) {
  if (&internal == InternalEncoding::Unicode20()) return true;
  const auto* marked = dynamic_cast<const UnicodeByteOrderMarkVariant*>(&internal);
  return marked != nullptr && &marked->Decorated() == InternalEncoding::Unicode20();
}

const MBCStoUnicodeTable* TableOf(const ExternalEncoding* e) {
  const auto* page = dynamic_cast<const MBCSEncoding*>(e);
  return page != nullptr ? &page->ToUnicodeTable() : nullptr;
}

// Whether every subencoding is a code page this decoder can step through.
bool ReadableISO2022(const GenericISO2022Encoding& e) {
  const int count = e.CountSubencodings();
  if (count < 1 || count > 4) return false;
  const ISO2022Subencoding* list = e.GetSubencodings();
  for (int i = 0; i < count; ++i) {
    if (list[i].escape == nullptr || TableOf(list[i].encoding) == nullptr) return false;
  }
  return true;
}

bool CanStart(const MBCStoUnicodeTable& table, bool sevenBit, unsigned char b) {
  return !(sevenBit && b >= 0x80) && table.GetAction(0, b).output != kInvalid;
}

}  // namespace

StrictDecoder::StrictDecoder(Form form, bool bigEndian) : form_(form), initialBigEndian_(bigEndian) {
  state_.bigEndian = bigEndian;
}

StrictDecoder::~StrictDecoder() = default;

// Each kind of encoding is asked for once, code pages first: a failed
// dynamic_cast costs more than the conversion of a short text.
bool StrictDecoder::CanRead(const ExternalEncoding& e) {
  if (TableOf(&e) != nullptr) return true;
  if (const auto* utf8 = dynamic_cast<const UTF8EncodingVariant*>(&e)) return IsPlainUnicode(utf8->Internal());
  if (const auto* ucs2 = dynamic_cast<const UCS2variant*>(&e)) return IsPlainUnicode(ucs2->Internal());
  const auto* iso = dynamic_cast<const GenericISO2022Encoding*>(&e);
  return iso != nullptr && ReadableISO2022(*iso);
}

StrictDecoder* StrictDecoder::Create(const ExternalEncoding& e, UnicodeLibAllocator& a) {
  if (const MBCStoUnicodeTable* table = TableOf(&e)) {
    auto* d = new (a) StrictDecoder(kTable, false);
    d->table_ = table;
    return d;
  }
  if (const auto* utf8 = dynamic_cast<const UTF8EncodingVariant*>(&e)) {
    return IsPlainUnicode(utf8->Internal()) ? new (a) StrictDecoder(kUTF8, false) : nullptr;
  }
  if (const auto* ucs2 = dynamic_cast<const UCS2variant*>(&e)) {
    return IsPlainUnicode(ucs2->Internal()) ? new (a) StrictDecoder(kUTF16, ucs2->IsBigEndian()) : nullptr;
  }
  const auto* iso = dynamic_cast<const GenericISO2022Encoding*>(&e);
  if (iso == nullptr || !ReadableISO2022(*iso)) return nullptr;
  auto* d = new (a) StrictDecoder(kISO2022, false);
  d->setCount_ = iso->CountSubencodings();
  for (int i = 0; i < d->setCount_; ++i) {
    const ISO2022Subencoding& sub = iso->GetSubencodings()[i];
    d->sets_[i] = TableOf(sub.encoding);
    for (int k = 0; k < 3; ++k) d->escapes_[i].bytes[k] = static_cast<unsigned char>(sub.escape[k]);
  }
  return d;
}

void StrictDecoder::Reset() {
  state_ = State();
  state_.bigEndian = initialBigEndian_;
  problem_ = kNoProblem;
  problemOffset_ = -1;
  problemLength_ = 0;
}

int StrictDecoder::Broken(ProblemKind kind, int length) {
  problem_ = kind;
  pendingLength_ = length;
  state_.held = 0;
  state_.machine = 0;
  state_.value = 0;
  state_.escape = 0;
  state_.high = 0;
  state_.lower = 0x80;
  state_.upper = 0xBF;
  return kIllegalInput;
}

int StrictDecoder::Convert(const char*& in, const char* inEnd, unsigned short*& out,
                           const unsigned short* outEnd) {
  const auto* p = reinterpret_cast<const unsigned char*>(in);
  const auto* end = reinterpret_cast<const unsigned char*>(inEnd);
  int result;
  switch (form_) {
    case kUTF8: result = ConvertUTF8(p, end, out, outEnd); break;
    case kUTF16: result = ConvertUTF16(p, end, out, outEnd); break;
    case kTable: result = ConvertTable(*table_, false, p, end, out, outEnd); break;
    default: result = ConvertISO2022(p, end, out, outEnd); break;
  }
  state_.consumed += p - reinterpret_cast<const unsigned char*>(in);
  in = reinterpret_cast<const char*>(p);
  if (result == kIllegalInput) {
    problemLength_ = pendingLength_;
    problemOffset_ = state_.consumed - pendingLength_ - pendingTrail_;
    pendingTrail_ = 0;
  }
  return result;
}

int StrictDecoder::Finish(unsigned short*&, const unsigned short*) {
  const int held = state_.held + state_.escape;
  if (held == 0) return kConversionDone;
  Broken(kIncomplete, held);
  problemLength_ = held;
  problemOffset_ = state_.consumed - held;
  return kIllegalInput;
}

namespace {

// Whole well-formed characters that lie entirely in the block, with room for
// them; stops before anything else (a broken or cut-off sequence, or too
// little room), which the byte-at-a-time loop then reads. It only ever
// accepts what that loop accepts, and the tests hold the two to each other.
const unsigned char* FastUTF8(const unsigned char* in, const unsigned char* inEnd, unsigned short*& out,
                              const unsigned short* outEnd) {
  unsigned short* o = out;
  while (inEnd - in >= 4 && outEnd - o >= 2) {
    const unsigned char b = in[0];
    if (b < 0x80) {
      // Eight ASCII bytes at a time while they and their room last.
      if (inEnd - in >= 8 && outEnd - o >= 8) {
        std::uint64_t word;
        std::memcpy(&word, in, 8);
        if ((word & 0x8080808080808080ULL) == 0) {
          for (int k = 0; k < 8; ++k) o[k] = in[k];
          in += 8;
          o += 8;
          continue;
        }
      }
      *o++ = b;
      ++in;
      continue;
    }
    const unsigned char c1 = in[1];
    if (b >= 0xC2 && b <= 0xDF) {
      if ((c1 & 0xC0) != 0x80) break;
      *o++ = static_cast<unsigned short>(((b & 0x1F) << 6) | (c1 & 0x3F));
      in += 2;
    } else if (b >= 0xE0 && b <= 0xEF) {
      const unsigned char lower = b == 0xE0 ? 0xA0 : 0x80;
      const unsigned char upper = b == 0xED ? 0x9F : 0xBF;
      if (c1 < lower || c1 > upper || (in[2] & 0xC0) != 0x80) break;
      *o++ = static_cast<unsigned short>(((b & 0x0F) << 12) | ((c1 & 0x3F) << 6) | (in[2] & 0x3F));
      in += 3;
    } else if (b >= 0xF0 && b <= 0xF4) {
      const unsigned char lower = b == 0xF0 ? 0x90 : 0x80;
      const unsigned char upper = b == 0xF4 ? 0x8F : 0xBF;
      if (c1 < lower || c1 > upper || (in[2] & 0xC0) != 0x80 || (in[3] & 0xC0) != 0x80) break;
      const unsigned long value =
          ((b & 0x07UL) << 18) | ((c1 & 0x3FUL) << 12) | ((in[2] & 0x3FUL) << 6) | (in[3] & 0x3FUL);
      *o++ = HighSurrogateOf(value);
      *o++ = LowSurrogateOf(value);
      in += 4;
    } else {
      break;
    }
  }
  out = o;
  return in;
}

}  // namespace

// Unicode's well-formed byte sequences: the lead byte fixes the length and the
// range of the first continuation byte, which shuts out overlong forms,
// surrogates and values above U+10FFFF at the earliest byte.
int StrictDecoder::ConvertUTF8(const unsigned char*& in, const unsigned char* inEnd, unsigned short*& out,
                               const unsigned short* outEnd) {
  State& s = state_;
  while (in != inEnd) {
    if (s.machine == 0) {
      in = FastUTF8(in, inEnd, out, outEnd);
      if (in == inEnd) break;
    }
    const unsigned char b = *in;
    if (s.machine == 0) {
      if (b < 0x80) {
        if (out == outEnd) return kOutputFull;
        *out++ = b;
        ++in;
        continue;
      }
      s.lower = 0x80;
      s.upper = 0xBF;
      if (b >= 0xC2 && b <= 0xDF) {
        s.machine = 1;
        s.value = b & 0x1F;
      } else if (b >= 0xE0 && b <= 0xEF) {
        s.machine = 2;
        s.value = b & 0x0F;
        if (b == 0xE0) s.lower = 0xA0;
        if (b == 0xED) s.upper = 0x9F;
      } else if (b >= 0xF0 && b <= 0xF4) {
        s.machine = 3;
        s.value = b & 0x07;
        if (b == 0xF0) s.lower = 0x90;
        if (b == 0xF4) s.upper = 0x8F;
      } else {
        ++in;
        return Broken(kIllFormed, 1);
      }
      s.held = 1;
      ++in;
      continue;
    }
    // Not consumed: the byte may well begin the next character.
    if (b < s.lower || b > s.upper) return Broken(kIllFormed, s.held);
    const unsigned long value = (s.value << 6) | (b & 0x3F);
    if (s.machine == 1) {
      const int units = value > 0xFFFF ? 2 : 1;
      if (outEnd - out < units) return kOutputFull;
      if (units == 1) {
        *out++ = static_cast<unsigned short>(value);
      } else {
        *out++ = HighSurrogateOf(value);
        *out++ = LowSurrogateOf(value);
      }
      s.machine = 0;
      s.held = 0;
      s.value = 0;
    } else {
      --s.machine;
      ++s.held;
      s.value = value;
      s.lower = 0x80;
      s.upper = 0xBF;
    }
    ++in;
  }
  return kInputUsedUp;
}

// Pairs of bytes; a surrogate must come as a high one followed by a low one.
int StrictDecoder::ConvertUTF16(const unsigned char*& in, const unsigned char* inEnd, unsigned short*& out,
                                const unsigned short* outEnd) {
  State& s = state_;
  while (in != inEnd) {
    if (s.held == 0 || s.held == 2) {  // first byte of a unit
      s.value = *in++;
      ++s.held;
      continue;
    }
    const unsigned char b = *in;
    const unsigned short unit = static_cast<unsigned short>(s.bigEndian ? (s.value << 8) | b : (b << 8) | s.value);
    if (s.atStart) {
      s.atStart = false;
      if (unit == 0xFEFF || unit == 0xFFFE) {
        s.bigEndian = (unit == 0xFEFF) == s.bigEndian;
        ++in;
        s.held = 0;
        continue;
      }
    }
    const bool isHigh = varnice::internal::IsHighSurrogate(unit);
    const bool isLow = varnice::internal::IsLowSurrogate(unit);
    if (s.high != 0) {
      if (!isLow) {
        // The unit read so far is left for the next character.
        s.high = 0;
        s.held = 1;
        pendingLength_ = 2;
        pendingTrail_ = 1;
        problem_ = kIllFormed;
        return kIllegalInput;
      }
      if (outEnd - out < 2) return kOutputFull;
      *out++ = s.high;
      *out++ = unit;
      s.high = 0;
      s.held = 0;
      ++in;
      continue;
    }
    if (isLow) {
      ++in;
      return Broken(kIllFormed, 2);
    }
    if (isHigh) {
      s.high = unit;
      s.held = 2;
      ++in;
      continue;
    }
    if (out == outEnd) return kOutputFull;
    *out++ = unit;
    s.held = 0;
    ++in;
  }
  return kInputUsedUp;
}

// One step of the code page's byte trie per byte. A byte with no action in
// the middle of a character ends the broken character; it is taken with it
// only when it could not begin a character of its own.
int StrictDecoder::ConvertTable(const MBCStoUnicodeTable& table, bool sevenBit, const unsigned char*& in,
                                const unsigned char* inEnd, unsigned short*& out, const unsigned short* outEnd) {
  State& s = state_;
  if (s.machine == 0 && !sevenBit) {
    // Whole one- and two-byte characters go without the bookkeeping below.
    const auto* row = &table.GetAction(0, 0);
    while (in != inEnd && out != outEnd) {
      const auto& first = row[*in];
      if (first.output < kInvalid && first.nextState == 0) {
        *out++ = first.output;
        ++in;
        continue;
      }
      if (first.output != kNoOutput || inEnd - in < 2) break;
      const auto& second = table.GetAction(first.nextState, in[1]);
      if (second.output >= kInvalid || second.nextState != 0) break;
      *out++ = second.output;
      in += 2;
    }
  }
  while (in != inEnd) {
    const unsigned char b = *in;
    if (sevenBit && b >= 0x80) {
      if (s.held != 0) return Broken(kIllFormed, s.held);
      ++in;
      return Broken(kIllFormed, 1);
    }
    const auto& action = table.GetAction(s.machine, b);
    if (action.output == kNoOutput) {
      s.machine = action.nextState;
      ++s.held;
      ++in;
      continue;
    }
    if (action.output == kInvalid) {
      if (s.held == 0) {
        ++in;
        return Broken(kIllFormed, 1);
      }
      if (CanStart(table, sevenBit, b)) return Broken(kIllFormed, s.held);
      ++in;
      return Broken(kIllFormed, s.held + 1);
    }
    if (out == outEnd) return kOutputFull;
    *out++ = action.output;
    s.machine = 0;
    s.held = 0;
    ++in;
  }
  return kInputUsedUp;
}

// Escapes are matched byte by byte, so a broken one is only the prefix that
// could still have become an escape. Control bytes read as themselves in
// every set: a line end in a two-byte set is never lost.
int StrictDecoder::ConvertISO2022(const unsigned char*& in, const unsigned char* inEnd, unsigned short*& out,
                                  const unsigned short* outEnd) {
  State& s = state_;
  while (in != inEnd) {
    const unsigned char b = *in;
    if (s.escape != 0) {
      int match = -1;
      for (int i = 0; i < setCount_ && match < 0; ++i) {
        bool same = escapes_[i].bytes[s.escape] == b;
        for (int k = 1; k < s.escape && same; ++k) same = escapes_[i].bytes[k] == ((s.value >> (8 * (k - 1))) & 0xFF);
        if (same) match = i;
      }
      if (match < 0) return Broken(kIllFormed, s.escape);
      ++in;
      if (s.escape == 1) {
        s.value = b;
        s.escape = 2;
        continue;
      }
      s.mode = static_cast<unsigned char>(match);
      s.escape = 0;
      s.value = 0;
      continue;
    }
    if (b == kEsc) {
      if (s.held != 0) return Broken(kIllFormed, s.held);
      s.escape = 1;
      s.value = 0;
      ++in;
      continue;
    }
    if (s.mode != 0 && b < 0x21) {
      if (s.held != 0) return Broken(kIllFormed, s.held);
      if (out == outEnd) return kOutputFull;
      *out++ = b;
      ++in;
      continue;
    }
    const unsigned char* stop = in + 1;
    // A run of bytes up to the next escape or control byte goes to the set in force.
    while (stop != inEnd && *stop != kEsc && (s.mode == 0 || *stop >= 0x21)) ++stop;
    const int result = ConvertTable(*sets_[s.mode], true, in, stop, out, outEnd);
    if (result != kInputUsedUp) return result;
  }
  return kInputUsedUp;
}
