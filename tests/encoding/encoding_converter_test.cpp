#include "varnice/encoding/encodingconverter/encoding_converter.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>

#include "tests/stream/stream_test_support.h"
#include "varnice/encoding/internal_encoding.h"
#include "varnice/stream/buffer_char_sink.h"
#include "varnice/widec/qz_string.h"
#include "varnice/widec/qz_wstring.h"

namespace {

using namespace testing_streams;

const InternalEncoding& Unicode() { return *InternalEncoding::Unicode(); }
const InternalEncoding& Unicode11() { return *InternalEncoding::Unicode11(); }
const ExternalEncoding& UTF8() { return *ExternalEncoding::Unicode20UTF8(); }

const char* kReadOnlyNames[] = {"ReadOnly", nullptr};
const ReadOnlyEncoding& ReadOnly() {
  static const ReadOnlyEncoding* encoding = new ReadOnlyEncoding(125, kReadOnlyNames);
  return *encoding;
}

// Which of the two stages a converter or converting sink built.
using Stages = std::pair<bool, bool>;
template <class Converter>
Stages StagesOf(Converter& c) {
  return {c.Director().First() != nullptr, c.Director().Second() != nullptr};
}

TEST(EncodingConverters, UnicodeSidesGetNoStage) {
  Chunk16Source same({u"\uAC00b"});
  InternalEncodingConverter forward(same, Unicode(), Unicode());
  EXPECT_EQ(StagesOf(forward), Stages(false, false));
  EXPECT_EQ(ReadAll(forward), u"\uAC00b");
  EXPECT_EQ(forward.ActualInputEncoding(), nullptr);

  Chunk16Source to11({u"\uAC00b"});
  InternalEncodingConverter narrow(to11, Unicode(), Unicode11());
  EXPECT_EQ(StagesOf(narrow), Stages(true, false));
  EXPECT_EQ(ReadAll(narrow), u"\u3400b");

  Chunk16Source from11({u"\u3400b"});
  InternalEncodingConverter widen(from11, Unicode11(), Unicode());
  EXPECT_EQ(StagesOf(widen), Stages(false, true));
  EXPECT_EQ(ReadAll(widen), u"\uAC00b");

  Chunk16Source units({u"\u00E9!"});
  ExternalEncodingConverter encode(units, Unicode(), UTF8());
  EXPECT_EQ(StagesOf(encode), Stages(true, false));
  EXPECT_EQ(ReadAll(encode), "\xC3\xA9!");

  // Bytes are always decoded; to Unicode that stage is the whole pipeline.
  ChunkSource bytes({"\xE3\x90", "\x80"});
  InternalEncodingConverter decode(bytes, UTF8(), Unicode());
  EXPECT_EQ(StagesOf(decode), Stages(false, true));
  EXPECT_EQ(ReadAll(decode), u"\u3400");
  EXPECT_EQ(decode.ActualInputEncoding(), &UTF8());

  ChunkSource bytes11({"\xE3\x90\x80"});
  InternalEncodingConverter decode11(bytes11, *ExternalEncoding::Unicode11UTF8(), Unicode11());
  EXPECT_TRUE(StagesOf(decode11).first);
  EXPECT_EQ(ReadAll(decode11), u"\u3400");
}

TEST(EncodingConverters, ByteToByteThroughUnicode) {
  ChunkSource bytes({"a\xC3", "\xA9\xE6\x97\xA5"});
  ExternalEncodingConverter convert(bytes, UTF8(), *ExternalEncoding::Unicode20BigEndian());
  EXPECT_EQ(ReadAll(convert), std::string("\x00" "a\x00\xE9\x65\xE5", 6));
  EXPECT_EQ(convert.ActualInputEncoding(), &UTF8());
}

TEST(EncodingConverters, SinksConvertWhatTheyAreGiven) {
  Collect16 units;
  ExternalEncodingConverterSink decode(UTF8(), Unicode11(), units);
  decode.Put("\xEA\xB0", nullptr);
  decode.Put("\x80" "b", nullptr);
  EXPECT_EQ(units.text, u"\u3400b");

  Collect8 bytes;
  ExternalEncodingConverterSink recode(*ExternalEncoding::Unicode20ByteStream(), UTF8(), bytes);
  recode.PutBuffer("\xFE\xFF\x00\xE9", "\xFE\xFF\x00\xE9" + 4);
  recode.Flush();
  EXPECT_EQ(bytes.text, "\xC3\xA9");
  EXPECT_EQ(bytes.flushes, 1);

  Collect8 utf8;
  InternalEncodingConverterSink encode(Unicode11(), UTF8(), utf8);
  encode.Put(U(u"\u3400"));
  EXPECT_EQ(utf8.text, "\xEA\xB0\x80");

  Collect16 same;
  InternalEncodingConverterSink forward(Unicode(), Unicode(), same);
  EXPECT_EQ(StagesOf(forward), Stages(false, false));
  forward.Put(U(u"xy"));
  EXPECT_EQ(same.text, u"xy");
}

TEST(EncodingConverters, BoundedSinksEndOnAWholeCharacter) {
  char buffer[4];
  BufferCharSink out(buffer, 4);
  InternalEncodingConverterSink encode(Unicode(), UTF8(), out);
  encode.Put(U(u"a\u00E9\u20ACz"));
  EXPECT_EQ(std::string(out.data(), out.size()), "a\xC3\xA9");
  EXPECT_TRUE(out.truncated());
}

TEST(EncodingConverters, AnEncodingThatCannotWriteIsRefused) {
  const std::string expected = "Invalid output encoding: ReadOnly";
  auto check = [&](auto build) {
    try {
      build();
      ADD_FAILURE() << "no exception";
    } catch (const InvalidOutputEncoding& e) {
      EXPECT_EQ(std::string(e.what()), expected);
    }
  };
  ChunkSource bytes({"x"});
  Chunk16Source units({u"x"});
  Collect8 byteSink;
  check([&] { ExternalEncodingConverter c(bytes, UTF8(), ReadOnly()); });
  check([&] { ExternalEncodingConverter c(units, Unicode11(), ReadOnly()); });
  check([&] { ExternalEncodingConverterSink c(UTF8(), ReadOnly(), byteSink); });
  check([&] { InternalEncodingConverterSink c(Unicode(), ReadOnly(), byteSink); });

  // Reading from it is fine.
  ChunkSource readable({"ok"});
  InternalEncodingConverter read(readable, ReadOnly(), Unicode());
  EXPECT_EQ(ReadAll(read), u"ok");
}

// ScriptedBehavior counts the problems and leaves each to the default: 0x80
// is not UTF-8, so U+FFFD, which the test encoding writes as FF FD; U+FFFF is
// not in the test encoding, so its substitute byte.
TEST(EncodingConverters, DefaultSubstitutesAndSetBehaviorReachesBothStages) {
  ScriptedBehavior behavior;
  ChunkSource bytes({"a\x80" "b\xEF\xBF\xBF" "c"});
  ExternalEncodingConverter convert(bytes, UTF8(), TestEncoding());
  convert.SetBehavior(&behavior);
  EXPECT_EQ(&convert.Behavior(), &behavior);
  EXPECT_EQ(ReadAll(convert), "a\xFF\xFD" "b\x1A" "c");
  EXPECT_EQ(behavior.illegal, 1);
  EXPECT_EQ(behavior.notInRepertoire, 1);

  ChunkSource bad({"\xC3" "A"});
  InternalEncodingConverter decode(bad, UTF8(), Unicode());
  EXPECT_EQ(ReadAll(decode), u"\uFFFD");

  ScriptedBehavior sinkBehavior;
  Collect8 out;
  ExternalEncodingConverterSink sink(UTF8(), TestEncoding(), out);
  sink.SetBehavior(&sinkBehavior);
  sink.Put("a\x80" "b\xEF\xBF\xBF", nullptr);
  EXPECT_EQ(out.text, "a\xFF\xFD" "b\x1A");
  EXPECT_EQ(sinkBehavior.illegal, 1);
  EXPECT_EQ(sinkBehavior.notInRepertoire, 1);
}

// Insertion on the bytes-to-Unicode side is covered with the converting
// sources; here, towards bytes through a sink.
TEST(EncodingConverters, BehaviourMayInsertInputOrThrowTowardsBytes) {
  ScriptedBehavior replace;
  replace.onNotInRepertoire = [](CharacterNotInRepertoire& p) { p.InsertInput(U(u"<"), nullptr); };
  Collect8 out;
  InternalEncodingConverterSink sink(Unicode(), TestEncoding(), out);
  sink.SetBehavior(&replace);
  sink.Put(U(u"a\uFFFFb"));
  EXPECT_EQ(out.text, "a<b");

  ScriptedBehavior refuse;
  refuse.onNotInRepertoire = [](CharacterNotInRepertoire&) { throw std::runtime_error("unmappable"); };
  InternalEncodingConverterSink strict(Unicode(), TestEncoding(), out);
  strict.SetBehavior(&refuse);
  EXPECT_THROW(strict.Put(U(u"\uFFFF")), std::runtime_error);
}

TEST(EncodingConverters, StringsConvertThroughTheConverters) {
  const qz_string bytes(U(u"a\u00E9\u65E5"), UTF8());
  EXPECT_EQ(std::string_view(bytes), "a\xC3\xA9\xE6\x97\xA5");
  const qz_string counted(U(u"a\u00E9\u65E5"), 2, UTF8());
  EXPECT_EQ(std::string_view(counted), "a\xC3\xA9");
  const qz_string substituted(U(u"x\uFFFF"), TestEncoding());
  EXPECT_EQ(std::string_view(substituted), "x\x1A");
  EXPECT_TRUE(qz_string(static_cast<const unsigned short*>(nullptr), UTF8()).empty());

  const qz_wstring units("a\xC3\xA9\x80", UTF8());
  EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t*>(units.data()), units.size()), u"a\u00E9\uFFFD");
  const qz_wstring two("\xFF\xFE\x41\x00", 4, *ExternalEncoding::Unicode20ByteStream());
  EXPECT_EQ(two.size(), 1u);
  EXPECT_EQ(two[0], u'A');
}

}  // namespace
