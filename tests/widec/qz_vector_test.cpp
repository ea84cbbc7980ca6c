#include "varnice/widec/qz_vector.h"

#include <gtest/gtest.h>

#include "varnice/widec/qz_auto_array.h"
#include "varnice/widec/qz_auto_ptr.h"
#include "varnice/widec/qz_string.h"

namespace {

struct Counted {
  static inline int destroyed = 0;
  int value = 0;
  ~Counted() { ++destroyed; }
};

TEST(QzVector, GrowsByGoldenRatioAndKeepsOwnedElements) {
  Counted::destroyed = 0;
  {
    qz_vector<qz_auto_ptr<Counted>> v;
    unsigned int capacities[7];
    for (int i = 0; i < 7; ++i) {
      v.push_back(qz_auto_ptr<Counted>(new Counted{i}));
      capacities[i] = v.capacity();
    }
    // Needed 1, 2, 4, 7 times 1.6180339: 1, 3, 6, 11.
    const unsigned int expected[7] = {1, 3, 3, 6, 6, 6, 11};
    for (int i = 0; i < 7; ++i) EXPECT_EQ(capacities[i], expected[i]) << i;
    ASSERT_EQ(v.size(), 7u);
    for (unsigned int i = 0; i < v.size(); ++i) EXPECT_EQ(v[i]->value, static_cast<int>(i));
    EXPECT_EQ(Counted::destroyed, 0);  // growing moved them, deleted none
  }
  EXPECT_EQ(Counted::destroyed, 7);

  // An argument that lives in the storage being replaced is read first.
  qz_vector<qz_string> v;
  v.push_back(qz_string("first"));
  v.push_back(v[0]);  // full: the argument lives in the storage being replaced
  v.push_back(v[1]);
  EXPECT_TRUE(v[1] == "first");
  EXPECT_TRUE(v[2] == "first");
}

TEST(QzAutoArray, DeletesOnlyWhatItOwns) {
  Counted::destroyed = 0;
  Counted borrowed[2];
  {
    qz_auto_array<Counted> owner(new Counted[3]);
    qz_auto_array<Counted> viewer(borrowed, false);
    EXPECT_TRUE(owner.owns());
    EXPECT_FALSE(viewer.owns());
    owner[1].value = 5;
    qz_auto_array<Counted> moved(std::move(owner));
    EXPECT_EQ(moved[1].value, 5);
    EXPECT_FALSE(owner);  // moved-from owns nothing
    moved.reset(new Counted[1]);
    EXPECT_EQ(Counted::destroyed, 3);
  }
  EXPECT_EQ(Counted::destroyed, 4);

  Counted::destroyed = 0;
  {
    qz_auto_ptr<Counted> one(new Counted);
    qz_auto_ptr<Counted> other(std::move(one));
    other.reset(new Counted);
    EXPECT_EQ(Counted::destroyed, 1);
    delete other.release();
    EXPECT_EQ(Counted::destroyed, 2);
  }
  EXPECT_EQ(Counted::destroyed, 2);
}

}  // namespace
