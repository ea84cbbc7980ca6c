// StringChar16Sink: collects every code unit put into it in its own string.
#ifndef VARNICE_STREAM_STRING_CHAR16_SINK_H_
#define VARNICE_STREAM_STRING_CHAR16_SINK_H_

#include "varnice/stream/char16_sink.h"
#include "varnice/varnice_export.h"
#include "varnice/widec/qz_wstring.h"

class VARNICE_API StringChar16Sink : public Char16Sink {
 public:
  StringChar16Sink();

  void Flush() override;
  void PutBuffer(const unsigned short* begin, const unsigned short* end) override;

  const qz_wstring& str() const { return text_; }
  const unsigned short* c_str() const { return text_.c_str(); }
  const unsigned short* data() const { return text_.data(); }
  qz_wstring::size_type size() const { return text_.size(); }

 private:
  qz_wstring text_;
};

#endif  // VARNICE_STREAM_STRING_CHAR16_SINK_H_
