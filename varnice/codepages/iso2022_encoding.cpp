#include "varnice/codepages/iso2022_encoding.h"

#include <typeinfo>

namespace {

const BlockExternalEncoding& BlockEncodingOf(const ISO2022Subencoding& sub) {
  return dynamic_cast<const BlockExternalEncoding&>(*sub.encoding);
}

// One converter per subencoding, made by create(encoding). If one cannot be
// made, those made already go back to their allocator before the exception
// leaves.
template <class Converter, class Create>
Converter** MakeConverters(const ISO2022Subencoding* list, int count, Create create) {
  auto** made = new Converter*[count]();
  try {
    for (int i = 0; i < count; ++i) made[i] = create(BlockEncodingOf(list[i]));
  } catch (...) {
    for (int i = 0; i < count; ++i) delete made[i];
    delete[] made;
    throw;
  }
  return made;
}

template <class Converter>
void DeleteConverters(Converter* const* converters, int count) {
  for (int i = 0; i < count; ++i) delete converters[i];
  delete[] converters;
}

}  // namespace

GenericISO2022Encoding::GenericISO2022Encoding(TextEncodingID id, const char** nicknames, const char* mimeName,
                                               unsigned int codePage)
    : BlockExternalEncoding(id, nicknames, mimeName, codePage) {}

GenericISO2022Encoding::~GenericISO2022Encoding() = default;

BlockConverter_8_to_16* GenericISO2022Encoding::CreateConverterToUnicode(UnicodeLibAllocator& a) const {
  return new (a) ISO2022toUnicode(GetSubencodings(), CountSubencodings(), a);
}

BlockConverter_16_to_8* GenericISO2022Encoding::CreateConverterFromUnicode(UnicodeLibAllocator& a) const {
  return new (a) ISO2022fromUnicode(*this, GetSubencodings(), CountSubencodings(), a);
}

ISO2022toUnicode::ISO2022toUnicode(const ISO2022Subencoding* list, int count, UnicodeLibAllocator& allocator)
    : reader_(list, count, MakeConverters<BlockConverter_8_to_16>(list, count, [&](const BlockExternalEncoding& e) {
                return CreateRelatedConverterToUnicode(e, allocator);
              })) {}

ISO2022toUnicode::~ISO2022toUnicode() { DeleteConverters(reader_.Subs(), reader_.Count()); }

void ISO2022toUnicode::SetBehavior(UnicodeLibBehavior* behavior) {
  for (int i = 0; i < reader_.Count(); ++i) reader_.Subs()[i]->SetBehavior(behavior);
  BlockConverter_8_to_16::SetBehavior(behavior);
}

int ISO2022toUnicode::Convert(const char*& in, const char* inEnd, unsigned short*& out,
                              const unsigned short* outEnd) {
  return reader_.Convert(in, inEnd, out, outEnd);
}

int ISO2022toUnicode::ConvertBuffered(const char*& in, const char* inEnd, unsigned short*& out,
                                      const unsigned short* outEnd) {
  return reader_.ConvertBuffered(in, inEnd, out, outEnd);
}

int ISO2022toUnicode::Finish(unsigned short*& out, const unsigned short* outEnd) {
  return reader_.Finish(out, outEnd);
}

void ISO2022toUnicode::Reset() { reader_.Reset(); }

ISO2022fromUnicode::ISO2022fromUnicode(const GenericISO2022Encoding& encoding, const ISO2022Subencoding* list,
                                       int count, UnicodeLibAllocator& allocator)
    : encoding_(encoding),
      writer_(list, count, MakeConverters<BlockConverter_16_to_8>(list, count, [&](const BlockExternalEncoding& e) {
                return CreateRelatedConverterFromUnicode(e, allocator);
              })) {}

ISO2022fromUnicode::~ISO2022fromUnicode() { DeleteConverters(writer_.Subs(), writer_.Count()); }

void ISO2022fromUnicode::SetBehavior(UnicodeLibBehavior* behavior) {
  for (int i = 0; i < writer_.Count(); ++i) writer_.Subs()[i]->SetBehavior(behavior);
  BlockConverter_16_to_8::SetBehavior(behavior);
}

int ISO2022fromUnicode::Convert(const unsigned short*& in, const unsigned short* inEnd, char*& out,
                                const char* outEnd, long capacity) {
  return writer_.Convert(
      in, inEnd, out, outEnd, capacity,
      [this](unsigned short unit, int current) { return encoding_.ChooseEncoding(unit, current); },
      [this](long n, long reserve, long& budget) { return ReachedCapacity(n, reserve, budget); },
      [this] {
        // A subencoding's converter ran out of budget: refusing one byte of
        // an empty budget sets this converter's own flag, so that it stays
        // refused until Reset like any other.
        long none = 0;
        ReachedCapacity(1, 0, none);
      });
}

int ISO2022fromUnicode::Finish(char*& out, const char* outEnd) { return writer_.Finish(out, outEnd); }

void ISO2022fromUnicode::Reset() {
  BlockConverter_16_to_8::Reset();
  writer_.Reset();
}

ISO2022JPEncoding::ISO2022JPEncoding(TextEncodingID id, const char** nicknames, const char* mimeName,
                                     unsigned int codePage)
    : GenericISO2022Encoding(id, nicknames, mimeName, codePage) {}

ISO2022JPEncoding::~ISO2022JPEncoding() = default;

bool ISO2022JPEncoding::IsTextModeSafe() const { return true; }

int ISO2022JPEncoding::CountSubencodings() const { return 4; }

const ISO2022Subencoding* ISO2022JPEncoding::GetSubencodings() const {
  // Both JIS X 0208 escapes read the same table; ChooseEncoding only ever
  // picks the later one (index 3) for writing.
  static const ISO2022Subencoding list[] = {
      {"\x1B(B", ExternalEncoding::ASCII()},
      {"\x1B(J", ExternalEncoding::HalfWidthKatakana()},
      {"\x1B$@", ExternalEncoding::ISO87JISX0208()},
      {"\x1B$B", ExternalEncoding::ISO87JISX0208()},
      {nullptr, nullptr},
  };
  return list;
}

int ISO2022JPEncoding::ChooseEncoding(unsigned short unit, int current) const {
  return varnice::internal::ChooseISO2022JP(unit, current);
}

ExternalEncodingDetector* ISO2022JPEncoding::CreateEncodingDetector(UnicodeLibAllocator& a) const {
  return new (a) ISO2022JPDetector(*this);
}

ISO2022JPDetector::ISO2022JPDetector(const ExternalEncoding& encoding) : ExternalEncodingDetector(encoding, 0, 0) {}

ISO2022JPDetector::~ISO2022JPDetector() = default;

void ISO2022JPDetector::Scan(const char* bufferStart, const char* begin, const char* end) {
  score_ += varnice::internal::ScoreISO2022JP(bufferStart, begin, end);
}
