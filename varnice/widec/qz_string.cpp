// qz_string forwards to the shared implementation; see qz_basic_string.cpp.
#include "varnice/widec/qz_string.h"

using size_type = qz_string::size_type;
using Impl = varnice::internal::BasicQzString<char>;

#define QZ_STRING qz_string
#define QZ_CHAR char
#include "varnice/widec/qz_string_members.inc"
#undef QZ_CHAR
#undef QZ_STRING

qz_string::operator std::string_view() const noexcept { return {s_.data(), s_.size()}; }
