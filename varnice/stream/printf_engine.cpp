#include "varnice/stream/printf_engine.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <type_traits>

#include "varnice/stream/char16_sink.h"
#include "varnice/stream/char_sink.h"
#include "varnice/stream/argument_list.h"

namespace varnice::internal {
namespace {

template <class Sink>
struct SinkUnit;
template <>
struct SinkUnit<CharSink> {
  using type = char;
};
template <>
struct SinkUnit<Char16Sink> {
  using type = unsigned short;
};

// Bytes widen to the code unit of the same value; code units beyond one byte
// have no byte of their own and narrow to '?'.
template <class To, class From>
To ConvertUnit(From c) {
  if constexpr (std::is_same_v<To, From>) {
    return c;
  } else if constexpr (sizeof(To) > sizeof(From)) {
    return static_cast<unsigned char>(c);
  } else {
    return c <= 0xFF ? static_cast<To>(c) : To('?');
  }
}

// Gathers output on the stack and hands it to the sink a chunk at a time, so
// that a call costs a few PutBuffer calls rather than one per piece, and
// counts every unit produced.
template <class Sink>
class ChunkedOutput {
 public:
  using Unit = typename SinkUnit<Sink>::type;

  explicit ChunkedOutput(Sink& sink) : sink_(sink) {}

  template <class In>
  void Append(const In* b, const In* e) {
    count_ += e - b;
    if constexpr (std::is_same_v<In, Unit>) {
      // Long runs already in the sink's unit need no staging.
      if (e - b >= kUnits) {
        Flush();
        sink_.PutBuffer(b, e);
        return;
      }
    }
    while (b < e) {
      if (used_ == kUnits) Flush();
      const std::ptrdiff_t n = std::min<std::ptrdiff_t>(e - b, kUnits - used_);
      for (std::ptrdiff_t i = 0; i < n; ++i) buffer_[used_++] = ConvertUnit<Unit>(*b++);
    }
  }

  void Repeat(Unit u, long long n) {
    if (n <= 0) return;
    count_ += n;
    while (n > 0) {
      if (used_ == kUnits) Flush();
      const long long k = std::min<long long>(n, kUnits - used_);
      std::fill_n(buffer_ + used_, k, u);
      used_ += static_cast<int>(k);
      n -= k;
    }
  }

  void Flush() {
    if (used_ == 0) return;
    sink_.PutBuffer(buffer_, buffer_ + used_);
    used_ = 0;
  }

  long long count() const { return count_; }

 private:
  static constexpr int kUnits = 256;

  Sink& sink_;
  Unit buffer_[kUnits];
  int used_ = 0;
  long long count_ = 0;
};

enum class Length { kNone, kHH, kH, kL, kLL, kZ, kJ, kT, kBigL };

struct Directive {
  bool left = false;
  bool plus = false;
  bool space = false;
  bool alt = false;
  bool zero = false;
  int width = 0;
  int precision = -1;  // -1: none given
  Length length = Length::kNone;
};

static_assert(sizeof(std::intmax_t) <= sizeof(long long));

template <class FormatChar>
int ParseCount(const FormatChar*& p) {
  long long n = 0;
  for (; *p >= '0' && *p <= '9'; ++p) n = std::min<long long>(n * 10 + (*p - '0'), INT_MAX);
  return static_cast<int>(n);
}

// The directive for snprintf: flags, resolved width and precision, then the
// given length modifier and conversion.
void BuildCFormat(const Directive& d, const char* length, char conversion, char (&c_format)[48]) {
  char* p = c_format;
  *p++ = '%';
  if (d.left) *p++ = '-';
  if (d.plus) *p++ = '+';
  if (d.space) *p++ = ' ';
  if (d.alt) *p++ = '#';
  if (d.zero) *p++ = '0';
  if (d.width > 0) p += std::snprintf(p, 12, "%d", d.width);
  if (d.precision >= 0) p += std::snprintf(p, 13, ".%d", d.precision);
  while (*length != '\0') *p++ = *length++;
  *p++ = conversion;
  *p = '\0';
}

// One value through the C library's snprintf; the heap is used only for
// output longer than the stack buffer (very wide fields, huge %f values).
template <class Sink, class T>
void AppendFormatted(ChunkedOutput<Sink>& out, const char* c_format, T value) {
  char local[512];
  const int n = std::snprintf(local, sizeof local, c_format, value);
  if (n < 0) return;
  if (n < static_cast<int>(sizeof local)) {
    out.Append(local, local + n);
    return;
  }
  const std::unique_ptr<char[]> big(new char[static_cast<std::size_t>(n) + 1]);
  std::snprintf(big.get(), static_cast<std::size_t>(n) + 1, c_format, value);
  out.Append(big.get(), big.get() + n);
}

template <class Sink, class In>
void AppendPadded(ChunkedOutput<Sink>& out, const Directive& d, const In* b, const In* e) {
  const long long pad = static_cast<long long>(d.width) - (e - b);
  if (!d.left) out.Repeat(' ', pad);
  out.Append(b, e);
  if (d.left) out.Repeat(' ', pad);
}

// Text of %s and %ls: at most `precision` units, never reading past them.
template <class Sink, class In>
void AppendText(ChunkedOutput<Sink>& out, const Directive& d, const In* s) {
  if (s == nullptr) {
    // As the C library prints a null string: whole or not at all.
    static const char kNull[] = "(null)";
    const int n = d.precision < 0 || d.precision >= 6 ? 6 : 0;
    AppendPadded(out, d, kNull, kNull + n);
    return;
  }
  const In* e = s;
  if (d.precision < 0) {
    while (*e != 0) ++e;
  } else {
    for (const In* limit = s + d.precision; e < limit && *e != 0;) ++e;
  }
  AppendPadded(out, d, s, e);
}

long long SignedArgument(Length length, std::va_list* ap) {
  switch (length) {
    case Length::kHH: return static_cast<signed char>(va_arg(*ap, int));
    case Length::kH: return static_cast<short>(va_arg(*ap, int));
    case Length::kL: return va_arg(*ap, long);
    case Length::kLL:
    case Length::kBigL: return va_arg(*ap, long long);
    case Length::kZ: return va_arg(*ap, std::make_signed_t<std::size_t>);
    case Length::kJ: return va_arg(*ap, std::intmax_t);
    case Length::kT: return va_arg(*ap, std::ptrdiff_t);
    case Length::kNone: break;
  }
  return va_arg(*ap, int);
}

unsigned long long UnsignedArgument(Length length, std::va_list* ap) {
  switch (length) {
    case Length::kHH: return static_cast<unsigned char>(va_arg(*ap, unsigned int));
    case Length::kH: return static_cast<unsigned short>(va_arg(*ap, unsigned int));
    case Length::kL: return va_arg(*ap, unsigned long);
    case Length::kLL:
    case Length::kBigL: return va_arg(*ap, unsigned long long);
    case Length::kZ: return va_arg(*ap, std::size_t);
    case Length::kJ: return va_arg(*ap, std::uintmax_t);
    case Length::kT: return va_arg(*ap, std::make_unsigned_t<std::ptrdiff_t>);
    case Length::kNone: break;
  }
  return va_arg(*ap, unsigned int);
}

void StoreCount(Length length, long long count, std::va_list* ap) {
  switch (length) {
    case Length::kHH: *va_arg(*ap, signed char*) = static_cast<signed char>(count); return;
    case Length::kH: *va_arg(*ap, short*) = static_cast<short>(count); return;
    case Length::kL: *va_arg(*ap, long*) = static_cast<long>(count); return;
    case Length::kLL:
    case Length::kBigL: *va_arg(*ap, long long*) = count; return;
    case Length::kZ:
      *va_arg(*ap, std::make_signed_t<std::size_t>*) =
          static_cast<std::make_signed_t<std::size_t>>(count);
      return;
    case Length::kJ: *va_arg(*ap, std::intmax_t*) = count; return;
    case Length::kT: *va_arg(*ap, std::ptrdiff_t*) = static_cast<std::ptrdiff_t>(count); return;
    case Length::kNone: break;
  }
  *va_arg(*ap, int*) = static_cast<int>(count);
}

// Carries out one conversion; false for a conversion character it does not know.
template <class Sink>
bool Convert(ChunkedOutput<Sink>& out, const Directive& d, int conversion, std::va_list* ap) {
  char c_format[48];
  const char c = static_cast<char>(conversion);
  switch (conversion) {
    case '%': {
      static const char kPercent = '%';
      out.Append(&kPercent, &kPercent + 1);
      return true;
    }
    case 'd':
    case 'i':
      BuildCFormat(d, "ll", c, c_format);
      AppendFormatted(out, c_format, SignedArgument(d.length, ap));
      return true;
    case 'o':
    case 'u':
    case 'x':
    case 'X':
      BuildCFormat(d, "ll", c, c_format);
      AppendFormatted(out, c_format, UnsignedArgument(d.length, ap));
      return true;
    case 'f':
    case 'F':
    case 'e':
    case 'E':
    case 'g':
    case 'G':
    case 'a':
    case 'A':
      if (d.length == Length::kBigL) {
        BuildCFormat(d, "L", c, c_format);
        AppendFormatted(out, c_format, va_arg(*ap, long double));
      } else {
        BuildCFormat(d, "", c, c_format);
        AppendFormatted(out, c_format, va_arg(*ap, double));
      }
      return true;
    case 'p':
      BuildCFormat(d, "", c, c_format);
      AppendFormatted(out, c_format, va_arg(*ap, void*));
      return true;
    case 'c':
      if (d.length == Length::kL) {
        const auto unit = static_cast<unsigned short>(va_arg(*ap, unsigned int));
        AppendPadded(out, d, &unit, &unit + 1);
      } else {
        const auto byte = static_cast<char>(va_arg(*ap, int));
        AppendPadded(out, d, &byte, &byte + 1);
      }
      return true;
    case 's':
      if (d.length == Length::kL) {
        AppendText(out, d, va_arg(*ap, const unsigned short*));
      } else {
        AppendText(out, d, va_arg(*ap, const char*));
      }
      return true;
    case 'n':
      StoreCount(d.length, out.count(), ap);
      return true;
    default:
      return false;
  }
}

template <class Sink, class FormatChar>
void FormatAll(ChunkedOutput<Sink>& out, const FormatChar* p, std::va_list* ap) {
  while (*p != 0) {
    if (*p != '%') {
      const FormatChar* run = p;
      while (*p != 0 && *p != '%') ++p;
      out.Append(run, p);
      continue;
    }
    const FormatChar* const start = p++;
    Directive d;
    for (;; ++p) {
      if (*p == '-') {
        d.left = true;
      } else if (*p == '+') {
        d.plus = true;
      } else if (*p == ' ') {
        d.space = true;
      } else if (*p == '#') {
        d.alt = true;
      } else if (*p == '0') {
        d.zero = true;
      } else {
        break;
      }
    }
    if (*p == '*') {
      ++p;
      const int width = va_arg(*ap, int);
      // A negative width argument is a '-' flag and a positive width.
      if (width < 0) d.left = true;
      d.width = width >= 0 ? width : width == INT_MIN ? INT_MAX : -width;
    } else {
      d.width = ParseCount(p);
    }
    if (*p == '.') {
      ++p;
      if (*p == '*') {
        ++p;
        const int precision = va_arg(*ap, int);
        d.precision = precision >= 0 ? precision : -1;  // negative: as if omitted
      } else {
        d.precision = ParseCount(p);
      }
    }
    switch (*p) {
      case 'h':
        d.length = *++p == 'h' ? (++p, Length::kHH) : Length::kH;
        break;
      case 'l':
        d.length = *++p == 'l' ? (++p, Length::kLL) : Length::kL;
        break;
      case 'z': ++p; d.length = Length::kZ; break;
      case 'j': ++p; d.length = Length::kJ; break;
      case 't': ++p; d.length = Length::kT; break;
      case 'L': ++p; d.length = Length::kBigL; break;
      default: break;
    }
    if (*p == 0) {
      // A directive cut off by the end of the format stands as written.
      out.Append(start, p);
      return;
    }
    // Only ASCII conversion characters exist; any other unit is unknown.
    const auto unit = static_cast<std::make_unsigned_t<FormatChar>>(*p++);
    const int conversion = unit < 0x80 ? static_cast<int>(unit) : 0;
    if (!Convert(out, d, conversion, ap)) out.Append(start, p);
  }
}

}  // namespace
}  // namespace varnice::internal

template <class Sink, class FormatChar>
int PrintfEngine<Sink, FormatChar>::Print(const FormatChar* format, std::va_list args) {
  using namespace varnice::internal;
  ChunkedOutput<Sink> out(sink_);
  if (format != nullptr) {
    ArgumentList arguments(args);
    FormatAll(out, format, &arguments.list);
  }
  out.Flush();
  return out.count() <= INT_MAX ? static_cast<int>(out.count()) : -1;
}

template class PrintfEngine<CharSink, char>;
template class PrintfEngine<Char16Sink, char>;
template class PrintfEngine<Char16Sink, unsigned short>;
