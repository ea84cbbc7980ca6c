// Drivers for the block converters of the Unicode forms: feed a text in
// pieces of a chosen size with output blocks of a chosen size, the way a
// converting stream does, and record the output and where problems were
// reported.
#ifndef VARNICE_TESTS_UNICODEFORMS_FORM_TEST_SUPPORT_H_
#define VARNICE_TESTS_UNICODEFORMS_FORM_TEST_SUPPORT_H_

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "varnice/encoding/block_converter.h"

namespace testing_forms {

template <class Unit>
struct Run {
  std::basic_string<Unit> text;
  // (output length when reported, result code) for every result other than
  // kInputUsedUp and kOutputFull, Finish's included.
  std::vector<std::pair<std::size_t, int>> problems;
  bool stuck = false;  // the output block was too small to make progress
  bool operator==(const Run& other) const = default;
};

using Decoded = Run<char16_t>;
using Encoded = Run<char>;

// Decodes `bytes` in pieces of `piece` bytes into output blocks of `room`
// units, then calls Finish.
inline Decoded Decode(BlockConverter_8_to_16& c, const std::string& bytes, std::size_t piece = 1 << 20,
                      std::size_t room = 1024) {
  Decoded run;
  std::vector<unsigned short> buffer(room);
  for (std::size_t pos = 0; pos < bytes.size();) {
    const std::size_t end = std::min(bytes.size(), pos + piece);
    const char* in = bytes.data() + pos;
    const char* const inEnd = bytes.data() + end;
    for (;;) {
      const char* const before = in;
      unsigned short* out = buffer.data();
      const int result = c.Convert(in, inEnd, out, buffer.data() + room);
      run.text.append(buffer.data(), out);
      if (result == kInputUsedUp) break;
      if (result == kOutputFull) {
        if (in == before && out == buffer.data()) {
          run.stuck = true;
          return run;
        }
        continue;
      }
      run.problems.emplace_back(run.text.size(), result);
    }
    pos = end;
  }
  for (;;) {
    unsigned short* out = buffer.data();
    const int result = c.Finish(out, buffer.data() + room);
    run.text.append(buffer.data(), out);
    if (result == kOutputFull) {
      if (out == buffer.data()) {
        run.stuck = true;
        return run;
      }
      continue;
    }
    if (result != kConversionDone) run.problems.emplace_back(run.text.size(), result);
    return run;
  }
}

// Encodes `units` in pieces of `piece` units into output blocks of `room`
// bytes with no byte budget, then calls Finish.
inline Encoded Encode(BlockConverter_16_to_8& c, const std::u16string& units, std::size_t piece = 1 << 20,
                      std::size_t room = 1024) {
  Encoded run;
  std::vector<char> buffer(room);
  const auto* data = reinterpret_cast<const unsigned short*>(units.data());
  for (std::size_t pos = 0; pos < units.size();) {
    const std::size_t end = std::min(units.size(), pos + piece);
    const unsigned short* in = data + pos;
    for (;;) {
      const unsigned short* const before = in;
      char* out = buffer.data();
      const int result = c.Convert(in, data + end, out, buffer.data() + room, -1);
      run.text.append(buffer.data(), out);
      if (result == kInputUsedUp) break;
      if (result == kOutputFull) {
        if (in == before && out == buffer.data()) {
          run.stuck = true;
          return run;
        }
        continue;
      }
      run.problems.emplace_back(run.text.size(), result);
    }
    pos = end;
  }
  for (;;) {
    char* out = buffer.data();
    const int result = c.Finish(out, buffer.data() + room);
    run.text.append(buffer.data(), out);
    if (result == kOutputFull) {
      if (out == buffer.data()) {
        run.stuck = true;
        return run;
      }
      continue;
    }
    if (result != kConversionDone) run.problems.emplace_back(run.text.size(), result);
    return run;
  }
}

inline std::string Bytes(std::initializer_list<int> bytes) {
  std::string s;
  for (int b : bytes) s.push_back(static_cast<char>(b));
  return s;
}

inline const unsigned short* U(const std::u16string& s) { return reinterpret_cast<const unsigned short*>(s.data()); }

}  // namespace testing_forms

#endif  // VARNICE_TESTS_UNICODEFORMS_FORM_TEST_SUPPORT_H_
