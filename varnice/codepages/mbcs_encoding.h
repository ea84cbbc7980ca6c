// MBCSEncoding: every table-driven code page, single-byte or multi-byte, is
// one of these over two constant tables: a byte state machine that decodes
// bytes to UTF-16 and a lookup table that gives a code unit's code. It hands
// out the workers that do the converting and the detecting:
//
//   MBCStoUnicode    bytes to UTF-16, stepping the state machine byte by byte;
//                    the state carries a character split across two blocks
//   MBCSfromUnicode  UTF-16 to bytes, each code written big-endian in the
//                    fewest bytes that hold it
//   MBCSDetector     scores unlabelled bytes as this code page
//
// Code pages based on ASCII also honour the behaviour's forced direct
// mapping: the bytes it lists stand for the code points of the same value,
// in both directions, whenever no multi-byte character is in progress.
#ifndef VARNICE_CODEPAGES_MBCS_ENCODING_H_
#define VARNICE_CODEPAGES_MBCS_ENCODING_H_

#include "varnice/codepages/mbcs_to_unicode_table.h"
#include "varnice/encoding/block_converter.h"
#include "varnice/stream/converting/block_external_encoding.h"
#include "varnice/encoding/external_encoding_detector.h"
#include "varnice/tables/table.h"
#include "varnice/varnice_export.h"

class MBCStoUnicode;
class MBCSfromUnicode;

class VARNICE_API MBCSEncoding : public BlockExternalEncoding {
 public:
  // The tables are used in place and must outlive the encoding.
  MBCSEncoding(TextEncodingID id, const char** nicknames, const char* mimeName, unsigned int codePage,
               const MBCStoUnicodeTable& toUnicode, const LookupUnsignedLongTable<unsigned short>& fromUnicode,
               bool basedOnASCII);
  // Public so that a code page can be a function-local singleton.
  ~MBCSEncoding();

  // 0x1A for ASCII-based pages, 0x7F for the others (EBCDIC, JIS X 0208),
  // where 0x1A is a character of the page.
  char SubstituteChar() const override;
  bool IsBasedOnASCII() const override;
  bool IsTextModeSafe() const override;
  ExternalEncodingDetector* CreateEncodingDetector(UnicodeLibAllocator& a) const override;
  BlockConverter_8_to_16* CreateConverterToUnicode(UnicodeLibAllocator& a) const override;
  BlockConverter_16_to_8* CreateConverterFromUnicode(UnicodeLibAllocator& a) const override;
  // The converters the two above place; the C functions also run them, on
  // the stack, straight over their callers' buffers.
  MBCStoUnicode ConverterToUnicode() const;
  MBCSfromUnicode ConverterFromUnicode() const;

  // The code of the code unit in this page, 0xFFFD when it has none.
  unsigned long FromUnicode(unsigned short unit) const;

  const MBCStoUnicodeTable& ToUnicodeTable() const { return toUnicode_; }
  const LookupUnsignedLongTable<unsigned short>& FromUnicodeTable() const { return fromUnicode_; }

 private:
  const MBCStoUnicodeTable& toUnicode_;
  const LookupUnsignedLongTable<unsigned short>& fromUnicode_;
  bool basedOnASCII_;
};

class VARNICE_API MBCStoUnicode : public BlockConverter_8_to_16 {
 public:
  // honourForcedMapping: whether the behaviour's forced direct mapping applies.
  MBCStoUnicode(const MBCStoUnicodeTable& table, bool honourForcedMapping);
  ~MBCStoUnicode() override;

  // Results: kInputUsedUp, kOutputFull (checked before every byte, even a
  // lead byte), kNoCharacterDefined after consuming a byte that has no
  // character here.
  int Convert(const char*& in, const char* inEnd, unsigned short*& out, const unsigned short* outEnd) override;
  // A character left incomplete at the end of the text is dropped silently.
  int Finish(unsigned short*& out, const unsigned short* outEnd) override;
  void Reset() override;

  // For a reader that converts whole characters itself between calls (the
  // ISO-2022 reader, for its short stretches): it may while the converter
  // is between characters and has no forced mapping to honour.
  const MBCStoUnicodeTable& Table() const { return table_; }
  bool BetweenCharacters() const { return state_ == 0; }
  bool HonoursForcedMapping() const;

 private:
  const MBCStoUnicodeTable& table_;
  bool honourForcedMapping_;
  unsigned short state_ = 0;
};

class VARNICE_API MBCSfromUnicode : public BlockConverter_16_to_8 {
 public:
  MBCSfromUnicode(const LookupUnsignedLongTable<unsigned short>& table, bool honourForcedMapping);
  ~MBCSfromUnicode() override;

  // Results: kInputUsedUp, kOutputFull when fewer than 4 bytes of room
  // remain (whatever the next character's length), kNotInTargetRepertoire
  // after consuming a code unit the page lacks, kCapacityReached when the
  // byte budget refuses a character.
  int Convert(const unsigned short*& in, const unsigned short* inEnd, char*& out, const char* outEnd,
              long capacity) override;

 private:
  const LookupUnsignedLongTable<unsigned short>& table_;
  bool honourForcedMapping_;
};

// Score() falls by one for each byte that is invalid where it stands (and for
// a character left incomplete at the end); TieBreaker() by one for each
// halfwidth katakana or private-use character, which plain text seldom holds.
class VARNICE_API MBCSDetector : public ExternalEncodingDetector {
 public:
  MBCSDetector(const ExternalEncoding& encoding, const MBCStoUnicodeTable& table);
  ~MBCSDetector() override;

  void Scan(const char* bufferStart, const char* begin, const char* end) override;
  void Finish(const char* bufferStart, const char* end) override;

 private:
  const MBCStoUnicodeTable& table_;
  unsigned short state_ = 0;
};

#endif  // VARNICE_CODEPAGES_MBCS_ENCODING_H_
