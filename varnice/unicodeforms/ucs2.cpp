#include "varnice/unicodeforms/ucs2.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include "varnice/encoding/internal_encoding.h"
#include "varnice/unicodeforms/form_pipelines.h"
#include "varnice/unicodeforms/unicode_form_ids.h"

using varnice::internal::ShouldGenerate;

// --- PlatformByteOrder --------------------------------------------------------

bool PlatformByteOrder::ComputeIsBigEndian() {
  const unsigned char cell[2] = {0x02, 0x01};
  unsigned short value;
  std::memcpy(&value, cell, sizeof value);
  return value == 0x0201;
}

bool PlatformByteOrder::IsBigEndian() {
  static const bool bigEndian = ComputeIsBigEndian();
  return bigEndian;
}

// --- UCS2toWhatever -----------------------------------------------------------

UCS2toWhatever::UCS2toWhatever(bool bigEndian) : initialBigEndian_(bigEndian), bigEndian_(bigEndian) {}
UCS2toWhatever::~UCS2toWhatever() = default;

void UCS2toWhatever::Reset() {
  bigEndian_ = initialBigEndian_;
  hasPending_ = false;
  pending_ = 0;
  atStart_ = true;
}

int UCS2toWhatever::Convert(const char*& in, const char* inEnd, unsigned short*& out,
                            const unsigned short* outEnd) {
  for (;;) {
    if (in == inEnd) return kInputUsedUp;
    if (out == outEnd) return kOutputFull;
    const auto b = static_cast<unsigned char>(*in++);
    if (!hasPending_) {
      hasPending_ = true;
      pending_ = b;
      continue;
    }
    hasPending_ = false;
    if (atStart_) {
      atStart_ = false;
      if (pending_ == 0xFE && b == 0xFF) {
        bigEndian_ = true;
        continue;
      }
      if (pending_ == 0xFF && b == 0xFE) {
        bigEndian_ = false;
        continue;
      }
    }
    *out++ = bigEndian_ ? static_cast<unsigned short>(pending_ << 8 | b)
                        : static_cast<unsigned short>(b << 8 | pending_);
  }
}

// --- UCS2fromWhatever ---------------------------------------------------------

UCS2fromWhatever::UCS2fromWhatever(bool bigEndian) : bigEndian_(bigEndian) {}
UCS2fromWhatever::~UCS2fromWhatever() = default;

void UCS2fromWhatever::Reset() {
  atStart_ = true;
  BlockConverter_16_to_8::Reset();
}

int UCS2fromWhatever::Convert(const unsigned short*& in, const unsigned short* inEnd, char*& out,
                              const char* outEnd, long capacity) {
  // Units within both the output room and the byte budget need no check each.
  long fast = std::min<long>(inEnd - in, (outEnd - out) / 2);
  if (capacity != -1) {
    fast = CapacityWasReached() ? 0 : std::min(fast, capacity / 2);
    capacity -= 2 * fast;
  }
  const int first = bigEndian_ ? 8 : 0;
  for (const unsigned short* stop = in + fast; in != stop; ++in) {
    *out++ = static_cast<char>(*in >> first);
    *out++ = static_cast<char>(*in >> (8 - first));
  }
  for (;;) {
    if (in == inEnd) return kInputUsedUp;
    if (outEnd - out < 2) return kOutputFull;
    // Unlike UTF-8, a refused unit is left unconsumed.
    if (ReachedCapacity(2, 0, capacity)) return kCapacityReached;
    const unsigned short u = *in++;
    const auto high = static_cast<char>(u >> 8);
    const auto low = static_cast<char>(u & 0xFF);
    *out++ = bigEndian_ ? high : low;
    *out++ = bigEndian_ ? low : high;
  }
}

// --- UCS2Detector -------------------------------------------------------------

UCS2Detector::UCS2Detector(const ExternalEncoding& encoding) : ExternalEncodingDetector(encoding, INT_MIN, 0) {}
UCS2Detector::~UCS2Detector() = default;

void UCS2Detector::Scan(const char* bufferStart, const char*, const char* end) {
  if (decided_ || end - bufferStart < 2) return;
  decided_ = true;
  // A mark in either order reads as FEFF or FFFE in the host's order.
  unsigned short first;
  std::memcpy(&first, bufferStart, sizeof first);
  if (first == 0xFEFF || first == 0xFFFE) score_ = 1;
}

// --- UCS2variant --------------------------------------------------------------

UCS2variant::UCS2variant(const InternalEncoding& internal, const EncodingVariation& variation, ByteOrder order,
                         const char** names)
    : ExternalEncoding(internal, variation, names, nullptr, 0),
      internal_(internal),
      bigEndian_(order == kBigEndianOrder || (order == kPlatformOrder && PlatformByteOrder::IsBigEndian())) {}

UCS2variant::~UCS2variant() = default;

bool UCS2variant::IsTextModeSafe() const { return false; }

ExternalEncoding::ToUnicodeSource* UCS2variant::CreateCharSourceToUnicode(CharSource& in,
                                                                          UnicodeLibAllocator& a) const {
  return varnice::internal::FormSourceToUnicode(*this, internal_, new (a) UCS2toWhatever(bigEndian_), in, a);
}

CharSource* UCS2variant::CreateCharSourceFromUnicode(Char16Source& in, UnicodeLibAllocator& a) const {
  return varnice::internal::FormSourceFromUnicode(*this, internal_, new (a) UCS2fromWhatever(bigEndian_), in, a);
}

Char16Sink* UCS2variant::CreateCharSinkFromUnicode(CharSink& out, UnicodeLibAllocator& a) const {
  return varnice::internal::FormSinkFromUnicode(*this, internal_, new (a) UCS2fromWhatever(bigEndian_), out, a);
}

CharSink* UCS2variant::CreateCharSinkToUnicode(Char16Sink& out, UnicodeLibAllocator& a) const {
  return varnice::internal::FormSinkToUnicode(*this, internal_, new (a) UCS2toWhatever(bigEndian_), out, a);
}

ExternalEncodingDetector* UCS2variant::CreateEncodingDetector(UnicodeLibAllocator& a) const {
  return new (a) UCS2Detector(*this);
}

// --- The byte-order variations ------------------------------------------------

namespace {

const char* kPlatformVariationNames[] = {"UCS2", "UCS-2", nullptr};
const char* kBigEndianVariationNames[] = {"big-endian", "BigEndian", "68k", "PowerPC", "Mac", "Macintosh", nullptr};
const char* kLittleEndianVariationNames[] = {"little-endian", "LittleEndian", "x86", nullptr};

const char* kUCS2Names[] = {"UCS2", "UCS-2", nullptr};
const char* kBMPNames[] = {"BMP", "BMPstring", nullptr};

// Functions rather than constants: variants may be generated from other
// files' static initialisers.
TextEncodingID Unicode20ID() { return TextEncodingID(varnice::internal::kUnicode20Number); }
TextEncodingID Unicode20WithMark() {
  return Unicode20ID() + EncodingVariationID(varnice::internal::kByteOrderMarkVariation);
}

}  // namespace

PlatformByteOrderVariation::PlatformByteOrderVariation()
    : RealEncodingVariation(EncodingVariationID(varnice::internal::kPlatformByteOrderVariation),
                            kPlatformVariationNames) {}
PlatformByteOrderVariation::~PlatformByteOrderVariation() = default;

void PlatformByteOrderVariation::GenerateVariantOf(const InternalEncoding& encoding) {
  if (!ShouldGenerate(*this, encoding)) return;
  const char** names = encoding.GetTextEncodingID() == Unicode20WithMark() ? kUCS2Names : nullptr;
  AddVariant(new UCS2variant(encoding, *this, UCS2variant::kPlatformOrder, names));
}

BigEndianVariation::BigEndianVariation()
    : RealEncodingVariation(EncodingVariationID(varnice::internal::kBigEndianVariation), kBigEndianVariationNames) {}
BigEndianVariation::~BigEndianVariation() = default;

void BigEndianVariation::GenerateVariantOf(const InternalEncoding& encoding) {
  if (!ShouldGenerate(*this, encoding)) return;
  const TextEncodingID id = encoding.GetTextEncodingID();
  const char** names = id == Unicode20ID() ? kBMPNames : id == Unicode20WithMark() ? kBigEndianVariationNames : nullptr;
  AddVariant(new UCS2variant(encoding, *this, UCS2variant::kBigEndianOrder, names));
}

LittleEndianVariation::LittleEndianVariation()
    : RealEncodingVariation(EncodingVariationID(varnice::internal::kLittleEndianVariation),
                            kLittleEndianVariationNames) {}
LittleEndianVariation::~LittleEndianVariation() = default;

void LittleEndianVariation::GenerateVariantOf(const InternalEncoding& encoding) {
  if (!ShouldGenerate(*this, encoding)) return;
  const char** names = encoding.GetTextEncodingID() == Unicode20WithMark() ? kLittleEndianVariationNames : nullptr;
  AddVariant(new UCS2variant(encoding, *this, UCS2variant::kLittleEndianOrder, names));
}
