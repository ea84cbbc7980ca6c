/* The C interface of Varnice: register encodings by name, convert between them
 * and UTF-16, compare UTF-16 strings and map case. Plain C; include from C or
 * C++. A UTF-16 code unit is an unsigned short everywhere. */
#ifndef VARNICE_CAPI_VARNICE_C_H_
#define VARNICE_CAPI_VARNICE_C_H_

#include "varnice/varnice_export.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The library's version text, "Version 2.1.0, 1999-05-10". */
VARNICE_API const char* VarniceVersionString(void);

#ifdef __cplusplus
}
#endif

#endif /* VARNICE_CAPI_VARNICE_C_H_ */
