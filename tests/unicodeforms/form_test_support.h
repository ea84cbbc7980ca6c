// Drivers for the block converters of the Unicode forms: feed a text in
// pieces of a chosen size with output blocks of a chosen size, the way a
// converting stream does, and record the output and where problems were
// reported.
#ifndef VARNICE_TESTS_UNICODEFORMS_FORM_TEST_SUPPORT_H_
#define VARNICE_TESTS_UNICODEFORMS_FORM_TEST_SUPPORT_H_

#include <algorithm>
#include <ostream>
#include <string>
#include <type_traits>
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

inline int Call(BlockConverter_8_to_16& c, const char*& in, const char* inEnd, unsigned short*& out,
                const unsigned short* outEnd) {
  return c.Convert(in, inEnd, out, outEnd);
}

inline int Call(BlockConverter_16_to_8& c, const unsigned short*& in, const unsigned short* inEnd, char*& out,
                const char* outEnd) {
  return c.Convert(in, inEnd, out, outEnd, -1);  // no byte budget
}

// Feeds `size` input units in pieces of `piece` into output blocks of `room`
// units, then calls Finish.
template <class Unit, class Buffer, class In, class Converter>
Run<Unit> Drive(Converter& c, const In* data, std::size_t size, std::size_t piece, std::size_t room) {
  Run<Unit> run;
  std::vector<Buffer> buffer(room);
  for (std::size_t pos = 0; pos < size;) {
    const std::size_t end = std::min(size, pos + piece);
    const In* in = data + pos;
    for (;;) {
      const In* const before = in;
      Buffer* out = buffer.data();
      const int result = Call(c, in, data + end, out, buffer.data() + room);
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
    Buffer* out = buffer.data();
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

inline Decoded Decode(BlockConverter_8_to_16& c, const std::string& bytes, std::size_t piece = 1 << 20,
                      std::size_t room = 1024) {
  return Drive<char16_t, unsigned short>(c, bytes.data(), bytes.size(), piece, room);
}

inline Encoded Encode(BlockConverter_16_to_8& c, const std::u16string& units, std::size_t piece = 1 << 20,
                      std::size_t room = 1024) {
  return Drive<char, char>(c, reinterpret_cast<const unsigned short*>(units.data()), units.size(), piece, room);
}

// One Convert call with `room` units of output: its result, how much input
// it took and what it wrote. Calls on the rest of the input carry on.
template <class Unit>
struct Step {
  int result;
  std::size_t taken;
  std::basic_string<Unit> written;
  bool operator==(const Step&) const = default;
};

inline Step<char16_t> DecodeStep(BlockConverter_8_to_16& c, const std::string& bytes, std::size_t room) {
  std::vector<unsigned short> buffer(room + 1);
  const char* in = bytes.data();
  unsigned short* out = buffer.data();
  const int result = c.Convert(in, bytes.data() + bytes.size(), out, buffer.data() + room);
  return {result, static_cast<std::size_t>(in - bytes.data()), std::u16string(buffer.data(), out)};
}

inline Step<char> EncodeStep(BlockConverter_16_to_8& c, const std::u16string& units, std::size_t room,
                             long capacity = -1) {
  std::vector<char> buffer(room + 1);
  const auto* data = reinterpret_cast<const unsigned short*>(units.data());
  const unsigned short* in = data;
  char* out = buffer.data();
  const int result = c.Convert(in, data + units.size(), out, buffer.data() + room, capacity);
  return {result, static_cast<std::size_t>(in - data), std::string(buffer.data(), out)};
}

template <class Unit>
std::ostream& operator<<(std::ostream& os, const Step<Unit>& s) {
  os << "{" << s.result << ", " << s.taken << "," << std::hex;
  for (Unit u : s.written) os << ' ' << static_cast<unsigned>(static_cast<std::make_unsigned_t<Unit>>(u));
  return os << std::dec << "}";
}

using Step16 = Step<char16_t>;
using Step8 = Step<char>;

inline std::string Bytes(std::initializer_list<int> bytes) {
  std::string s;
  for (int b : bytes) s.push_back(static_cast<char>(b));
  return s;
}

inline const unsigned short* U(const std::u16string& s) { return reinterpret_cast<const unsigned short*>(s.data()); }

}  // namespace testing_forms

#endif  // VARNICE_TESTS_UNICODEFORMS_FORM_TEST_SUPPORT_H_
