// Test doubles for the converting-stream tests: streams that lend or record
// text in chosen pieces, block converters with known problem bytes, and a
// behaviour whose handlers the test chooses.
#ifndef VARNICE_TESTS_STREAM_STREAM_TEST_SUPPORT_H_
#define VARNICE_TESTS_STREAM_STREAM_TEST_SUPPORT_H_

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "varnice/encoding/block_converter.h"
#include "varnice/encoding/linear_allocator.h"
#include "varnice/stream/converting/block_external_encoding.h"
#include "varnice/encoding/unicode_lib_behavior.h"
#include "varnice/stream/char16_sink.h"
#include "varnice/stream/char16_source.h"
#include "varnice/stream/char_sink.h"
#include "varnice/stream/char_source.h"

namespace testing_streams {

// Lends each chunk as one range, so a test decides where blocks split.
template <class Source, class Unit, class Text>
class Chunks : public Source {
 public:
  explicit Chunks(std::vector<Text> chunks) : chunks_(std::move(chunks)) {}
  bool FillBuffer() override {
    ++fills;
    if (next_ == chunks_.size()) return false;
    this->position_ = reinterpret_cast<const Unit*>(chunks_[next_].data());
    this->end_ = this->position_ + chunks_[next_].size();
    ++next_;
    return true;
  }
  const Unit* Position() const { return this->position_; }
  int fills = 0;

 private:
  std::vector<Text> chunks_;
  std::size_t next_ = 0;
};

using ChunkSource = Chunks<CharSource, char, std::string>;
using Chunk16Source = Chunks<Char16Source, unsigned short, std::u16string>;

// Records what it receives, piece by piece.
template <class Sink, class Unit, class Text>
class Collect : public Sink {
 public:
  Collect() : Sink(static_cast<const UnicodeLibActor*>(nullptr)) {}
  void Flush() override { ++flushes; }
  void PutBuffer(const Unit* b, const Unit* e) override {
    text.append(b, e);
    pieces.push_back(e - b);
  }
  Text text;
  std::vector<long> pieces;
  int flushes = 0;
};

using Collect8 = Collect<CharSink, char, std::string>;
using Collect16 = Collect<Char16Sink, unsigned short, std::u16string>;

// Everything a source gives, read to the end.
inline std::u16string ReadAll(Char16Source& source) {
  Collect16 out;
  out.Put(source);
  return out.text;
}

inline std::string ReadAll(CharSource& source) {
  Collect8 out;
  out.Put(source);
  return out.text;
}

// Text through an encoding's own stream stages, the input in the given chunks.
inline std::u16string DecodeStream(const ExternalEncoding& encoding, std::vector<std::string> chunks) {
  LinearAllocator arena(16384, __FILE__, __LINE__);
  ChunkSource bytes(std::move(chunks));
  std::unique_ptr<Char16Source> source(encoding.CreateCharSourceToUnicode(bytes, arena));
  return ReadAll(*source);
}

inline std::string EncodeStream(const ExternalEncoding& encoding, std::vector<std::u16string> chunks) {
  LinearAllocator arena(16384, __FILE__, __LINE__);
  Chunk16Source units(std::move(chunks));
  std::unique_ptr<CharSource> source(encoding.CreateCharSourceFromUnicode(units, arena));
  return ReadAll(*source);
}

inline const unsigned short* U(const char16_t* s) { return reinterpret_cast<const unsigned short*>(s); }

// Byte b becomes unit b, except: 0x80 is the lead of a pair, 0x80 x becoming
// U+1000 + x (the pair may straddle two blocks); 0xFE is illegal
// (kIllegalInput); 0xFF has no character (kNoCharacterDefined). Finish writes
// "$" for a dangling lead.
class ByteToUnit : public BlockConverter_8_to_16 {
 public:
  int Convert(const char*& in, const char* inEnd, unsigned short*& out, const unsigned short* outEnd) override {
    ++converts;
    for (;;) {
      if (in == inEnd) return kInputUsedUp;
      if (out == outEnd) return kOutputFull;
      const unsigned char b = static_cast<unsigned char>(*in++);
      if (lead_) {
        lead_ = false;
        *out++ = static_cast<unsigned short>(0x1000 + b);
      } else if (b == 0x80) {
        lead_ = true;
      } else if (b == 0xFE) {
        return kIllegalInput;
      } else if (b == 0xFF) {
        return kNoCharacterDefined;
      } else {
        *out++ = b;
      }
    }
  }
  int Finish(unsigned short*& out, const unsigned short* outEnd) override {
    ++finishes;
    if (lead_ && out != outEnd) {
      lead_ = false;
      *out++ = u'$';
    }
    return kConversionDone;
  }
  void Reset() override { lead_ = false; }
  int converts = 0;
  int finishes = 0;

 private:
  bool lead_ = false;
};

// Units below 0x100 become one byte, others two (high, low), within the byte
// budget; U+FFFF is not in the repertoire (kNotInTargetRepertoire); U+D800
// is illegal UTF-16 (kIllegalUTF16).
class UnitToBytes : public BlockConverter_16_to_8 {
 public:
  int Convert(const unsigned short*& in, const unsigned short* inEnd, char*& out, const char* outEnd,
              long capacity) override {
    for (;;) {
      if (in == inEnd) return kInputUsedUp;
      const unsigned short u = *in;
      const long n = u < 0x100 ? 1 : 2;
      if (outEnd - out < n) return kOutputFull;
      if (u == 0xFFFF || u == 0xD800) {
        ++in;
        return u == 0xFFFF ? kNotInTargetRepertoire : kIllegalUTF16;
      }
      if (ReachedCapacity(n, 0, capacity)) return kCapacityReached;
      ++in;
      if (n == 2) *out++ = static_cast<char>(u >> 8);
      *out++ = static_cast<char>(u & 0xFF);
    }
  }
  void Reset() override { BlockConverter_16_to_8::Reset(); }
};

// An external encoding built from the two converters above.
class TestBlockEncoding : public BlockExternalEncoding {
 public:
  TestBlockEncoding() : BlockExternalEncoding(TextEncodingID(120), nullptr, nullptr, 0) {}
  bool IsTextModeSafe() const override { return true; }
  BlockConverter_8_to_16* CreateConverterToUnicode(UnicodeLibAllocator& a) const override {
    return new (a) ByteToUnit;
  }
  BlockConverter_16_to_8* CreateConverterFromUnicode(UnicodeLibAllocator& a) const override {
    return new (a) UnitToBytes;
  }
};

inline const TestBlockEncoding& TestEncoding() {
  static const TestBlockEncoding* encoding = new TestBlockEncoding;
  return *encoding;
}

// An external encoding without stages, for tests that need only its entry.
struct StubExternalEncoding : ExternalEncoding {
  using ExternalEncoding::ExternalEncoding;
  bool IsTextModeSafe() const override { return true; }
  ToUnicodeSource* CreateCharSourceToUnicode(CharSource&, UnicodeLibAllocator&) const override { return nullptr; }
  CharSource* CreateCharSourceFromUnicode(Char16Source&, UnicodeLibAllocator&) const override { return nullptr; }
  Char16Sink* CreateCharSinkFromUnicode(CharSink&, UnicodeLibAllocator&) const override { return nullptr; }
  CharSink* CreateCharSinkToUnicode(Char16Sink&, UnicodeLibAllocator&) const override { return nullptr; }
};

// Reads as UTF-8 but cannot be written, like a detecting encoding.
struct ReadOnlyEncoding : StubExternalEncoding {
  ReadOnlyEncoding(unsigned long number, const char** names)
      : StubExternalEncoding(TextEncodingID(number), names, nullptr, 0) {}
  ToUnicodeSource* CreateCharSourceToUnicode(CharSource& in, UnicodeLibAllocator& a) const override {
    return ExternalEncoding::Unicode20UTF8()->CreateCharSourceToUnicode(in, a);
  }
  CharSink* CreateCharSinkToUnicode(Char16Sink& out, UnicodeLibAllocator& a) const override {
    return ExternalEncoding::Unicode20UTF8()->CreateCharSinkToUnicode(out, a);
  }
};

// Handlers the test chooses; without one, the library's default answer.
class ScriptedBehavior : public UnicodeLibBehavior {
 public:
  void HandleIllegalByteRange(IllegalByteRange& p) override {
    ++illegal;
    Record(p);
    if (onIllegal) onIllegal(p); else UnicodeLibBehavior::HandleIllegalByteRange(p);
  }
  void HandleNoCharacterDefinedForCodepoint(NoCharacterDefinedForCodepoint& p) override {
    ++undefined;
    Record(p);
    if (onUndefined) onUndefined(p); else UnicodeLibBehavior::HandleNoCharacterDefinedForCodepoint(p);
  }
  void HandleCharacterNotInRepertoire(CharacterNotInRepertoire& p) override {
    ++notInRepertoire;
    if (onNotInRepertoire) onNotInRepertoire(p); else UnicodeLibBehavior::HandleCharacterNotInRepertoire(p);
  }

  int illegal = 0, undefined = 0, notInRepertoire = 0;
  std::function<void(IllegalByteRange&)> onIllegal;
  std::function<void(NoCharacterDefinedForCodepoint&)> onUndefined;
  std::function<void(CharacterNotInRepertoire&)> onNotInRepertoire;
  // Positions of the last bytes-to-Unicode problem, as offsets.
  long stopOffset = -1, inputLength = -1, outputSoFar = -1;

 private:
  void Record(const ExternalToInternalConversionProblem& p) {
    if (p.inputBegin == nullptr) return;
    stopOffset = p.inputStop - p.inputBegin;
    inputLength = p.inputEnd - p.inputBegin;
    outputSoFar = p.outputEnd - p.outputBegin;
  }
};

}  // namespace testing_streams

#endif  // VARNICE_TESTS_STREAM_STREAM_TEST_SUPPORT_H_
