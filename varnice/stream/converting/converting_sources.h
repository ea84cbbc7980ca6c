// Converting sources: a stream stage that pulls text from an input source,
// converts it with a block converter and lends the result from a buffer of
// its own (1024 bytes). Each FillBuffer calls the converter once per input
// range, never once per character.
//
// When the converter reports a problem, the source describes it to its
// behaviour in a problem record whose five positions are:
//   inputBegin   start of the input range the converter was given
//   inputStop    just past the offending input, where conversion resumes
//   inputEnd     end of that input range
//   outputBegin  start of this fill's output buffer
//   outputEnd    end of the output written so far: the point of the problem
// (all null for a problem reported at the end of the text). The behaviour
// answers through the source's solver face: InsertOutput text is delivered
// exactly at outputEnd, InsertInput text is converted before the rest of the
// input; an exception leaves FillBuffer and the reader's GetBuffer.
//
// Each source owns its converter and deletes it; the input is not owned.
#ifndef VARNICE_STREAM_CONVERTING_CONVERTING_SOURCES_H_
#define VARNICE_STREAM_CONVERTING_CONVERTING_SOURCES_H_

#include "varnice/encoding/conversion_problem.h"
#include "varnice/encoding/external_encoding.h"
#include "varnice/stream/char16_source.h"
#include "varnice/stream/char_source.h"
#include "varnice/stream/converting/inserted_text.h"
#include "varnice/varnice_export.h"

class BlockConverter_8_to_16;
class BlockConverter_16_to_8;
class BlockConverter_16_to_16;
class InternalEncoding;

// Bytes of an external encoding to UTF-16. kIllegalInput and
// kNoCharacterDefined become IllegalByteRange and
// NoCharacterDefinedForCodepoint problems.
class VARNICE_API CharSource_8_to_16 : public ExternalEncoding::ToUnicodeSource,
                                       public ProblemSolver_8_to_16 {
 public:
  static constexpr int kBufferUnits = 512;

  // Takes the input's behaviour and gives it to the converter too.
  CharSource_8_to_16(CharSource& input, const ExternalEncoding& from, BlockConverter_8_to_16* converter,
                     const InternalEncoding& to);
  ~CharSource_8_to_16() override;

  // The converter's, then this source's.
  void SetBehavior(UnicodeLibBehavior* behavior) override;
  bool FillBuffer() override;
  const ExternalEncoding* ActualInputEncoding() override;

  void InsertInput(const char* begin, const char* end) override;
  void InsertOutput(const unsigned short* begin, const unsigned short* end) override;

 private:
  CharSource* input_;
  const ExternalEncoding& from_;
  BlockConverter_8_to_16* converter_;
  const InternalEncoding& to_;
  varnice::internal::InsertedText<char> insertedInput_;
  varnice::internal::InsertedText<unsigned short> insertedOutput_;
  unsigned short buffer_[kBufferUnits];
  bool finished_ = false;  // the converter's Finish has run
};

// UTF-16 to bytes of an external encoding, with no byte budget.
// kNotInTargetRepertoire becomes a CharacterNotInRepertoire problem; the
// other problem results are passed over.
class VARNICE_API CharSource_16_to_8 : public virtual CharSource, public ProblemSolver_16_to_8 {
 public:
  static constexpr int kBufferBytes = 1024;

  CharSource_16_to_8(Char16Source& input, const InternalEncoding& from, BlockConverter_16_to_8* converter,
                     const ExternalEncoding& to);
  ~CharSource_16_to_8() override;

  void SetBehavior(UnicodeLibBehavior* behavior) override;
  bool FillBuffer() override;

  void InsertInput(const unsigned short* begin, const unsigned short* end) override;
  void InsertOutput(const char* begin, const char* end) override;

 private:
  Char16Source* input_;
  const InternalEncoding& from_;
  BlockConverter_16_to_8* converter_;
  const ExternalEncoding& to_;
  varnice::internal::InsertedText<unsigned short> insertedInput_;
  varnice::internal::InsertedText<char> insertedOutput_;
  char buffer_[kBufferBytes];
  bool finished_ = false;
};

// UTF-16 of one internal encoding to another. These converters have nothing
// they cannot convert, so no problem is reported; the solver face still
// accepts inserted text.
class VARNICE_API CharSource_16_to_16 : public virtual Char16Source, public ProblemSolver_16_to_16 {
 public:
  static constexpr int kBufferUnits = 512;

  CharSource_16_to_16(Char16Source& input, const InternalEncoding& from, BlockConverter_16_to_16* converter,
                      const InternalEncoding& to);
  ~CharSource_16_to_16() override;

  void SetBehavior(UnicodeLibBehavior* behavior) override;
  bool FillBuffer() override;

  void InsertInput(const unsigned short* begin, const unsigned short* end) override;
  void InsertOutput(const unsigned short* begin, const unsigned short* end) override;

 private:
  Char16Source* input_;
  const InternalEncoding& from_;
  BlockConverter_16_to_16* converter_;
  const InternalEncoding& to_;
  varnice::internal::InsertedText<unsigned short> insertedInput_;
  varnice::internal::InsertedText<unsigned short> insertedOutput_;
  unsigned short buffer_[kBufferUnits];
  bool finished_ = false;
};

#endif  // VARNICE_STREAM_CONVERTING_CONVERTING_SOURCES_H_
