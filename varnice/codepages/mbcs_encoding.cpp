#include "varnice/codepages/mbcs_encoding.h"

#include <algorithm>

#include "varnice/codepages/mbcs_engine.h"

using varnice::internal::DecodeMBCS;
using varnice::internal::EncodeMBCS;
using varnice::internal::FromUnicodeFinder;
using varnice::internal::PassThrough;
using varnice::internal::ScoreMBCS;

MBCSEncoding::MBCSEncoding(TextEncodingID id, const char** nicknames, const char* mimeName,
                           unsigned int codePage, const MBCStoUnicodeTable& toUnicode,
                           const LookupUnsignedLongTable<unsigned short>& fromUnicode, bool basedOnASCII)
    : BlockExternalEncoding(id, nicknames, mimeName, codePage),
      toUnicode_(toUnicode),
      fromUnicode_(fromUnicode),
      basedOnASCII_(basedOnASCII) {}

MBCSEncoding::~MBCSEncoding() = default;

char MBCSEncoding::SubstituteChar() const { return basedOnASCII_ ? 0x1A : 0x7F; }

bool MBCSEncoding::IsBasedOnASCII() const { return basedOnASCII_; }

bool MBCSEncoding::IsTextModeSafe() const { return basedOnASCII_; }

ExternalEncodingDetector* MBCSEncoding::CreateEncodingDetector(UnicodeLibAllocator& a) const {
  return new (a) MBCSDetector(*this, toUnicode_);
}

BlockConverter_8_to_16* MBCSEncoding::CreateConverterToUnicode(UnicodeLibAllocator& a) const {
  return new (a) MBCStoUnicode(ConverterToUnicode());
}

BlockConverter_16_to_8* MBCSEncoding::CreateConverterFromUnicode(UnicodeLibAllocator& a) const {
  return new (a) MBCSfromUnicode(ConverterFromUnicode());
}

MBCStoUnicode MBCSEncoding::ConverterToUnicode() const { return MBCStoUnicode(toUnicode_, basedOnASCII_); }

MBCSfromUnicode MBCSEncoding::ConverterFromUnicode() const { return MBCSfromUnicode(fromUnicode_, basedOnASCII_); }

unsigned long MBCSEncoding::FromUnicode(unsigned short unit) const {
  unsigned long code;
  return fromUnicode_.LookupUnsignedLong(unit, code) ? code : 0xFFFD;
}

MBCStoUnicode::MBCStoUnicode(const MBCStoUnicodeTable& table, bool honourForcedMapping)
    : table_(table), honourForcedMapping_(honourForcedMapping) {}

MBCStoUnicode::~MBCStoUnicode() = default;

int MBCStoUnicode::Convert(const char*& in, const char* inEnd, unsigned short*& out,
                           const unsigned short* outEnd) {
  auto* p = reinterpret_cast<const unsigned char*>(in);
  const int result = DecodeMBCS(table_.Actions(), state_, PassThrough(honourForcedMapping_, Behavior()), p,
                                reinterpret_cast<const unsigned char*>(inEnd), out, outEnd);
  in = reinterpret_cast<const char*>(p);
  return result;
}

int MBCStoUnicode::Finish(unsigned short*&, const unsigned short*) {
  state_ = 0;
  return kConversionDone;
}

void MBCStoUnicode::Reset() { state_ = 0; }

bool MBCStoUnicode::HonoursForcedMapping() const {
  return honourForcedMapping_ && Behavior().HasForcedDirectMapping();
}

MBCSfromUnicode::MBCSfromUnicode(const LookupUnsignedLongTable<unsigned short>& table, bool honourForcedMapping)
    : table_(table), honourForcedMapping_(honourForcedMapping) {}

MBCSfromUnicode::~MBCSfromUnicode() = default;

int MBCSfromUnicode::Convert(const unsigned short*& in, const unsigned short* inEnd, char*& out,
                             const char* outEnd, long capacity) {
  const PassThrough pass(honourForcedMapping_, Behavior());
  // A budget that covers everything this call could write (the room, or
  // four bytes a unit) cannot run out, so the loop need not ask before each
  // character, as with no budget at all.
  const long most = std::min<long>(outEnd - out, 4 * (inEnd - in));
  const bool unbounded = capacity == -1 || (!CapacityWasReached() && capacity >= most);
  // The finder recognises the stored table shapes, so that the loop below
  // searches their data inline rather than calling through the table.
  const FromUnicodeFinder finder(table_);
  return finder.With([&](const auto& find) {
    return EncodeMBCS(find, pass, in, inEnd, out, outEnd, unbounded,
                      [&](long n) { return ReachedCapacity(n, 0, capacity); }, finder.Identity(), finder.Flat());
  });
}

MBCSDetector::MBCSDetector(const ExternalEncoding& encoding, const MBCStoUnicodeTable& table)
    : ExternalEncodingDetector(encoding, 0, 0), table_(table) {}

MBCSDetector::~MBCSDetector() = default;

void MBCSDetector::Scan(const char*, const char* begin, const char* end) {
  ScoreMBCS(table_.Actions(), state_, reinterpret_cast<const unsigned char*>(begin),
            reinterpret_cast<const unsigned char*>(end), score_, tieBreaker_);
}

void MBCSDetector::Finish(const char*, const char*) {
  if (state_ != 0) --score_;
}
