// StringCharSink: collects everything put into it in its own string.
#ifndef VARNICE_STREAM_STRING_CHAR_SINK_H_
#define VARNICE_STREAM_STRING_CHAR_SINK_H_

#include "varnice/stream/char_sink.h"
#include "varnice/varnice_export.h"
#include "varnice/widec/qz_string.h"

class VARNICE_API StringCharSink : public CharSink {
 public:
  StringCharSink();

  void Flush() override;
  void PutBuffer(const char* begin, const char* end) override;

  const qz_string& str() const { return text_; }
  const char* c_str() const { return text_.c_str(); }
  const char* data() const { return text_.data(); }
  qz_string::size_type size() const { return text_.size(); }

 private:
  qz_string text_;
};

#endif  // VARNICE_STREAM_STRING_CHAR_SINK_H_
