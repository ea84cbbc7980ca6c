#include "varnice/encoding/unicode_lib_behavior.h"

#include <gtest/gtest.h>

#include "tests/stream/stream_test_support.h"

#include <string>
#include <vector>

#include "varnice/encoding/external_encoding.h"
#include "varnice/encoding/internal_encoding.h"
#include "varnice/encoding/qz_unicode_per_thread.h"
#include "varnice/encoding/actors/unicode_lib_actor.h"
#include "varnice/encoding/unicode_lib_director.h"

#include <thread>

namespace {

// Records what a behaviour asks of the stage that met the problem.
struct RecordingSolver : ProblemSolver_8_to_16, ProblemSolver_16_to_8 {
  std::u16string units;
  std::string bytes;
  void InsertInput(const char*, const char*) override {}
  void InsertInput(const unsigned short*, const unsigned short*) override {}
  void InsertOutput(const unsigned short* b, const unsigned short* e) override {
    units.append(b, e);
  }
  void InsertOutput(const char* b, const char* e) override {
    if (e == nullptr) e = b + std::char_traits<char>::length(b);
    bytes.append(b, e);
  }
};

struct EbcdicLike : testing_streams::StubExternalEncoding {
  EbcdicLike() : StubExternalEncoding(TextEncodingID(126), nullptr, nullptr, 0) {}
  char SubstituteChar() const override { return 0x3F; }
};

const ExternalEncoding& TestEncoding() {
  static EbcdicLike* encoding = new EbcdicLike;
  return *encoding;
}

const InternalEncoding& Unicode20() { return *InternalEncoding::Unicode(); }

std::string Substitute(UnicodeLibBehavior& behavior) {
  RecordingSolver solver;
  CharacterNotInRepertoire problem{{Unicode20(), TestEncoding(), solver, nullptr, nullptr, nullptr, nullptr, nullptr}};
  behavior.HandleCharacterNotInRepertoire(problem);
  return solver.bytes;
}

TEST(UnicodeLibBehavior, DefaultsSubstituteInBothDirections) {
  UnicodeLibBehavior behavior;
  RecordingSolver solver;
  IllegalByteRange illegal{{TestEncoding(), Unicode20(), solver, nullptr, nullptr, nullptr, nullptr, nullptr}};
  behavior.HandleIllegalByteRange(illegal);
  NoCharacterDefinedForCodepoint undefined{{TestEncoding(), Unicode20(), solver, nullptr, nullptr, nullptr, nullptr, nullptr}};
  behavior.HandleNoCharacterDefinedForCodepoint(undefined);
  EXPECT_EQ(solver.units, u"\uFFFD\uFFFD");

  EXPECT_EQ(Substitute(behavior), "\x3F");  // the target encoding's own substitute byte
  behavior.SetExternalSubstitute("<?>");
  EXPECT_EQ(Substitute(behavior), "<?>");
  behavior.SetExternalSubstitute(nullptr);
  EXPECT_EQ(Substitute(behavior), "\x3F");
}

TEST(UnicodeLibBehavior, SwitchesReturnTheirOldValues) {
  UnicodeLibBehavior behavior;
  EXPECT_FALSE(behavior.SetDisplayAutoDetectMessages(true));
  EXPECT_TRUE(behavior.DisplayAutoDetectMessages());

  EXPECT_FALSE(behavior.HasForcedDirectMapping());
  EXPECT_TRUE(behavior.SetForcedDirectMapping().empty());
  EXPECT_EQ(std::string(behavior.ForcedDirectMapping().c_str()), "\\~");
  EXPECT_EQ(std::string(behavior.SetForcedDirectMapping("$").c_str()), "\\~");
  EXPECT_EQ(std::string(behavior.ClearForcedDirectMapping().c_str()), "$");
  EXPECT_FALSE(behavior.HasForcedDirectMapping());
}

TEST(UnicodeLibBehavior, CopiesOwnTheirSubstitute) {
  UnicodeLibBehavior original;
  original.SetExternalSubstitute("?");
  original.SetForcedDirectMapping();
  original.SetDisplayAutoDetectMessages(true);
  UnicodeLibBehavior copy(original);
  UnicodeLibBehavior fromPointer(&original);
  UnicodeLibBehavior assigned;
  assigned = original;
  original.SetExternalSubstitute("!");
  for (UnicodeLibBehavior* b : {&copy, &fromPointer, &assigned}) {
    EXPECT_STREQ(b->ExternalSubstitute(), "?");
    EXPECT_TRUE(b->HasForcedDirectMapping());
    EXPECT_TRUE(b->DisplayAutoDetectMessages());
  }
  EXPECT_EQ(UnicodeLibBehavior(static_cast<const UnicodeLibBehavior*>(nullptr)).ExternalSubstitute(), nullptr);
}

TEST(UnicodeLibBehavior, DefaultBehaviorIsCapturedByActorsAtConstruction) {
  UnicodeLibBehavior* initial = UnicodeLibBehavior::GetDefaultBehavior();
  EXPECT_EQ(initial, &UnicodeLibBehavior::gInitialDefaultBehavior);

  UnicodeLibActor before(static_cast<UnicodeLibBehavior*>(nullptr));
  UnicodeLibBehavior mine;
  EXPECT_EQ(UnicodeLibBehavior::SetDefaultBehavior(mine), initial);
  UnicodeLibActor after;
  UnicodeLibActor fromNullActor(static_cast<const UnicodeLibActor*>(nullptr));
  UnicodeLibActor fromActor(&before);
  EXPECT_EQ(&before.Behavior(), initial);
  EXPECT_EQ(&after.Behavior(), &mine);
  EXPECT_EQ(&fromNullActor.Behavior(), &mine);
  EXPECT_EQ(&fromActor.Behavior(), initial);
  EXPECT_EQ(UnicodeLibBehavior::SetDefaultBehavior(initial), &mine);
}

TEST(UnicodeLibDirector, SetsBehaviourOnBothStagesAndOwnsThem) {
  UnicodeLibBehavior behavior;
  auto* first = new UnicodeLibActor;
  auto* second = new UnicodeLibActor;
  UnicodeLibDirector director;
  director.DeleteFirst(first);
  director.DeleteSecond(second);
  director.SetBehaviors(behavior);
  EXPECT_EQ(&first->Behavior(), &behavior);
  EXPECT_EQ(&second->Behavior(), &behavior);
}  // the director deletes both (leak checkers would notice otherwise)

TEST(QZUnicodePerThread, OneZeroedBlockPerThread) {
  QZUnicodePerThread* mine = QZUnicodePerThread::get();
  EXPECT_EQ(mine, QZUnicodePerThread::get());
  mine->word = mine;
  QZUnicodePerThread* other = nullptr;
  void* otherWord = mine;
  std::thread([&] {
    other = QZUnicodePerThread::get();
    otherWord = other->word;
  }).join();
  EXPECT_NE(other, mine);
  EXPECT_EQ(otherWord, nullptr);
}

}  // namespace
