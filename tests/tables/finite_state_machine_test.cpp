#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "varnice/tables/finite_state_machine.h"
#include "varnice/tables/simple_finite_state_machine.h"
#include "varnice/widec/qz_exception.h"

namespace {

using SimpleMachine = SimpleFiniteStateMachine<unsigned char, unsigned short>;
using Machine = FiniteStateMachine<unsigned char, unsigned long>;
using Action16 = FiniteStateMachineAction<unsigned short>;
using Action32 = FiniteStateMachineAction<unsigned long>;

bool Same(Action16 const& a, Action16 const& b) {
  return a.output == b.output && a.nextState == b.nextState;
}
bool Same(Action32 const& a, Action32 const& b) {
  return a.output == b.output && a.nextState == b.nextState;
}

// Two states of 256 inputs: state 0 outputs the byte and stays, state 1
// outputs 0xFFFD and returns to 0.
std::vector<Action16> ConstantActions() {
  std::vector<Action16> actions(512);
  for (int b = 0; b < 256; ++b) {
    actions[b] = {static_cast<unsigned short>(b), 0};
    actions[256 + b] = {0xFFFD, 0};
  }
  return actions;
}

TEST(SimpleFiniteStateMachine, BuiltFromScratch) {
  SimpleMachine m(256, 2, 0xFFFD);
  EXPECT_TRUE(m.OwnsActions());
  EXPECT_EQ(m.StateCount(), 2);
  EXPECT_TRUE(Same(m.GetAction(1, 0xFF), {0xFFFD, 0}));
  unsigned char const lead[] = {0x81, 0x9F};
  m.InternalSetTransition(0, lead, 2, 0, 1);
  EXPECT_TRUE(Same(m.GetAction(0, 0x81), {0, 1}));
  EXPECT_TRUE(Same(m.GetAction(0, 0x80), {0xFFFD, 0}));
  EXPECT_TRUE(Same(m.GetAction(1, 0x81), {0xFFFD, 0}));
  m.SetDefaultTransition(1, 0x30FB, 0);
  EXPECT_TRUE(Same(m.GetAction(1, 0x00), {0x30FB, 0}));
  EXPECT_TRUE(Same(m.GetAction(0, 0x00), {0xFFFD, 0}));

  SimpleFiniteStateMachine<unsigned char, unsigned long> wide(256, 1, 0x8FA2B7ul);
  EXPECT_EQ(wide.GetAction(0, 7).output, 0x8FA2B7u);
}

TEST(SimpleFiniteStateMachine, AddStateCopiesConstantDataOnWrite) {
  std::vector<Action16> const constant = ConstantActions();
  std::vector<Action16> const before = constant;
  SimpleMachine m(256, 2, constant.data());
  EXPECT_FALSE(m.OwnsActions());
  EXPECT_EQ(m.Actions(), constant.data());

  EXPECT_EQ(m.AddState(0x3000, 1), 2);
  EXPECT_EQ(m.StateCount(), 3);
  EXPECT_TRUE(m.OwnsActions());
  EXPECT_NE(m.Actions(), constant.data());
  EXPECT_TRUE(Same(m.GetAction(0, 0x41), {0x41, 0}));
  EXPECT_TRUE(Same(m.GetAction(1, 0x41), {0xFFFD, 0}));
  EXPECT_TRUE(Same(m.GetAction(2, 0x41), {0x3000, 1}));
  EXPECT_TRUE(std::equal(constant.begin(), constant.end(), before.begin(),
                         [](auto& a, auto& b) { return Same(a, b); }));

  // A copy always owns its actions, also when the original is constant.
  SimpleMachine original(256, 2, constant.data());
  SimpleMachine copy(original);
  EXPECT_TRUE(copy.OwnsActions());
  copy.SetDefaultTransition(0, 1, 1);
  EXPECT_TRUE(Same(original.GetAction(0, 0x41), {0x41, 0}));
  EXPECT_TRUE(Same(copy.GetAction(0, 0x41), {1, 1}));
}

TEST(SimpleFiniteStateMachine, EmptyTransitionStillMakesActionsWritable) {
  std::vector<Action16> const constant = ConstantActions();
  SimpleMachine m(256, 2, constant.data());
  m.InternalSetTransition(1, nullptr, 0, 0x1234, 1);
  EXPECT_TRUE(m.OwnsActions());
  for (int i = 0; i < 512; ++i) ASSERT_TRUE(Same(m.Actions()[i], constant[i])) << i;

  unsigned char const one[] = {0x5C};
  m.InternalSetTransition(0, one, 1, 0xA5, 0);
  EXPECT_TRUE(Same(m.GetAction(0, 0x5C), {0xA5, 0}));
  EXPECT_TRUE(Same(constant[0x5C], {0x5C, 0}));
}

TEST(SimpleFiniteStateMachine, RejectsStatesAndInputsOutsideTheTable) {
  SimpleMachine m(128, 1, static_cast<unsigned short>(0));
  unsigned char const high[] = {0x80};
  EXPECT_THROW(m.SetDefaultTransition(1, 0, 0), qz_out_of_range);
  EXPECT_THROW(m.InternalSetTransition(0, high, 1, 0, 0), qz_out_of_range);
  EXPECT_TRUE(Same(m.GetAction(0, 0x7F), {0, 0}));
}

// A table too large for the address space: the allocation fails before the
// (never read) constant array is touched, and the machine is unchanged.
TEST(SimpleFiniteStateMachine, FailedAllocationKeepsThePreviousTable) {
  Action16 const constant[1] = {{1, 0}};
  SimpleMachine m(0xFFFFFFFFu, 0xFFFE, constant);
  EXPECT_THROW(m.AddState(0, 0), qz_sw_out_of_memory);
  EXPECT_THROW(m.MakeActionsWritable(), qz_sw_out_of_memory);
  EXPECT_EQ(m.StateCount(), 0xFFFE);
  EXPECT_EQ(m.Actions(), constant);
  EXPECT_FALSE(m.OwnsActions());
}

// Bytes 'a', 'b', 'c' in category 1, all others in 0; three states.
struct CategorisedMachine {
  CategorisedMachine() {
    std::fill(std::begin(map), std::end(map), 0);
    map['a'] = map['b'] = map['c'] = 1;
    for (int s = 0; s < 3; ++s) {
      actions[s * 2] = {static_cast<std::uint32_t>(100 + s), 0};
      actions[s * 2 + 1] = {static_cast<std::uint32_t>(200 + s), static_cast<unsigned short>(s)};
    }
    std::copy(std::begin(map), std::end(map), savedMap);
  }
  bool ConstantDataUntouched() const { return std::equal(map, map + 256, savedMap); }

  unsigned char map[256];
  unsigned char savedMap[256];
  Action32 actions[6];
};

// Which category each of 'a', 'b', 'c', 'x', 'y' ends in after listing bytes.
TEST(FiniteStateMachine, DistinguishCharactersSplitsCategoriesInByteOrder) {
  struct Row {
    const char* listed;
    unsigned count;
    int abcxy[5];
  } const rows[] = {
      {"cab", 2, {1, 1, 1, 0, 0}},  // a whole category listed: nothing to split
      {"b", 3, {1, 2, 1, 0, 0}},
      // 'x' splits category 0 at byte 0, before 'b' splits category 1, so 'x'
      // gets 2 and 'a' and 'c', which move together, get 3.
      {"axc", 4, {3, 1, 3, 2, 0}},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.listed);
    CategorisedMachine data;
    Machine m(2, 3, data.actions, data.map);
    const std::string listed = r.listed;
    m.DistinguishCharacters(reinterpret_cast<const unsigned char*>(listed.data()), listed.size());
    EXPECT_EQ(m.CategoryCount(), r.count);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(m.Categories()["abcxy"[i]], r.abcxy[i]) << "abcxy"[i];
    EXPECT_EQ(m.OwnsActions(), r.count > 2);
    EXPECT_EQ(m.OwnsCategories(), r.count > 2);
    EXPECT_TRUE(data.ConstantDataUntouched());
    // A new category starts as a copy of the old one in every state, in rows
    // of CategoryCount() actions.
    for (unsigned short s = 0; s < 3; ++s) {
      for (unsigned char c : std::string("abcxy")) {
        EXPECT_TRUE(Same(m.Actions()[s * m.CategoryCount() + m.Categories()[c]], data.actions[s * 2 + data.map[c]]))
            << s << c;
      }
    }
  }
}

TEST(FiniteStateMachine, TransitionsTouchOnlyTheListedBytes) {
  CategorisedMachine data;
  Machine m(2, 3, data.actions, data.map);
  unsigned char const ka[] = {'k', 'a'};
  m.InternalSetTransition(1, ka, 2, 0x30AB, 2);
  EXPECT_TRUE(Same(m.GetAction(1, 'k'), {0x30AB, 2}));
  EXPECT_TRUE(Same(m.GetAction(1, 'a'), {0x30AB, 2}));
  EXPECT_TRUE(Same(m.GetAction(1, 'b'), data.actions[3]));
  EXPECT_TRUE(Same(m.GetAction(1, 'z'), data.actions[2]));
  EXPECT_TRUE(Same(m.GetAction(0, 'k'), data.actions[0]));
  EXPECT_TRUE(Same(m.GetAction(2, 'a'), data.actions[5]));
  EXPECT_TRUE(data.ConstantDataUntouched());

  // An empty list splits nothing but still takes a writable copy.
  Machine other(2, 3, data.actions, data.map);
  other.InternalSetTransition(0, nullptr, 0, 0, 0);
  EXPECT_EQ(other.CategoryCount(), 2u);
  EXPECT_TRUE(other.OwnsActions());
  EXPECT_FALSE(other.OwnsCategories());
}

TEST(FiniteStateMachine, BuiltFromScratchAndCopied) {
  Machine m(1, 1, 0xFFFDul);
  EXPECT_EQ(m.AddState(0, 0), 1);
  unsigned char const n[] = {'n'};
  m.InternalSetTransition(0, n, 1, 0, 1);
  m.SetDefaultTransition(1, 0x3093, 0);
  EXPECT_EQ(m.CategoryCount(), 2u);
  EXPECT_TRUE(Same(m.GetAction(0, 'n'), {0, 1}));
  EXPECT_TRUE(Same(m.GetAction(0, 'm'), {0xFFFD, 0}));
  EXPECT_TRUE(Same(m.GetAction(1, 'm'), {0x3093, 0}));

  Machine copy(m);
  unsigned char const m1[] = {'m'};
  copy.InternalSetTransition(0, m1, 1, 0x307E, 0);
  EXPECT_EQ(copy.CategoryCount(), 3u);
  EXPECT_EQ(m.CategoryCount(), 2u);
  EXPECT_EQ(m.Categories()['m'], 0);
  EXPECT_TRUE(Same(m.GetAction(0, 'm'), {0xFFFD, 0}));
}

TEST(FiniteStateMachine, NoMoreThan256Categories) {
  std::vector<Action32> actions(256, Action32{0, 0});
  unsigned char map[256];
  for (int b = 0; b < 256; ++b) map[b] = static_cast<unsigned char>(b / 2);
  Machine m(255, 1, actions.data(), map);  // categories 0-127 used, 255 declared
  unsigned char const twoSplits[] = {0, 2};
  EXPECT_THROW(m.DistinguishCharacters(twoSplits, 2), qz_out_of_range);
  EXPECT_EQ(m.CategoryCount(), 255u);
  EXPECT_FALSE(m.OwnsActions());
  EXPECT_FALSE(m.OwnsCategories());
  EXPECT_EQ(map[2], 1);
}

}  // namespace
