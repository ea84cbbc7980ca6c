// Decoding every readable encoding through the C interface, with output room
// from none to plenty: the result stays within the room, and the text is
// always terminated inside it.
#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input in(data, size);
  const auto& encodings = fuzz::Encodings(false);
  const fuzz::Registered& e = encodings[in.Below(encodings.size())];
  const int room = static_cast<int>(in.Below(4 * in.Left() + 8));
  fuzz::Exact<char> src(in.Left());
  fuzz::Copy(src.data, in.Rest(), in.Left());
  fuzz::Exact<unsigned short> dst(room);
  const int n = VarniceConvertToUnicode(e.number, src.data, static_cast<int>(src.size), dst.data, room);
  FUZZ_CHECK(n >= 0);
  if (room > 0) {
    FUZZ_CHECK(n < room);
    FUZZ_CHECK(dst.data[n] == 0);
  }
  return 0;
}
