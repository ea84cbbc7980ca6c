// Conversion problems: the records a converting stage fills when its block
// converter meets input it cannot convert, and the solver interfaces through
// which the behaviour answers (write a substitute, or convert a replacement
// text in place of the offending input).
//
// Records are plain data; the stage that fills them decides what the five
// positions hold (see the converting streams).
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
  const char* inputBlockBegin;  // start of the current input block
  const char* problemBegin;     // first byte of the offending input
  const char* problemEnd;       // one past the offending input
  const unsigned short* outputBlockBegin;
  const unsigned short* outputEnd;  // output written so far in this block

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
  const unsigned short* inputBlockBegin;
  const unsigned short* problemBegin;
  const unsigned short* problemEnd;
  const char* outputBlockBegin;
  const char* outputEnd;

  void InsertInput(const unsigned short* begin, const unsigned short* end) {
    solver.InsertInput(begin, end);
  }
  void InsertOutput(const char* begin, const char* end) { solver.InsertOutput(begin, end); }
};

// A character the target encoding cannot represent.
struct VARNICE_API CharacterNotInRepertoire : InternalToExternalConversionProblem {};

#endif  // VARNICE_ENCODING_CONVERSION_PROBLEM_H_
