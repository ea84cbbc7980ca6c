#include "varnice/codepages/mbcs_to_unicode_table.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Action = FiniteStateMachineAction<unsigned short>;

TEST(MBCStoUnicodeTable, AssignBuildsTrieAndLookupWalksIt) {
  MBCStoUnicodeTable table;
  ASSERT_EQ(table.StateCount(), 1);
  table.Assign(0x41, 0x0041, 0);
  table.Assign(0x8140, 0x3000, 0);
  table.Assign(0x8141, 0x3001, 0);
  table.Assign(0x8FA2AF, 0x02D8, 0);
  // 0x81, 0x8F and 0x8F 0xA2 each got one state.
  EXPECT_EQ(table.StateCount(), 4);
  EXPECT_EQ(table.GetAction(0, 0x81).output, MBCStoUnicodeTable::kNoOutput);

  unsigned short u = 0;
  EXPECT_TRUE(table.Lookup(0x8140, u, 0));
  EXPECT_EQ(u, 0x3000);
  EXPECT_TRUE(table.Lookup(0x8FA2AF, u, 0));
  EXPECT_EQ(u, 0x02D8);
  EXPECT_TRUE(table.Lookup(0x41, u, 0));
  EXPECT_EQ(u, 0x0041);
  u = 7;
  EXPECT_FALSE(table.Lookup(0x4140, u, 0)) << "first byte is a character, not a lead";
  EXPECT_FALSE(table.Lookup(0x81, u, 0)) << "a lead byte alone has no character";
  EXPECT_FALSE(table.Lookup(0x8142, u, 0)) << "unassigned trail";
  EXPECT_EQ(u, 7);
}

TEST(MBCStoUnicodeTable, CreatedStatesKeepInvalidBytesInPlace) {
  MBCStoUnicodeTable table;
  unsigned short s = table.CreateState();
  EXPECT_EQ(s, 1);
  for (int b : {0x00, 0x41, 0xFF}) {
    Action const& a = table.GetAction(s, static_cast<unsigned char>(b));
    EXPECT_EQ(a.output, MBCStoUnicodeTable::kInvalid);
    EXPECT_EQ(a.nextState, s);
  }
}

TEST(MBCStoUnicodeTable, RemappingReportsOnStderrAndRemaps) {
  MBCStoUnicodeTable table;
  table.Assign(0x8140, 0x3000, 0);
  testing::internal::CaptureStderr();
  table.Assign(0x8140, 0x3013, 0);
  std::string err = testing::internal::GetCapturedStderr();
  EXPECT_EQ(err,
            "ERROR: foreign char 0x00008140 is already mapped to U+0x3000\n"
            "       It cannot be remapped to U+0x3013\n");
  unsigned short u = 0;
  ASSERT_TRUE(table.Lookup(0x8140, u, 0));
  EXPECT_EQ(u, 0x3013);

  testing::internal::CaptureStderr();
  table.Assign(0x0142, 0x00E9, 0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Loser is 0x00000142\n");
}

TEST(MBCStoUnicodeTable, ModeSwitchMovesToAnotherStartState) {
  MBCStoUnicodeTable table;
  unsigned short kana = table.CreateState();
  table.CreateModeSwitch(0, 0x1B284A, kana);
  table.Assign(0x31, 0xFF71, kana);
  unsigned short state = 0;
  for (unsigned char b : {0x1B, 0x28, 0x4A}) {
    Action const& a = table.GetAction(state, b);
    EXPECT_EQ(a.output, MBCStoUnicodeTable::kNoOutput);
    state = a.nextState;
  }
  EXPECT_EQ(state, kana);
  EXPECT_EQ(table.GetAction(state, 0x31).output, 0xFF71);
}

TEST(MBCStoUnicodeTable, EditsCopyConstantActions) {
  static Action rows[256];
  for (int b = 0; b < 256; ++b) rows[b] = {static_cast<unsigned short>(b), 0};
  rows[0x81] = {MBCStoUnicodeTable::kInvalid, 0};
  MBCStoUnicodeTable table(256, 1, rows);
  EXPECT_FALSE(table.OwnsActions());
  testing::internal::CaptureStderr();
  table.Assign(0x41, 0x00C1, 0);
  testing::internal::GetCapturedStderr();
  EXPECT_TRUE(table.OwnsActions());
  EXPECT_EQ(rows[0x41].output, 0x41);
  EXPECT_EQ(table.GetAction(0, 0x41).output, 0x00C1);

  MBCStoUnicodeTable copy(table);
  copy.Assign(0x8140, 0x3000, 0);
  EXPECT_EQ(table.StateCount(), 1);
  EXPECT_EQ(copy.StateCount(), 2);
}

}  // namespace
