// The formatting engines' own copy of a caller's argument list, released
// however the engine leaves.
#ifndef VARNICE_STREAM_ARGUMENT_LIST_H_
#define VARNICE_STREAM_ARGUMENT_LIST_H_

#include <cstdarg>

namespace varnice::internal {

// Owns the engine's copy of the caller's argument list.
struct ArgumentList {
  explicit ArgumentList(std::va_list args) { va_copy(list, args); }
  ~ArgumentList() { va_end(list); }
  ArgumentList(const ArgumentList&) = delete;
  ArgumentList& operator=(const ArgumentList&) = delete;

  std::va_list list;
};

}  // namespace varnice::internal

#endif  // VARNICE_STREAM_ARGUMENT_LIST_H_
