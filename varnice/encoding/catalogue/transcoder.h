// Transcoder: converts text between two encodings (or to and from UTF-16
// code units) and accounts for every problem: it reads strictly
// (StrictDecoder), checks UTF-16 for lone surrogates, and settles each
// problem by one error mode chosen per conversion instead of a process-wide
// behaviour:
//
//   kReplace  an ill-formed or incomplete character becomes U+FFFD, a
//             character the target lacks becomes the substitute, written as
//             a whole character of the target (so ISO-2022 output switches
//             sets for it and EBCDIC gets its own SUB, 0x3F)
//   kSkip     both are dropped
//   kStop     conversion ends before the first problem; Status says where
//   kStrict   as kStop; the caller is to discard the output
//
// Every problem is counted, and the first one is located by the offset of its
// first input unit. Encodings without a strict reader (UTF-7, the printer
// variant) are read by their own converters, whose problems are placed at
// the byte that revealed them. The Unicode 1.1 forms and the detecting
// encodings are not handled (Ready() is false): use their pipelines. Feed input in pieces of any size with Put, then call
// Finish once; output goes to the Receiver as it is made.
#ifndef VARNICE_ENCODING_CATALOGUE_TRANSCODER_H_
#define VARNICE_ENCODING_CATALOGUE_TRANSCODER_H_

#include <cstddef>

#include "varnice/encoding/linear_allocator.h"
#include "varnice/encoding/catalogue/strict_decoder.h"
#include "varnice/varnice_export.h"

class BlockConverter_16_to_8;
class ExternalEncoding;

class VARNICE_API Transcoder {
 public:
  enum ErrorMode { kReplace = 0, kSkip = 1, kStop = 2, kStrict = 3 };
  enum Problem { kNoProblem = 0, kIllFormed = 1, kIncomplete = 2, kUnmappable = 3, kLoneSurrogate = 4 };

  struct Status {
    unsigned long long consumed = 0;      // input units taken (bytes, or UTF-16 units)
    unsigned long long produced = 0;      // output units handed to the receiver
    unsigned long long replacements = 0;  // characters replaced or skipped
    long long problemOffset = -1;         // input offset of the first problem
    Problem problem = kNoProblem;         // its kind
    unsigned long character = 0;          // for kUnmappable, the character the target lacks
    bool stopped = false;                 // kStop or kStrict ended the conversion
  };

  // Takes output: bytes when converting to an encoding, UTF-16 code units
  // (as `units` unsigned shorts) when converting to Unicode.
  class Receiver {
   public:
    virtual void Take(const void* data, std::size_t units) = 0;

   protected:
    ~Receiver() = default;
  };

  // A null encoding on either side stands for UTF-16 code units in memory.
  Transcoder(const ExternalEncoding* from, const ExternalEncoding* to, ErrorMode mode, Receiver& receiver);
  ~Transcoder();
  Transcoder(const Transcoder&) = delete;
  Transcoder& operator=(const Transcoder&) = delete;

  // The encoding called `name` by the registry's rules, or by the standard
  // names of the two-byte forms: "UTF-16" (a byte-order mark, then the host's
  // order), "UTF-16BE", "UTF-16LE". Null when unknown.
  static const ExternalEncoding* FindEncoding(const char* name);
  // Whether the encoding can be read, or written, by a Transcoder.
  static bool CanRead(const ExternalEncoding& e);
  static bool CanWrite(const ExternalEncoding& e);
  // False when a side could not be set up (see CanRead and CanWrite).
  bool Ready() const { return ready_; }

  // The substitute for characters the target lacks, as UTF-16 (copied, at
  // most 16 units). Without one, the target's SUB control: U+001A where the
  // target has it as a character, else its SUB byte (0x1A on pages based on
  // ASCII, 0x3F on EBCDIC pages) written after U+001A has brought a stateful
  // encoder back to its single-byte set; for a page of two-byte codes only,
  // U+3013 (the geta mark); else "?".
  void SetSubstitute(const unsigned short* text, std::size_t units);
  // The default substitute for the target: its UTF-16 text in `text` (room
  // for one unit), and the SUB byte to write after it, or -1 for none. Returns
  // the text's length, 0 when the target has no substitute at all.
  static std::size_t DefaultSubstitute(const ExternalEncoding& to, unsigned short* text, int* rawByte);

  // Converts a piece of input: bytes when reading an encoding, else UTF-16
  // units. False once the conversion has stopped (the rest is not read).
  bool Put(const void* data, std::size_t units);
  // Ends the text: reports a character cut off at the end and returns the
  // target to its initial state. False when it stopped.
  bool Finish();

  const Status& GetStatus() const { return status_; }

 private:
  bool DecodeBytes(const unsigned char* begin, const unsigned char* end);
  bool Units(const unsigned short* begin, const unsigned short* end, bool isReplacement = false);
  bool ReplaceUnit();
  bool Encode(const unsigned short* begin, const unsigned short* end, bool isReplacement);
  void Substitute();
  void Emit(const void* data, std::size_t units);
  // Records a problem; false when the mode stops here.
  bool Report(Problem kind, long long offset);
  // The input offset of UTF-16 unit `index`: of the input itself when it is
  // UTF-16, else of the current piece's decoded text.
  long long OffsetOfUnit(unsigned long long index);
  // The input offset at which the character holding UTF-16 unit `index` of
  // the current piece began.
  long long LocateUnit(unsigned long long index);

  ErrorMode mode_;
  Receiver& receiver_;
  LinearAllocator arena_;
  const ExternalEncoding* from_;
  const ExternalEncoding* to_;
  BlockConverter_8_to_16* decoder_ = nullptr;
  StrictDecoder* strict_ = nullptr;  // decoder_ when it reads strictly
  BlockConverter_16_to_8* encoder_ = nullptr;
  bool ready_ = false;
  bool writeMark_ = false;  // a byte-order mark starts the output
  bool lowToDrop_ = false;  // the low half of a pair already reported
  unsigned short high_ = 0;  // a high surrogate waiting for its low one
  unsigned short substitute_[16];
  std::size_t substituteLength_ = 0;
  int substituteByte_ = -1;  // written when the encoder lacks the substitute text
  bool substituteChosen_ = false;
  Status status_;
  // Where the piece being decoded began, to locate problems inside it.
  StrictDecoder::State pieceState_;
  const unsigned char* pieceBegin_ = nullptr;
  const unsigned char* pieceEnd_ = nullptr;
  unsigned long long pieceUnits_ = 0;  // UTF-16 units the piece has produced so far
  unsigned long long unitsInBase_ = 0;  // units of the piece before the chunk being encoded
};

#endif  // VARNICE_ENCODING_CATALOGUE_TRANSCODER_H_
