// UnicodeLibrary: the library's version, and UnicodeLibraryException, the root
// of the library's own exceptions.
#ifndef VARNICE_ENCODING_UNICODE_LIBRARY_H_
#define VARNICE_ENCODING_UNICODE_LIBRARY_H_

#include <exception>

#include "varnice/varnice_export.h"

// Root of the exceptions the library throws for its own reasons (malformed
// identifiers, invalid output encodings). what() says "unknown Unicode Library
// exception" unless a subclass knows better.
class VARNICE_API UnicodeLibraryException : public std::exception {
 public:
  UnicodeLibraryException() = default;
  ~UnicodeLibraryException() override;
  const char* what() const noexcept override;
};

class VARNICE_API UnicodeLibrary {
 public:
  // 0x2010300: major 2, minor 1, release 0, build 3.
  static unsigned long VersionNumber();
  // "Version 2.1.0, 1999-05-10".
  static const char* VersionString();
  // Hosts pass the interface versions they were built against; only the pair
  // (11, 20) is accepted.
  static bool VersionIsCompatible(unsigned long hostVersion, unsigned int unicodeVersion);
};

#endif  // VARNICE_ENCODING_UNICODE_LIBRARY_H_
