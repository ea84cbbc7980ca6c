// Helpers for tests of the 16-bit C library: NUL-terminated unit arrays made
// from ASCII or UTF-16 literals.
#ifndef VARNICE_TESTS_WIDEC_WIDE_TEST_SUPPORT_H_
#define VARNICE_TESTS_WIDEC_WIDE_TEST_SUPPORT_H_

#include <string>
#include <string_view>
#include <vector>

// A writable, terminated copy of the text, with optional spare room after it.
class Wide {
 public:
  Wide(std::string_view bytes, std::size_t spare = 0) {
    for (unsigned char c : bytes) units_.push_back(c);
    units_.resize(bytes.size() + 1 + spare, 0);
  }
  Wide(std::u16string_view text, std::size_t spare = 0) : units_(text.begin(), text.end()) {
    units_.resize(text.size() + 1 + spare, 0);
  }
  unsigned short* p() { return units_.data(); }
  const unsigned short* p() const { return units_.data(); }
  operator unsigned short*() { return units_.data(); }
  operator const unsigned short*() const { return units_.data(); }

 private:
  std::vector<unsigned short> units_;
};

// The terminated text at p, as UTF-16.
inline std::u16string Text(const unsigned short* p) {
  std::u16string s;
  if (p != nullptr) {
    while (*p != 0) s += static_cast<char16_t>(*p++);
  }
  return s;
}

inline std::u16string Widen(std::string_view ascii) {
  std::u16string s;
  for (unsigned char c : ascii) s += static_cast<char16_t>(c);
  return s;
}

#endif  // VARNICE_TESTS_WIDEC_WIDE_TEST_SUPPORT_H_
