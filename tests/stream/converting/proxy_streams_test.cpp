#include "varnice/stream/converting/proxy_streams.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/stream/stream_test_support.h"

namespace {

using namespace testing_streams;

TEST(CharProxySource, SharesTheProxiedRangesAndHandsBackWhatWasConsumed) {
  ChunkSource inner({"abc", "de"});
  CharProxySource proxy(&inner);
  const char* b;
  const char* e;
  ASSERT_TRUE(proxy.GetBuffer(b, e));
  const char* innerB;
  const char* innerE;
  ASSERT_TRUE(inner.GetBuffer(innerB, innerE));
  EXPECT_EQ(b, innerB);  // the same bytes, not a copy
  EXPECT_EQ(e, innerE);

  proxy.DoneWith(b + 1);  // the reader takes "a" and asks again: same range
  ASSERT_TRUE(proxy.GetBuffer(b, e));
  EXPECT_EQ(std::string(b, e), "bc");
  proxy.DoneWith(e);
  ASSERT_TRUE(proxy.GetBuffer(b, e));  // the next fill hands "abc" back, then lends "de"
  EXPECT_EQ(std::string(b, e), "de");
  EXPECT_EQ(inner.Position(), b);
  proxy.DoneWith(e);
  EXPECT_FALSE(proxy.GetBuffer(b, e));
  EXPECT_EQ(inner.Position(), e);  // the inner source ends where the reader stopped

  // Exhausted for good, even when pointed at a fresh source.
  ChunkSource fresh({"x"});
  proxy.SetProxy(&fresh);
  EXPECT_FALSE(proxy.GetBuffer(b, e));
  EXPECT_EQ(fresh.fills, 0);
}

TEST(ProxyStreams, BehaviourIsTakenFromAndPassedToTheProxiedStream) {
  UnicodeLibBehavior first, second, third;
  Chunk16Source inner({u"x"});
  inner.SetBehavior(&first);
  Char16ProxySource proxy(&inner);
  EXPECT_EQ(&proxy.Behavior(), &first);
  proxy.SetBehavior(&second);
  EXPECT_EQ(&inner.Behavior(), &second);

  Collect8 sink;
  sink.SetBehavior(&third);
  CharProxySink sinkProxy;
  sinkProxy.SetProxy(&sink);
  EXPECT_EQ(&sinkProxy.Behavior(), &third);
  EXPECT_EQ(Char16ProxySource(nullptr).FillBuffer(), false);
}

// A sink with a byte budget, recording truncation.
class Bounded : public Collect8 {
 public:
  long RemainingCapacity() const override { return 10 - static_cast<long>(text.size()); }
  void MarkAsTruncated() override { truncated = true; }
  bool truncated = false;
};

TEST(ProxySinks, ForwardEveryCallExceptTheUnitSinksCapacity) {
  Bounded bytes;
  CharProxySink proxy(&bytes);
  proxy.Put("abc");  // NUL-terminated
  proxy.PutBuffer("de", nullptr);
  proxy.Flush();
  proxy.MarkAsTruncated();
  EXPECT_EQ(bytes.text, "abcde");
  EXPECT_EQ(bytes.flushes, 1);
  EXPECT_TRUE(bytes.truncated);
  EXPECT_EQ(proxy.RemainingCapacity(), 5);

  Collect16 units;
  Char16ProxySink proxy16(&units);
  proxy16.PutBuffer(U(u"hi"), nullptr);
  proxy16.Flush();
  EXPECT_EQ(units.text, u"hi");
  EXPECT_EQ(units.flushes, 1);
  EXPECT_EQ(proxy16.RemainingCapacity(), -1);
}

// Counts its own destruction.
class Stage : public UnicodeLibActor {
 public:
  explicit Stage(int& deaths) : deaths_(deaths) {}
  ~Stage() override { ++deaths_; }

 private:
  int& deaths_;
};

TEST(DirectedProxies, OwnTheirStagesAndSetOneBehaviourOnAll) {
  int deaths = 0;
  UnicodeLibBehavior behavior;
  Chunk16Source inner({u"abc"});
  {
    auto* first = new Stage(deaths);
    auto* second = new Stage(deaths);
    DirectedChar16ProxySource proxy(&inner, first, second);
    proxy.SetBehavior(&behavior);
    EXPECT_EQ(&first->Behavior(), &behavior);
    EXPECT_EQ(&second->Behavior(), &behavior);
    EXPECT_EQ(&inner.Behavior(), &behavior);
    EXPECT_EQ(ReadAll(proxy), u"abc");
  }
  EXPECT_EQ(deaths, 2);
  {
    Collect8 sink;
    DirectedCharProxySink proxy(&sink, new Stage(deaths), nullptr);
    proxy.SetBehavior(nullptr);  // a null behaviour leaves the stages alone
  }
  EXPECT_EQ(deaths, 3);
}

TEST(ToUnicodeProxySource, ForwardsAndNamesItsEncoding) {
  int deaths = 0;
  Chunk16Source inner({u"ab", u"c"});
  {
    ToUnicodeProxySource proxy(TestEncoding(), &inner);
    proxy.Director().DeleteFirst(new Stage(deaths));
    ExternalEncoding::ToUnicodeSource& face = proxy;
    EXPECT_EQ(face.ActualInputEncoding(), &TestEncoding());
    EXPECT_EQ(ReadAll(face), u"abc");
  }
  EXPECT_EQ(deaths, 1);
}

}  // namespace

// What an empty std::vector gives: a null range, with or without an end.
TEST(ProxySinks, NullRangesAreEmpty) {
  Collect8 bytes;
  Collect16 units;
  CharProxySink byteProxy(&bytes);
  Char16ProxySink unitProxy(&units);
  byteProxy.PutBuffer(nullptr, nullptr);
  unitProxy.PutBuffer(nullptr, nullptr);
  byteProxy.Put(nullptr, nullptr);
  unitProxy.Put(nullptr, nullptr);
  EXPECT_EQ(bytes.text, "");
  EXPECT_EQ(units.text, u"");
}
