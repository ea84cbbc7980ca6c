// EncodingVariation: a way of deriving one encoding from another (byte-order
// mark, UTF-8 or UTF-7 form, byte order, printer form). Each variation is a
// singleton registered under its number 1-9 and generates its variants of
// every encoding it applies to, whether the encoding or the variation came
// first.
#ifndef VARNICE_ENCODING_ENCODING_VARIATION_H_
#define VARNICE_ENCODING_ENCODING_VARIATION_H_

#include "varnice/encoding/encoding_variation_id.h"
#include "varnice/varnice_export.h"
#include "varnice/widec/qz_wstring.h"

class ExternalEncoding;
class InternalEncoding;
class TextEncoding;

class VARNICE_API EncodingVariation {
 public:
  static constexpr unsigned int kSlots = 10;

  EncodingVariation(const EncodingVariation&) = delete;
  EncodingVariation& operator=(const EncodingVariation&) = delete;
  virtual ~EncodingVariation();

  // The variants this variation has generated.
  virtual unsigned int CountVariants() const = 0;
  virtual const TextEncoding* GetVariant(unsigned int i) const = 0;
  // Make this variation's variant of the encoding, if it applies; by default
  // it applies to nothing.
  virtual void GenerateVariantOf(const InternalEncoding& encoding);
  virtual void GenerateVariantOf(const ExternalEncoding& encoding);

  // The first registered variation one of whose names matches, or null.
  static EncodingVariation* Lookup(const char* name);
  // Null for the empty or a multi-variation chain.
  static EncodingVariation* Lookup(EncodingVariationID id);
  // The built-in variations, each made on first call; a new one at once
  // generates its variants of the encodings already registered.
  static EncodingVariation* ByteOrderMark();      // 1
  static EncodingVariation* UTF7();               // 2
  static EncodingVariation* UTF8();               // 3
  static EncodingVariation* BigEndian();          // 4
  static EncodingVariation* LittleEndian();       // 5
  static EncodingVariation* PlatformByteOrder();  // 6
  static EncodingVariation* HPPrinter();          // 8

  // Lets every registered variation generate its variant of the encoding.
  static void GenerateVariantsOf(const InternalEncoding& encoding);
  static void GenerateVariantsOf(const ExternalEncoding& encoding);

  EncodingVariationID GetEncodingVariationID() const { return id_; }
  const char* Name() const { return names_[0]; }
  const unsigned short* NameInUnicode() const;
  unsigned int CountNames() const;
  const char* GetName(unsigned int i) const;  // null when out of range
  bool HasName(const char* name, const char* end = nullptr) const;
  // Whether this variation already occurs in the encoding's chain.
  bool AlreadyAppliedTo(const TextEncoding& encoding) const;
  // Generates this variation's variants of every internal, then every
  // external, encoding registered so far. Factories call it once, after
  // constructing the singleton.
  void GenerateVariantsForExistingEncodings();

  // Variations by number; null where none is registered.
  static EncodingVariation* gAllVariations[kSlots];

 protected:
  // `id` is a single variation number 1-9; `names` is a null-terminated static
  // array, the first being the primary name.
  EncodingVariation(EncodingVariationID id, const char** names);

 private:
  EncodingVariationID id_;
  const char** names_;
  mutable qz_wstring nameInUnicode_;
};

// A variation that keeps the variants it generated.
class VARNICE_API RealEncodingVariation : public EncodingVariation {
 public:
  ~RealEncodingVariation() override;
  unsigned int CountVariants() const override;
  const TextEncoding* GetVariant(unsigned int i) const override;

 protected:
  RealEncodingVariation(EncodingVariationID id, const char** names);
  // Subclasses record each variant they construct.
  void AddVariant(const TextEncoding* variant);

 private:
  const TextEncoding** variants_;
  unsigned int count_;
  unsigned int capacity_;
};

#endif  // VARNICE_ENCODING_ENCODING_VARIATION_H_
