// Once encodings are registered, conversions on several threads at once give
// each thread exactly what one thread alone gets: tables and encodings are
// shared read-only, and every pipeline belongs to its thread. `make
// sanitize-thread` runs these under ThreadSanitizer.
#include <gtest/gtest.h>

#include "tests/fresh_process.h"

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "varnice/capi/varnice_c.h"
#include "varnice/encoding/catalogue/encoding_catalogue.h"
#include "varnice/encoding/external_encoding.h"
#include "varnice/widec/qz_string.h"
#include "varnice/widec/qz_wstring.h"

namespace {

struct Job {
  const char* name;
  std::string bytes;
};

std::vector<Job> Jobs() {
  std::string sjis, euc, jis, utf8;
  for (int i = 0; i < 200; ++i) {
    sjis += "\x82\xA0\x82\xA2 Shift_JIS \x8A\xBF\x8E\x9A\n";
    euc += "\xA4\xA2\xA4\xA4 EUC-JP \xB4\xC1\xBB\xFA\n";
    jis += "\x1B$B$\"$$\x1B(B ISO-2022-JP \x1B$B4A;z\x1B(B\n";
    utf8 += "\xE3\x81\x82\xE3\x81\x84 UTF-8 caf\xC3\xA9\n";
  }
  return {{"Shift_JIS", sjis}, {"EUC-JP", euc}, {"ISO-2022-JP", jis}, {"UTF-8", utf8}, {"auto", sjis}};
}

std::u16string ViaC(int number, const std::string& bytes) {
  std::vector<unsigned short> out(bytes.size() + 1);
  const int n = VarniceConvertToUnicode(number, bytes.data(), static_cast<int>(bytes.size()), out.data(),
                                        static_cast<int>(out.size()));
  return std::u16string(out.begin(), out.begin() + n);
}

std::u16string ViaClasses(const char* name, const std::string& bytes) {
  const qz_wstring wide(bytes.data(), static_cast<unsigned int>(bytes.size()), *ExternalEncoding::Lookup(name));
  return std::u16string(reinterpret_cast<const char16_t*>(wide.data()), wide.size());
}

std::string Encode(const ExternalEncoding& encoding, const std::u16string& units) {
  const qz_string bytes(reinterpret_cast<const unsigned short*>(units.data()),
                        static_cast<qz_string::size_type>(units.size()), encoding);
  return std::string(bytes.data(), bytes.size());
}

// In a fresh process: the registrations would change the numbers that other
// tests of the C interface expect.
FRESH_PROCESS_TEST(Concurrency, ThreadsConvertingAtOnceGetWhatOneThreadGets) {
  // Registration first, on one thread, as hosts do.
  EncodingCatalogue::CreateAll();
  const std::vector<Job> jobs = Jobs();
  std::vector<int> numbers;
  std::vector<std::u16string> expected;
  for (const Job& job : jobs) {
    numbers.push_back(VarniceRegisterEncoding(job.name));
    ASSERT_GT(numbers.back(), 0) << job.name;
    expected.push_back(ViaC(numbers.back(), job.bytes));
    ASSERT_EQ(ViaClasses(job.name, job.bytes), expected.back()) << job.name;
  }
  const int utf8 = VarniceRegisterEncoding("UTF-8");
  // No text has been written in these yet (registration writes a space):
  // their first use on several threads at once builds their lookup arrays.
  const ExternalEncoding* targets[] = {ExternalEncoding::Lookup("CP932"), ExternalEncoding::Lookup("windows-1252")};

  constexpr int kThreads = 4;
  std::vector<int> wrong(kThreads, 0);
  std::vector<std::vector<std::string>> written(kThreads);
  std::atomic<int> ready{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&, t] {
      // All start together, so that the first uses do meet.
      ready.fetch_add(1);
      while (ready.load() < kThreads) {
      }
      for (const ExternalEncoding* target : targets) written[t].push_back(Encode(*target, expected[0]));
      for (int round = 0; round < 20; ++round) {
        const std::size_t j = (t + round) % jobs.size();
        if (ViaC(numbers[j], jobs[j].bytes) != expected[j]) ++wrong[t];
        if (ViaClasses(jobs[j].name, jobs[j].bytes) != expected[j]) ++wrong[t];
        std::vector<char> copy(jobs[j].bytes.size() * 3 + 1);
        if (VarniceCopyDataBetweenEncodings(numbers[j], jobs[j].bytes.data(), static_cast<int>(jobs[j].bytes.size()),
                                            utf8, copy.data(), static_cast<int>(copy.size()), 0) <= 0)
          ++wrong[t];
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  std::vector<std::string> once;
  for (const ExternalEncoding* target : targets) once.push_back(Encode(*target, expected[0]));
  for (int t = 0; t < kThreads; ++t) {
    EXPECT_EQ(wrong[t], 0) << "thread " << t;
    EXPECT_EQ(written[t], once) << "thread " << t;
  }
}

}  // namespace
