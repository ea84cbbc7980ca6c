// Tests about the order in which encodings and variations come into being.
// They are process-wide singletons, so such a test runs its body in a new
// process of the test binary, one that has made none of the test's own yet,
// whatever else the binary ran before: whole, filtered, repeated or shuffled.
#ifndef VARNICE_TESTS_FRESH_PROCESS_H_
#define VARNICE_TESTS_FRESH_PROCESS_H_

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace varnice_test {

// The child re-runs only this test from the start ("threadsafe" death-test
// style) and exits 0 exactly when its expectations held; what it printed is
// shown when it did not.
inline void InFreshProcess(void (*body)()) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        body();
        std::fflush(nullptr);
        std::_Exit(::testing::Test::HasFailure() ? 1 : 0);
      },
      ::testing::ExitedWithCode(0), "");
}

}  // namespace varnice_test

// TEST(suite, name) whose body runs in a fresh process.
#define FRESH_PROCESS_TEST(suite, name)                                          \
  void suite##_##name##_InFreshProcess();                                        \
  TEST(suite, name) { ::varnice_test::InFreshProcess(&suite##_##name##_InFreshProcess); } \
  void suite##_##name##_InFreshProcess()

#endif  // VARNICE_TESTS_FRESH_PROCESS_H_
