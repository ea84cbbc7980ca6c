#include "varnice/encoding/unicode_library.h"

UnicodeLibraryException::~UnicodeLibraryException() = default;

const char* UnicodeLibraryException::what() const noexcept {
  return "unknown Unicode Library exception";
}

unsigned long UnicodeLibrary::VersionNumber() { return 0x2010300; }

const char* UnicodeLibrary::VersionString() { return "Version 2.1.0, 1999-05-10"; }

bool UnicodeLibrary::VersionIsCompatible(unsigned long hostVersion, unsigned int unicodeVersion) {
  return hostVersion == 11 && unicodeVersion == 20;
}
