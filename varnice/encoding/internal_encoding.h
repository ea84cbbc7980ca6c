// InternalEncoding: a 16-bit form of Unicode. Unicode 2.0 is the library's
// working form; Unicode 1.1 differs by the characters that moved between the
// two versions.
#ifndef VARNICE_ENCODING_INTERNAL_ENCODING_H_
#define VARNICE_ENCODING_INTERNAL_ENCODING_H_

#include "varnice/encoding/text_encoding.h"
#include "varnice/varnice_export.h"

class CharacterScript;
class Char16Sink;
class Char16Source;
class UnicodeLibAllocator;

// The overrides every internal encoding declares, in slot order; a class's
// own comments say where its answers differ.
#define VARNICE_INTERNAL_ENCODING_OVERRIDES                                                       \
  CharacterScript GetCharacterScript(unsigned long ch) const override;                              \
  unsigned long ToUnicode(unsigned long ch) const override;                                         \
  unsigned long FromUnicode(unsigned long ch) const override;                                       \
  unsigned long MayBreakLineBefore(unsigned short ch) const override;                               \
  unsigned long MayBreakLineAfter(unsigned short ch) const override;                                \
  Char16Source* CreateCharSourceToUnicode(Char16Source& in, UnicodeLibAllocator& a) const override; \
  Char16Source* CreateCharSourceFromUnicode(Char16Source& in, UnicodeLibAllocator& a) const override; \
  Char16Sink* CreateCharSinkToUnicode(Char16Sink& out, UnicodeLibAllocator& a) const override;      \
  Char16Sink* CreateCharSinkFromUnicode(Char16Sink& out, UnicodeLibAllocator& a) const override

class VARNICE_API InternalEncoding : public TextEncoding {
 public:
  unsigned int TokenSize() const override;
  bool IsValidForInput() const override;
  bool IsValidForOutput() const override;
  virtual CharacterScript GetCharacterScript(unsigned long ch) const = 0;
  // A character of this encoding as Unicode 2.0, and back.
  virtual unsigned long ToUnicode(unsigned long ch) const = 0;
  virtual unsigned long FromUnicode(unsigned long ch) const = 0;
  // Line-break classes of the two sides of a character (see MayBreakLineBetween).
  virtual unsigned long MayBreakLineBefore(unsigned short ch) const = 0;
  virtual unsigned long MayBreakLineAfter(unsigned short ch) const = 0;
  // Pipeline stages between this encoding and Unicode 2.0, placed with the
  // allocator; the caller owns them.
  virtual Char16Source* CreateCharSourceToUnicode(Char16Source& in, UnicodeLibAllocator& a) const = 0;
  virtual Char16Source* CreateCharSourceFromUnicode(Char16Source& in, UnicodeLibAllocator& a) const = 0;
  virtual Char16Sink* CreateCharSinkToUnicode(Char16Sink& out, UnicodeLibAllocator& a) const = 0;
  virtual Char16Sink* CreateCharSinkFromUnicode(Char16Sink& out, UnicodeLibAllocator& a) const = 0;

  // Whether a line may break between a and b: the larger of the two sides'
  // classes decides, by its lowest bit (0 = may break). Taking the larger
  // rather than combining the answers lets a "never" (3) veto an "always" (2).
  bool MayBreakLineBetween(unsigned short a, unsigned short b) const;

  // The two internal encodings, made on first use and kept until unload.
  // Unicode() is Unicode20(), the library's working form.
  static InternalEncoding* Unicode20();
  static InternalEncoding* Unicode();
  static InternalEncoding* Unicode11();

  // The registry, restricted to internal encodings.
  static unsigned int Count();
  static InternalEncoding* Lookup(unsigned int index);
  static InternalEncoding* Lookup(TextEncodingID id);
  static InternalEncoding* Lookup(const char* name);
  static InternalEncoding* Lookup(const unsigned short* name);
  static InternalEncoding* LookupCodePage(unsigned int cp);

 protected:
  InternalEncoding(TextEncodingID id, const char** nicknames, const char* mimeName, unsigned int codePage);
  InternalEncoding(const TextEncoding& parent, const EncodingVariation& variation,
                   const char** nicknames, const char* mimeName, unsigned int codePage);
  ~InternalEncoding();
};

#endif  // VARNICE_ENCODING_INTERNAL_ENCODING_H_
