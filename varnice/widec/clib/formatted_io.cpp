// The formatted output and input functions of qz_wchar.h, over PrintfEngine
// and ScanfEngine.
#include <cstdarg>
#include <cstdio>

#include "varnice/stream/buffer_char16_sink.h"
#include "varnice/stream/buffer_char16_source.h"
#include "varnice/stream/char16_source.h"
#include "varnice/stream/file_char16_sink.h"
#include "varnice/stream/printf_engine.h"
#include "varnice/widec/clib/qz_wchar.h"
#include "varnice/widec/clib/scanf_engine.h"

namespace varnice::internal {
namespace {

// Lends a file's units one at a time through qz_fgetwc, so that a scan takes
// from the file only the units it looks at; the one it looked at last and
// did not use goes back with qz_ungetwc.
class WideFileUnitSource : public Char16Source {
 public:
  explicit WideFileUnitSource(FILE* file)
      : UnicodeLibActor(static_cast<const UnicodeLibActor*>(nullptr)),
        Char16Source(static_cast<const UnicodeLibActor*>(nullptr)),
        file_(file) {}
  ~WideFileUnitSource() override {
    if (position_ != nullptr && position_ < end_) qz_ungetwc(unit_, file_);
  }

  bool FillBuffer() override {
    const qz_wint_t c = qz_fgetwc(file_);
    if (c == QZ_WEOF) return false;
    unit_ = static_cast<unsigned short>(c);
    position_ = &unit_;
    end_ = &unit_ + 1;
    return true;
  }

 private:
  FILE* file_;
  unsigned short unit_ = 0;
};

// C callers cannot take an exception (out of memory for a huge field, or
// for the table of files): it becomes the functions' error result, -1.
template <class F>
int NoThrow(F f) {
  try {
    return f();
  } catch (...) {
    return -1;
  }
}

int FormatToFile(FILE* file, const unsigned short* format, std::va_list args) {
  return NoThrow([&] {
    FileChar16Sink sink(file);
    const int n = PrintfEngine<Char16Sink, unsigned short>(sink).Print(format, args);
    sink.Flush();
    return n < 0 || std::ferror(file) ? -1 : n;
  });
}

int ScanFile(FILE* file, const unsigned short* format, std::va_list args) {
  return NoThrow([&] {
    WideFileUnitSource source(file);
    return ScanfEngine<unsigned short>(source).Scan(format, args);
  });
}

}  // namespace
}  // namespace varnice::internal

using namespace varnice::internal;

extern "C" {

int qz_vswprintf(unsigned short* dst, size_t n, const unsigned short* format, va_list args) {
  if (n == 0) return -1;
  const long room = n - 1 > 0x7FFFFFFF ? 0x7FFFFFFF : static_cast<long>(n - 1);
  return NoThrow([&] {
    BufferChar16Sink sink(dst, room);
    const int count = PrintfEngine<Char16Sink, unsigned short>(sink).Print(format, args);
    dst[sink.size()] = 0;
    return count < 0 || count > room ? -1 : count;
  });
}

int qz_swprintf(unsigned short* dst, size_t n, const unsigned short* format, ...) {
  va_list args;
  va_start(args, format);
  const int result = qz_vswprintf(dst, n, format, args);
  va_end(args);
  return result;
}

int qz_vfwprintf(FILE* file, const unsigned short* format, va_list args) {
  return FormatToFile(file, format, args);
}

int qz_fwprintf(FILE* file, const unsigned short* format, ...) {
  va_list args;
  va_start(args, format);
  const int result = FormatToFile(file, format, args);
  va_end(args);
  return result;
}

int qz_vwprintf(const unsigned short* format, va_list args) {
  return FormatToFile(stdout, format, args);
}

int qz_wprintf(const unsigned short* format, ...) {
  va_list args;
  va_start(args, format);
  const int result = FormatToFile(stdout, format, args);
  va_end(args);
  return result;
}

int qz_vswscanf(const unsigned short* src, const unsigned short* format, va_list args) {
  return NoThrow([&] {
    BufferChar16Source source(src, nullptr);
    return ScanfEngine<unsigned short>(source).Scan(format, args);
  });
}

int qz_swscanf(const unsigned short* src, const unsigned short* format, ...) {
  va_list args;
  va_start(args, format);
  const int result = qz_vswscanf(src, format, args);
  va_end(args);
  return result;
}

int qz_vfwscanf(FILE* file, const unsigned short* format, va_list args) {
  return ScanFile(file, format, args);
}

int qz_fwscanf(FILE* file, const unsigned short* format, ...) {
  va_list args;
  va_start(args, format);
  const int result = ScanFile(file, format, args);
  va_end(args);
  return result;
}

int qz_vwscanf(const unsigned short* format, va_list args) { return ScanFile(stdin, format, args); }

int qz_wscanf(const unsigned short* format, ...) {
  va_list args;
  va_start(args, format);
  const int result = ScanFile(stdin, format, args);
  va_end(args);
  return result;
}

}  // extern "C"
