// Test helper: an encoding's two block converters placed in an arena, and
// one-call conversions that report the result code, what was produced and
// how much input was taken.
#ifndef VARNICE_TESTS_CODEPAGES_CONVERTER_TEST_SUPPORT_H_
#define VARNICE_TESTS_CODEPAGES_CONVERTER_TEST_SUPPORT_H_

#include <cstdio>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "varnice/encoding/block_converter.h"
#include "varnice/stream/converting/block_external_encoding.h"
#include "varnice/encoding/external_encoding_detector.h"
#include "varnice/encoding/linear_allocator.h"

namespace codepage_test {

inline std::string Hex(const char* begin, const char* end) {
  std::string s;
  char b[4];
  for (; begin != end; ++begin) {
    std::snprintf(b, sizeof b, "%s%02X", s.empty() ? "" : " ", static_cast<unsigned char>(*begin));
    s += b;
  }
  return s;
}

inline std::string Hex(const std::string& bytes) { return Hex(bytes.data(), bytes.data() + bytes.size()); }

inline const BlockExternalEncoding& Block(const ExternalEncoding* encoding) {
  return dynamic_cast<const BlockExternalEncoding&>(*encoding);
}

// Both converters of an encoding; the arena outlives them.
struct Converters {
  explicit Converters(const ExternalEncoding* encoding)
      : to(Block(encoding).CreateConverterToUnicode(arena)), from(Block(encoding).CreateConverterFromUnicode(arena)) {}

  LinearAllocator arena{8192, __FILE__, __LINE__};
  std::unique_ptr<BlockConverter_8_to_16> to;
  std::unique_ptr<BlockConverter_16_to_8> from;
};

// Comparable as a whole, so one EXPECT_EQ checks all three.
struct Decoded {
  int result;
  std::u16string units;
  std::size_t consumed;
  bool operator==(const Decoded&) const = default;
};

inline std::ostream& operator<<(std::ostream& os, const Decoded& d) {
  os << "{" << d.result << ", u\"";
  for (char16_t u : d.units) {
    char b[8];
    std::snprintf(b, sizeof b, "\\u%04X", static_cast<unsigned>(u));
    os << b;
  }
  return os << "\", " << d.consumed << "}";
}

// One Convert call over the bytes with room for `room` code units.
inline Decoded Decode(BlockConverter_8_to_16& c, const std::string& bytes, std::size_t room = 64) {
  std::vector<unsigned short> buf(room + 1);
  const char* in = bytes.data();
  unsigned short* out = buf.data();
  const int r = c.Convert(in, bytes.data() + bytes.size(), out, buf.data() + room);
  return {r, std::u16string(buf.data(), out), static_cast<std::size_t>(in - bytes.data())};
}

struct Encoded {
  int result;
  std::string hex;
  std::size_t consumed;
  bool operator==(const Encoded&) const = default;
};

inline std::ostream& operator<<(std::ostream& os, const Encoded& e) {
  return os << "{" << e.result << ", \"" << e.hex << "\", " << e.consumed << "}";
}

inline Encoded Encode(BlockConverter_16_to_8& c, const std::u16string& text, long capacity = -1,
                      std::size_t room = 64) {
  std::vector<char> buf(room + 1);
  auto* in = reinterpret_cast<const unsigned short*>(text.data());
  char* out = buf.data();
  const int r = c.Convert(in, in + text.size(), out, buf.data() + room, capacity);
  return {r, Hex(buf.data(), out), static_cast<std::size_t>(in - reinterpret_cast<const unsigned short*>(text.data()))};
}

// One Finish call with room for `room` units or bytes (consumed is 0).
inline Decoded Finish(BlockConverter_8_to_16& c, std::size_t room = 4) {
  std::vector<unsigned short> buf(room + 1);
  unsigned short* out = buf.data();
  const int r = c.Finish(out, buf.data() + room);
  return {r, std::u16string(buf.data(), out), 0};
}

inline Encoded Finish(BlockConverter_16_to_8& c, std::size_t room = 4) {
  std::vector<char> buf(room + 1);
  char* out = buf.data();
  const int r = c.Finish(out, buf.data() + room);
  return {r, Hex(buf.data(), out), 0};
}

struct Scores {
  int score, tieBreaker;
};

// An encoding's detector over `text`, scanned in two parts split at `cut`.
inline Scores Detect(const ExternalEncoding* encoding, const std::string& text, std::size_t cut) {
  LinearAllocator arena(256, __FILE__, __LINE__);
  std::unique_ptr<ExternalEncodingDetector> d(encoding->CreateEncodingDetector(arena));
  const char* s = text.data();
  d->Scan(s, s, s + cut);
  d->Scan(s, s + cut, s + text.size());
  d->Finish(s, s + text.size());
  return {d->Score(), d->TieBreaker()};
}

}  // namespace codepage_test

#endif  // VARNICE_TESTS_CODEPAGES_CONVERTER_TEST_SUPPORT_H_
