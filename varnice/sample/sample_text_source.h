// SampleTextSource: a CharSource of generated sample text in an external
// encoding, made only of characters the encoding writes and reads back
// unchanged (its EncodingRepertoire), so the bytes decode to exactly the text
// they were made from (Text()).
//
// Either the repertoire itself, in code order, narrowed by a test; or
// pseudo-random text (see SampleUnicodeSource) of a given size in bytes.
#ifndef VARNICE_SAMPLE_SAMPLE_TEXT_SOURCE_H_
#define VARNICE_SAMPLE_SAMPLE_TEXT_SOURCE_H_

#include <cstdint>
#include <vector>

#include "varnice/encoding/encodingconverter/encoding_converter.h"
#include "varnice/sample/encoding_repertoire.h"
#include "varnice/sample/sample_unicode_source.h"
#include "varnice/stream/char_source.h"
#include "varnice/varnice_export.h"

class VARNICE_API SampleTextSource : public virtual CharSource {
 public:
  // Every character of the repertoire that passes `test` (null: all).
  // Throws InvalidOutputEncoding for an encoding that cannot write.
  explicit SampleTextSource(const ExternalEncoding& encoding, const CharacterTest* test = nullptr);
  // Random text from the `count` tests at `mix` (see SampleUnicodeSource)
  // of at most about `bytes` bytes: characters are added while their lengths
  // in the encoding, each counted as it adds to a run of itself, fit in
  // `bytes`. Shifts between character sets (the escapes of ISO-2022, the
  // shifts of UTF-7) come on top.
  SampleTextSource(const ExternalEncoding& encoding, const CharacterTest* const* mix,
                   unsigned int count, unsigned long bytes, std::uint64_t seed);
  ~SampleTextSource() override;

  bool FillBuffer() override;

  const EncodingRepertoire& Repertoire() const { return repertoire_; }
  // The characters the sample is drawn from.
  const std::vector<unsigned short>& Characters() const { return unicode_.Repertoire(); }
  // The text the bytes encode, so far: every unit handed to the encoder.
  const std::vector<unsigned short>& Text() const { return text_; }

 private:
  // The characters, paced by the byte budget and recorded in text_.
  class PacedSource : public Char16Source {
   public:
    explicit PacedSource(SampleTextSource& owner);
    bool FillBuffer() override;

   private:
    SampleTextSource& owner_;
    unsigned short buffer_[256];
  };

  unsigned long CostOf(unsigned short c);

  EncodingRepertoire repertoire_;
  SampleUnicodeSource unicode_;
  bool budgeted_;
  unsigned long budget_;
  std::vector<unsigned char> costs_;  // per unit, 0: not yet measured
  std::vector<unsigned short> text_;
  PacedSource paced_;
  ExternalEncodingConverter converter_;
};

#endif  // VARNICE_SAMPLE_SAMPLE_TEXT_SOURCE_H_
