// Round trips: text read from an encoding and written back reads the same
// again (decoding is idempotent after one pass); copying between two
// encodings stays within its room. (A copy may differ from decoding then
// encoding at the very end: its sink pipeline drops a character cut off by
// the end of input, where the source pipeline reports it.)
#include <string>

#include "fuzz/fuzz_support.h"

namespace {

std::u16string Decode(int number, const std::string& bytes) {
  std::vector<unsigned short> out(bytes.size() * 2 + 8);
  const int n = VarniceConvertToUnicode(number, bytes.data(), static_cast<int>(bytes.size()), out.data(),
                                        static_cast<int>(out.size()));
  return std::u16string(out.begin(), out.begin() + n);
}

std::string Encode(int number, const std::u16string& text) {
  std::vector<char> out(text.size() * 8 + 16);
  const int n = VarniceConvertFromUnicode(number, reinterpret_cast<const unsigned short*>(text.data()),
                                          static_cast<int>(text.size()), out.data(),
                                          static_cast<int>(out.size()), 0);
  return std::string(out.data(), n);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input in(data, size);
  const auto& encodings = fuzz::Encodings(true);
  const fuzz::Registered& e = encodings[in.Below(encodings.size())];
  const fuzz::Registered& other = encodings[in.Below(encodings.size())];
  const std::string bytes(in.Rest(), in.Left());
  // NUL ends the text for the legacy C calls; keep the part before it.
  const std::string text = bytes.substr(0, bytes.find('\0'));

  const std::u16string once = Decode(e.number, text);
  const std::u16string twice = Decode(e.number, Encode(e.number, once));
  FUZZ_CHECK(Decode(e.number, Encode(e.number, twice)) == twice);

  std::vector<char> copied(text.size() * 8 + 16);
  const int n = VarniceCopyDataBetweenEncodings(e.number, text.data(), static_cast<int>(text.size()), other.number,
                                                copied.data(), static_cast<int>(copied.size()), 0);
  FUZZ_CHECK(n >= 0 && static_cast<std::size_t>(n) < copied.size());
  return 0;
}
