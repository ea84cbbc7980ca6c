#include "varnice/stream/converting/converting_sources.h"

#include "varnice/encoding/block_converter.h"
#include "varnice/encoding/unicode_lib_behavior.h"

using varnice::internal::InsertedText;

namespace {

// One FillBuffer of a converting source, the same for all three directions:
//   1. deliver inserted output, then convert inserted input;
//   2. convert the input range by range; at its end, Finish once;
//   3. kConversionDone and kOutputFull end the fill, kInputUsedUp reads on;
//      any other result goes to `report`, which answers true when it handed a
//      problem to the behaviour (the handler may have inserted text, so start
//      again at step 1) and false for a result that is passed over.
// Returns the end of the output written to [out, limit).
template <class In, class Out, class Input, class Convert, class Finish, class Report>
Out* RunFill(Input& input, InsertedText<In>& insertedInput, InsertedText<Out>& insertedOutput,
             bool& finished, Out* out, Out* const limit, Convert convert, Finish finish, Report report) {
  for (;;) {
    if (insertedOutput.Exists() && !insertedOutput.CopyTo(out, limit)) return out;

    if (insertedInput.Exists()) {
      for (;;) {
        const In* in = insertedInput.Position();
        const In* const from = in;
        Out* const written = out;
        const int result = convert(in, insertedInput.End(), out, limit);
        insertedInput.ConsumeTo(in);
        if (result == kOutputFull) return out;
        // Problems inside replacement text are not reported again; a result
        // that made no progress would never end, so it ends the text too.
        if (result == kInputUsedUp || (in == from && out == written)) break;
      }
      insertedInput.Clear();
    }

    for (;;) {
      const In* begin = nullptr;
      const In* end = nullptr;
      const In* stop = nullptr;
      int result;
      if (input.GetBuffer(begin, end)) {
        stop = begin;
        result = convert(stop, end, out, limit);
        input.DoneWith(stop);
      } else {
        if (finished) return out;
        result = finish(out, limit);
        // A Finish short of room is asked again by the next fill.
        if (result != kOutputFull) finished = true;
      }
      if (result == kConversionDone || result == kOutputFull) return out;
      if (result == kInputUsedUp) continue;
      if (report(result, begin, stop, end, out)) {
        // A converter may still hold input behind a problem that its Finish
        // reported (ISO-2022 keeps a pending buffer), so Finish is asked again
        // once the behaviour has acted.
        if (begin == nullptr) finished = false;
        break;
      }
    }
  }
}

}  // namespace

// The stages take their input's behaviour in the constructor body rather than
// through the virtual base, so that classes derived from them do too.

// --- CharSource_8_to_16 -------------------------------------------------------

CharSource_8_to_16::CharSource_8_to_16(CharSource& input, const ExternalEncoding& from,
                                       BlockConverter_8_to_16* converter, const InternalEncoding& to)
    : input_(&input), from_(from), converter_(converter), to_(to) {
  UnicodeLibActor::SetBehavior(&input.Behavior());
  converter_->SetBehavior(&input.Behavior());
}

CharSource_8_to_16::~CharSource_8_to_16() { delete converter_; }

void CharSource_8_to_16::SetBehavior(UnicodeLibBehavior* behavior) {
  converter_->SetBehavior(behavior);
  UnicodeLibActor::SetBehavior(behavior);
}

const ExternalEncoding* CharSource_8_to_16::ActualInputEncoding() { return &from_; }

void CharSource_8_to_16::InsertInput(const char* begin, const char* end) { insertedInput_.Assign(begin, end); }

void CharSource_8_to_16::InsertOutput(const unsigned short* begin, const unsigned short* end) {
  insertedOutput_.Assign(begin, end);
}

bool CharSource_8_to_16::FillBuffer() {
  unsigned short* const start = buffer_;
  unsigned short* const end = RunFill(
      *input_, insertedInput_, insertedOutput_, finished_, start, start + kBufferUnits,
      [this](const char*& in, const char* inEnd, unsigned short*& out, const unsigned short* limit) {
        return converter_->Convert(in, inEnd, out, limit);
      },
      [this](unsigned short*& out, const unsigned short* limit) { return converter_->Finish(out, limit); },
      [this, start](int result, const char* b, const char* stop, const char* e, const unsigned short* out) {
        if (result == kIllegalInput) {
          IllegalByteRange problem{{from_, to_, *this, b, stop, e, start, out}};
          Behavior().HandleIllegalByteRange(problem);
          return true;
        }
        if (result == kNoCharacterDefined) {
          NoCharacterDefinedForCodepoint problem{{from_, to_, *this, b, stop, e, start, out}};
          Behavior().HandleNoCharacterDefinedForCodepoint(problem);
          return true;
        }
        return false;
      });
  position_ = start;
  end_ = end;
  return end != start;
}

// --- CharSource_16_to_8 -------------------------------------------------------

CharSource_16_to_8::CharSource_16_to_8(Char16Source& input, const InternalEncoding& from,
                                       BlockConverter_16_to_8* converter, const ExternalEncoding& to)
    : input_(&input), from_(from), converter_(converter), to_(to) {
  UnicodeLibActor::SetBehavior(&input.Behavior());
  converter_->SetBehavior(&input.Behavior());
}

CharSource_16_to_8::~CharSource_16_to_8() { delete converter_; }

void CharSource_16_to_8::SetBehavior(UnicodeLibBehavior* behavior) {
  converter_->SetBehavior(behavior);
  UnicodeLibActor::SetBehavior(behavior);
}

void CharSource_16_to_8::InsertInput(const unsigned short* begin, const unsigned short* end) {
  insertedInput_.Assign(begin, end);
}

void CharSource_16_to_8::InsertOutput(const char* begin, const char* end) { insertedOutput_.Assign(begin, end); }

bool CharSource_16_to_8::FillBuffer() {
  char* const start = buffer_;
  char* const end = RunFill(
      *input_, insertedInput_, insertedOutput_, finished_, start, start + kBufferBytes,
      [this](const unsigned short*& in, const unsigned short* inEnd, char*& out, const char* limit) {
        return converter_->Convert(in, inEnd, out, limit, -1);
      },
      [this](char*& out, const char* limit) { return converter_->Finish(out, limit); },
      [this, start](int result, const unsigned short* b, const unsigned short* stop, const unsigned short* e,
                    const char* out) {
        if (result != kNotInTargetRepertoire) return false;
        CharacterNotInRepertoire problem{{from_, to_, *this, b, stop, e, start, out}};
        Behavior().HandleCharacterNotInRepertoire(problem);
        return true;
      });
  position_ = start;
  end_ = end;
  return end != start;
}

// --- CharSource_16_to_16 ------------------------------------------------------

CharSource_16_to_16::CharSource_16_to_16(Char16Source& input, const InternalEncoding& from,
                                         BlockConverter_16_to_16* converter, const InternalEncoding& to)
    : input_(&input), from_(from), converter_(converter), to_(to) {
  UnicodeLibActor::SetBehavior(&input.Behavior());
  converter_->SetBehavior(&input.Behavior());
}

CharSource_16_to_16::~CharSource_16_to_16() { delete converter_; }

void CharSource_16_to_16::SetBehavior(UnicodeLibBehavior* behavior) {
  converter_->SetBehavior(behavior);
  UnicodeLibActor::SetBehavior(behavior);
}

void CharSource_16_to_16::InsertInput(const unsigned short* begin, const unsigned short* end) {
  insertedInput_.Assign(begin, end);
}

void CharSource_16_to_16::InsertOutput(const unsigned short* begin, const unsigned short* end) {
  insertedOutput_.Assign(begin, end);
}

bool CharSource_16_to_16::FillBuffer() {
  unsigned short* const start = buffer_;
  unsigned short* const end = RunFill(
      *input_, insertedInput_, insertedOutput_, finished_, start, start + kBufferUnits,
      [this](const unsigned short*& in, const unsigned short* inEnd, unsigned short*& out,
             const unsigned short* limit) { return converter_->Convert(in, inEnd, out, limit); },
      [this](unsigned short*& out, const unsigned short* limit) { return converter_->Finish(out, limit); },
      [](int, const unsigned short*, const unsigned short*, const unsigned short*, const unsigned short*) {
        return false;
      });
  position_ = start;
  end_ = end;
  return end != start;
}
