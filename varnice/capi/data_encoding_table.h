// DataEncodingTable: the registrations behind the C interface's data-encoding
// numbers. Numbers are handed out from 1 in order of first registration, up to
// 255, and never taken back; number 0 is never handed out (the conversion
// functions read it as ISO-8859-1). For each number the table keeps the
// encoding and how it writes a space (its nominal character length).
//
// The C functions use one process-wide table; tests make tables of their own.
// Not synchronised: registration happens before concurrent conversion.
#ifndef VARNICE_CAPI_DATA_ENCODING_TABLE_H_
#define VARNICE_CAPI_DATA_ENCODING_TABLE_H_

#include "varnice/capi/direct_route.h"

class ExternalEncoding;

namespace varnice::internal {

class DataEncodingTable {
 public:
  static constexpr int kMaxNumber = 255;
  using VersionCheck = bool (*)();

  // The library's own check of the host interface (11, 20).
  static bool HostVersionIsCompatible();

  // `check` runs on the first Register call only.
  constexpr explicit DataEncodingTable(VersionCheck check = &HostVersionIsCompatible) : versionCheck_(check) {
    nominalLength_[0] = 1;
    encodedSpace_[0][0] = 0x20;
  }

  // The number of the encoding called `name`, registering it if need be; 0
  // for failure, two of which are reported on standard error.
  int Register(const char* name);
  // The number of an encoding found by other means, registering it if need
  // be; 0 when the table is full (reported on standard error).
  int Add(const ExternalEncoding& encoding);

  // The registered encoding; ISO-8859-1 for 0; null for anything else.
  const ExternalEncoding* Encoding(int number) const {
    if (number == 0) return Latin1();
    return number > 0 && number < nextFree_ && number <= kMaxNumber ? encodings_[number] : nullptr;
  }
  // The encoding's name, or "" for 0 and unregistered numbers.
  const char* Name(int number) const;
  // How to convert the encoding directly; empty when it cannot be, and for
  // unregistered numbers.
  const DirectRoute& Direct(int number) const {
    if (number == 0) return Latin1Direct();
    return number > 0 && number < nextFree_ && number <= kMaxNumber ? direct_[number] : direct_[0];
  }
  // Unchecked, as the C function is: the caller passes 0 or a registered number.
  int NominalCharLength(int number) const { return nominalLength_[number]; }
  const unsigned char* EncodedSpace(int number) const { return encodedSpace_[number]; }

  int NextFreeNumber() const { return nextFree_; }
  // Lets a test reach the limit without 255 distinct encodings.
  void SetNextFreeNumber(int number) { nextFree_ = number; }

 private:
  static const ExternalEncoding* Latin1();
  static const DirectRoute& Latin1Direct();

  VersionCheck versionCheck_;
  unsigned long registerCalls_ = 0;
  int nextFree_ = 1;
  const ExternalEncoding* encodings_[kMaxNumber + 1] = {};
  DirectRoute direct_[kMaxNumber + 1] = {};  // [0] stays empty
  signed char nominalLength_[kMaxNumber + 1] = {};
  unsigned char encodedSpace_[kMaxNumber + 1][2] = {};
};

// The table the C functions use; statically initialised, so usable at any time.
DataEncodingTable& DataEncodings();

}  // namespace varnice::internal

#endif  // VARNICE_CAPI_DATA_ENCODING_TABLE_H_
