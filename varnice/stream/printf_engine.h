// PrintfEngine: C printf formatting written through a sink's PutBuffer.
//
// The conversions are those of C printf: flags "-+ #0", width and precision
// (either may be "*"), length modifiers hh h l ll z j t L, and conversions
// d i u o x X c s p f F e E g G a A n %. Numbers come out exactly as the C
// library's snprintf writes them (in the current C locale). Output is
// gathered in a small buffer on the stack and handed to the sink in chunks.
//
// Text conversions follow the library's wide character, the 16-bit code unit,
// whatever the platform's wchar_t:
// - %s takes 8-bit text and %c a byte (an int argument); into a 16-bit sink
//   each byte is widened to the code unit of the same value;
// - %ls takes 16-bit text (const unsigned short*) and %lc a code unit; into
//   an 8-bit sink units up to 0xFF become that byte and the others '?'.
// A 16-bit format is read as code units; its directives are ASCII.
//
// Print returns the number of units produced, as printf does, even when the
// sink drops some of them (a full BufferCharSink), and -1 when that number
// does not fit in an int. An unknown directive is written out as it stands.
#ifndef VARNICE_STREAM_PRINTF_ENGINE_H_
#define VARNICE_STREAM_PRINTF_ENGINE_H_

#include <cstdarg>

#include "varnice/varnice_export.h"

class CharSink;
class Char16Sink;

// Sink is CharSink or Char16Sink; FormatChar is char, or unsigned short with
// a Char16Sink. Instantiated for exactly those three pairs.
template <class Sink, class FormatChar>
class VARNICE_API PrintfEngine {
 public:
  explicit PrintfEngine(Sink& sink) : sink_(sink) {}

  // Reads the arguments from a copy of `args`: the caller's list is left
  // where it was and the caller still ends it.
  int Print(const FormatChar* format, std::va_list args);

 private:
  Sink& sink_;
};

extern template class PrintfEngine<CharSink, char>;
extern template class PrintfEngine<Char16Sink, char>;
extern template class PrintfEngine<Char16Sink, unsigned short>;

#endif  // VARNICE_STREAM_PRINTF_ENGINE_H_
