#include "varnice/encoding/unicode_library.h"

#include <gtest/gtest.h>

TEST(UnicodeLibrary, VersionAndCompatibility) {
  EXPECT_EQ(UnicodeLibrary::VersionNumber(), 0x2010300ul);
  EXPECT_STREQ(UnicodeLibrary::VersionString(), "Version 2.1.0, 1999-05-10");
  EXPECT_TRUE(UnicodeLibrary::VersionIsCompatible(11, 20));
  EXPECT_FALSE(UnicodeLibrary::VersionIsCompatible(20, 11));
  EXPECT_FALSE(UnicodeLibrary::VersionIsCompatible(11, 21));
  EXPECT_STREQ(UnicodeLibraryException().what(), "unknown Unicode Library exception");
}
