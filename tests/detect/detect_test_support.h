// Helpers for the detection tests: text to and from an encoding, and the
// encoding a detecting encoding chooses for some bytes.
#ifndef VARNICE_TESTS_DETECT_DETECT_TEST_SUPPORT_H_
#define VARNICE_TESTS_DETECT_DETECT_TEST_SUPPORT_H_

#include <string>

#include "varnice/varnice.h"

namespace detect_test {

inline std::u16string Decode(const ExternalEncoding& e, const std::string& bytes) {
  qz_wstring w(bytes.data(), bytes.size(), e);
  return std::u16string(reinterpret_cast<const char16_t*>(w.c_str()), w.size());
}

inline std::string Encode(const ExternalEncoding& e, const std::u16string& text) {
  qz_string s(reinterpret_cast<const unsigned short*>(text.data()), text.size(), e);
  return std::string(s.c_str(), s.size());
}

// As a reader of the bytes would see it.

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
