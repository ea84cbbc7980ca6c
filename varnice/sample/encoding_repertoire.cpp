#include "varnice/sample/encoding_repertoire.h"

#include <vector>

#include "varnice/charprops/character_property.h"
#include "varnice/encoding/external_encoding.h"
#include "varnice/widec/qz_string.h"
#include "varnice/widec/qz_wstring.h"
#include "varnice/widec/utf16_units.h"

EncodingRepertoire::EncodingRepertoire(const ExternalEncoding& encoding) : encoding_(encoding) {
  std::vector<unsigned short> candidates;
  for (unsigned long c = 1; c < 0xFFFE; ++c) {
    const bool surrogate = varnice::internal::IsSurrogate(c);
    if (!surrogate && c != 0xFEFF && (AnyDefinedCharacter->Test(c) || ControlCharacter->Test(c))) {
      candidates.push_back(static_cast<unsigned short>(c));
    }
  }
  Check(candidates.data(), candidates.data() + candidates.size());
  // A control can change how what follows it is read (an ESC in ISO-2022), so
  // within a long run it may line up by chance: it must also survive alone
  // between spaces. U+FFFD comes back from anything undecodable, so it must
  // moreover not be written as the noncharacter U+FFFE is (a substitute).
  const unsigned short substituted[3] = {' ', 0xFFFE, ' '};
  const qz_string substitute(substituted, 3, encoding_);
  for (unsigned long c = 1; c <= 0xFFFD; c = c == 0x9F ? 0xFFFD : c + 1) {
    if (!Test(c)) continue;
    const unsigned short text[3] = {' ', static_cast<unsigned short>(c), ' '};
    const qz_string bytes(text, 3, encoding_);
    const qz_wstring back(bytes.data(), bytes.size(), encoding_);
    if (back.size() != 3 || back[0] != text[0] || back[1] != text[1] || back[2] != text[2] ||
        (c == 0xFFFD && bytes == substitute)) {
      bits_[c >> 5] &= ~(std::uint32_t{1} << (c & 31));
      --size_;
    }
  }
}

// Converts the run there and back in one go. When as many units come back as
// went out, each position tells whether its character survived; otherwise
// (a character written as more than one, or read back as several) the two
// halves are tried apart, down to single characters.
void EncodingRepertoire::Check(const unsigned short* begin, const unsigned short* end) {
  if (begin == end) return;
  const auto n = static_cast<qz_string::size_type>(end - begin);
  const qz_string bytes(begin, n, encoding_);
  const qz_wstring back(bytes.data(), bytes.size(), encoding_);
  if (back.size() == n) {
    for (qz_string::size_type i = 0; i < n; ++i) {
      if (back[i] == begin[i]) {
        bits_[begin[i] >> 5] |= std::uint32_t{1} << (begin[i] & 31);
        ++size_;
      }
    }
    return;
  }
  if (n == 1) return;
  Check(begin, begin + n / 2);
  Check(begin + n / 2, end);
}

bool EncodingRepertoire::Test(unsigned long c) const {
  return c <= 0xFFFF && (bits_[c >> 5] >> (c & 31) & 1) != 0;
}
