#include "varnice/stream/converting/converting_sinks.h"

#include <cstring>

#include "varnice/encoding/block_converter.h"
#include "varnice/encoding/unicode_lib_behavior.h"

namespace {

const unsigned short* EndOf(const unsigned short* text) {
  while (*text != 0) ++text;
  return text;
}

}  // namespace

// --- CharSink_8_to_16 ---------------------------------------------------------

CharSink_8_to_16::CharSink_8_to_16(const ExternalEncoding& from, BlockConverter_8_to_16* converter,
                                   const InternalEncoding& to, Char16Sink& output)
    : CharSink(&output), from_(from), converter_(converter), to_(to), output_(output) {
  UnicodeLibActor::SetBehavior(&output.Behavior());
  converter_->SetBehavior(&output.Behavior());
}

CharSink_8_to_16::~CharSink_8_to_16() { delete converter_; }

void CharSink_8_to_16::SetBehavior(UnicodeLibBehavior* behavior) {
  converter_->SetBehavior(behavior);
  UnicodeLibActor::SetBehavior(behavior);
}

void CharSink_8_to_16::Flush() { output_.Flush(); }

void CharSink_8_to_16::PutBuffer(const char* begin, const char* end) {
  InternalPut(begin, end != nullptr ? end : begin + std::strlen(begin), true);
}

void CharSink_8_to_16::InsertInput(const char* begin, const char* end) {
  InternalPut(begin, end != nullptr ? end : begin + std::strlen(begin), false);
}

void CharSink_8_to_16::InsertOutput(const unsigned short* begin, const unsigned short* end) {
  output_.PutBuffer(begin, end != nullptr ? end : EndOf(begin));
}

void CharSink_8_to_16::InternalPut(const char* begin, const char* end, bool reportProblems) {
  unsigned short buffer[kBufferUnits];
  for (;;) {
    const char* const blockBegin = begin;
    unsigned short* out = buffer;
    const int result = converter_->Convert(begin, end, out, buffer + kBufferUnits);
    if (out != buffer) output_.PutBuffer(buffer, out);
    if (result == kConversionDone || result == kInputUsedUp) return;
    if (!reportProblems) continue;
    if (result == kIllegalInput) {
      IllegalByteRange problem{{from_, to_, *this, blockBegin, begin, end, buffer, out}};
      Behavior().HandleIllegalByteRange(problem);
    } else if (result == kNoCharacterDefined) {
      NoCharacterDefinedForCodepoint problem{{from_, to_, *this, blockBegin, begin, end, buffer, out}};
      Behavior().HandleNoCharacterDefinedForCodepoint(problem);
    }
  }
}

// --- CharSink_16_to_8 ---------------------------------------------------------

CharSink_16_to_8::CharSink_16_to_8(const InternalEncoding& from, BlockConverter_16_to_8* converter,
                                   const ExternalEncoding& to, CharSink& output)
    : Char16Sink(&output), from_(from), converter_(converter), to_(to), output_(output) {
  UnicodeLibActor::SetBehavior(&output.Behavior());
  converter_->SetBehavior(&output.Behavior());
}

CharSink_16_to_8::~CharSink_16_to_8() { delete converter_; }

void CharSink_16_to_8::SetBehavior(UnicodeLibBehavior* behavior) {
  converter_->SetBehavior(behavior);
  UnicodeLibActor::SetBehavior(behavior);
}

// A flush ends the text written so far: the converter writes what returns it
// to its initial state (a UTF-7 run is closed, an ISO-2022 text switches back
// to its first set), so the output is complete at every flush.
void CharSink_16_to_8::Flush() {
  if (!converter_->CapacityWasReached()) {
    char buffer[kBufferBytes];
    char* out = buffer;
    converter_->Finish(out, buffer + kBufferBytes);
    if (out != buffer) output_.PutBuffer(buffer, out);
  }
  output_.Flush();
}

void CharSink_16_to_8::PutBuffer(const unsigned short* begin, const unsigned short* end) {
  InternalPut(begin, end != nullptr ? end : EndOf(begin), true);
}

void CharSink_16_to_8::InsertInput(const unsigned short* begin, const unsigned short* end) {
  InternalPut(begin, end != nullptr ? end : EndOf(begin), false);
}

void CharSink_16_to_8::InsertOutput(const char* begin, const char* end) {
  output_.PutBuffer(begin, end != nullptr ? end : begin + std::strlen(begin));
}

void CharSink_16_to_8::InternalPut(const unsigned short* begin, const unsigned short* end, bool reportProblems) {
  char buffer[kBufferBytes];
  for (;;) {
    const unsigned short* const blockBegin = begin;
    char* out = buffer;
    const long capacity = output_.RemainingCapacity();
    const int result = converter_->Convert(begin, end, out, buffer + kBufferBytes, capacity);
    if (out != buffer) output_.PutBuffer(buffer, out);
    if (result == kConversionDone || result == kInputUsedUp) return;
    if (result == kCapacityReached) {
      output_.MarkAsTruncated();
      return;
    }
    if (result == kNotInTargetRepertoire && reportProblems) {
      CharacterNotInRepertoire problem{{from_, to_, *this, blockBegin, begin, end, buffer, out}};
      Behavior().HandleCharacterNotInRepertoire(problem);
    }
  }
}

// --- CharSink_16_to_16 --------------------------------------------------------

CharSink_16_to_16::CharSink_16_to_16(const InternalEncoding& from, BlockConverter_16_to_16* converter,
                                     const InternalEncoding& to, Char16Sink& output)
    : Char16Sink(&output), from_(from), converter_(converter), to_(to), output_(output) {
  UnicodeLibActor::SetBehavior(&output.Behavior());
  converter_->SetBehavior(&output.Behavior());
}

CharSink_16_to_16::~CharSink_16_to_16() { delete converter_; }

void CharSink_16_to_16::SetBehavior(UnicodeLibBehavior* behavior) {
  converter_->SetBehavior(behavior);
  UnicodeLibActor::SetBehavior(behavior);
}

void CharSink_16_to_16::Flush() { output_.Flush(); }

void CharSink_16_to_16::PutBuffer(const unsigned short* begin, const unsigned short* end) {
  if (begin == nullptr) return;  // an empty range, as an empty vector's data() gives
  if (end == nullptr) end = EndOf(begin);
  unsigned short buffer[kBufferUnits];
  for (;;) {
    unsigned short* out = buffer;
    const int result = converter_->Convert(begin, end, out, buffer + kBufferUnits);
    if (out != buffer) output_.PutBuffer(buffer, out);
    if (result == kConversionDone || result == kInputUsedUp) return;
  }
}

void CharSink_16_to_16::InsertInput(const unsigned short* begin, const unsigned short* end) {
  PutBuffer(begin, end);
}

void CharSink_16_to_16::InsertOutput(const unsigned short* begin, const unsigned short* end) {
  output_.PutBuffer(begin, end != nullptr ? end : EndOf(begin));
}
