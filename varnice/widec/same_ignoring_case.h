// SameIgnoringCase: whether two names are equal when ASCII letters are folded
// to lower case. Names of tests, transforms and the like are ASCII, and the
// answer must not depend on the host's C locale, so only A-Z fold.
#ifndef VARNICE_WIDEC_SAME_IGNORING_CASE_H_
#define VARNICE_WIDEC_SAME_IGNORING_CASE_H_

#include "varnice/varnice_export.h"

// A null pointer counts as the empty string.
VARNICE_API bool SameIgnoringCase(char const* a, char const* b);

#endif  // VARNICE_WIDEC_SAME_IGNORING_CASE_H_
