// The whole public interface of Varnice: the class interface and the C interface.
#ifndef VARNICE_VARNICE_H_
#define VARNICE_VARNICE_H_

#include "varnice/capi/varnice_c.h"
#include "varnice/encoding/unicode_library.h"
#include "varnice/widec/qz_exception.h"

#endif  // VARNICE_VARNICE_H_
