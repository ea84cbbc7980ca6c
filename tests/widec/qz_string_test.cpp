#include "varnice/widec/qz_string.h"

#include <gtest/gtest.h>

#include <string_view>
#include <thread>
#include <unordered_set>
#include <vector>

#include "varnice/widec/qz_exception.h"
#include "varnice/widec/qz_wstring.h"

namespace {

qz_wstring W(std::u16string_view text) {
  qz_wstring w;
  for (char16_t c : text) w.push_back(c);
  return w;
}

std::string_view V(const qz_string& s) { return std::string_view(s); }

TEST(QzString, CopiesShareUntilOneIsModified) {
  const qz_string original("shared text");
  qz_string copy = original;
  EXPECT_EQ(copy.data(), original.data());

  copy[0] = 'S';
  EXPECT_NE(copy.data(), original.data());
  EXPECT_EQ(V(original), "shared text");
  EXPECT_EQ(V(copy), "Shared text");

  // Every kind of modification unshares, and an unshared copy keeps the
  // capacity it had.
  auto modify = [&](auto&& change) {
    qz_string c = original;
    change(c);
    EXPECT_EQ(V(original), "shared text");
    return c;
  };
  EXPECT_EQ(V(modify([](qz_string& c) { c.append("!"); })), "shared text!");
  EXPECT_EQ(V(modify([](qz_string& c) { c.erase(0, 7); })), "text");
  EXPECT_EQ(V(modify([](qz_string& c) { c.replace(0, 6, "one"); })), "one text");
  EXPECT_EQ(V(modify([](qz_string& c) { c.insert(6, 1, '-'); })), "shared- text");
  EXPECT_EQ(V(modify([](qz_string& c) { c.resize(3); })), "sha");
  EXPECT_EQ(V(modify([](qz_string& c) { *c.begin() = 'x'; })), "xhared text");
  EXPECT_EQ(V(modify([](qz_string& c) { c.at(1) = 'H'; })), "sHared text");
  EXPECT_TRUE(modify([](qz_string& c) { c.clear(); }).empty());
  EXPECT_EQ(modify([](qz_string& c) { c.erase(0, 1); }).capacity(), original.capacity());

  // Assignment shares too; the old text of the target is let go.
  qz_string target("old");
  target = original;
  EXPECT_EQ(target.data(), original.data());
}

TEST(QzString, SourceInsideItselfIsReadBeforeItMoves) {
  // Whether the array moves (append) or the tail moves in place (insert,
  // replace), the source must be read before it is disturbed.
  qz_string s("abc");
  s.append(s);
  EXPECT_EQ(V(s), "abcabc");
  s.insert(0, s.data() + 3, 3);
  EXPECT_EQ(V(s), "abcabcabc");
  s.reserve(40);
  s.replace(1, 2, s.data() + 5, 4);
  EXPECT_EQ(V(s), "acabcabcabc");
}

TEST(QzString, MoveAndSwap) {
  qz_string a("first");
  const char* text = a.data();
  qz_string b(std::move(a));
  EXPECT_EQ(b.data(), text);
  EXPECT_TRUE(a.empty());  // moved-from is empty
  a = qz_string("second");
  a.swap(b);
  EXPECT_EQ(V(a), "first");
  EXPECT_EQ(V(b), "second");
}

TEST(QzString, GrowsToNeededTimesGoldenRatio) {
  qz_string s("hello");
  EXPECT_EQ(s.capacity(), 5u);  // constructors allocate exactly
  s += " world";
  EXPECT_EQ(s.capacity(), 17u);  // 11 * 1.6180339 = 17.79
  const char* before = s.data();
  s.append(6, '.');  // 17 fits
  EXPECT_EQ(s.capacity(), 17u);
  EXPECT_EQ(s.data(), before);
  s.push_back('!');
  EXPECT_EQ(s.capacity(), 29u);  // 18 * 1.6180339 = 29.12
  EXPECT_EQ(V(s), "hello world......!");

  qz_string empty;
  EXPECT_EQ(empty.capacity(), 0u);
  empty.push_back('x');
  EXPECT_EQ(empty.capacity(), 1u);  // 1.618 truncates to 1
  empty.push_back('y');
  EXPECT_EQ(empty.capacity(), 3u);

  qz_string reserved;
  reserved.reserve(10);  // reserve is exact
  EXPECT_EQ(reserved.capacity(), 10u);
  reserved.reserve(4);
  EXPECT_EQ(reserved.capacity(), 10u);
}

TEST(QzString, CStrTerminatesInPlace) {
  qz_string full("abc");
  ASSERT_EQ(full.capacity(), 3u);
  qz_string sharer = full;
  EXPECT_STREQ(full.c_str(), "abc");
  EXPECT_EQ(full.capacity(), 4u);  // enlarged to length + 1
  // The copy that shared the full array is left as it was.
  EXPECT_EQ(sharer.capacity(), 3u);
  EXPECT_EQ(V(sharer), "abc");

  // With room to spare nothing moves, and shrinking leaves a terminator.
  qz_string roomy("abcdef");
  roomy.reserve(10);
  const char* array = roomy.data();
  roomy.erase(2);
  EXPECT_EQ(roomy.c_str(), array);
  EXPECT_STREQ(roomy.c_str(), "ab");
  roomy.resize(1);
  EXPECT_STREQ(roomy.c_str(), "a");
  roomy.replace(0, 1, "xyz");
  EXPECT_STREQ(roomy.c_str(), "xyz");

  // Every empty string gives the same static "".
  qz_string none, cleared("x");
  cleared.clear();
  EXPECT_STREQ(none.c_str(), "");
  EXPECT_EQ(none.c_str(), cleared.c_str());
  EXPECT_EQ(none.c_str(), qz_string(nullptr).c_str());
  EXPECT_NE(none.data(), nullptr);
}

TEST(QzString, IndexOperatorChecksOnlyForEmpty) {
  qz_string empty;
  EXPECT_THROW(empty[0], qz_out_of_range);
  EXPECT_THROW(empty.at(0), qz_out_of_range);
  const qz_string& const_empty = empty;
  EXPECT_EQ(const_empty[0], '\0');  // the const form does not throw

  qz_string s("ab");
  s.reserve(8);
  EXPECT_NO_THROW((void)s[5]);  // unchecked past the length
  EXPECT_THROW(s.at(2), qz_out_of_range);
  EXPECT_EQ(s.at(1), 'b');
}

TEST(QzString, CompareLikeStrncmpThenShorterIsLess) {
  EXPECT_LT(qz_string("ab").compare("abc"), 0);
  EXPECT_GT(qz_string("abc").compare("ab"), 0);
  EXPECT_EQ(qz_string("abc").compare("abc"), 0);
  EXPECT_LT(qz_string("abc").compare("abd"), 0);
  EXPECT_GT(qz_string("\x80").compare("a"), 0);  // bytes are unsigned
  EXPECT_LT(qz_string().compare("a"), 0);
  EXPECT_EQ(qz_string().compare(static_cast<const char*>(nullptr)), 0);

  // strncmp stops at a NUL both share, so what follows it is not compared.
  const qz_string a("a\0b", 3), b("a\0c", 3);
  EXPECT_EQ(a.compare(b), 0);
  EXPECT_TRUE(a == b);
  EXPECT_LT(qz_string("a\0", 2).compare(qz_string("a\0b", 3)), 0);

  const qz_string m("m");
  EXPECT_TRUE(m == "m");
  EXPECT_TRUE("m" == m);
  EXPECT_TRUE(m != "n");
  EXPECT_TRUE(m < "n" && "l" < m && m <= "m" && m >= "m" && m > "ab" && "z" > m);
  EXPECT_TRUE(qz_string("ab") < qz_string("abc"));
}

TEST(QzString, FindAndSubstrAtTheEdges) {
  const qz_string s("abcabc");
  EXPECT_EQ(qz_string::npos, 0xFFFFFFFFu);
  EXPECT_EQ(s.find("bc"), 1u);
  EXPECT_EQ(s.find("bc", 2), 4u);
  EXPECT_EQ(s.find("bc", 5), qz_string::npos);
  EXPECT_EQ(s.find(""), 0u);
  EXPECT_EQ(s.find("", 6), 6u);  // empty pattern matches at the end
  EXPECT_EQ(s.find("", 7), qz_string::npos);
  EXPECT_EQ(s.find("abcabcd"), qz_string::npos);
  EXPECT_EQ(s.find('c', 3), 5u);
  EXPECT_EQ(s.find('a', 6), qz_string::npos);
  EXPECT_EQ(s.find(qz_string("ca")), 2u);

  EXPECT_EQ(s.rfind("bc"), 4u);
  EXPECT_EQ(s.rfind("bc", 3), 1u);
  EXPECT_EQ(s.rfind("ab", 0), 0u);
  EXPECT_EQ(s.rfind("bc", 0), qz_string::npos);
  EXPECT_EQ(s.rfind(""), 6u);
  EXPECT_EQ(s.rfind('a'), 3u);
  EXPECT_EQ(s.rfind('c', 4), 2u);
  EXPECT_EQ(s.rfind('z'), qz_string::npos);
  EXPECT_EQ(qz_string().rfind('a'), qz_string::npos);
  EXPECT_EQ(qz_string().find(""), 0u);

  EXPECT_EQ(V(s.substr(4)), "bc");
  EXPECT_EQ(V(s.substr(1, 2)), "bc");
  EXPECT_EQ(V(s.substr(2, qz_string::npos)), "cabc");
  EXPECT_TRUE(s.substr(6).empty());
  EXPECT_THROW(s.substr(7), qz_out_of_range);
}

TEST(QzString, EditingPositionsAreChecked) {
  qz_string s("abc");
  EXPECT_THROW(s.insert(4, "x"), qz_out_of_range);
  EXPECT_THROW(s.erase(4), qz_out_of_range);
  EXPECT_THROW(s.replace(4, 0, "x"), qz_out_of_range);
  EXPECT_EQ(V(s), "abc");
  s.insert(3, "de");
  s.erase(1, qz_string::npos - 1);  // clamped to the end
  EXPECT_EQ(V(s), "a");
  s.replace(0, 100, 2, 'z');
  EXPECT_EQ(V(s + "!" + 'x'), "zz!x");
  EXPECT_EQ(V("<" + s), "<zz");
}

TEST(QzWstring, SameRulesOverSixteenBitUnits) {
  const qz_wstring original = W(u"wide");
  qz_wstring copy = original;
  EXPECT_EQ(copy.data(), original.data());
  copy[0] = u'W';
  EXPECT_TRUE(original == W(u"wide"));
  EXPECT_TRUE(copy == W(u"Wide"));

  EXPECT_EQ(W(u"hello").capacity(), 6u);  // push_back grew it 1, 3, 6
  qz_wstring exact(W(u"abc").data(), 3);
  EXPECT_EQ(exact.capacity(), 3u);
  EXPECT_EQ(exact.c_str()[3], 0);
  EXPECT_EQ(exact.capacity(), 4u);
  EXPECT_EQ(qz_wstring().c_str()[0], 0);

  // Units compare unsigned; prefix is less; a shared 0 ends the comparison.
  EXPECT_GT(W(u"\x8000").compare(W(u"A")), 0);
  EXPECT_TRUE((W(u"ab") <=> W(u"abc")) < 0);
  EXPECT_TRUE(W(std::u16string_view(u"a\0b", 3)) == W(std::u16string_view(u"a\0c", 3)));
  const unsigned short abc[] = {'a', 'b', 'c', 0};
  EXPECT_TRUE(W(u"abc") == abc);
  EXPECT_TRUE(abc < W(u"abd"));

  const qz_wstring s = W(u"abcabc");
  EXPECT_EQ(s.find(W(u"ca")), 2u);
  EXPECT_EQ(s.rfind(u'b'), 4u);
  EXPECT_EQ(s.find(abc, 1), 3u);
  EXPECT_TRUE(s.substr(4) == W(u"bc"));
  EXPECT_THROW(s.substr(7), qz_out_of_range);
  qz_wstring empty;
  EXPECT_THROW(empty[0], qz_out_of_range);
}

TEST(QzString, CopiesFromManyThreadsKeepTheCountRight) {
  qz_string original("text shared between threads");
  const char* array = original.data();
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&original, t] {
      for (int i = 0; i < 20000; ++i) {
        qz_string copy = original;
        qz_string again = copy;
        if (i % 100 == 0) again.push_back(static_cast<char>('0' + t));  // unshares
        ASSERT_EQ(copy.data(), original.data());
      }
    });
  }
  for (std::thread& t : threads) t.join();
  // Every copy is gone: a count left above one would make this write copy.
  original[0] = 'T';
  EXPECT_EQ(original.data(), array);
  EXPECT_EQ(V(original), "Text shared between threads");
}

TEST(QzStringHash, EqualStringsHashAlikeAndWorkAsKeys) {
  std::unordered_set<qz_string> names;
  names.insert(qz_string("Shift_JIS"));
  names.insert(qz_string("EUC-JP"));
  const qz_string copy = *names.find(qz_string("Shift_JIS"));
  EXPECT_TRUE(names.contains(copy));
  EXPECT_FALSE(names.contains(qz_string("Shift_JI")));
  // Comparison stops at a 0 both share, so these are equal and must hash alike.
  const qz_string a("ab\0x", 4), b("ab\0y", 4);
  ASSERT_EQ(a, b);
  EXPECT_EQ(std::hash<qz_string>{}(a), std::hash<qz_string>{}(b));
  EXPECT_NE(std::hash<qz_string>{}(qz_string("ab\0", 3)), std::hash<qz_string>{}(qz_string("ab")));

  std::unordered_set<qz_wstring> wide;
  const unsigned short kana[] = {0x3042, 0x3044, 0};
  wide.insert(qz_wstring(kana));
  EXPECT_TRUE(wide.contains(qz_wstring(kana, 2)));
  EXPECT_FALSE(wide.contains(qz_wstring(kana, 1)));
  const unsigned short x[] = {'a', 0, 'x'}, y[] = {'a', 0, 'y'};
  ASSERT_EQ(qz_wstring(x, 3), qz_wstring(y, 3));
  EXPECT_EQ(std::hash<qz_wstring>{}(qz_wstring(x, 3)), std::hash<qz_wstring>{}(qz_wstring(y, 3)));
  EXPECT_EQ(std::hash<qz_wstring>{}(qz_wstring()), std::hash<qz_wstring>{}(qz_wstring(kana, 0)));
}

}  // namespace
