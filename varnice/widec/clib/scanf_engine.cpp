#include "varnice/widec/clib/scanf_engine.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <type_traits>

#include "varnice/capi/varnice_c.h"
#include "varnice/stream/argument_list.h"
#include "varnice/stream/char16_source.h"

namespace varnice::internal {
namespace {

constexpr int kEnd = -1;

// The unread input: the range the source lends, refilled as it is used up.
// Only units passed by Advance are consumed from the source.
class Input {
 public:
  explicit Input(Char16Source& source) : source_(source) {}
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;
  ~Input() { source_.DoneWith(next_); }

  // The next unit, or kEnd; the source is asked again only while it has
  // not yet reported its end.
  int Peek() {
    while (next_ == end_) {
      if (at_end_) return kEnd;
      source_.DoneWith(next_);
      if (!source_.GetBuffer(next_, end_)) {
        at_end_ = true;
        return kEnd;
      }
    }
    return *next_;
  }
  void Advance() {
    ++next_;
    ++consumed_;
  }
  long long consumed() const { return consumed_; }

 private:
  Char16Source& source_;
  const unsigned short* next_ = nullptr;
  const unsigned short* end_ = nullptr;
  bool at_end_ = false;
  long long consumed_ = 0;
};

bool IsSpace(int c) { return c >= 0 && c <= 0xFFFF && qz_iswspace(static_cast<unsigned short>(c)); }

void SkipSpace(Input& in) {
  while (IsSpace(in.Peek())) in.Advance();
}

enum class Length { kNone, kHH, kH, kL, kLL, kZ, kJ, kT, kBigL };

// Stores the low bits of `value` in the integer the length modifier names;
// signed and unsigned targets of one size receive the same bits.
void StoreInteger(Length length, unsigned long long value, std::va_list* ap) {
  switch (length) {
    case Length::kHH: *va_arg(*ap, unsigned char*) = static_cast<unsigned char>(value); return;
    case Length::kH: *va_arg(*ap, unsigned short*) = static_cast<unsigned short>(value); return;
    case Length::kL: *va_arg(*ap, unsigned long*) = static_cast<unsigned long>(value); return;
    case Length::kLL:
    case Length::kBigL: *va_arg(*ap, unsigned long long*) = value; return;
    case Length::kZ: *va_arg(*ap, std::size_t*) = static_cast<std::size_t>(value); return;
    case Length::kJ: *va_arg(*ap, std::uintmax_t*) = static_cast<std::uintmax_t>(value); return;
    case Length::kT:
      *va_arg(*ap, std::ptrdiff_t*) = static_cast<std::ptrdiff_t>(value);
      return;
    case Length::kNone: break;
  }
  *va_arg(*ap, unsigned int*) = static_cast<unsigned int>(value);
}

bool IsDigitOf(int c, int base) {
  if (c >= '0' && c <= '9') return c - '0' < base;
  if (base != 16) return false;
  return (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// Moves the next unit into `text` when it is one of `accepted` (ASCII) and
// the width allows; true when it did.
bool Take(Input& in, std::string& text, long long& width, const char* accepted) {
  if (width == 0) return false;
  const int c = in.Peek();
  if (c <= 0 || c >= 0x80) return false;
  for (const char* a = accepted; *a != '\0'; ++a) {
    if (*a == c) {
      text += static_cast<char>(c);
      in.Advance();
      --width;
      return true;
    }
  }
  return false;
}

// The longest prefix of an integer of the base (0: C's prefix rules), as
// scanf gathers it: sign, then "0x" or "0" prefixes, then digits. Returns
// the base the digits were read in.
int GatherInteger(Input& in, long long width, int base, std::string& text) {
  Take(in, text, width, "+-");
  if ((base == 0 || base == 16) && Take(in, text, width, "0")) {
    if (Take(in, text, width, "xX")) {
      base = 16;
    } else if (base == 0) {
      base = 8;
    }
  }
  if (base == 0) base = 10;
  while (width != 0 && IsDigitOf(in.Peek(), base)) {
    text += static_cast<char>(in.Peek());
    in.Advance();
    --width;
  }
  return base;
}

// Moves the units of `word` (lower-case ASCII) into `text` while the input
// spells it in either case; true when the whole word was read.
bool TakeWord(Input& in, std::string& text, long long& width, const char* word) {
  for (; *word != '\0'; ++word) {
    const char upper[] = {static_cast<char>(*word - 'a' + 'A'), *word, '\0'};
    if (!Take(in, text, width, upper)) return false;
  }
  return true;
}

// The longest prefix of a floating-point number as scanf gathers it:
// decimal or hexadecimal digits with one point and an exponent, or an
// infinity or NaN. False for a bare "0x", which unlike an integer's prefix
// does not stand for 0.
bool GatherFloat(Input& in, long long width, std::string& text) {
  const bool sign = Take(in, text, width, "+-");
  const int first = in.Peek();
  if (first == 'i' || first == 'I') {
    // An "inf" that goes on as "infinity" must spell it out to the end.
    if (TakeWord(in, text, width, "inf") && width != 0 && (in.Peek() == 'i' || in.Peek() == 'I')) {
      return TakeWord(in, text, width, "inity");
    }
    return true;
  }
  if (first == 'n' || first == 'N') {
    TakeWord(in, text, width, "nan");
    return true;
  }
  bool hex = false;
  bool digits = false;
  if (Take(in, text, width, "0")) {
    digits = true;
    // As the C library reads it, an 'x' that would fill the width is not
    // taken: "0x1" read with width 2 is 0, and the x stays unread.
    hex = (width < 0 || width >= 2) && Take(in, text, width, "xX");
  }
  const char* const digit_set = hex ? "0123456789abcdefABCDEF" : "0123456789";
  bool point = false;
  for (;;) {
    if (Take(in, text, width, digit_set)) {
      digits = true;
    } else if (!point && Take(in, text, width, ".")) {
      point = true;
    } else {
      break;
    }
  }
  if (digits && Take(in, text, width, hex ? "pP" : "eE")) {
    Take(in, text, width, "+-");
    while (Take(in, text, width, "0123456789")) {
    }
  }
  // As the C library decides: "0x" with nothing after it fails, signed or not.
  return !(hex && text.size() - sign == 2);
}

template <class FormatChar>
int Unit(FormatChar c) {
  return static_cast<std::make_unsigned_t<FormatChar>>(c);
}

// A scan set "[...]" from just after the '['; `end` is set to its ']'.
// Null when the format ends before the set does.
template <class FormatChar>
struct ScanSet {
  const FormatChar* begin = nullptr;
  const FormatChar* end = nullptr;
  bool negated = false;

  bool Parse(const FormatChar* p) {
    if (*p == '^') {
      negated = true;
      ++p;
    }
    begin = p;
    if (*p == ']') ++p;  // a ']' first is a member
    while (*p != 0 && *p != ']') ++p;
    if (*p == 0) return false;
    end = p;
    return true;
  }

  bool Contains(int c) const {
    bool found = false;
    for (const FormatChar* p = begin; p < end && !found; ++p) {
      // "a-z" is a range; a '-' first or last stands for itself.
      if (p[1] == '-' && p + 2 < end) {
        found = c >= Unit(p[0]) && c <= Unit(p[2]);
        p += 2;
      } else {
        found = c == Unit(*p);
      }
    }
    return found != negated;
  }
};

// A byte for a char target: units beyond one byte have none of their own.
char Narrow(int unit) { return unit <= 0xFF ? static_cast<char>(unit) : '?'; }

// Stores gathered units for %c, %s and %[ into char or unsigned short
// targets; `terminate` adds the 0.
class TextTarget {
 public:
  TextTarget(bool wide, bool suppress, std::va_list* ap) {
    if (suppress) return;
    if (wide) {
      wide_ = va_arg(*ap, unsigned short*);
    } else {
      narrow_ = va_arg(*ap, char*);
    }
  }
  void Put(int unit) {
    if (wide_ != nullptr) *wide_++ = static_cast<unsigned short>(unit);
    if (narrow_ != nullptr) *narrow_++ = Narrow(unit);
  }
  void Terminate() { Put(0); }

 private:
  unsigned short* wide_ = nullptr;
  char* narrow_ = nullptr;
};

enum class Outcome { kDone, kMismatch, kEndOfInput };

template <class FormatChar>
class Scanner {
 public:
  Scanner(Input& in, std::va_list* ap) : in_(in), ap_(ap) {}

  // The assignments made, or -1 when the input ended before the first.
  int Run(const FormatChar* f) {
    while (*f != 0) {
      if (IsSpace(Unit(*f))) {
        while (IsSpace(Unit(*f))) ++f;
        SkipSpace(in_);
        continue;
      }
      Outcome outcome;
      if (*f != '%') {
        outcome = MatchUnit(Unit(*f++));
      } else {
        outcome = Conversion(++f);
      }
      if (outcome == Outcome::kEndOfInput) return assigned_ == 0 ? -1 : assigned_;
      if (outcome == Outcome::kMismatch) break;
    }
    return assigned_;
  }

 private:
  Outcome MatchUnit(int wanted) {
    const int c = in_.Peek();
    if (c == kEnd) return Outcome::kEndOfInput;
    if (c != wanted) return Outcome::kMismatch;
    in_.Advance();
    return Outcome::kDone;
  }

  // One "%..." directive from just after the '%'; `f` is left after it.
  Outcome Conversion(const FormatChar*& f) {
    const bool suppress = *f == '*';
    if (suppress) ++f;
    long long width = 0;  // 0: none
    for (; *f >= '0' && *f <= '9'; ++f) {
      width = width * 10 + (*f - '0');
      if (width > 0xFFFFFFFFLL) width = 0xFFFFFFFFLL;
    }
    Length length = Length::kNone;
    switch (*f) {
      case 'h': length = *++f == 'h' ? (++f, Length::kHH) : Length::kH; break;
      case 'l': length = *++f == 'l' ? (++f, Length::kLL) : Length::kL; break;
      case 'q': ++f; length = Length::kLL; break;
      case 'z': ++f; length = Length::kZ; break;
      case 'j': ++f; length = Length::kJ; break;
      case 't': ++f; length = Length::kT; break;
      case 'L': ++f; length = Length::kBigL; break;
      default: break;
    }
    const int conversion = Unit(*f);
    if (conversion == 0) return Outcome::kMismatch;  // cut-off directive
    ++f;
    const bool wide = length == Length::kL;
    switch (conversion) {
      case '%':
        SkipSpace(in_);
        return MatchUnit('%');
      case 'n':
        if (!suppress) StoreInteger(length, static_cast<unsigned long long>(in_.consumed()), ap_);
        return Outcome::kDone;
      case 'c':
        return Characters(width == 0 ? 1 : width, wide, suppress);
      case 's':
        return Text(width, wide, suppress);
      case '[': {
        ScanSet<FormatChar> set;
        if (!set.Parse(f)) return Outcome::kMismatch;
        f = set.end + 1;
        return SetText(set, width, wide, suppress);
      }
      case 'd': return Integer(width, 10, true, length, suppress);
      case 'i': return Integer(width, 0, true, length, suppress);
      case 'u': return Integer(width, 10, false, length, suppress);
      case 'o': return Integer(width, 8, false, length, suppress);
      case 'x':
      case 'X': return Integer(width, 16, false, length, suppress);
      case 'p': return Integer(width, 16, false, Length::kNone, suppress, true);
      case 'f':
      case 'F':
      case 'e':
      case 'E':
      case 'g':
      case 'G':
      case 'a':
      case 'A': return Float(width, length, suppress);
      default: return Outcome::kMismatch;
    }
  }

  Outcome Characters(long long count, bool wide, bool suppress) {
    if (in_.Peek() == kEnd) return Outcome::kEndOfInput;
    TextTarget target(wide, suppress, ap_);
    // As the C library does, a short run at the end of input still counts.
    for (; count > 0 && in_.Peek() != kEnd; --count) {
      target.Put(in_.Peek());
      in_.Advance();
    }
    return Assigned(suppress);
  }

  Outcome Text(long long width, bool wide, bool suppress) {
    SkipSpace(in_);
    if (in_.Peek() == kEnd) return Outcome::kEndOfInput;
    TextTarget target(wide, suppress, ap_);
    for (long long n = width == 0 ? -1 : width; n != 0; --n) {
      const int c = in_.Peek();
      if (c == kEnd || IsSpace(c)) break;
      target.Put(c);
      in_.Advance();
    }
    target.Terminate();
    return Assigned(suppress);
  }

  Outcome SetText(const ScanSet<FormatChar>& set, long long width, bool wide, bool suppress) {
    const int first = in_.Peek();
    if (first == kEnd) return Outcome::kEndOfInput;
    if (!set.Contains(first)) return Outcome::kMismatch;
    TextTarget target(wide, suppress, ap_);
    for (long long n = width == 0 ? -1 : width; n != 0; --n) {
      const int c = in_.Peek();
      if (c == kEnd || !set.Contains(c)) break;
      target.Put(c);
      in_.Advance();
    }
    target.Terminate();
    return Assigned(suppress);
  }

  Outcome Integer(long long width, int base, bool is_signed, Length length, bool suppress,
                  bool pointer = false) {
    SkipSpace(in_);
    if (in_.Peek() == kEnd) return Outcome::kEndOfInput;
    std::string text;
    GatherInteger(in_, width == 0 ? -1 : width, base, text);
    char* end;
    unsigned long long value;
    if (is_signed) {
      value = static_cast<unsigned long long>(std::strtoll(text.c_str(), &end, base));
    } else {
      value = std::strtoull(text.c_str(), &end, base);
    }
    // Units gathered past what converts (the x of "0x") stay consumed, as in C.
    if (end == text.c_str()) return Outcome::kMismatch;
    if (!suppress) {
      if (pointer) {
        *va_arg(*ap_, void**) = reinterpret_cast<void*>(static_cast<std::uintptr_t>(value));
      } else {
        StoreInteger(length, value, ap_);
      }
    }
    return Assigned(suppress);
  }

  Outcome Float(long long width, Length length, bool suppress) {
    SkipSpace(in_);
    if (in_.Peek() == kEnd) return Outcome::kEndOfInput;
    std::string text;
    if (!GatherFloat(in_, width == 0 ? -1 : width, text)) return Outcome::kMismatch;
    char* end;
    // Each target type converts directly, never through double, so that
    // float and long double round as C's own scanf rounds them.
    if (length == Length::kBigL) {
      const long double value = std::strtold(text.c_str(), &end);
      if (end == text.c_str()) return Outcome::kMismatch;
      if (!suppress) *va_arg(*ap_, long double*) = value;
    } else if (length == Length::kL) {
      const double value = std::strtod(text.c_str(), &end);
      if (end == text.c_str()) return Outcome::kMismatch;
      if (!suppress) *va_arg(*ap_, double*) = value;
    } else {
      const float value = std::strtof(text.c_str(), &end);
      if (end == text.c_str()) return Outcome::kMismatch;
      if (!suppress) *va_arg(*ap_, float*) = value;
    }
    return Assigned(suppress);
  }

  Outcome Assigned(bool suppress) {
    if (!suppress) ++assigned_;
    return Outcome::kDone;
  }

  Input& in_;
  std::va_list* ap_;
  int assigned_ = 0;
};

}  // namespace
}  // namespace varnice::internal

template <class FormatChar>
int ScanfEngine<FormatChar>::Scan(const FormatChar* format, std::va_list args) {
  using namespace varnice::internal;
  consumed_ = 0;
  if (format == nullptr) return 0;
  ArgumentList arguments(args);
  int result;
  {
    Input in(source_);
    result = Scanner<FormatChar>(in, &arguments.list).Run(format);
    consumed_ = in.consumed();
  }
  return result;
}

template class ScanfEngine<char>;
template class ScanfEngine<unsigned short>;
