// SampleUnicodeSource: a Char16Source of generated sample text.
//
// Two kinds of text:
// - a repertoire: every assigned character of a range that passes a test
//   (a script, a category, a classification, an encoding's repertoire ...),
//   each once, in code order;
// - pseudo-random text: characters drawn from the repertoires of a mix of
//   tests, each test as likely as the others, in words of 1 to 8 characters
//   separated by spaces and, now and then, line feeds. The same seed gives
//   the same text on every platform.
//
// Characters are those of the library's character data (AnyDefinedCharacter,
// and the controls when a test accepts them) other than U+0000, the
// surrogates, U+FEFF and the noncharacters, so every unit stands alone as a
// character. A `within` test, when given, narrows
// every repertoire further (for instance to what an encoding can write).
#ifndef VARNICE_SAMPLE_SAMPLE_UNICODE_SOURCE_H_
#define VARNICE_SAMPLE_SAMPLE_UNICODE_SOURCE_H_

#include <cstdint>
#include <vector>

#include "varnice/stream/char16_source.h"
#include "varnice/varnice_export.h"

class CharacterTest;

class VARNICE_API SampleUnicodeSource : public virtual Char16Source {
 public:
  // The repertoire of `test` (null: every character) between first and last.
  explicit SampleUnicodeSource(const CharacterTest* test, unsigned short first = 0,
                               unsigned short last = 0xFFFF, const CharacterTest* within = nullptr);
  // `length` code units of random text from the `count` tests at `mix`
  // (null tests stand for every character). Tests with an empty repertoire
  // are left out of the mix; when all are empty the text is empty. Spaces
  // and line feeds are used only when `within` accepts them.
  SampleUnicodeSource(const CharacterTest* const* mix, unsigned int count, unsigned long length,
                      std::uint64_t seed, const CharacterTest* within = nullptr);
  ~SampleUnicodeSource() override;

  bool FillBuffer() override;

  // The characters the text is drawn from, in code order (for random text,
  // those of all the tests of the mix together, each once).
  const std::vector<unsigned short>& Repertoire() const { return all_; }

  // The next character and the units left, for readers that pace the text
  // one character at a time; 0 at the end. The same sequence FillBuffer lends.
  unsigned short Next();

 private:
  std::uint64_t Random();

  std::vector<std::vector<unsigned short>> pools_;  // one per test of a mix
  std::vector<unsigned short> all_;
  bool random_ = false;
  unsigned long left_ = 0;       // random text: units still to come
  std::size_t next_index_ = 0;  // repertoire: next position
  std::uint64_t state_ = 0;
  unsigned int word_left_ = 0;
  unsigned int words_on_line_ = 0;
  bool space_ok_ = false;
  bool newline_ok_ = false;
  unsigned short buffer_[256];
};

#endif  // VARNICE_SAMPLE_SAMPLE_UNICODE_SOURCE_H_
