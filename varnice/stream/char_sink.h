// CharSink: a push stream of bytes. Writers hand it half-open ranges through
// PutBuffer (or Put, which also takes NUL-terminated text and whole sources).
#ifndef VARNICE_STREAM_CHAR_SINK_H_
#define VARNICE_STREAM_CHAR_SINK_H_

#include "varnice/encoding/actors/unicode_lib_actor.h"
#include "varnice/varnice_export.h"

class CharSource;

class VARNICE_API CharSink : public virtual UnicodeLibActor {
 public:
  explicit CharSink(const UnicodeLibActor& actor);
  explicit CharSink(const UnicodeLibActor* actor);

  virtual void Flush() = 0;
  // Bytes the sink can still take; -1 means unlimited.
  virtual long RemainingCapacity() const;
  // Tells a bounded sink that output was cut short upstream.
  virtual void MarkAsTruncated();
  virtual void PutBuffer(const char* begin, const char* end) = 0;
  ~CharSink() override;

  // A null `end` means NUL-terminated text.
  void Put(const char* begin, const char* end = nullptr);
  // Pumps the whole source into this sink.
  void Put(CharSource& source);

  // C printf into this sink (see printf_engine.h for the conversions); returns
  // the number of bytes produced, counting any a bounded sink dropped.
  int printf(const char* format, ...);
  // `args` is a va_list* passed as void*, so that this header need not bring
  // in <cstdarg>. The list is read through a copy: the caller still ends it.
  int vprintf(const char* format, void* args);
};

#endif  // VARNICE_STREAM_CHAR_SINK_H_
