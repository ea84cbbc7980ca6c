// qz_wstring forwards to the shared implementation; see qz_basic_string.cpp.
#include "varnice/widec/qz_wstring.h"

using size_type = qz_wstring::size_type;
using Impl = varnice::internal::BasicQzString<unsigned short>;

#define QZ_STRING qz_wstring
#define QZ_CHAR unsigned short
#include "varnice/widec/qz_string_members.inc"
#undef QZ_CHAR
#undef QZ_STRING
