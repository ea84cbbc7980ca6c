// Conversion problems: the records a converting stage fills when its block
// converter meets input it cannot convert, and the solver interfaces through
// which the behaviour answers (write a substitute, or convert a replacement
// text in place of the offending input).
//
// Records are plain data. The converting stream that fills one sets the five
// positions as follows (converting_sources.h, converting_sinks.h):
//   inputBegin   start of the input range the block converter was given
//   inputStop    just past the offending input, where conversion resumes
//   inputEnd     end of that input range
//   outputBegin  start of the output produced in the current block
//   outputEnd    end of that output: the point of the problem
// A behaviour normally needs none of them: it passes text to InsertInput or
// InsertOutput, which lands at the point of the problem.
#ifndef VARNICE_ENCODING_CONVERSION_PROBLEM_H_
#define VARNICE_ENCODING_CONVERSION_PROBLEM_H_

#include "varnice/varnice_export.h"

class ExternalEncoding;
class InternalEncoding;

// Null `end` pointers below mean "up to the terminating NUL".
class VARNICE_API ProblemSolver_8_to_16 {
 public:
  virtual void InsertInput(const char* begin, const char* end) = 0;
  virtual void InsertOutput(const unsigned short* begin, const unsigned short* end) = 0;

 protected:
  ~ProblemSolver_8_to_16() = default;
};

class VARNICE_API ProblemSolver_16_to_8 {
 public:
  virtual void InsertInput(const unsigned short* begin, const unsigned short* end) = 0;
  virtual void InsertOutput(const char* begin, const char* end) = 0;

 protected:
  ~ProblemSolver_16_to_8() = default;
};

class VARNICE_API ProblemSolver_16_to_16 {
 public:
  virtual void InsertInput(const unsigned short* begin, const unsigned short* end) = 0;
  virtual void InsertOutput(const unsigned short* begin, const unsigned short* end) = 0;

 protected:
  ~ProblemSolver_16_to_16() = default;
};

// Bytes to Unicode.
struct VARNICE_API ExternalToInternalConversionProblem {
  const ExternalEncoding& source;
  const InternalEncoding& target;
  ProblemSolver_8_to_16& solver;
  const char* inputBegin;
  const char* inputStop;
  const char* inputEnd;
  const unsigned short* outputBegin;
  const unsigned short* outputEnd;

  void InsertInput(const char* begin, const char* end) { solver.InsertInput(begin, end); }
  void InsertOutput(const unsigned short* begin, const unsigned short* end) {
    solver.InsertOutput(begin, end);
  }
};

// A byte sequence that is malformed in the source encoding.
struct VARNICE_API IllegalByteRange : ExternalToInternalConversionProblem {};

// A well-formed code of the source encoding that maps to no Unicode character.
struct VARNICE_API NoCharacterDefinedForCodepoint : ExternalToInternalConversionProblem {};

// Unicode to bytes.
struct VARNICE_API InternalToExternalConversionProblem {
  const InternalEncoding& source;
  const ExternalEncoding& target;
  ProblemSolver_16_to_8& solver;
  const unsigned short* inputBegin;
  const unsigned short* inputStop;
  const unsigned short* inputEnd;
  const char* outputBegin;
  const char* outputEnd;

  void InsertInput(const unsigned short* begin, const unsigned short* end) {
    solver.InsertInput(begin, end);
  }
  void InsertOutput(const char* begin, const char* end) { solver.InsertOutput(begin, end); }
};

// A character the target encoding cannot represent.
struct VARNICE_API CharacterNotInRepertoire : InternalToExternalConversionProblem {};

#endif  // VARNICE_ENCODING_CONVERSION_PROBLEM_H_
