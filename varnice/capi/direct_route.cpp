#include "varnice/capi/direct_route.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <type_traits>
#include <typeinfo>

#include "varnice/capi/call_arena.h"
#include "varnice/codepages/iso2022_encoding.h"
#include "varnice/codepages/mbcs_encoding.h"
#include "varnice/codepages/mbcs_engine.h"
#include "varnice/encoding/block_converter.h"
#include "varnice/encoding/internal_encoding.h"
#include "varnice/encoding/unicode_lib_behavior.h"
#include "varnice/stream/converting/inserted_text.h"
#include "varnice/unicodeforms/utf8.h"

namespace varnice::internal {

namespace {

// Room for any of the routes' converters (ISO-2022-JP's, with its read-ahead
// buffer and four subconverters, is the largest).
using Arena = CallArena<2048>;

// The last units or bytes before the end of the room are converted here,
// where a converter that asks for room for a longer character than the next
// one still finds it.
constexpr int kSpill = 32;

template <class T>
const T* EndOfText(const T* p) {
  while (*p != 0) ++p;
  return p;
}

// A converter of a known class is called without virtual dispatch, so that
// its loop is compiled into the route's; one known only by its base is
// called through it.
template <class Converter>
int Convert(Converter& c, const char*& in, const char* inEnd, unsigned short*& out, const unsigned short* outEnd) {
  if constexpr (std::is_abstract_v<Converter>) return c.Convert(in, inEnd, out, outEnd);
  else return c.Converter::Convert(in, inEnd, out, outEnd);
}
template <class Converter>
int Finish(Converter& c, unsigned short*& out, const unsigned short* outEnd) {
  if constexpr (std::is_abstract_v<Converter>) return c.Finish(out, outEnd);
  else return c.Converter::Finish(out, outEnd);
}
template <class Converter>
int Convert(Converter& c, const unsigned short*& in, const unsigned short* inEnd, char*& out, const char* outEnd,
            long capacity) {
  if constexpr (std::is_abstract_v<Converter>) return c.Convert(in, inEnd, out, outEnd, capacity);
  else return c.Converter::Convert(in, inEnd, out, outEnd, capacity);
}
template <class Converter>
int Finish(Converter& c, char*& out, const char* outEnd) {
  if constexpr (std::is_abstract_v<Converter>) return c.Finish(out, outEnd);
  else return c.Converter::Finish(out, outEnd);
}

// Bytes to UTF-16 as CharSource_8_to_16 and the caller's buffer sink do it
// together, with the caller's buffer as the converter's output. The units go
// straight to put_ until the converter finds no room for its next character
// there; from then on through spill_, copied while the room lasts.
template <class Converter>
class DecodeRun final : public ProblemSolver_8_to_16 {
 public:
  DecodeRun(const DirectRoute& route, Converter& converter, unsigned short* dst, long room,
            long length)
      : route_(route),
        converter_(converter),
        dst_(dst),
        put_(dst),
        vouched_(room < 0),
        end_(dst + (room < 0 ? length + kSpill : room)),
        extension_(length + kSpill) {}

  long Run(const char* in, const char* const inEnd) {
    bool finished = false;
    while (!Full()) {
      if (insertedInput_) {
        ConvertInsertedInput();
        continue;
      }
      const char* begin = nullptr;
      const char* stop = nullptr;
      int result;
      if (in != inEnd) {
        begin = in;
        result = Step([&](unsigned short*& out, const unsigned short* limit) {
          return Convert(converter_, in, inEnd, out, limit);
        });
        stop = in;
      } else {
        if (finished) break;
        result = Step([&](unsigned short*& out, const unsigned short* limit) { return Finish(converter_, out, limit); });
        // A Finish short of room is asked again.
        if (result != kOutputFull) finished = true;
      }
      if (result == kIllegalInput || result == kNoCharacterDefined) {
        // Positions as the converting source gives them, with the caller's
        // buffer in place of the source's own.
        ExternalToInternalConversionProblem record{*route_.encoding, *route_.unicode, *this, begin, stop,
                                                   begin != nullptr ? inEnd : nullptr, dst_, put_};
        if (result == kIllegalInput) {
          IllegalByteRange problem{record};
          converter_.Behavior().HandleIllegalByteRange(problem);
        } else {
          NoCharacterDefinedForCodepoint problem{record};
          converter_.Behavior().HandleNoCharacterDefinedForCodepoint(problem);
        }
        // The converter may hold input behind a problem its Finish reported.
        if (begin == nullptr) finished = false;
      }
    }
    return put_ - dst_;
  }

  void InsertInput(const char* begin, const char* end) override {
    if (!insertedInput_) insertedInput_.emplace();
    insertedInput_->Assign(begin, end);
  }
  void InsertOutput(const unsigned short* begin, const unsigned short* end) override {
    Put(begin, end != nullptr ? end : EndOfText(begin));
  }

 private:
  bool Full() const { return !vouched_ && put_ == end_; }

  // One Convert or Finish into the window in force; returns its result.
  template <class Convert>
  int Step(Convert convert) {
    if (!spilling_) {
      const int result = convert(put_, end_);
      if (result == kOutputFull) {
        // The caller vouched for the room: more of it. Otherwise the rest
        // goes through the spill buffer.
        if (vouched_) {
          end_ += extension_;
        } else {
          spilling_ = true;
        }
      }
      return result;
    }
    unsigned short* out = spill_;
    const int result = convert(out, spill_ + kSpill);
    Put(spill_, out);
    return result;
  }

  void Put(const unsigned short* begin, const unsigned short* end) {
    long n = end - begin;
    if (!vouched_) n = std::min<long>(n, end_ - put_);
    if (vouched_ && n > end_ - put_) end_ = put_ + n + extension_;
    std::memcpy(put_, begin, static_cast<std::size_t>(n) * sizeof *put_);
    put_ += n;
  }

  // As the converting source does: problems inside replacement text are not
  // reported, and a result that makes no progress ends it.
  void ConvertInsertedInput() {
    InsertedText<char>& text = *insertedInput_;
    while (!Full()) {
      const char* in = text.Position();
      const char* const from = in;
      const unsigned short* const written = put_;
      const int result = Step([&](unsigned short*& out, const unsigned short* limit) {
        return Convert(converter_, in, text.End(), out, limit);
      });
      text.ConsumeTo(in);
      if (result == kOutputFull) continue;
      if (result == kInputUsedUp || (in == from && put_ == written)) break;
    }
    insertedInput_.reset();
  }

  const DirectRoute& route_;
  Converter& converter_;
  unsigned short* const dst_;
  unsigned short* put_;
  const bool vouched_;
  unsigned short* end_;
  const long extension_;
  bool spilling_ = false;
  // Made only when a behaviour inserts input: a short call should not pay
  // for its construction and destruction.
  std::optional<InsertedText<char>> insertedInput_;
  unsigned short spill_[kSpill];
};

// UTF-16 to bytes as CharSink_16_to_8 and the caller's buffer sink do it
// together: the converter's byte budget is the room left, and its output goes
// straight to put_ until it finds too little room for its next character
// there; from then on through spill_, cut at the end of the room.
template <class Converter>
class EncodeRun final : public ProblemSolver_16_to_8 {
 public:
  EncodeRun(const DirectRoute& route, Converter& converter, char* dst, long room)
      : route_(route), converter_(converter), dst_(dst), put_(dst), end_(dst + room) {}

  long Run(const unsigned short* begin, const unsigned short* end) {
    Put(begin, end, true);
    // The closing sequence (back to ASCII, say) unless the budget ran out.
    if (!Full() && !converter_.CapacityWasReached()) {
      char* out = spill_;
      Finish(converter_, out, spill_ + kSpill);
      Write(spill_, out);
    }
    return put_ - dst_;
  }

  void InsertInput(const unsigned short* begin, const unsigned short* end) override {
    Put(begin, end != nullptr ? end : EndOfText(begin), false);
  }
  void InsertOutput(const char* begin, const char* end) override {
    Write(begin, end != nullptr ? end : begin + std::strlen(begin));
  }

 private:
  // Once the room is full or something was cut, nothing more is written.
  bool Full() const { return truncated_ || put_ == end_; }

  void Put(const unsigned short* in, const unsigned short* const inEnd, bool reportProblems) {
    while (!Full()) {
      const unsigned short* const blockBegin = in;
      char* const outBegin = put_;
      const long capacity = end_ - put_;
      int result;
      if (!spilling_) {
        result = Convert(converter_, in, inEnd, put_, end_, capacity);
        if (result == kOutputFull) spilling_ = true;
      } else {
        char* out = spill_;
        result = Convert(converter_, in, inEnd, out, spill_ + kSpill, capacity);
        Write(spill_, out);
      }
      if (result == kConversionDone || result == kInputUsedUp) return;
      if (result == kCapacityReached) {
        truncated_ = true;
        return;
      }
      if (result == kNotInTargetRepertoire && reportProblems) {
        CharacterNotInRepertoire problem{{*route_.unicode, *route_.encoding, *this, blockBegin, in, inEnd, outBegin,
                                          put_}};
        converter_.Behavior().HandleCharacterNotInRepertoire(problem);
      }
    }
  }

  void Write(const char* begin, const char* end) {
    if (Full()) return;
    long n = end - begin;
    if (n > end_ - put_) {
      n = end_ - put_;
      truncated_ = true;
    }
    std::memcpy(put_, begin, static_cast<std::size_t>(n));
    put_ += n;
  }

  const DirectRoute& route_;
  Converter& converter_;
  char* const dst_;
  char* put_;
  char* const end_;
  bool spilling_ = false;
  bool truncated_ = false;
  char spill_[kSpill];
};

// Each route function makes the encoding's converter and runs it: on the
// stack for code pages and UTF-8 (a code page's decoding as the bare loop
// below), in an arena for ISO-2022-JP (a read-ahead buffer and a converter
// per subencoding).
template <class Converter>
long Decode(const DirectRoute& route, Converter& converter, UnicodeLibBehavior& behavior, const char* src,
            long length, unsigned short* dst, long room) {
  converter.SetBehavior(&behavior);
  return DecodeRun<Converter>(route, converter, dst, room, length).Run(src, src + length);
}

template <class Converter>
long Encode(const DirectRoute& route, Converter& converter, UnicodeLibBehavior& behavior, const unsigned short* src,
            long length, char* dst, long room) {
  converter.SetBehavior(&behavior);
  return EncodeRun<Converter>(route, converter, dst, room).Run(src, src + length);
}

// A code page's decoder for one call: MBCStoUnicode's loop (DecodeMBCS over
// the page's state machine, the forced mapping honoured by ASCII-based
// pages, a character cut off at the end dropped) without the converter
// object, whose set-up and teardown would be most of a short call's cost.
class CodePageDecoder {
 public:
  CodePageDecoder(const MBCSEncoding& page, UnicodeLibBehavior& behavior)
      : actions_(page.ToUnicodeTable().Actions()), pass_(page.IsBasedOnASCII(), behavior), behavior_(behavior) {}

  int Convert(const char*& in, const char* inEnd, unsigned short*& out, const unsigned short* outEnd) {
    auto* p = reinterpret_cast<const unsigned char*>(in);
    const int result = DecodeMBCS(actions_, state_, pass_, p, reinterpret_cast<const unsigned char*>(inEnd), out, outEnd);
    in = reinterpret_cast<const char*>(p);
    return result;
  }
  int Finish(unsigned short*&, const unsigned short*) {
    state_ = 0;
    return kConversionDone;
  }
  UnicodeLibBehavior& Behavior() const { return behavior_; }
  void SetBehavior(UnicodeLibBehavior*) {}  // given to the constructor

 private:
  const MBCSAction* actions_;
  const PassThrough pass_;
  UnicodeLibBehavior& behavior_;
  unsigned short state_ = 0;
};

long DecodeCodePage(const DirectRoute& route, UnicodeLibBehavior& behavior, const char* src, long length,
                    unsigned short* dst, long room) {
  CodePageDecoder decoder(*static_cast<const MBCSEncoding*>(route.encoding), behavior);
  return Decode(route, decoder, behavior, src, length, dst, room);
}

// With the converter the encoding's member function Make returns, on the
// stack.
template <class Encoding, auto Make>
long DecodeOnStack(const DirectRoute& route, UnicodeLibBehavior& behavior, const char* src, long length,
                   unsigned short* dst, long room) {
  auto converter = (static_cast<const Encoding*>(route.encoding)->*Make)();
  return Decode(route, converter, behavior, src, length, dst, room);
}

template <class Encoding, auto Make>
long EncodeOnStack(const DirectRoute& route, UnicodeLibBehavior& behavior, const unsigned short* src, long length,
                   char* dst, long room) {
  auto converter = (static_cast<const Encoding*>(route.encoding)->*Make)();
  return Encode(route, converter, behavior, src, length, dst, room);
}

long DecodeBlock(const DirectRoute& route, UnicodeLibBehavior& behavior, const char* src, long length,
                 unsigned short* dst, long room) {
  Arena arena;
  const std::unique_ptr<BlockConverter_8_to_16> converter(
      static_cast<const BlockExternalEncoding*>(route.encoding)->CreateConverterToUnicode(arena));
  return Decode(route, *converter, behavior, src, length, dst, room);
}

long EncodeBlock(const DirectRoute& route, UnicodeLibBehavior& behavior, const unsigned short* src, long length,
                 char* dst, long room) {
  Arena arena;
  const std::unique_ptr<BlockConverter_16_to_8> converter(
      static_cast<const BlockExternalEncoding*>(route.encoding)->CreateConverterFromUnicode(arena));
  return Encode(route, *converter, behavior, src, length, dst, room);
}

}  // namespace

DirectRoute DirectRoute::Of(const ExternalEncoding* encoding) {
  if (encoding == nullptr) return {};
  const std::type_info& type = typeid(*encoding);
  // Their stages are BlockExternalEncoding's: one converting stage.
  if (type == typeid(MBCSEncoding)) {
    return {encoding, InternalEncoding::Unicode(), &DecodeCodePage,
            &EncodeOnStack<MBCSEncoding, &MBCSEncoding::ConverterFromUnicode>};
  }
  if (type == typeid(ISO2022JPEncoding)) return {encoding, InternalEncoding::Unicode(), &DecodeBlock, &EncodeBlock};
  // Its stages add the internal encoding's own, which for Unicode 2.0 only
  // forwards.
  if (type == typeid(UTF8EncodingVariant)) {
    const InternalEncoding& internal = static_cast<const UTF8EncodingVariant*>(encoding)->Internal();
    if (&internal == InternalEncoding::Unicode20()) {
      return {encoding, &internal, &DecodeOnStack<UTF8EncodingVariant, &UTF8EncodingVariant::Decoder>,
              &EncodeOnStack<UTF8EncodingVariant, &UTF8EncodingVariant::Encoder>};
    }
  }
  return {};
}

UnicodeLibBehavior* PlainDefaultBehavior() {
  UnicodeLibBehavior* behavior = UnicodeLibBehavior::GetDefaultBehavior();
  return typeid(*behavior) == typeid(UnicodeLibBehavior) ? behavior : nullptr;
}

}  // namespace varnice::internal
