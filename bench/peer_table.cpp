// Whole-text throughput of the C conversion functions beside ICU (ucnv) and
// glibc iconv, printed as one table: MB/s of input for each implementation
// and Varnice's ratio to each peer, with the goal of each row.
//
// The texts are generated here from sentence pools (Japanese in the manner
// of a manual page, English, German): several MB each, so that the tables'
// cache behaviour is that of real text rather than of one hot paragraph.
// The machine is shared, so the implementations of a row are timed in turn,
// the whole round repeated, and the best time of each kept.
//
// Usage: varnice_peer_table [rounds [row]] (rounds default 9, also from
// VARNICE_PEER_ROUNDS; row: only the rows whose title contains it).
#include <iconv.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "varnice/capi/varnice_c.h"

#ifdef VARNICE_BENCH_HAVE_ICU
#include <unicode/ucnv.h>
#include <unicode/ustring.h>
#endif

namespace {

using Units = std::vector<unsigned short>;

// ---- the texts ----

// No backslash, tilde, wave dash, minus sign or double bar: the peers map
// those differently in the Japanese pages, and would do different work.
const char* const kJapanese[] = {
    "このコマンドは、指定されたファイルの文字コードを変換して標準出力に書き出します。",
    "ファイルを指定しない場合は、標準入力から読み込みます。",
    "変換できない文字は、代わりの文字に置き換えられます。",
    "オプションは次のとおりです。",
    "入力の文字コードを自動的に判定します。判定に失敗した場合は終了コード2で終了します。",
    "詳しい情報を表示します。",
    "出力先のファイル名を指定します。既に存在する場合は上書きされます。",
    "行末の改行コードを変換します。",
    "環境変数LANGが設定されていない場合、既定の文字コードとしてUTF-8を使います。",
    "全角のカタカナを半角に変換することもできます。",
    "平成三十年四月一日から、新しい設定ファイルの形式が使われています。",
    "東京、大阪、名古屋、福岡、札幌の各支店で同じ設定を共有できます。",
    "漢字、ひらがな、カタカナ、英数字が混在する文書を正しく扱えます。",
    "処理の途中でエラーが発生した場合、それまでに変換した内容は保存されません。",
    "この機能は実験的なものであり、将来の版で変更される可能性があります。",
    "バグを見つけた場合は、開発者にメールで報告してください。",
    "著作権表示と許諾表示を、すべての複製に含めなければなりません。",
    "日本語の文書では、句読点として「、」と「。」が使われます。",
    "記号（括弧や引用符など）も変換の対象になります。",
    "会議は午前十時に始まり、午後三時に終わる予定です。",
};

const char* const kJapaneseOptions[] = {
    "-f, --from=CODE", "-t, --to=CODE", "-o, --output=FILE", "-v, --verbose",
    "-c, --check",     "-l, --list",    "-h, --help",        "--version",
};

const char* const kEnglish[] = {
    "The quick brown fox jumps over the lazy dog while the farmer watches from the porch.",
    "If no file is given, the program reads standard input and writes standard output.",
    "Characters that cannot be converted are replaced by a substitute character.",
    "Every copy of the software must carry the copyright notice and this permission notice.",
    "The meeting starts at ten o'clock and should end by three in the afternoon.",
    "She sells sea shells by the sea shore, and the shells she sells are surely sea shells.",
    "A journey of a thousand miles begins with a single step, or so the proverb says.",
    "Please report bugs to the maintainers, with the smallest input that shows the problem.",
    "In 1969, two astronauts walked on the Moon while a third orbited above them.",
    "The library is small, fast and safe, and it converts text between many encodings.",
};

const char* const kGerman[] = {
    "Der schnelle braune Fuchs springt über den faulen Hund, während der Bauer zusieht.",
    "Zwölf Boxkämpfer jagen Viktor quer über den großen Sylter Deich.",
    "Wenn keine Datei angegeben ist, liest das Programm von der Standardeingabe.",
    "Zeichen, die nicht umgewandelt werden können, werden durch ein Ersatzzeichen ersetzt.",
    "Die Besprechung beginnt um zehn Uhr und endet voraussichtlich gegen drei Uhr nachmittags.",
    "Fröhliche Grüße aus München, Köln und Düsseldorf an alle Mitarbeiterinnen und Mitarbeiter.",
    "Die Straße vor dem Rathaus wird wegen Bauarbeiten bis Ende März gesperrt.",
    "Übermäßiger Gebrauch von Süßigkeiten schadet den Zähnen, sagt die Ärztin.",
    "Das Buch kostet 12,50 Euro und ist in jeder gut sortierten Buchhandlung erhältlich.",
    "Äpfel, Birnen und Pflaumen wachsen im Garten hinter dem alten Bauernhaus.",
};

// Only in the windows-1252 text: characters ISO-8859-1 lacks.
const char* const kGerman1252[] = {
    "„Guten Morgen“, sagte sie – und lächelte.",
    "Der Eintritt kostet 5 € für Erwachsene – Kinder zahlen nichts.",
};

struct Rng {
  unsigned long long s = 0x9E3779B97F4A7C15ULL;
  unsigned Next(unsigned n) {
    s ^= s << 13;
    s ^= s >> 7;
    s ^= s << 17;
    return static_cast<unsigned>((s >> 11) % n);
  }
};

Units FromUtf8(const std::string& text) {
  Units u;
  u.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const unsigned char b = static_cast<unsigned char>(text[i]);
    unsigned c;
    int n;
    if (b < 0x80) {
      c = b, n = 1;
    } else if (b < 0xE0) {
      c = b & 0x1F, n = 2;
    } else if (b < 0xF0) {
      c = b & 0x0F, n = 3;
    } else {
      c = b & 0x07, n = 4;
    }
    for (int k = 1; k < n; ++k) c = c << 6 | (static_cast<unsigned char>(text[i + k]) & 0x3F);
    i += n;
    if (c >= 0x10000) {
      c -= 0x10000;
      u.push_back(static_cast<unsigned short>(0xD800 + (c >> 10)));
      u.push_back(static_cast<unsigned short>(0xDC00 + (c & 0x3FF)));
    } else {
      u.push_back(static_cast<unsigned short>(c));
    }
  }
  return u;
}

// A manual page: section headings, option lines in ASCII, paragraphs.
Units JapaneseText(std::size_t units) {
  Rng rng;
  std::string t;
  Units out;
  while (out.size() < units) {
    t = "\n名前\n       変換 - 文字コードを変換する\n\n説明\n       ";
    for (int s = 0, n = 3 + static_cast<int>(rng.Next(6)); s < n; ++s) t += kJapanese[rng.Next(20)];
    t += "\n\nオプション\n";
    for (int s = 0, n = 2 + static_cast<int>(rng.Next(4)); s < n; ++s) {
      t += "       ";
      t += kJapaneseOptions[rng.Next(8)];
      t += "\n              ";
      t += kJapanese[rng.Next(20)];
      t += "\n";
    }
    const Units piece = FromUtf8(t);
    out.insert(out.end(), piece.begin(), piece.end());
  }
  out.resize(units);
  return out;
}

Units SentenceText(const char* const* pool, int count, const char* const* extra, int extraCount,
                   std::size_t units) {
  Rng rng;
  Units out;
  std::string t;
  while (out.size() < units) {
    t.clear();
    for (int s = 0, n = 2 + static_cast<int>(rng.Next(5)); s < n; ++s) {
      if (extraCount > 0 && rng.Next(4) == 0) {
        t += extra[rng.Next(extraCount)];
      } else {
        t += pool[rng.Next(count)];
      }
      t += ' ';
    }
    t += "\n\n";
    const Units piece = FromUtf8(t);
    out.insert(out.end(), piece.begin(), piece.end());
  }
  out.resize(units);
  // Ends on a whole character: the last units are plain letters or spaces.
  return out;
}

// ---- the implementations ----

struct Encoded {
  Units units;
  std::string bytes;
};

int Number(const char* name) { return VarniceRegisterEncoding(name); }

Encoded Encode(const char* varniceName, Units units) {
  Encoded e;
  e.units = std::move(units);
  e.bytes.resize(e.units.size() * 4 + 16);
  const int n = VarniceConvertFromUnicode(Number(varniceName), e.units.data(), static_cast<int>(e.units.size()),
                                          e.bytes.data(), static_cast<int>(e.bytes.size()), 0);
  e.bytes.resize(static_cast<std::size_t>(n));
  return e;
}

// One conversion; returns the output size (units or bytes) or -1.
using Job = std::function<long()>;

struct Candidate {
  const char* name;
  Job job;
  long expected;  // output size the job must give
  bool ok = true;
  double best = 1e30;  // seconds
};

double Seconds(const Job& job, long& result) {
  const auto t0 = std::chrono::steady_clock::now();
  result = job();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
}

int Rounds() {
  static const int rounds = [] {
    const char* env = std::getenv("VARNICE_PEER_ROUNDS");
    const int n = env != nullptr ? std::atoi(env) : 9;
    return n > 0 ? n : 9;
  }();
  return rounds;
}

// Times the candidates in turn, round after round; keeps each one's best.
void Race(std::vector<Candidate>& candidates) {
  for (Candidate& c : candidates) {
    long result = 0;
    Seconds(c.job, result);  // warm up, and check the output's size
    c.ok = result == c.expected;
  }
  for (int round = 0; round < Rounds(); ++round) {
    for (Candidate& c : candidates) {
      if (!c.ok) continue;
      long result = 0;
      c.best = std::min(c.best, Seconds(c.job, result));
    }
  }
}

struct Buffers {
  Units units;
  std::string bytes;
};

Job VarniceTo(const char* name, const Encoded& e, Buffers& b) {
  const int number = Number(name);
  b.units.resize(e.bytes.size() + 1);
  return [number, &e, &b] {
    return static_cast<long>(VarniceConvertToUnicode(number, e.bytes.data(), static_cast<int>(e.bytes.size()),
                                                     b.units.data(), static_cast<int>(b.units.size())));
  };
}

Job VarniceFrom(const char* name, const Encoded& e, Buffers& b) {
  const int number = Number(name);
  b.bytes.resize(e.bytes.size() + 16);
  return [number, &e, &b] {
    return static_cast<long>(VarniceConvertFromUnicode(number, e.units.data(), static_cast<int>(e.units.size()),
                                                       b.bytes.data(), static_cast<int>(b.bytes.size()), 0));
  };
}

Job IconvTo(const char* name, const Encoded& e, Buffers& b) {
  iconv_t cd = iconv_open("UTF-16LE", name);
  if (cd == reinterpret_cast<iconv_t>(-1)) return [] { return -1L; };
  b.units.resize(e.bytes.size() + 1);
  return [cd, &e, &b] {
    iconv(cd, nullptr, nullptr, nullptr, nullptr);
    char* in = const_cast<char*>(e.bytes.data());
    std::size_t inLeft = e.bytes.size();
    char* out = reinterpret_cast<char*>(b.units.data());
    std::size_t outLeft = b.units.size() * 2;
    if (iconv(cd, &in, &inLeft, &out, &outLeft) == static_cast<std::size_t>(-1)) return -1L;
    return static_cast<long>((b.units.size() * 2 - outLeft) / 2);
  };
}

Job IconvFrom(const char* name, const Encoded& e, Buffers& b) {
  iconv_t cd = iconv_open(name, "UTF-16LE");
  if (cd == reinterpret_cast<iconv_t>(-1)) return [] { return -1L; };
  b.bytes.resize(e.bytes.size() + 16);
  return [cd, &e, &b] {
    iconv(cd, nullptr, nullptr, nullptr, nullptr);
    char* in = reinterpret_cast<char*>(const_cast<unsigned short*>(e.units.data()));
    std::size_t inLeft = e.units.size() * 2;
    char* out = b.bytes.data();
    std::size_t outLeft = b.bytes.size();
    if (iconv(cd, &in, &inLeft, &out, &outLeft) == static_cast<std::size_t>(-1)) return -1L;
    if (iconv(cd, nullptr, nullptr, &out, &outLeft) == static_cast<std::size_t>(-1)) return -1L;
    return static_cast<long>(b.bytes.size() - outLeft);
  };
}

#ifdef VARNICE_BENCH_HAVE_ICU
UConverter* OpenIcu(const char* name) {
  UErrorCode status = U_ZERO_ERROR;
  UConverter* cnv = ucnv_open(name, &status);
  return U_SUCCESS(status) ? cnv : nullptr;
}

Job IcuTo(const char* name, const Encoded& e, Buffers& b) {
  UConverter* cnv = OpenIcu(name);
  if (cnv == nullptr) return [] { return -1L; };
  b.units.resize(e.bytes.size() + 1);
  return [cnv, &e, &b] {
    UErrorCode status = U_ZERO_ERROR;
    const int32_t n = ucnv_toUChars(cnv, reinterpret_cast<UChar*>(b.units.data()), static_cast<int32_t>(b.units.size()),
                                    e.bytes.data(), static_cast<int32_t>(e.bytes.size()), &status);
    return U_SUCCESS(status) ? static_cast<long>(n) : -1L;
  };
}

Job IcuFrom(const char* name, const Encoded& e, Buffers& b) {
  UConverter* cnv = OpenIcu(name);
  if (cnv == nullptr) return [] { return -1L; };
  b.bytes.resize(e.bytes.size() + 16);
  return [cnv, &e, &b] {
    UErrorCode status = U_ZERO_ERROR;
    const int32_t n = ucnv_fromUChars(cnv, b.bytes.data(), static_cast<int32_t>(b.bytes.size()),
                                      reinterpret_cast<const UChar*>(e.units.data()),
                                      static_cast<int32_t>(e.units.size()), &status);
    return U_SUCCESS(status) ? static_cast<long>(n) : -1L;
  };
}

Job IcuStrFromUtf8(const Encoded& e, Buffers& b) {
  b.units.resize(e.bytes.size() + 1);
  return [&e, &b] {
    UErrorCode status = U_ZERO_ERROR;
    int32_t n = 0;
    u_strFromUTF8(reinterpret_cast<UChar*>(b.units.data()), static_cast<int32_t>(b.units.size()), &n,
                  e.bytes.data(), static_cast<int32_t>(e.bytes.size()), &status);
    return U_SUCCESS(status) ? static_cast<long>(n) : -1L;
  };
}
#endif

// ---- the table ----

const char* gOnly = nullptr;  // a title filter, or null

bool Wanted(const char* title) { return gOnly == nullptr || std::strstr(title, gOnly) != nullptr; }

struct Names {
  const char* varnice;
  const char* icu;
  const char* iconv;
};

void PrintHeader() {
  std::printf("| conversion | Varnice MB/s | ICU MB/s | iconv MB/s | vs ICU | vs iconv | goal |\n");
  std::printf("|---|--:|--:|--:|--:|--:|---|\n");
}

std::string Figure(const Candidate* c, double inputBytes) {
  if (c == nullptr) return "-";
  if (!c->ok) return "differs";
  char s[32];
  std::snprintf(s, sizeof s, "%.0f", inputBytes / c->best / 1e6);
  return s;
}

std::string Ratio(const Candidate& v, const Candidate* peer) {
  if (peer == nullptr || !peer->ok || !v.ok) return "-";
  char s[32];
  std::snprintf(s, sizeof s, "%.2fx", peer->best / v.best);
  return s;
}

// One whole-text row. The extra candidate (u_strFromUTF8) is reported as a
// further ratio after the table's columns.
void Row(const char* title, const char* goal, bool toUnicode, const Names& names, const Encoded& e) {
  if (!Wanted(title)) return;
  static Buffers buffers[4];
  const long expectUnits = static_cast<long>(e.units.size());
  const long expectBytes = static_cast<long>(e.bytes.size());
  const long expected = toUnicode ? expectUnits : expectBytes;
  std::vector<Candidate> c;
  c.push_back({"varnice", toUnicode ? VarniceTo(names.varnice, e, buffers[0]) : VarniceFrom(names.varnice, e, buffers[0]),
               expected});
#ifdef VARNICE_BENCH_HAVE_ICU
  c.push_back({"icu", toUnicode ? IcuTo(names.icu, e, buffers[1]) : IcuFrom(names.icu, e, buffers[1]), expected});
  const bool strFromUtf8 = toUnicode && std::strcmp(names.varnice, "UTF-8") == 0 && e.bytes.size() != e.units.size();
  if (strFromUtf8) c.push_back({"u_strFromUTF8", IcuStrFromUtf8(e, buffers[3]), expected});
#endif
  c.push_back({"iconv", toUnicode ? IconvTo(names.iconv, e, buffers[2]) : IconvFrom(names.iconv, e, buffers[2]),
               expected});
  Race(c);
  const double input = toUnicode ? static_cast<double>(e.bytes.size()) : static_cast<double>(e.units.size() * 2);
  const Candidate* icu = nullptr;
  const Candidate* conv = nullptr;
  const Candidate* extra = nullptr;
  for (const Candidate& k : c) {
    if (std::strcmp(k.name, "icu") == 0) icu = &k;
    if (std::strcmp(k.name, "iconv") == 0) conv = &k;
    if (std::strcmp(k.name, "u_strFromUTF8") == 0) extra = &k;
  }
  std::string vsIcu = Ratio(c[0], icu);
  if (extra != nullptr) vsIcu += " (" + Ratio(c[0], extra) + " u_strFromUTF8)";
  std::printf("| %s | %s | %s | %s | %s | %s | %s |\n", title, Figure(&c[0], input).c_str(), Figure(icu, input).c_str(),
              Figure(conv, input).c_str(), vsIcu.c_str(), Ratio(c[0], conv).c_str(), goal);
  std::fflush(stdout);
}

// Short strings: the time of one call, Varnice's time over ICU's.
void CallRow(const char* title, const char* goal, const Names& names, const Encoded& e) {
  if (!Wanted(title)) return;
  constexpr int kCalls = 20000;
  static Buffers buffers[3];
  const long expected = static_cast<long>(e.units.size());
  std::vector<Candidate> c;
  const Job v = VarniceTo(names.varnice, e, buffers[0]);
  c.push_back({"varnice", [v] { long r = 0; for (int i = 0; i < kCalls; ++i) r = v(); return r; }, expected});
#ifdef VARNICE_BENCH_HAVE_ICU
  const Job icu = IcuTo(names.icu, e, buffers[1]);
  c.push_back({"icu", [icu] { long r = 0; for (int i = 0; i < kCalls; ++i) r = icu(); return r; }, expected});
#endif
  const Job conv = IconvTo(names.iconv, e, buffers[2]);
  c.push_back({"iconv", [conv] { long r = 0; for (int i = 0; i < kCalls; ++i) r = conv(); return r; }, expected});
  Race(c);
  auto ns = [&](const Candidate* k) -> std::string {
    if (k == nullptr || !k->ok) return "-";
    char s[32];
    std::snprintf(s, sizeof s, "%.0f ns", k->best / kCalls * 1e9);
    return s;
  };
  auto timeRatio = [&](const Candidate* k) -> std::string {
    if (k == nullptr || !k->ok || !c[0].ok) return "-";
    char s[48];
    std::snprintf(s, sizeof s, "%.2fx the time", c[0].best / k->best);
    return s;
  };
  const Candidate* icuC = c.size() == 3 ? &c[1] : nullptr;
  const Candidate* iconvC = &c.back();
  std::printf("| %s | %s | %s | %s | %s | %s | %s |\n", title, ns(&c[0]).c_str(), ns(icuC).c_str(),
              ns(iconvC).c_str(), timeRatio(icuC).c_str(), timeRatio(iconvC).c_str(), goal);
  std::fflush(stdout);
}

Encoded Cut(const char* varniceName, const Units& text, std::size_t bytes) {
  // Whole characters while they fit, then spaces: the pages here are
  // stateless, so the characters' encodings end to end are the text's.
  Units units;
  std::string out;
  char one[8];
  const int number = Number(varniceName);
  for (std::size_t i = 0; out.size() < bytes; ++i) {
    unsigned short u = text[i];
    int n = VarniceConvertFromUnicode(number, &u, 1, one, sizeof one, 0);
    if (out.size() + static_cast<std::size_t>(n) > bytes) {
      u = ' ';
      n = VarniceConvertFromUnicode(number, &u, 1, one, sizeof one, 0);
    }
    units.push_back(u);
    out.append(one, static_cast<std::size_t>(n));
  }
  return {units, out};
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 1) setenv("VARNICE_PEER_ROUNDS", argv[1], 1);
  if (argc > 2) gOnly = argv[2];
  constexpr std::size_t kUnits = 4u << 20;  // 8 MB of UTF-16
  const Units japanese = JapaneseText(kUnits);
  const Units english = SentenceText(kEnglish, 10, nullptr, 0, kUnits);
  const Units german = SentenceText(kGerman, 10, nullptr, 0, kUnits);
  const Units german1252 = SentenceText(kGerman, 10, kGerman1252, 2, kUnits);

  const Names sjis{"CP932", "windows-932", "CP932"};
  const Names euc{"EUC-JP", "EUC-JP", "EUC-JP"};
  const Names jis{"ISO-2022-JP", "ISO-2022-JP", "ISO-2022-JP"};
  const Names utf8{"UTF-8", "UTF-8", "UTF-8"};
  const Names latin1{"ISO-8859-1", "ISO-8859-1", "ISO-8859-1"};
  const Names cp1252{"windows-1252", "windows-1252", "WINDOWS-1252"};

  std::printf("Whole texts of %zu UTF-16 units; best of %d rounds; MB/s of input.\n\n", kUnits, Rounds());
  PrintHeader();
  {
    const Encoded e = Encode(sjis.varnice, japanese);
    Row("Shift_JIS (CP932) -> UTF-16", ">= 3x ICU", true, sjis, e);
    Row("UTF-16 -> Shift_JIS", ">= 2x ICU", false, sjis, e);
  }
  {
    const Encoded e = Encode(euc.varnice, japanese);
    Row("EUC-JP -> UTF-16", ">= 2.5x ICU", true, euc, e);
    Row("UTF-16 -> EUC-JP", ">= 2x ICU", false, euc, e);
  }
  {
    const Encoded e = Encode(jis.varnice, japanese);
    Row("ISO-2022-JP -> UTF-16", ">= 2x the faster peer", true, jis, e);
    Row("UTF-16 -> ISO-2022-JP", ">= 2x the faster peer", false, jis, e);
  }
  {
    const Encoded e = Encode(utf8.varnice, japanese);
    Row("UTF-8 -> UTF-16, Japanese", ">= 2x ucnv, >= 1x u_strFromUTF8", true, utf8, e);
    Row("UTF-16 -> UTF-8, Japanese", ">= 1.5x ICU", false, utf8, e);
  }
  Row("UTF-8 -> UTF-16, English", ">= 5x ICU", true, utf8, Encode(utf8.varnice, english));
  {
    const Encoded e = Encode(latin1.varnice, german);
    Row("ISO-8859-1 -> UTF-16", ">= 1.5x ICU", true, latin1, e);
    Row("UTF-16 -> ISO-8859-1", ">= 1x ICU", false, latin1, e);
  }
  {
    const Encoded e = Encode(cp1252.varnice, german1252);
    Row("windows-1252 -> UTF-16", ">= 2x ICU", true, cp1252, e);
    Row("UTF-16 -> windows-1252", ">= 2x ICU", false, cp1252, e);
  }
  std::printf("\nOne C call on a short string (time per call; ratio = Varnice's time / the peer's).\n\n");
  std::printf("| call | Varnice | ICU | iconv | vs ICU | vs iconv | goal |\n|---|--:|--:|--:|--:|--:|---|\n");
  CallRow("ISO-8859-1 -> UTF-16, 200 bytes", "<= 1x ICU's time", latin1, Cut(latin1.varnice, german, 200));
  CallRow("Shift_JIS -> UTF-16, 32 bytes", "keep (0.45x)", sjis, Cut(sjis.varnice, japanese, 32));
  CallRow("Shift_JIS -> UTF-16, 200 bytes", "keep (0.48x)", sjis, Cut(sjis.varnice, japanese, 200));
  return 0;
}
