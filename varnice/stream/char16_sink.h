// Char16Sink: a push stream of UTF-16 code units; the twin of CharSink, except
// that it has no MarkAsTruncated (code-unit sinks are never told of
// truncation upstream).
#ifndef VARNICE_STREAM_CHAR16_SINK_H_
#define VARNICE_STREAM_CHAR16_SINK_H_

#include "varnice/encoding/actors/unicode_lib_actor.h"
#include "varnice/varnice_export.h"

class Char16Source;

class VARNICE_API Char16Sink : public virtual UnicodeLibActor {
 public:
  explicit Char16Sink(const UnicodeLibActor& actor);
  explicit Char16Sink(const UnicodeLibActor* actor);

  virtual void Flush() = 0;
  // Code units the sink can still take; -1 means unlimited.
  virtual long RemainingCapacity() const;
  virtual void PutBuffer(const unsigned short* begin, const unsigned short* end) = 0;
  ~Char16Sink() override;

  // A null `end` means text terminated by a 16-bit NUL.
  void Put(const unsigned short* begin, const unsigned short* end = nullptr);
  // Pumps the whole source into this sink.
  void Put(Char16Source& source);

  // C printf into this sink, from an 8-bit or a 16-bit format (see
  // printf_engine.h: %s takes 8-bit text, %ls 16-bit text); returns the
  // number of code units produced, counting any a bounded sink dropped.
  int printf(const char* format, ...);
  int printf(const unsigned short* format, ...);
  // `args` is a va_list* passed as void*, so that this header need not bring
  // in <cstdarg>. The list is read through a copy: the caller still ends it.
  int vprintf(const char* format, void* args);
  int vprintf(const unsigned short* format, void* args);
};

#endif  // VARNICE_STREAM_CHAR16_SINK_H_
