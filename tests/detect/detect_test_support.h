// The encoding a detecting encoding chooses for some bytes, as a reader of
// them would see it.
#ifndef VARNICE_TESTS_DETECT_DETECT_TEST_SUPPORT_H_
#define VARNICE_TESTS_DETECT_DETECT_TEST_SUPPORT_H_

#include <string>

#include "varnice/varnice.h"

namespace detect_test {

inline const ExternalEncoding* Detect(const ExternalEncoding& detecting, const std::string& bytes) {
  BufferCharSource in(bytes.data(), bytes.data() + bytes.size());
  LinearAllocator arena(4096, __FILE__, __LINE__);
  ExternalEncoding::ToUnicodeSource* reader = detecting.CreateCharSourceToUnicode(in, arena);
  const ExternalEncoding* chosen = reader->ActualInputEncoding();
  delete reader;
  return chosen;
}

}  // namespace detect_test

#endif  // VARNICE_TESTS_DETECT_DETECT_TEST_SUPPORT_H_
