// The checked C functions in every error mode: a status that adds up, output
// within the room given, preflight that names the exact size, strict mode
// that leaves nothing behind, and decoded text without lone surrogates.
#include "fuzz/fuzz_support.h"

namespace {

bool LoneSurrogateIn(const unsigned short* units, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) {
    const unsigned short u = units[i];
    if (u >= 0xD800 && u <= 0xDBFF) {
      if (i + 1 == n || units[i + 1] < 0xDC00 || units[i + 1] > 0xDFFF) return true;
      ++i;
    } else if (u >= 0xDC00 && u <= 0xDFFF) {
      return true;
    }
  }
  return false;
}

// Runs `call(dst, room, status)` with no room, then with exactly the room the
// preflight asked for, and checks the two agree.
template <class Unit, class Call>
void CheckPreflight(Call call) {
  VarniceStatus probe{};
  const int first = call(static_cast<Unit*>(nullptr), 0, &probe);
  if (first != VARNICE_ERROR_OUTPUT_TOO_SMALL) return;
  FUZZ_CHECK(probe.written == 0);
  fuzz::Exact<Unit> exact(probe.needed);
  VarniceStatus status{};
  FUZZ_CHECK(call(exact.data, probe.needed, &status) == VARNICE_OK);
  FUZZ_CHECK(status.written == probe.needed);
}

template <class Unit>
void CheckStatus(int result, const VarniceStatus& status, std::size_t srcLen, std::size_t room, int mode) {
  FUZZ_CHECK(result <= 0 && result >= VARNICE_ERROR_INTERNAL);
  FUZZ_CHECK(result != VARNICE_ERROR_INTERNAL && result != VARNICE_ERROR_BAD_ARGUMENT);
  if (result == VARNICE_ERROR_UNSUPPORTED || result == VARNICE_ERROR_UNKNOWN_ENCODING) return;
  FUZZ_CHECK(status.written <= room);
  FUZZ_CHECK(status.consumed <= srcLen);
  if (result == VARNICE_OK) {
    FUZZ_CHECK(status.written == status.needed);
    FUZZ_CHECK(status.consumed == srcLen);
  }
  if (result == VARNICE_ERROR_PROBLEM) {
    FUZZ_CHECK(mode == VARNICE_STOP || mode == VARNICE_STRICT);
    FUZZ_CHECK(status.problem != VARNICE_PROBLEM_NONE && status.problem_offset <= srcLen);
    if (mode == VARNICE_STRICT) FUZZ_CHECK(status.written == 0);
  }
  if (status.problem == VARNICE_PROBLEM_NONE) FUZZ_CHECK(status.problem_offset == VARNICE_NO_OFFSET);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input in(data, size);
  const auto& encodings = fuzz::Encodings(true);
  const int from = encodings[in.Below(encodings.size())].number;
  const int to = encodings[in.Below(encodings.size())].number;
  const int mode = in.Byte() % 4;
  const std::size_t room = in.Below(4 * in.Left() + 16);
  fuzz::Exact<char> src(in.Left());
  fuzz::Copy(src.data, in.Rest(), in.Left());

  // Decode.
  fuzz::Exact<unsigned short> units(room);
  VarniceStatus status{};
  int result = VarniceDecode(from, src.data, src.size, units.data, room, mode, &status);
  CheckStatus<unsigned short>(result, status, src.size, room, mode);
  if (result == VARNICE_OK) FUZZ_CHECK(!LoneSurrogateIn(units.data, status.written));
  CheckPreflight<unsigned short>([&](unsigned short* dst, std::size_t n, VarniceStatus* s) {
    return VarniceDecode(from, src.data, src.size, dst, n, mode, s);
  });

  // Encode the fuzzer's bytes taken as UTF-16, lone surrogates and all.
  const std::vector<unsigned short> text = fuzz::Units(src.data, src.size);
  fuzz::Exact<unsigned short> wide(text.size());
  fuzz::Copy(wide.data, text.data(), text.size());
  fuzz::Exact<char> bytes(room);
  status = VarniceStatus{};
  result = VarniceEncode(to, wide.data, wide.size, bytes.data, room, mode, &status);
  CheckStatus<char>(result, status, wide.size, room, mode);
  CheckPreflight<char>([&](char* dst, std::size_t n, VarniceStatus* s) {
    return VarniceEncode(to, wide.data, wide.size, dst, n, mode, s);
  });

  // Transcode.
  status = VarniceStatus{};
  result = VarniceTranscode(from, src.data, src.size, to, bytes.data, room, mode, &status);
  CheckStatus<char>(result, status, src.size, room, mode);
  CheckPreflight<char>([&](char* dst, std::size_t n, VarniceStatus* s) {
    return VarniceTranscode(from, src.data, src.size, to, dst, n, mode, s);
  });
  return 0;
}
