// Block converters: small stateful objects that convert one buffer at a time
// and can be fed the next buffer later. Encodings create them; converting
// streams drive them, one Convert call per buffer.
//
// The contract every Convert obeys:
// - It reads [in, inEnd) and writes [out, outEnd), advancing both references
//   past what it consumed and produced; everything before them is final.
// - Before each character it checks, in this order: input used up (return
//   kInputUsedUp), no room for output (kOutputFull). It never writes half a
//   character.
// - A character it cannot convert stops it with its own code, with the
//   offending input already consumed, so the caller can report the problem
//   and simply call again to go on.
// - A character split across two buffers is carried in the converter's state.
// Finish is called once after the last buffer, with room for output, to write
// what the converter still holds; Reset starts a new text.
#ifndef VARNICE_ENCODING_BLOCK_CONVERTER_H_
#define VARNICE_ENCODING_BLOCK_CONVERTER_H_

#include "varnice/encoding/actors/unicode_lib_actor.h"
#include "varnice/varnice_export.h"

class BlockExternalEncoding;
class UnicodeLibAllocator;

// Result codes of Convert and Finish, shared by every converter, engine and
// stream of the library. Convert and Finish return them as int; the numbers
// are part of the interface (converters written outside the library return
// them too), so none may change.
enum BlockConversionResult : int {
  // Never returned by Convert or Finish: a step of a converter's inner loop
  // made progress and the loop goes on. It is the only value below
  // kConversionDone, so such a loop runs while `r < kConversionDone`.
  kKeepConverting = -1,
  kConversionDone = 0,          // nothing more to do
  kInputUsedUp = 1,             // read more
  kOutputFull = 2,              // no room for the next character
  kIllegalInput = 3,            // malformed byte sequence
  kNoCharacterDefined = 4,      // valid code with no Unicode character
  kNotInTargetRepertoire = 5,   // code unit the target encoding lacks
  kIllegalUTF16 = 6,            // high surrogate without its low surrogate
  kCapacityReached = 7,         // the output byte budget is spent
};

class VARNICE_API BlockConverter_8_to_16 : public UnicodeLibActor {
 public:
  ~BlockConverter_8_to_16() override;
  virtual int Convert(const char*& in, const char* inEnd, unsigned short*& out,
                      const unsigned short* outEnd) = 0;
  // Writes nothing and returns kConversionDone unless overridden.
  virtual int Finish(unsigned short*& out, const unsigned short* outEnd);
  virtual void Reset() = 0;

  // The encoding's own converter to Unicode, placed with the allocator.
  static BlockConverter_8_to_16* CreateRelatedConverterToUnicode(const BlockExternalEncoding& encoding,
                                                                 UnicodeLibAllocator& allocator);

 protected:
  BlockConverter_8_to_16() = default;
  explicit BlockConverter_8_to_16(UnicodeLibBehavior* behavior) : UnicodeLibActor(behavior) {}
};

class VARNICE_API BlockConverter_16_to_8 : public UnicodeLibActor {
 public:
  ~BlockConverter_16_to_8() override;
  // `capacity` is a budget of output bytes, -1 for none; see ReachedCapacity.
  virtual int Convert(const unsigned short*& in, const unsigned short* inEnd, char*& out,
                      const char* outEnd, long capacity) = 0;
  virtual int Finish(char*& out, const char* outEnd);
  // Clears the capacity-reached flag; converters with state of their own
  // override it and call this one too.
  virtual void Reset();

  static BlockConverter_16_to_8* CreateRelatedConverterFromUnicode(const BlockExternalEncoding& encoding,
                                                                   UnicodeLibAllocator& allocator);

  bool CapacityWasReached() const { return capacityReached_; }

 protected:
  BlockConverter_16_to_8() = default;
  explicit BlockConverter_16_to_8(UnicodeLibBehavior* behavior) : UnicodeLibActor(behavior) {}

  // Asked before writing n bytes (with `reserve` more that must fit after
  // them). False means go ahead: the budget is unlimited, or n + reserve fit
  // and n has been taken off it. True means stop with kCapacityReached
  // without writing; once true it stays true until Reset, so a truncated text
  // never resumes with a later, shorter character.
  bool ReachedCapacity(long n, long reserve, long& capacity);

 private:
  bool capacityReached_ = false;
};

class VARNICE_API BlockConverter_16_to_16 : public UnicodeLibActor {
 public:
  ~BlockConverter_16_to_16() override;
  virtual int Convert(const unsigned short*& in, const unsigned short* inEnd, unsigned short*& out,
                      const unsigned short* outEnd) = 0;
  virtual int Finish(unsigned short*& out, const unsigned short* outEnd);
  virtual void Reset() = 0;

 protected:
  BlockConverter_16_to_16() = default;
  explicit BlockConverter_16_to_16(UnicodeLibBehavior* behavior) : UnicodeLibActor(behavior) {}
};

#endif  // VARNICE_ENCODING_BLOCK_CONVERTER_H_
