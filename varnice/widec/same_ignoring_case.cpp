#include "varnice/widec/same_ignoring_case.h"

namespace {

char Folded(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

bool SameIgnoringCase(char const* a, char const* b) {
  if (a == nullptr) a = "";
  if (b == nullptr) b = "";
  for (;; ++a, ++b) {
    if (Folded(*a) != Folded(*b)) return false;
    if (*a == '\0') return true;
  }
}
