// QZUnicodePerThread: the library's only per-thread state, one pointer-sized
// word (qz_wcstok's continuation). Kept in POSIX thread-specific data and freed
// when the thread ends.
#ifndef VARNICE_ENCODING_QZ_UNICODE_PER_THREAD_H_
#define VARNICE_ENCODING_QZ_UNICODE_PER_THREAD_H_

#include "varnice/varnice_export.h"

class VARNICE_API QZUnicodePerThread {
 public:
  // This thread's block, zero when first created. Throws qz_sw_out_of_memory
  // if the block cannot be allocated.
  static QZUnicodePerThread* get();

  void* word = nullptr;
};

#endif  // VARNICE_ENCODING_QZ_UNICODE_PER_THREAD_H_
