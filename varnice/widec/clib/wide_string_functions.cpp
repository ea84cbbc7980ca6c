// The string, memory, number and time functions of qz_wchar.h.
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <new>

#include "varnice/encoding/qz_unicode_per_thread.h"
#include "varnice/widec/clib/qz_wchar.h"

namespace {

using Unit = unsigned short;

int Sign(int d) { return d < 0 ? -1 : d > 0 ? 1 : 0; }

bool InSet(Unit c, const Unit* set) {
  for (; *set != 0; ++set) {
    if (*set == c) return true;
  }
  return false;
}

// The longest run of candidate units after leading white space, narrowed into
// `narrow` (kept on purpose: 127 bytes at most, so longer numbers are cut);
// returns where the run starts.
template <class IsCandidate>
const Unit* NarrowNumber(const Unit* s, char (&narrow)[128], IsCandidate is_candidate) {
  while (qz_iswspace(*s)) ++s;
  int n = 0;
  for (; n < 127 && s[n] != 0 && is_candidate(s[n]); ++n) narrow[n] = static_cast<char>(s[n]);
  narrow[n] = '\0';
  return s;
}

bool IsFloatCandidate(Unit c) { return c < 128 && c != 0 && std::strchr("+-0123456789.eE", c) != nullptr; }
bool IsIntegerCandidate(Unit c) { return c < 128 && (c == '+' || c == '-' || std::isalnum(c)); }

// Kept on purpose: when nothing converts, end stays past the leading white
// space rather than going back to the start.
void SetEnd(Unit** end, const Unit* start, const char* narrow, const char* narrow_end) {
  if (end != nullptr) *end = const_cast<Unit*>(start + (narrow_end - narrow));
}

}  // namespace

extern "C" {

Unit* qz_wcscpy(Unit* dst, const Unit* src) {
  Unit* d = dst;
  while ((*d++ = *src++) != 0) {
  }
  return dst;
}

Unit* qz_wcsncpy(Unit* dst, const Unit* src, size_t n) {
  size_t i = 0;
  for (; i < n && src[i] != 0; ++i) dst[i] = src[i];
  for (; i < n; ++i) dst[i] = 0;
  return dst;
}

Unit* qz_wcscat(Unit* dst, const Unit* src) {
  qz_wcscpy(dst + qz_wcslen(dst), src);
  return dst;
}

Unit* qz_wcsncat(Unit* dst, const Unit* src, size_t n) {
  Unit* d = dst + qz_wcslen(dst);
  for (size_t i = 0; i < n && src[i] != 0; ++i) *d++ = src[i];
  *d = 0;
  return dst;
}

int qz_wcscmp(const Unit* a, const Unit* b) {
  while (*a != 0 && *a == *b) ++a, ++b;
  return Sign(int{*a} - int{*b});
}

int qz_wcsncmp(const Unit* a, const Unit* b, size_t n) {
  for (; n > 0; --n, ++a, ++b) {
    if (*a != *b) return Sign(int{*a} - int{*b});
    if (*a == 0) break;
  }
  return 0;
}

Unit* qz_wcschr(const Unit* s, Unit c) {
  for (;; ++s) {
    if (*s == c) return const_cast<Unit*>(s);
    if (*s == 0) return nullptr;
  }
}

Unit* qz_wcsrchr(const Unit* s, Unit c) {
  const Unit* found = nullptr;
  for (;; ++s) {
    if (*s == c) found = s;
    if (*s == 0) return const_cast<Unit*>(found);
  }
}

size_t qz_wcscspn(const Unit* s, const Unit* set) {
  size_t n = 0;
  while (s[n] != 0 && !InSet(s[n], set)) ++n;
  return n;
}

size_t qz_wcsspn(const Unit* s, const Unit* set) {
  size_t n = 0;
  while (s[n] != 0 && InSet(s[n], set)) ++n;
  return n;
}

Unit* qz_wcspbrk(const Unit* s, const Unit* set) {
  s += qz_wcscspn(s, set);
  return *s != 0 ? const_cast<Unit*>(s) : nullptr;
}

Unit* qz_wcsstr(const Unit* haystack, const Unit* needle) {
  // Kept on purpose: an empty haystack contains nothing, not even "".
  if (*haystack == 0) return nullptr;
  const size_t n = qz_wcslen(needle);
  for (; *haystack != 0; ++haystack) {
    if (qz_wcsncmp(haystack, needle, n) == 0) return const_cast<Unit*>(haystack);
  }
  return nullptr;
}

Unit* qz_wcstok(Unit* s, const Unit* delimiters) {
  QZUnicodePerThread* state;
  try {
    state = QZUnicodePerThread::get();
  } catch (...) {
    return nullptr;  // no per-thread block: nothing to continue from
  }
  if (s == nullptr) s = static_cast<Unit*>(state->word);
  if (s == nullptr) return nullptr;
  s += qz_wcsspn(s, delimiters);
  if (*s == 0) {
    state->word = nullptr;
    return nullptr;
  }
  Unit* token = s;
  s += qz_wcscspn(s, delimiters);
  if (*s == 0) {
    state->word = nullptr;
  } else {
    *s = 0;
    state->word = s + 1;
  }
  return token;
}

size_t qz_wcslen(const Unit* s) {
  const Unit* e = s;
  while (*e != 0) ++e;
  return static_cast<size_t>(e - s);
}

Unit* qz_wmemchr(const Unit* s, Unit c, size_t n) {
  for (; n > 0; --n, ++s) {
    if (*s == c) return const_cast<Unit*>(s);
  }
  return nullptr;
}

int qz_wmemcmp(const Unit* a, const Unit* b, size_t n) {
  for (; n > 0; --n, ++a, ++b) {
    if (*a != *b) return Sign(int{*a} - int{*b});
  }
  return 0;
}

Unit* qz_wmemcpy(Unit* dst, const Unit* src, size_t n) {
  if (n != 0) std::memcpy(dst, src, n * sizeof(Unit));
  return dst;
}

Unit* qz_wmemmove(Unit* dst, const Unit* src, size_t n) {
  if (n != 0) std::memmove(dst, src, n * sizeof(Unit));
  return dst;
}

Unit* qz_wmemset(Unit* s, Unit c, size_t n) {
  for (size_t i = 0; i < n; ++i) s[i] = c;
  return s;
}

int qz_wcscoll(const Unit* a, const Unit* b) { return qz_wcscmp(a, b); }

size_t qz_wcsxfrm(Unit* dst, const Unit* src, size_t n) {
  if (n > 0) qz_wcsncpy(dst, src, n);
  // Kept on purpose: the length is measured at dst, which with n = 0 is
  // whatever dst held, and with a src of n units or more runs past the copy.
  return qz_wcslen(dst);
}

double qz_wcstod(const Unit* s, Unit** end) {
  char narrow[128];
  const Unit* start = NarrowNumber(s, narrow, IsFloatCandidate);
  char* narrow_end;
  const double value = std::strtod(narrow, &narrow_end);
  SetEnd(end, start, narrow, narrow_end);
  return value;
}

long qz_wcstol(const Unit* s, Unit** end, int base) {
  char narrow[128];
  const Unit* start = NarrowNumber(s, narrow, IsIntegerCandidate);
  char* narrow_end;
  const long value = std::strtol(narrow, &narrow_end, base);
  SetEnd(end, start, narrow, narrow_end);
  return value;
}

unsigned long qz_wcstoul(const Unit* s, Unit** end, int base) {
  char narrow[128];
  const Unit* start = NarrowNumber(s, narrow, IsIntegerCandidate);
  char* narrow_end;
  const unsigned long value = std::strtoul(narrow, &narrow_end, base);
  SetEnd(end, start, narrow, narrow_end);
  return value;
}

size_t qz_wcsftime(Unit* dst, size_t max, const Unit* format, const struct tm* tm) {
  if (max == 0) return 0;
  const size_t room = max - 1;
  size_t n = 0;
  for (const Unit* p = format; *p != 0;) {
    if (*p != '%' || p[1] >= 128) {
      if (*p == '%') ++p;  // '%' before a non-ASCII unit is dropped
      if (n == room) return 0;
      dst[n++] = *p++;
      continue;
    }
    const char narrow_format[3] = {'%', static_cast<char>(p[1]), '\0'};
    p += p[1] != 0 ? 2 : 1;
    char expanded[128];
    const size_t k = std::strftime(expanded, sizeof expanded, narrow_format, tm);
    // Kept on purpose: a conversion that expands to nothing fails the call.
    if (k == 0) return 0;
    if (k > room - n) return 0;
    // Kept on purpose: bytes are sign-extended, 0x80-0xFF to 0xFF80-0xFFFF.
    for (size_t i = 0; i < k; ++i) dst[n++] = static_cast<Unit>(static_cast<signed char>(expanded[i]));
  }
  dst[n] = 0;
  return n;
}

}  // extern "C"
