#include "varnice/unicodeforms/utf7.h"

#include "varnice/encoding/internal_encoding.h"
#include "varnice/unicodeforms/form_pipelines.h"
#include "varnice/unicodeforms/unicode_form_ids.h"

namespace varnice::internal {

struct UTF7Tables {
  signed short base64Value[128];     // -1 for bytes outside the alphabet
  signed char strictDirect[128];     // 1 = must be encoded
  signed char permissiveDirect[128]; // as strict, with Set O direct too
};

}  // namespace varnice::internal

using varnice::internal::UTF7RunState;
using varnice::internal::UTF7Tables;

namespace {

const char kBase64[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
const char kSetD[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789'(),-./:?";
const char kSetO[] = "!\"#$%&*;<=>@[]^_`{|}";
const char kDirectSpace[] = " \t\r\n";

UTF7Tables BuildTables() {
  UTF7Tables t;
  for (int i = 0; i < 128; ++i) {
    t.base64Value[i] = -1;
    t.strictDirect[i] = 1;
  }
  for (int i = 0; kBase64[i] != 0; ++i) t.base64Value[static_cast<unsigned char>(kBase64[i])] = static_cast<short>(i);
  for (const char* c = kSetD; *c != 0; ++c) t.strictDirect[static_cast<unsigned char>(*c)] = 0;
  for (const char* c = kDirectSpace; *c != 0; ++c) t.strictDirect[static_cast<unsigned char>(*c)] = 0;
  for (int i = 0; i < 128; ++i) t.permissiveDirect[i] = t.strictDirect[i];
  for (const char* c = kSetO; *c != 0; ++c) t.permissiveDirect[static_cast<unsigned char>(*c)] = 0;
  return t;
}

// Built once per process, on first use by a converter or detector.
const UTF7Tables& Tables() {
  static const UTF7Tables tables = BuildTables();
  return tables;
}

// One byte of the decoding automaton; `emit` receives each code unit it
// produces. False when the decoder must report the byte as illegal.
template <class Emit>
inline bool DecodeByte(UTF7RunState& s, const UTF7Tables& t, unsigned char b, Emit emit) {
  if (!s.inRun) {
    if (b == '+') {
      s = UTF7RunState{true, true, false, 0, 0};
      return true;
    }
    if (b > 0x7F) return false;
    emit(b);
    return true;
  }
  // "+" and "/" are digits like the others, so a "+" never ends a run.
  const int digit = b < 0x80 ? t.base64Value[b] : -1;
  if (digit >= 0) {
    s.bits |= static_cast<std::uint32_t>(digit) << (26 - s.bitCount);
    s.bitCount += 6;
    s.justOpened = false;
    if (s.bitCount >= 16) {
      emit(static_cast<unsigned short>(s.bits >> 16));
      s.bits <<= 16;
      s.bitCount -= 16;
      s.produced = true;
    }
    return true;
  }
  s.inRun = false;
  if (b == '-' && s.justOpened) {
    s.justOpened = false;
    emit('+');
    return true;
  }
  // Whole units have already gone out; the rest must be zero padding.
  if (!s.produced || s.bits != 0) return false;
  s.bitCount = 0;
  if (b == '-') return true;
  if (b > 0x7F) return false;
  emit(b);
  return true;
}

}  // namespace

// --- UTF7toWhatever -----------------------------------------------------------

UTF7toWhatever::UTF7toWhatever() : tables_(Tables()) {}
UTF7toWhatever::~UTF7toWhatever() = default;

void UTF7toWhatever::Reset() { run_ = UTF7RunState{}; }

int UTF7toWhatever::Convert(const char*& in, const char* inEnd, unsigned short*& out,
                            const unsigned short* outEnd) {
  for (;;) {
    if (in == inEnd) return kInputUsedUp;
    if (outEnd - out < 4) return kOutputFull;
    const auto b = static_cast<unsigned char>(*in++);
    if (!DecodeByte(run_, tables_, b, [&out](unsigned short u) { *out++ = u; })) {
      Reset();
      return kIllegalInput;
    }
  }
}

int UTF7toWhatever::Finish(unsigned short*& out, const unsigned short* outEnd) {
  if (outEnd - out < 2) return kOutputFull;
  if (run_.inRun) {
    // An unterminated run is accepted if it would have been a good one.
    if (!run_.produced || run_.bits != 0) {
      Reset();
      return kIllegalInput;
    }
    run_ = UTF7RunState{};
  }
  return kConversionDone;
}

// --- UTF7fromWhatever ---------------------------------------------------------

UTF7fromWhatever::UTF7fromWhatever(bool setODirect, bool alwaysClose)
    : alwaysClose_(alwaysClose),
      direct_(setODirect ? Tables().permissiveDirect : Tables().strictDirect) {}

UTF7fromWhatever::~UTF7fromWhatever() = default;

void UTF7fromWhatever::Reset() {
  bits_ = 0;
  bitCount_ = 0;
  inRun_ = false;
  BlockConverter_16_to_8::Reset();
}

void UTF7fromWhatever::FlushBits(char*& out) {
  if (bitCount_ > 0) *out++ = kBase64[bits_ >> 26];
  bits_ = 0;
  bitCount_ = 0;
}

int UTF7fromWhatever::Convert(const unsigned short*& in, const unsigned short* inEnd, char*& out,
                              const char* outEnd, long) {
  const UTF7Tables& t = Tables();
  for (;;) {
    if (in == inEnd) return kInputUsedUp;
    if (outEnd - out < 7) return kOutputFull;
    const unsigned short u = *in++;
    if (u >= 0x80 || direct_[u] != 0) {
      if (!inRun_) {
        *out++ = '+';
        if (u == '+') {
          *out++ = '-';
          continue;
        }
        inRun_ = true;
      }
      bits_ |= static_cast<std::uint32_t>(u) << (16 - bitCount_);
      bitCount_ += 16;
      while (bitCount_ >= 6) {
        *out++ = kBase64[bits_ >> 26];
        bits_ <<= 6;
        bitCount_ -= 6;
      }
      continue;
    }
    if (inRun_) {
      FlushBits(out);
      // Without the "-" a decoder would take a base64 character or a "-"
      // as part of the run.
      if (alwaysClose_ || t.base64Value[u] >= 0 || u == '-') *out++ = '-';
      inRun_ = false;
    }
    *out++ = static_cast<char>(u);
  }
}

int UTF7fromWhatever::Finish(char*& out, const char* outEnd) {
  if (outEnd - out < 5) return kOutputFull;
  if (inRun_) {
    FlushBits(out);
    if (alwaysClose_) *out++ = '-';
    inRun_ = false;
  }
  return kConversionDone;
}

// --- UTF7Detector -------------------------------------------------------------

UTF7Detector::UTF7Detector(const ExternalEncoding& encoding)
    : ExternalEncodingDetector(encoding, 0, 0), tables_(Tables()) {}

UTF7Detector::~UTF7Detector() = default;

void UTF7Detector::Loser() {
  --score_;
  run_ = UTF7RunState{};
}

void UTF7Detector::Scan(const char*, const char* begin, const char* end) {
  for (const char* p = begin; p != end; ++p) {
    const auto b = static_cast<unsigned char>(*p);
    // Eight-bit bytes never occur in UTF-7: a point for the byte itself, and
    // another where the automaton finds it illegal.
    if (b > 0x7F) Loser();
    if (!DecodeByte(run_, tables_, b, [](unsigned short) {})) Loser();
  }
}

// --- UTF7EncodingVariant ------------------------------------------------------

UTF7EncodingVariant::UTF7EncodingVariant(const InternalEncoding& internal, const EncodingVariation& variation,
                                         bool setODirect, bool alwaysClose, const char** names,
                                         const char* mimeName)
    : ExternalEncoding(internal, variation, names, mimeName, 0),
      internal_(internal),
      setODirect_(setODirect),
      alwaysClose_(alwaysClose) {}

UTF7EncodingVariant::~UTF7EncodingVariant() = default;

bool UTF7EncodingVariant::IsTextModeSafe() const { return true; }

ExternalEncoding::ToUnicodeSource* UTF7EncodingVariant::CreateCharSourceToUnicode(CharSource& in,
                                                                                  UnicodeLibAllocator& a) const {
  return varnice::internal::FormSourceToUnicode(*this, internal_, new (a) UTF7toWhatever, in, a);
}

CharSource* UTF7EncodingVariant::CreateCharSourceFromUnicode(Char16Source& in, UnicodeLibAllocator& a) const {
  return varnice::internal::FormSourceFromUnicode(*this, internal_,
                                                  new (a) UTF7fromWhatever(setODirect_, alwaysClose_), in, a);
}

Char16Sink* UTF7EncodingVariant::CreateCharSinkFromUnicode(CharSink& out, UnicodeLibAllocator& a) const {
  return varnice::internal::FormSinkFromUnicode(*this, internal_,
                                                new (a) UTF7fromWhatever(setODirect_, alwaysClose_), out, a);
}

CharSink* UTF7EncodingVariant::CreateCharSinkToUnicode(Char16Sink& out, UnicodeLibAllocator& a) const {
  return varnice::internal::FormSinkToUnicode(*this, internal_, new (a) UTF7toWhatever, out, a);
}

ExternalEncodingDetector* UTF7EncodingVariant::CreateEncodingDetector(UnicodeLibAllocator& a) const {
  return new (a) UTF7Detector(*this);
}

// --- UTF7Variation ------------------------------------------------------------

namespace {

const char* kUTF7VariationNames[] = {"UTF7", "UTF-7", nullptr};
const char* kUTF7Names[] = {"UTF7", "UTF-7", nullptr};

}  // namespace

UTF7Variation::UTF7Variation()
    : RealEncodingVariation(EncodingVariationID(varnice::internal::kUTF7Variation), kUTF7VariationNames) {}
UTF7Variation::~UTF7Variation() = default;

void UTF7Variation::GenerateVariantOf(const InternalEncoding& encoding) {
  if (!varnice::internal::ShouldGenerate(*this, encoding)) return;
  const char** names =
      encoding.GetTextEncodingID() == TextEncodingID(varnice::internal::kUnicode20Number) ? kUTF7Names : nullptr;
  AddVariant(new UTF7EncodingVariant(encoding, *this, false, true, names, nullptr));
}
