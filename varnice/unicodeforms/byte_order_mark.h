// Byte-order marks on UTF-16 text: an internal encoding decorated so that its
// text starts with U+FEFF. Combined with a byte order it gives the self-
// describing serialisations ("UCS-2" is Unicode 2.0 with a mark, in the
// host's order).
#ifndef VARNICE_UNICODEFORMS_BYTE_ORDER_MARK_H_
#define VARNICE_UNICODEFORMS_BYTE_ORDER_MARK_H_

#include "varnice/encoding/block_converter.h"
#include "varnice/encoding/encoding_variation.h"
#include "varnice/encoding/internal_encoding.h"
#include "varnice/varnice_export.h"

// Writes U+FEFF before the first unit of the text; empty text stays empty.
class VARNICE_API BOMinserter : public BlockConverter_16_to_16 {
 public:
  BOMinserter();
  ~BOMinserter() override;
  int Convert(const unsigned short*& in, const unsigned short* inEnd, unsigned short*& out,
              const unsigned short* outEnd) override;
  void Reset() override;

 private:
  bool atStart_ = true;
};

// Drops the first unit of the text if it is U+FEFF; later ones are kept.
class VARNICE_API BOMremover : public BlockConverter_16_to_16 {
 public:
  BOMremover();
  ~BOMremover() override;
  int Convert(const unsigned short*& in, const unsigned short* inEnd, unsigned short*& out,
              const unsigned short* outEnd) override;
  void Reset() override;

 private:
  bool atStart_ = true;
};

// An internal encoding whose text carries a byte-order mark. Characters are
// those of the decorated encoding; its stages pass through the decorated
// encoding's own stages as well, so the Unicode side is Unicode 2.0.
class VARNICE_API UnicodeByteOrderMarkVariant : public InternalEncoding {
 public:
  UnicodeByteOrderMarkVariant(const InternalEncoding& decorated, const EncodingVariation& variation);
  ~UnicodeByteOrderMarkVariant();

  // Towards Unicode the mark is removed, from Unicode it is inserted.
  VARNICE_INTERNAL_ENCODING_OVERRIDES;

  const InternalEncoding& Decorated() const { return decorated_; }

 private:
  const InternalEncoding& decorated_;
};

// Variation 1 ("BOM"): a marked variant of every internal encoding.
class VARNICE_API ByteOrderMarkVariation : public RealEncodingVariation {
 public:
  ByteOrderMarkVariation();
  ~ByteOrderMarkVariation() override;
  void GenerateVariantOf(const InternalEncoding& encoding) override;
  using RealEncodingVariation::GenerateVariantOf;
};

#endif  // VARNICE_UNICODEFORMS_BYTE_ORDER_MARK_H_
