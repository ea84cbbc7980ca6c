// ISO-2022 encodings: a byte stream that switches between simpler encodings
// with three-byte escape sequences. A GenericISO2022Encoding is built from a
// list of subencodings (an escape and an existing block encoding each) and a
// rule that picks the subencoding for every character written:
//
//   ISO2022toUnicode    splits the bytes at escapes and lets the converter of
//                       the subencoding in force read each stretch
//   ISO2022fromUnicode  writes runs of characters through the chosen
//                       subencoding's converter, with an escape before each
//                       change and a return to the first subencoding at the end
//
// ISO2022JPEncoding (ISO-2022-JP: ASCII, JIS X 0201 Roman, JIS X 0208) is the
// one concrete encoding.
#ifndef VARNICE_CODEPAGES_ISO2022_ENCODING_H_
#define VARNICE_CODEPAGES_ISO2022_ENCODING_H_

#include "varnice/codepages/iso2022_engine.h"
#include "varnice/codepages/iso2022_subencoding.h"
#include "varnice/encoding/block_converter.h"
#include "varnice/stream/converting/block_external_encoding.h"
#include "varnice/encoding/external_encoding_detector.h"
#include "varnice/varnice_export.h"

class VARNICE_API GenericISO2022Encoding : public BlockExternalEncoding {
 public:
  // ISO2022toUnicode over the subencodings, placed with the allocator.
  BlockConverter_8_to_16* CreateConverterToUnicode(UnicodeLibAllocator& a) const override;
  // ISO2022fromUnicode over the subencodings, placed with the allocator.
  BlockConverter_16_to_8* CreateConverterFromUnicode(UnicodeLibAllocator& a) const override;

  // The index of the subencoding to write the code unit in, given the one in
  // force.
  virtual int ChooseEncoding(unsigned short unit, int current) const = 0;
  // The list, ended by a record of two nulls; index 0 is the initial state.
  virtual const ISO2022Subencoding* GetSubencodings() const = 0;
  virtual int CountSubencodings() const = 0;

 protected:
  GenericISO2022Encoding(TextEncodingID id, const char** nicknames, const char* mimeName, unsigned int codePage);
  ~GenericISO2022Encoding();
};

class VARNICE_API ISO2022toUnicode : public BlockConverter_8_to_16 {
 public:
  // Makes one converter per subencoding with the allocator; owns them.
  ISO2022toUnicode(const ISO2022Subencoding* list, int count, UnicodeLibAllocator& allocator);
  ~ISO2022toUnicode() override;

  // Also gives the behaviour to every subencoding's converter.
  void SetBehavior(UnicodeLibBehavior* behavior) override;
  // Results: kInputUsedUp (an escape cut short by the end of the block waits
  // for the next), kOutputFull, else the subencoding converter's own.
  int Convert(const char*& in, const char* inEnd, unsigned short*& out, const unsigned short* outEnd) override;
  // The plain loop, every byte through the read-ahead buffer. Convert reads
  // in place where it can, with the same output and results; this one is
  // kept as the reference it is tested against.
  int ConvertBuffered(const char*& in, const char* inEnd, unsigned short*& out, const unsigned short* outEnd);
  // Converts what is still held; an escape cut short becomes U+001B.
  int Finish(unsigned short*& out, const unsigned short* outEnd) override;
  void Reset() override;

  // The index of the subencoding in force.
  int CurrentSubencoding() const { return reader_.Current(); }

 private:
  varnice::internal::ISO2022Reader<BlockConverter_8_to_16*> reader_;
};

class VARNICE_API ISO2022fromUnicode : public BlockConverter_16_to_8 {
 public:
  ISO2022fromUnicode(const GenericISO2022Encoding& encoding, const ISO2022Subencoding* list, int count,
                     UnicodeLibAllocator& allocator);
  ~ISO2022fromUnicode() override;

  void SetBehavior(UnicodeLibBehavior* behavior) override;
  // Results: kInputUsedUp, kOutputFull when fewer than 3 bytes of room
  // remain, kCapacityReached when the byte budget refuses (3 bytes of it are
  // kept for the escape back to the first subencoding while another is in
  // force), else the subencoding converter's own.
  int Convert(const unsigned short*& in, const unsigned short* inEnd, char*& out, const char* outEnd,
              long capacity) override;
  // Writes the escape back to the first subencoding if another is in force.
  int Finish(char*& out, const char* outEnd) override;
  void Reset() override;

  int CurrentSubencoding() const { return writer_.Current(); }

 private:
  const GenericISO2022Encoding& encoding_;
  varnice::internal::ISO2022Writer<BlockConverter_16_to_8*> writer_;
};

// ISO-2022-JP (number 14): ASCII, JIS X 0201 Roman and JIS X 0208, the last
// under both of its escapes for reading.
class VARNICE_API ISO2022JPEncoding : public GenericISO2022Encoding {
 public:
  ~ISO2022JPEncoding();

  bool IsTextModeSafe() const override;
  int CountSubencodings() const override;
  const ISO2022Subencoding* GetSubencodings() const override;
  // JIS X 0201 Roman for the yen sign and the overline; ASCII for backslash
  // and DEL, whose Roman bytes differ; JIS X 0208 above U+007F; other ASCII
  // characters stay in Roman while it is in force.
  int ChooseEncoding(unsigned short unit, int current) const override;
  ExternalEncodingDetector* CreateEncodingDetector(UnicodeLibAllocator& a) const override;

 private:
  // Made only by ExternalEncoding::ISO2022JP(), from its catalogue entry.
  friend class ExternalEncoding;
  ISO2022JPEncoding(TextEncodingID id, const char** nicknames, const char* mimeName, unsigned int codePage);
};

// Score() rises by one for each escape into JIS X 0201 Roman or JIS X 0208
// and falls by one for each byte with the high bit set, which ISO-2022-JP
// never holds.
class VARNICE_API ISO2022JPDetector : public ExternalEncodingDetector {
 public:
  explicit ISO2022JPDetector(const ExternalEncoding& encoding);
  ~ISO2022JPDetector() override;

  void Scan(const char* bufferStart, const char* begin, const char* end) override;
};

#endif  // VARNICE_CODEPAGES_ISO2022_ENCODING_H_
