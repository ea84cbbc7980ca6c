#include "varnice/encoding/catalogue/transcoder.h"

#include <algorithm>

#include "varnice/encoding/block_converter.h"
#include "varnice/stream/converting/block_external_encoding.h"
#include "varnice/encoding/internal_encoding.h"
#include "varnice/encoding/encoding_variation.h"
#include "varnice/encoding/encoding_variation_id.h"
#include "varnice/unicodeforms/byte_order_mark.h"
#include "varnice/unicodeforms/unicode_form_ids.h"
#include "varnice/unicodeforms/ucs2.h"
#include "varnice/unicodeforms/utf7.h"
#include "varnice/unicodeforms/utf8.h"
#include "varnice/widec/utf16_units.h"

namespace {

constexpr std::size_t kChunk = 1024;

using varnice::internal::IsHighSurrogate;
using varnice::internal::IsLowSurrogate;

// Forms over plain Unicode 2.0, optionally with a byte-order mark; the
// Unicode 1.1 forms need a mapping step that only their pipelines make.
bool IsPlainUnicode(const InternalEncoding& internal, bool* marked = nullptr) {
  if (&internal == InternalEncoding::Unicode20()) return true;
  const auto* withMark = dynamic_cast<const UnicodeByteOrderMarkVariant*>(&internal);
  if (withMark == nullptr || &withMark->Decorated() != InternalEncoding::Unicode20()) return false;
  if (marked != nullptr) *marked = true;
  return true;
}

BlockConverter_8_to_16* CreateReader(const ExternalEncoding& e, UnicodeLibAllocator& a, StrictDecoder*& strict) {
  strict = StrictDecoder::Create(e, a);
  if (strict != nullptr) return strict;
  if (const auto* utf7 = dynamic_cast<const UTF7EncodingVariant*>(&e)) {
    return IsPlainUnicode(utf7->Internal()) ? new (a) UTF7toWhatever() : nullptr;
  }
  const auto* block = dynamic_cast<const BlockExternalEncoding*>(&e);
  return block != nullptr && e.IsValidForInput() ? block->CreateConverterToUnicode(a) : nullptr;
}

BlockConverter_16_to_8* CreateWriter(const ExternalEncoding& e, UnicodeLibAllocator& a, bool& mark) {
  // The code pages and ISO-2022 first, for the reason StrictDecoder::Create gives.
  if (const auto* block = dynamic_cast<const BlockExternalEncoding*>(&e)) {
    return e.IsValidForOutput() ? block->CreateConverterFromUnicode(a) : nullptr;
  }
  if (const auto* utf8 = dynamic_cast<const UTF8EncodingVariant*>(&e)) {
    return IsPlainUnicode(utf8->Internal()) ? new (a) UTF8fromWhatever(true) : nullptr;
  }
  if (const auto* ucs2 = dynamic_cast<const UCS2variant*>(&e)) {
    return IsPlainUnicode(ucs2->Internal(), &mark) ? new (a) UCS2fromWhatever(ucs2->IsBigEndian()) : nullptr;
  }
  if (const auto* utf7 = dynamic_cast<const UTF7EncodingVariant*>(&e)) {
    return IsPlainUnicode(utf7->Internal())
               ? new (a) UTF7fromWhatever(utf7->WritesSetODirectly(), utf7->AlwaysClosesRuns())
               : nullptr;
  }
  return nullptr;
}

// Whether the encoder writes the text without a problem.
bool Writes(BlockConverter_16_to_8& encoder, const unsigned short* text, std::size_t units) {
  char buffer[64];
  char* out = buffer;
  const unsigned short* in = text;
  return encoder.Convert(in, text + units, out, buffer + sizeof buffer, -1) == kInputUsedUp;
}

// The character whose first unit is at `unit`, when `after` is past its end.
unsigned long Character(const unsigned short* unit, const unsigned short* after) {
  if (IsHighSurrogate(unit[0]) && after - unit == 2) return varnice::internal::CombineSurrogates(unit[0], unit[1]);
  return unit[0];
}

// Names compare ignoring case, "-", "_" and space, as the registry's do.
bool SameName(const char* a, const char* b) {
  auto skip = [](const char*& p) {
    while (*p == '-' || *p == '_' || *p == ' ') ++p;
  };
  for (;;) {
    skip(a);
    skip(b);
    if (*a == 0 || *b == 0) return *a == *b;
    const char ca = *a >= 'A' && *a <= 'Z' ? *a - 'A' + 'a' : *a;
    const char cb = *b >= 'A' && *b <= 'Z' ? *b - 'A' + 'a' : *b;
    if (ca != cb) return false;
    ++a;
    ++b;
  }
}

}  // namespace

const ExternalEncoding* Transcoder::FindEncoding(const char* name) {
  if (name == nullptr) return nullptr;
  if (SameName(name, "UTF-16")) return ExternalEncoding::Unicode20ByteStream();
  if (SameName(name, "UTF-16BE")) return ExternalEncoding::Unicode20BigEndian();
  if (SameName(name, "UTF-16LE")) {
    EncodingVariation::LittleEndian();
    const TextEncoding* variant = InternalEncoding::Unicode20()->LookupVariant(
        EncodingVariationID(varnice::internal::kLittleEndianVariation));
    return variant != nullptr ? const_cast<TextEncoding*>(variant)->AsExternalEncoding() : nullptr;
  }
  return ExternalEncoding::Lookup(name);
}

Transcoder::Transcoder(const ExternalEncoding* from, const ExternalEncoding* to, ErrorMode mode, Receiver& receiver)
    : mode_(mode), receiver_(receiver), arena_(512, __FILE__, __LINE__), from_(from), to_(to) {
  ready_ = true;
  if (from != nullptr) {
    decoder_ = CreateReader(*from, arena_, strict_);
    ready_ = decoder_ != nullptr;
  }
  if (to != nullptr) {
    encoder_ = CreateWriter(*to, arena_, writeMark_);
    ready_ = ready_ && encoder_ != nullptr;
  }
}

Transcoder::~Transcoder() {
  delete decoder_;
  delete encoder_;
}

bool Transcoder::CanRead(const ExternalEncoding& e) {
  LinearAllocator arena(256, __FILE__, __LINE__);
  StrictDecoder* strict;
  BlockConverter_8_to_16* reader = CreateReader(e, arena, strict);
  delete reader;
  return reader != nullptr;
}

bool Transcoder::CanWrite(const ExternalEncoding& e) {
  LinearAllocator arena(256, __FILE__, __LINE__);
  bool mark = false;
  BlockConverter_16_to_8* writer = CreateWriter(e, arena, mark);
  delete writer;
  return writer != nullptr;
}

std::size_t Transcoder::DefaultSubstitute(const ExternalEncoding& to, unsigned short* text, int* rawByte) {
  LinearAllocator arena(256, __FILE__, __LINE__);
  bool mark = false;
  auto writes = [&](unsigned short unit) {
    BlockConverter_16_to_8* trial = CreateWriter(to, arena, mark);
    const bool fits = trial != nullptr && Writes(*trial, &unit, 1);
    delete trial;
    return fits;
  };
  *rawByte = -1;
  *text = 0x001A;
  if (writes(0x001A)) return 1;
  // Code-page tables keep SUB as their "no mapping" value, so the byte is
  // written by hand once the encoder is in a single-byte set.
  if (to.IsBasedOnASCII()) {
    *rawByte = 0x1A;
    return 1;
  }
  if (writes(0x0041) && !writes(0x3013)) {
    *rawByte = 0x3F;  // EBCDIC
    return 1;
  }
  for (unsigned short candidate : {static_cast<unsigned short>(0x3013), static_cast<unsigned short>(0x003F)}) {
    if (writes(candidate)) {
      *text = candidate;
      return 1;
    }
  }
  return 0;
}

void Transcoder::SetSubstitute(const unsigned short* text, std::size_t units) {
  substituteLength_ = std::min<std::size_t>(units, sizeof substitute_ / sizeof substitute_[0]);
  std::copy(text, text + substituteLength_, substitute_);
  substituteChosen_ = true;
}

bool Transcoder::Put(const void* data, std::size_t units) {
  if (status_.stopped || !ready_) return false;
  if (decoder_ != nullptr) {
    const auto* b = static_cast<const unsigned char*>(data);
    return DecodeBytes(b, b + units);
  }
  const auto* b = static_cast<const unsigned short*>(data);
  unitsInBase_ = status_.consumed;
  const bool ok = Units(b, b + units);
  if (ok) status_.consumed += units;
  return ok;
}

bool Transcoder::DecodeBytes(const unsigned char* begin, const unsigned char* end) {
  if (strict_ != nullptr) pieceState_ = strict_->Save();
  pieceBegin_ = begin;
  pieceEnd_ = end;
  pieceUnits_ = 0;
  const unsigned long long before = status_.consumed;
  const char* p = reinterpret_cast<const char*>(begin);
  const char* const e = reinterpret_cast<const char*>(end);
  for (;;) {
    unsigned short buffer[kChunk];
    unsigned short* out = buffer;
    const int result = decoder_->Convert(p, e, out, buffer + kChunk);
    status_.consumed = before + (p - reinterpret_cast<const char*>(begin));
    unitsInBase_ = pieceUnits_;
    if (out != buffer && !Units(buffer, out)) return false;
    pieceUnits_ += out - buffer;
    if (result == kInputUsedUp || result == kConversionDone) return true;
    if (result == kOutputFull) continue;
    const bool cutOff = strict_ != nullptr && strict_->Problem() == StrictDecoder::kIncomplete;
    const long long offset = strict_ != nullptr ? strict_->ProblemOffset() : static_cast<long long>(status_.consumed) - 1;
    if (!Report(cutOff ? kIncomplete : kIllFormed, offset)) return false;
    if (mode_ == kReplace) {
      static const unsigned short kReplacement = 0xFFFD;
      unitsInBase_ = pieceUnits_;
      if (!Units(&kReplacement, &kReplacement + 1, true)) return false;
      pieceUnits_ += 1;
    }
  }
}

bool Transcoder::Units(const unsigned short* begin, const unsigned short* end, bool isReplacement) {
  auto deliver = [&](const unsigned short* b, const unsigned short* e) {
    if (b == e) return true;
    if (to_ == nullptr) {
      Emit(b, e - b);
      return true;
    }
    if (writeMark_) {
      writeMark_ = false;
      static const unsigned short kMark = 0xFEFF;
      Encode(&kMark, &kMark + 1, true);
    }
    const unsigned long long base = unitsInBase_;
    unitsInBase_ += b - begin;
    const bool ok = Encode(b, e, isReplacement);
    unitsInBase_ = base;
    return ok;
  };
  // A strict reader only ever writes whole pairs: nothing to check.
  if (strict_ != nullptr && high_ == 0 && !lowToDrop_) return deliver(begin, end);
  const unsigned short* p = begin;
  if (lowToDrop_ && p != end) {
    lowToDrop_ = false;
    if (IsLowSurrogate(*p)) ++p;
  }
  if (high_ != 0 && p != end) {
    const unsigned short high = high_;
    high_ = 0;
    if (IsLowSurrogate(*p)) {
      const unsigned short pair[2] = {high, *p};
      ++p;
      if (to_ == nullptr) {
        Emit(pair, 2);
      } else {
        // The pair began in the piece before.
        const unsigned long long base = unitsInBase_;
        unitsInBase_ = base - 1;
        const bool ok = Encode(pair, pair + 2, isReplacement);
        unitsInBase_ = base;
        if (!ok) return false;
      }
    } else {
      if (!Report(kLoneSurrogate, OffsetOfUnit(unitsInBase_ - 1))) return false;
      if (mode_ == kReplace && !ReplaceUnit()) return false;
    }
  }
  const unsigned short* run = p;
  for (; p != end; ++p) {
    const unsigned short u = *p;
    if (!varnice::internal::IsSurrogate(u)) continue;
    if (IsHighSurrogate(u)) {
      if (p + 1 == end) {
        if (!deliver(run, p)) return false;
        high_ = u;
        return true;
      }
      if (IsLowSurrogate(p[1])) {
        ++p;
        continue;
      }
    }
    if (!deliver(run, p)) return false;
    if (!Report(kLoneSurrogate, OffsetOfUnit(unitsInBase_ + (p - begin)))) return false;
    if (mode_ == kReplace && !ReplaceUnit()) return false;
    run = p + 1;
  }
  return deliver(run, end);
}

bool Transcoder::Encode(const unsigned short* begin, const unsigned short* end, bool isReplacement) {
  const unsigned short* p = begin;
  while (p != end) {
    char buffer[kChunk];
    char* out = buffer;
    const int result = encoder_->Convert(p, end, out, buffer + kChunk, -1);
    if (out != buffer) Emit(buffer, out - buffer);
    if (result == kInputUsedUp || result == kConversionDone) return true;
    if (result == kOutputFull) continue;
    // The unit the target lacks has been consumed; a pair is one character.
    const unsigned short* unit = p - 1;
    if (IsHighSurrogate(*unit)) {
      if (p != end) {
        ++p;
      } else {
        lowToDrop_ = true;
      }
    }
    if (!isReplacement) {
      const long long offset = OffsetOfUnit(unitsInBase_ + (unit - begin));
      const bool first = status_.problem == kNoProblem;
      if (!Report(kUnmappable, offset)) {
        status_.character = Character(unit, p);
        return false;
      }
      if (first) status_.character = Character(unit, p);
    }
    if (mode_ == kReplace || isReplacement) Substitute();
  }
  return true;
}

void Transcoder::Substitute() {
  if (!substituteChosen_) {
    substituteChosen_ = true;
    substituteLength_ = DefaultSubstitute(*to_, substitute_, &substituteByte_);
  }
  if (substituteLength_ == 0) return;
  char buffer[kChunk];
  char* out = buffer;
  const unsigned short* in = substitute_;
  const unsigned short* const end = substitute_ + substituteLength_;
  // A substitute the target lacks in part is written as far as it goes.
  while (in != end) {
    const int result = encoder_->Convert(in, end, out, buffer + kChunk, -1);
    if (result == kInputUsedUp || result == kOutputFull) break;
    if (result == kNotInTargetRepertoire && substituteByte_ >= 0) *out++ = static_cast<char>(substituteByte_);
  }
  if (out != buffer) Emit(buffer, out - buffer);
}

// U+FFFD in place of a lone surrogate; a target without it gets its substitute.
bool Transcoder::ReplaceUnit() {
  static const unsigned short kReplacement = 0xFFFD;
  if (to_ == nullptr) {
    Emit(&kReplacement, 1);
    return true;
  }
  return Encode(&kReplacement, &kReplacement + 1, true);
}

void Transcoder::Emit(const void* data, std::size_t units) {
  receiver_.Take(data, units);
  status_.produced += units;
}

bool Transcoder::Report(Problem kind, long long offset) {
  if (status_.problem == kNoProblem) {
    status_.problem = kind;
    status_.problemOffset = offset;
  }
  if (mode_ == kStop || mode_ == kStrict) {
    status_.stopped = true;
    if (offset >= 0) status_.consumed = static_cast<unsigned long long>(offset);
    if (encoder_ != nullptr) {
      char buffer[64];
      char* out = buffer;
      encoder_->Finish(out, buffer + sizeof buffer);
      if (out != buffer) Emit(buffer, out - buffer);
    }
    return false;
  }
  ++status_.replacements;
  return true;
}

long long Transcoder::OffsetOfUnit(unsigned long long index) {
  return from_ != nullptr ? LocateUnit(index) : static_cast<long long>(index);
}

long long Transcoder::LocateUnit(unsigned long long index) {
  if (strict_ == nullptr) return static_cast<long long>(status_.consumed);
  const StrictDecoder::State now = strict_->Save();
  strict_->Restore(pieceState_);
  long long boundary = pieceState_.consumed - pieceState_.held;
  unsigned long long units = 0;
  const char* p = reinterpret_cast<const char*>(pieceBegin_);
  const char* const end = reinterpret_cast<const char*>(pieceEnd_);
  while (p != end) {
    unsigned short scratch[2];
    unsigned short* out = scratch;
    const char* q = p;
    const int result = strict_->Convert(q, p + 1, out, scratch + 2);
    if (result == kIllegalInput && mode_ == kReplace) ++units;
    units += out - scratch;
    if (units > index) break;
    const StrictDecoder::State s = strict_->Save();
    if (s.held == 0 && s.escape == 0) boundary = s.consumed;
    p = q;
  }
  strict_->Restore(now);
  return boundary;
}

bool Transcoder::Finish() {
  if (status_.stopped || !ready_) return false;
  if (decoder_ != nullptr) {
    unsigned short buffer[16];
    unsigned short* out = buffer;
    const int result = decoder_->Finish(out, buffer + 16);
    pieceBegin_ = pieceEnd_ = nullptr;
    if (out != buffer && !Units(buffer, out)) return false;
    if (result == kIllegalInput) {
      const long long offset = strict_ != nullptr ? strict_->ProblemOffset() : static_cast<long long>(status_.consumed);
      if (!Report(kIncomplete, offset)) return false;
      if (mode_ == kReplace) {
        static const unsigned short kReplacement = 0xFFFD;
        if (!Units(&kReplacement, &kReplacement + 1, true)) return false;
      }
    }
  }
  if (high_ != 0) {
    high_ = 0;
    if (!Report(kLoneSurrogate, static_cast<long long>(status_.consumed) - 1)) return false;
    if (mode_ == kReplace && !ReplaceUnit()) return false;
  }
  if (encoder_ != nullptr) {
    char buffer[64];
    char* out = buffer;
    encoder_->Finish(out, buffer + sizeof buffer);
    if (out != buffer) Emit(buffer, out - buffer);
  }
  return true;
}
