// Unicode20Encoding: UTF-16 code units of Unicode 2.0, the library's working
// form. Nothing needs converting, so its stream factories return plain
// proxies over the given stream.
#ifndef VARNICE_ENCODING_UNICODE_UNICODE20_ENCODING_H_
#define VARNICE_ENCODING_UNICODE_UNICODE20_ENCODING_H_

#include "varnice/encoding/internal_encoding.h"
#include "varnice/varnice_export.h"

class VARNICE_API Unicode20Encoding : public InternalEncoding {
 public:
  // ToUnicode/FromUnicode return their argument. MayBreakLineBefore/After: votes
  // of the library's line-break tables (1 for characters not listed). The stream
  // factories make a Char16ProxySource / Char16ProxySink over the given stream.
  VARNICE_INTERNAL_ENCODING_OVERRIDES;

 private:
  friend class InternalEncoding;
  Unicode20Encoding();
  ~Unicode20Encoding();
};

#endif  // VARNICE_ENCODING_UNICODE_UNICODE20_ENCODING_H_
