// Converting sinks: a stream stage that accepts text, converts it with a block
// converter through a local buffer of 1024 bytes, and pushes the result into
// an output sink. The output sink therefore never receives more than 1024
// bytes in one PutBuffer.
//
// Problems are reported to the behaviour with the positions described in
// converting_sources.h, except that the output range is what this call had
// produced, already handed to the output sink. On a sink, InsertOutput puts
// text straight into the output sink (which is exactly the point of the
// problem) and InsertInput converts text at once, reporting no problems in it.
//
// Each sink owns its converter; the output sink is not owned. Flush forwards
// to the output sink.
#ifndef VARNICE_STREAM_CONVERTING_CONVERTING_SINKS_H_
#define VARNICE_STREAM_CONVERTING_CONVERTING_SINKS_H_

#include "varnice/encoding/conversion_problem.h"
#include "varnice/stream/char16_sink.h"
#include "varnice/stream/char_sink.h"
#include "varnice/varnice_export.h"

class BlockConverter_8_to_16;
class BlockConverter_16_to_8;
class BlockConverter_16_to_16;
class ExternalEncoding;
class InternalEncoding;

// Bytes of an external encoding in, UTF-16 out. kIllegalInput and
// kNoCharacterDefined are reported; conversion goes on after them either way.
class VARNICE_API CharSink_8_to_16 : public CharSink, public ProblemSolver_8_to_16 {
 public:
  static constexpr int kBufferUnits = 512;

  // Takes the output sink's behaviour and gives it to the converter too.
  CharSink_8_to_16(const ExternalEncoding& from, BlockConverter_8_to_16* converter, const InternalEncoding& to,
                   Char16Sink& output);
  ~CharSink_8_to_16() override;

  void SetBehavior(UnicodeLibBehavior* behavior) override;
  void Flush() override;
  // A null end means NUL-terminated text.
  void PutBuffer(const char* begin, const char* end) override;

  void InsertInput(const char* begin, const char* end) override;
  void InsertOutput(const unsigned short* begin, const unsigned short* end) override;

 protected:
  void InternalPut(const char* begin, const char* end, bool reportProblems);

 private:
  const ExternalEncoding& from_;
  BlockConverter_8_to_16* converter_;
  const InternalEncoding& to_;
  Char16Sink& output_;
};

// UTF-16 in, bytes of an external encoding out. Before each block the output
// sink's RemainingCapacity becomes the converter's byte budget; when the
// budget runs out (kCapacityReached) the output sink is marked truncated and
// the rest of the input is dropped, so a bounded sink ends on a whole
// character. kNotInTargetRepertoire is reported; kIllegalInput,
// kNoCharacterDefined and kIllegalUTF16 are passed over.
class VARNICE_API CharSink_16_to_8 : public Char16Sink, public ProblemSolver_16_to_8 {
 public:
  static constexpr int kBufferBytes = 1024;

  CharSink_16_to_8(const InternalEncoding& from, BlockConverter_16_to_8* converter, const ExternalEncoding& to,
                   CharSink& output);
  ~CharSink_16_to_8() override;

  void SetBehavior(UnicodeLibBehavior* behavior) override;
  void Flush() override;
  void PutBuffer(const unsigned short* begin, const unsigned short* end) override;

  void InsertInput(const unsigned short* begin, const unsigned short* end) override;
  void InsertOutput(const char* begin, const char* end) override;

 protected:
  void InternalPut(const unsigned short* begin, const unsigned short* end, bool reportProblems);

 private:
  const InternalEncoding& from_;
  BlockConverter_16_to_8* converter_;
  const ExternalEncoding& to_;
  CharSink& output_;
};

// UTF-16 of one internal encoding in, another out; nothing to report.
class VARNICE_API CharSink_16_to_16 : public Char16Sink, public ProblemSolver_16_to_16 {
 public:
  static constexpr int kBufferUnits = 512;

  CharSink_16_to_16(const InternalEncoding& from, BlockConverter_16_to_16* converter, const InternalEncoding& to,
                    Char16Sink& output);
  ~CharSink_16_to_16() override;

  void SetBehavior(UnicodeLibBehavior* behavior) override;
  void Flush() override;
  void PutBuffer(const unsigned short* begin, const unsigned short* end) override;

  void InsertInput(const unsigned short* begin, const unsigned short* end) override;
  void InsertOutput(const unsigned short* begin, const unsigned short* end) override;

 private:
  const InternalEncoding& from_;
  BlockConverter_16_to_16* converter_;
  const InternalEncoding& to_;
  Char16Sink& output_;
};

#endif  // VARNICE_STREAM_CONVERTING_CONVERTING_SINKS_H_
