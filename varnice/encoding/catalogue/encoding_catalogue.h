// EncodingCatalogue: creates every encoding and variation the library offers.
//
// Encodings are singletons made by their factories on first use, and lookups
// by name or number find only encodings that exist. Call CreateAll() before
// looking encodings up by name (the C interface does so itself), and before
// converting on several threads, since creation is not locked.
#ifndef VARNICE_ENCODING_CATALOGUE_ENCODING_CATALOGUE_H_
#define VARNICE_ENCODING_CATALOGUE_ENCODING_CATALOGUE_H_

#include "varnice/varnice_export.h"

class VARNICE_API EncodingCatalogue {
 public:
  // Idempotent; cheap after the first call.
  static void CreateAll();
};

#endif  // VARNICE_ENCODING_CATALOGUE_ENCODING_CATALOGUE_H_
