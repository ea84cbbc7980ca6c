#include "varnice/unicodeforms/byte_order_mark.h"

#include <algorithm>
#include <cstring>

#include "varnice/charprops/types/character_script.h"
#include "varnice/stream/converting/converting_sinks.h"
#include "varnice/stream/converting/converting_sources.h"
#include "varnice/stream/converting/proxy_streams.h"
#include "varnice/unicodeforms/unicode_form_ids.h"
#include "varnice/widec/qz_auto_ptr.h"

namespace {

constexpr unsigned short kByteOrderMark = 0xFEFF;

// Both converters: units pass through unchanged, except that at the start of
// the text the mark is written first (`insert`) or a leading one is dropped.
int PassMarking(bool insert, bool& atStart, const unsigned short*& in, const unsigned short* inEnd,
                unsigned short*& out, const unsigned short* outEnd) {
  for (;;) {
    if (in == inEnd) return kInputUsedUp;
    if (out == outEnd) return kOutputFull;
    if (atStart) {
      atStart = false;
      if (insert) {
        *out++ = kByteOrderMark;
      } else if (*in == kByteOrderMark) {
        ++in;
      }
      continue;
    }
    const std::size_t n = std::min(inEnd - in, outEnd - out);
    std::memcpy(out, in, n * sizeof *in);
    in += n;
    out += n;
  }
}

}  // namespace

// --- BOMinserter, BOMremover --------------------------------------------------

BOMinserter::BOMinserter() = default;
BOMinserter::~BOMinserter() = default;
void BOMinserter::Reset() { atStart_ = true; }

int BOMinserter::Convert(const unsigned short*& in, const unsigned short* inEnd, unsigned short*& out,
                         const unsigned short* outEnd) {
  return PassMarking(true, atStart_, in, inEnd, out, outEnd);
}

BOMremover::BOMremover() = default;
BOMremover::~BOMremover() = default;
void BOMremover::Reset() { atStart_ = true; }

int BOMremover::Convert(const unsigned short*& in, const unsigned short* inEnd, unsigned short*& out,
                        const unsigned short* outEnd) {
  return PassMarking(false, atStart_, in, inEnd, out, outEnd);
}

// --- UnicodeByteOrderMarkVariant ----------------------------------------------

UnicodeByteOrderMarkVariant::UnicodeByteOrderMarkVariant(const InternalEncoding& decorated,
                                                         const EncodingVariation& variation)
    : InternalEncoding(decorated, variation, nullptr, nullptr, 0), decorated_(decorated) {}

UnicodeByteOrderMarkVariant::~UnicodeByteOrderMarkVariant() = default;

CharacterScript UnicodeByteOrderMarkVariant::GetCharacterScript(unsigned long ch) const {
  return decorated_.GetCharacterScript(ch);
}
unsigned long UnicodeByteOrderMarkVariant::ToUnicode(unsigned long ch) const { return decorated_.ToUnicode(ch); }
unsigned long UnicodeByteOrderMarkVariant::FromUnicode(unsigned long ch) const {
  return decorated_.FromUnicode(ch);
}
unsigned long UnicodeByteOrderMarkVariant::MayBreakLineBefore(unsigned short ch) const {
  return decorated_.MayBreakLineBefore(ch);
}
unsigned long UnicodeByteOrderMarkVariant::MayBreakLineAfter(unsigned short ch) const {
  return decorated_.MayBreakLineAfter(ch);
}

// Each factory builds the mark's stage and the decorated encoding's stage,
// holding them until the proxy that owns both exists. The proxy's first stage
// is the one it forwards to, destroyed before the stage it reads from or
// writes to.

Char16Source* UnicodeByteOrderMarkVariant::CreateCharSourceToUnicode(Char16Source& in,
                                                                     UnicodeLibAllocator& a) const {
  qz_auto_ptr<BOMremover> converter(new (a) BOMremover);
  qz_auto_ptr<CharSource_16_to_16> remove(new (a) CharSource_16_to_16(in, *this, converter.get(), decorated_));
  converter.release();
  qz_auto_ptr<Char16Source> widen(decorated_.CreateCharSourceToUnicode(*remove, a));
  auto* proxy = new (a) DirectedChar16ProxySource(widen.get(), widen.get(), remove.get());
  widen.release();
  remove.release();
  return proxy;
}

Char16Source* UnicodeByteOrderMarkVariant::CreateCharSourceFromUnicode(Char16Source& in,
                                                                       UnicodeLibAllocator& a) const {
  qz_auto_ptr<BOMinserter> converter(new (a) BOMinserter);
  qz_auto_ptr<Char16Source> narrow(decorated_.CreateCharSourceFromUnicode(in, a));
  qz_auto_ptr<CharSource_16_to_16> insert(new (a) CharSource_16_to_16(*narrow, decorated_, converter.get(), *this));
  converter.release();
  auto* proxy = new (a) DirectedChar16ProxySource(insert.get(), insert.get(), narrow.get());
  insert.release();
  narrow.release();
  return proxy;
}

Char16Sink* UnicodeByteOrderMarkVariant::CreateCharSinkToUnicode(Char16Sink& out, UnicodeLibAllocator& a) const {
  qz_auto_ptr<BOMremover> converter(new (a) BOMremover);
  qz_auto_ptr<Char16Sink> widen(decorated_.CreateCharSinkToUnicode(out, a));
  qz_auto_ptr<CharSink_16_to_16> remove(new (a) CharSink_16_to_16(*this, converter.get(), decorated_, *widen));
  converter.release();
  auto* proxy = new (a) DirectedChar16ProxySink(remove.get(), remove.get(), widen.get());
  remove.release();
  widen.release();
  return proxy;
}

Char16Sink* UnicodeByteOrderMarkVariant::CreateCharSinkFromUnicode(Char16Sink& out, UnicodeLibAllocator& a) const {
  qz_auto_ptr<BOMinserter> converter(new (a) BOMinserter);
  qz_auto_ptr<CharSink_16_to_16> insert(new (a) CharSink_16_to_16(decorated_, converter.get(), *this, out));
  converter.release();
  qz_auto_ptr<Char16Sink> narrow(decorated_.CreateCharSinkFromUnicode(*insert, a));
  auto* proxy = new (a) DirectedChar16ProxySink(narrow.get(), narrow.get(), insert.get());
  narrow.release();
  insert.release();
  return proxy;
}

// --- ByteOrderMarkVariation ---------------------------------------------------

namespace {

const char* kByteOrderMarkNames[] = {"BOM", "ByteOrderMark", nullptr};

}  // namespace

ByteOrderMarkVariation::ByteOrderMarkVariation()
    : RealEncodingVariation(EncodingVariationID(varnice::internal::kByteOrderMarkVariation), kByteOrderMarkNames) {}
ByteOrderMarkVariation::~ByteOrderMarkVariation() = default;

void ByteOrderMarkVariation::GenerateVariantOf(const InternalEncoding& encoding) {
  if (!varnice::internal::ShouldGenerate(*this, encoding)) return;
  AddVariant(new UnicodeByteOrderMarkVariant(encoding, *this));
}
