// TextEncoding: the registry record every encoding is, and the registry itself.
//
// Every encoding registers itself when constructed and stays registered until
// the library is unloaded. The registry finds encodings by position, by
// identifier, by name (ignoring case and the separators "-", "_" and space;
// "Base:Variation" names a variant) and by code page. Variations generate the
// derived encodings (a UTF-8 form, a big-endian form, ...) whenever a base
// encoding or a variation comes into existence, so the set of encodings
// depends only on which factories have run, not on their order.
#ifndef VARNICE_ENCODING_TEXT_ENCODING_H_
#define VARNICE_ENCODING_TEXT_ENCODING_H_

#include "varnice/encoding/text_encoding_id.h"
#include "varnice/varnice_export.h"
#include "varnice/widec/qz_string.h"
#include "varnice/widec/qz_wstring.h"

class EncodingVariation;
class ExternalEncoding;
class InternalEncoding;

class VARNICE_API TextEncoding {
 public:
  static constexpr unsigned int kBaseEncodingCount = 142;
  static constexpr unsigned int kVariationSlots = 10;

  TextEncoding(const TextEncoding&) = delete;
  TextEncoding& operator=(const TextEncoding&) = delete;

  // 1 for external (byte) encodings, 2 for internal (16-bit) ones.
  virtual unsigned int TokenSize() const = 0;
  virtual bool IsValidForInput() const;
  virtual bool IsValidForOutput() const;

  // --- The registry ---------------------------------------------------------
  // Number of encodings, base and variant alike, in order of construction.
  static unsigned int Count();
  // The encoding at that position, or null.
  static TextEncoding* Lookup(unsigned int index);
  static TextEncoding* Lookup(TextEncodingID id);
  // A tokenSize of 0 accepts every encoding; 1 or 2 only that kind.
  static TextEncoding* Lookup(const char* name, unsigned int tokenSize);
  // Names with a code unit above 126, or longer than 1022 units, are never found.
  static TextEncoding* Lookup(const unsigned short* name, unsigned int tokenSize);
  // The first encoding whose code page is cp (0 finds the first without one).
  static TextEncoding* LookupCodePage(unsigned int cp);

  // True when `given` (up to givenEnd, or its NUL when givenEnd is null) names
  // `known`: case is ignored, and so are "-", "_" and " " anywhere.
  static bool SameName(const char* known, const char* given, const char* givenEnd);

  // --- One encoding ---------------------------------------------------------
  TextEncodingID GetTextEncodingID() const { return id_; }
  const TextEncoding* GetParentEncoding() const { return parent_; }
  const EncodingVariation* GetParentVariation() const { return parentVariation_; }
  unsigned int CodePage() const { return codePage_; }
  const char* MimeName() const { return mimeName_; }
  bool IsVariantEncoding() const { return parent_ != nullptr; }
  bool IsBaseEncoding() const { return parent_ == nullptr; }

  // The first nickname, else the MIME name, else the parent's name followed
  // directly by the variation's ("Unicode20UTF8").
  const char* Name() const;
  const unsigned short* NameInUnicode() const;
  // Null when there is no MIME name.
  const unsigned short* MimeNameInUnicode() const;

  unsigned int CountNicknames() const;
  const char* GetNickname(unsigned int i) const;  // null when out of range

  // Whether the name (up to `end`, or its NUL) names this encoding;
  // "Base:Variation" names match a variant through its parent.
  bool HasName(const char* name, const char* end = nullptr) const;
  bool HasName(const unsigned short* name) const;
  bool HasTokenSize(unsigned int n) const { return n == 0 || n == TokenSize(); }

  // This encoding for the empty chain, else the variant reached by applying
  // the chain's variations in order; null when one is missing.
  const TextEncoding* LookupVariant(EncodingVariationID chain) const;

  InternalEncoding* AsInternalEncoding();
  const InternalEncoding* AsInternalEncoding() const;
  ExternalEncoding* AsExternalEncoding();
  const ExternalEncoding* AsExternalEncoding() const;

  // Base encodings by number; null where none is registered.
  static TextEncoding* gBaseEncodings[kBaseEncodingCount];

 protected:
  // A base encoding: registered under its number.
  TextEncoding(TextEncodingID id, const char** nicknames, const char* mimeName, unsigned int codePage);
  // A variant: its identifier is the parent's plus the variation's; it fills
  // the parent's variant slot for that variation. May throw
  // TextEncodingID::TooManyVariations.
  TextEncoding(const TextEncoding& parent, const EncodingVariation& variation, const char** nicknames,
               const char* mimeName, unsigned int codePage);
  // Encodings live until the library is unloaded and are never deleted
  // through this base.
  ~TextEncoding();

  // The MIME name, then each nickname.
  bool HasSimpleName(const char* name, const char* end) const;

 private:
  TextEncodingID id_;
  const TextEncoding* parent_;
  const EncodingVariation* parentVariation_;
  const char** nicknames_;
  const char* mimeName_;
  unsigned int codePage_;
  mutable qz_string name_;
  mutable qz_wstring nameInUnicode_;
  mutable qz_wstring mimeNameInUnicode_;
  mutable TextEncoding* variants_[kVariationSlots];
};

#endif  // VARNICE_ENCODING_TEXT_ENCODING_H_
