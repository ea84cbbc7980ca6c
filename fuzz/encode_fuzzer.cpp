// Encoding arbitrary UTF-16 (lone surrogates included) into every writable
// encoding through the C interface, with output room from none to plenty.
#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input in(data, size);
  const auto& encodings = fuzz::Encodings(true);
  const fuzz::Registered& e = encodings[in.Below(encodings.size())];
  const int pad = in.Byte() & 1;
  const std::vector<unsigned short> units = fuzz::Units(in.Rest(), in.Left());
  const int room = static_cast<int>(in.Below(8 * units.size() + 16));
  fuzz::Exact<unsigned short> src(units.size());
  fuzz::Copy(src.data, units.data(), units.size());
  fuzz::Exact<char> dst(room);
  const int n = VarniceConvertFromUnicode(e.number, src.data, static_cast<int>(src.size), dst.data, room, pad);
  FUZZ_CHECK(n >= 0 && n <= room);
  return 0;
}
