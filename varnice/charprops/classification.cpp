#include "varnice/charprops/classification.h"

#include "varnice/widec/same_ignoring_case.h"

bool SpaceCharacterTest::HasName(qz_string const& name) const {
  return SameIgnoringCase(name.c_str(), "space");
}

qz_string SpaceCharacterTest::Name() const { return qz_string("space"); }

bool SpaceCharacterTest::Test(unsigned long c) const {
  return SpaceSeparator->Test(c) || LineSeparator->Test(c) || ParagraphSeparator->Test(c) ||
         (c >= 0x09 && c <= 0x0D) || c == 0x20;
}

bool HexadecimalCharacterTest::HasName(qz_string const& name) const {
  return SameIgnoringCase(name.c_str(), "xdigit");
}

qz_string HexadecimalCharacterTest::Name() const { return qz_string("xdigit"); }

bool HexadecimalCharacterTest::Test(unsigned long c) const {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}
