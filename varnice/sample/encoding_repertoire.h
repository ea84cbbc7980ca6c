// EncodingRepertoire: the characters an external encoding writes and reads
// back unchanged, as a character test. Worked out once, when constructed, by
// converting every assigned character (controls included) of the Basic
// Multilingual Plane there and back in one run (a few milliseconds), the
// controls and U+FFFD once more alone; held as a bit per code unit.
//
// Left out whatever the encoding does not give back unchanged: characters it
// lacks (written as its substitute), one-way mappings, and also U+0000, the
// surrogates, U+FEFF (read as a byte-order mark by some encodings) and the
// noncharacters U+FFFE and U+FFFF.
#ifndef VARNICE_SAMPLE_ENCODING_REPERTOIRE_H_
#define VARNICE_SAMPLE_ENCODING_REPERTOIRE_H_

#include <cstdint>

#include "varnice/charprops/types/character_test.h"
#include "varnice/varnice_export.h"

class ExternalEncoding;

class VARNICE_API EncodingRepertoire : public CharacterTest {
 public:
  // Throws InvalidOutputEncoding for an encoding that cannot write (one that
  // detects its input).
  explicit EncodingRepertoire(const ExternalEncoding& encoding);

  bool Test(unsigned long c) const override;
  // The number of characters in the repertoire.
  unsigned int Size() const { return size_; }
  const ExternalEncoding& Encoding() const { return encoding_; }

 private:
  void Check(const unsigned short* begin, const unsigned short* end);

  const ExternalEncoding& encoding_;
  std::uint32_t bits_[0x10000 / 32] = {};
  unsigned int size_ = 0;
};

#endif  // VARNICE_SAMPLE_ENCODING_REPERTOIRE_H_
