// Unicode20Encoding: UTF-16 code units of Unicode 2.0, the library's working
// form. Nothing needs converting, so its stream factories return plain
// proxies over the given stream.
#ifndef VARNICE_ENCODING_UNICODE_UNICODE20_ENCODING_H_
#define VARNICE_ENCODING_UNICODE_UNICODE20_ENCODING_H_

#include "varnice/encoding/internal_encoding.h"
#include "varnice/varnice_export.h"

class VARNICE_API Unicode20Encoding : public InternalEncoding {
 public:
  CharacterScript GetCharacterScript(unsigned long ch) const override;
  // Both return their argument.
  unsigned long ToUnicode(unsigned long ch) const override;
  unsigned long FromUnicode(unsigned long ch) const override;
  // Votes of the library's line-break tables (1 for characters not listed).
  unsigned long MayBreakLineBefore(unsigned short ch) const override;
  unsigned long MayBreakLineAfter(unsigned short ch) const override;
  // Char16ProxySource / Char16ProxySink over the given stream.
  Char16Source* CreateCharSourceToUnicode(Char16Source& in, UnicodeLibAllocator& a) const override;
  Char16Source* CreateCharSourceFromUnicode(Char16Source& in, UnicodeLibAllocator& a) const override;
  Char16Sink* CreateCharSinkToUnicode(Char16Sink& out, UnicodeLibAllocator& a) const override;
  Char16Sink* CreateCharSinkFromUnicode(Char16Sink& out, UnicodeLibAllocator& a) const override;

 private:
  friend class InternalEncoding;
  Unicode20Encoding();
  ~Unicode20Encoding();
};

#endif  // VARNICE_ENCODING_UNICODE_UNICODE20_ENCODING_H_
