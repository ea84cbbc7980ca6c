// StrictDecoder: bytes to UTF-16 that accepts only well-formed text, beside
// the lenient converters that the encodings hand out (those keep reading old
// data the way it was always read).
//
// What strict means here:
// - Each maximal ill-formed subpart (the longest run of bytes that begins a
//   character but cannot be completed) is one problem, reported once.
// - A byte that could begin a character is never consumed by a broken one:
//   in "a\xC3\nb" the newline survives, in Shift_JIS "a\x82 b" the space does.
// - UTF-8 overlong forms, encoded surrogates and values above U+10FFFF are
//   ill-formed; UTF-16 lone surrogates are ill-formed; nothing ill-formed is
//   ever passed on as a code unit.
// - A character cut off by the end of the text is reported by Finish.
//
// The converter fits the block-converter contract: on a problem Convert
// returns kIllegalInput with the broken bytes consumed and the next byte not,
// so the caller reports it and calls again. ProblemOffset and ProblemLength
// say where the broken bytes were, counted from the start of the text (bytes
// held from earlier blocks included). Unlike the lenient converters it asks
// for room only for the character it is about to write.
//
// Readings: UTF-8, the two-byte forms in either order (the mark FE FF or FF FE
// is honoured at the start), every table-driven code page and ISO-2022-JP.
// Create returns null for the others.
#ifndef VARNICE_ENCODING_CATALOGUE_STRICT_DECODER_H_
#define VARNICE_ENCODING_CATALOGUE_STRICT_DECODER_H_

#include "varnice/encoding/block_converter.h"
#include "varnice/varnice_export.h"

class ExternalEncoding;
class MBCStoUnicodeTable;
class UnicodeLibAllocator;

class VARNICE_API StrictDecoder final : public BlockConverter_8_to_16 {
 public:
  enum ProblemKind { kNoProblem = 0, kIllFormed = 1, kIncomplete = 2 };

  // A strict reader of the encoding placed with the allocator (the caller
  // deletes it), or null when there is none for it.
  static StrictDecoder* Create(const ExternalEncoding& encoding, UnicodeLibAllocator& allocator);
  // Whether Create gives a decoder for the encoding.
  static bool CanRead(const ExternalEncoding& encoding);

  ~StrictDecoder() override;

  int Convert(const char*& in, const char* inEnd, unsigned short*& out, const unsigned short* outEnd) override;
  // kIllegalInput once when the text ended inside a character (the problem's
  // kind is then kIncomplete), else kConversionDone. Writes nothing.
  int Finish(unsigned short*& out, const unsigned short* outEnd) override;
  void Reset() override;

  // The last problem reported, where its bytes begin and how many there are.
  ProblemKind Problem() const { return problem_; }
  long long ProblemOffset() const { return problemOffset_; }
  int ProblemLength() const { return problemLength_; }
  // Bytes consumed since the start of the text.
  long long Consumed() const { return state_.consumed; }

  // Everything the decoder carries between calls, so that a caller can read
  // a stretch again from where it began.
  struct State {
    long long consumed = 0;
    unsigned long value = 0;     // bits of the character being read
    unsigned short machine = 0;  // table state, or bytes still expected
    unsigned char lower = 0x80;  // UTF-8: the range the next byte must be in
    unsigned char upper = 0xBF;
    unsigned char held = 0;      // bytes of the unfinished character
    unsigned char escape = 0;    // ISO-2022: bytes of an escape read so far
    unsigned char mode = 0;      // ISO-2022: the set in force
    bool bigEndian = false;      // two-byte forms: the order in force
    bool atStart = true;
    unsigned short high = 0;     // two-byte forms: a high surrogate waiting
  };
  State Save() const { return state_; }
  void Restore(const State& s) { state_ = s; }

 private:
  enum Form { kUTF8, kUTF16, kTable, kISO2022 };
  struct Escape {
    unsigned char bytes[3];
  };
  static constexpr int kMaxSets = 4;

  StrictDecoder(Form form, bool bigEndian);

  int ConvertUTF8(const unsigned char*& in, const unsigned char* inEnd, unsigned short*& out,
                  const unsigned short* outEnd);
  int ConvertUTF16(const unsigned char*& in, const unsigned char* inEnd, unsigned short*& out,
                   const unsigned short* outEnd);
  int ConvertTable(const MBCStoUnicodeTable& table, bool sevenBit, const unsigned char*& in,
                   const unsigned char* inEnd, unsigned short*& out, const unsigned short* outEnd);
  int ConvertISO2022(const unsigned char*& in, const unsigned char* inEnd, unsigned short*& out,
                     const unsigned short* outEnd);
  // Records a problem of `length` bytes and clears the character in progress.
  int Broken(ProblemKind kind, int length);

  Form form_;
  bool initialBigEndian_;
  const MBCStoUnicodeTable* table_ = nullptr;
  const MBCStoUnicodeTable* sets_[kMaxSets] = {};
  Escape escapes_[kMaxSets] = {};
  int setCount_ = 0;
  State state_;
  ProblemKind problem_ = kNoProblem;
  int pendingLength_ = 0;  // length of the problem Convert is about to report
  int pendingTrail_ = 0;   // bytes read past it that stay held for the next character
  long long problemOffset_ = -1;
  int problemLength_ = 0;
};

#endif  // VARNICE_ENCODING_CATALOGUE_STRICT_DECODER_H_
