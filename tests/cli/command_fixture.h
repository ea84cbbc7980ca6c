// Runs the built varnice command as a person would, each test in a fresh
// temporary directory: output bytes, standard error and exit status.
#ifndef VARNICE_TESTS_CLI_COMMAND_FIXTURE_H_
#define VARNICE_TESTS_CLI_COMMAND_FIXTURE_H_

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace cli_test {

namespace fs = std::filesystem;

inline std::string ReadFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

inline void WriteFile(const fs::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

struct Outcome {
  int status;
  std::string out;
  std::string err;
};

class CommandFixture : public ::testing::Test {
 protected:
  void SetUp() override {
    const ::testing::TestInfo* test = ::testing::UnitTest::GetInstance()->current_test_info();
    dir_ = fs::temp_directory_path() /
           ("varnice-" + std::string(test->test_suite_name()) + "-" + std::to_string(::getpid()) + "-" + test->name());
    fs::create_directories(dir_);
  }
  void TearDown() override { fs::remove_all(dir_); }

  // Runs `varnice ARGS` in the test's directory, after `before` (a pipe).
  Outcome Varnice(const std::string& args, const std::string& before = "") {
    const std::string err = (dir_ / "stderr").string();
    const std::string command =
        "cd '" + dir_.string() + "' && " + before + "'" VARNICE_CLI_PATH "' " + args + " 2>'" + err + "'";
    std::FILE* pipe = ::popen(command.c_str(), "r");
    std::string out;
    char buffer[4096];
    for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) out.append(buffer, n);
    const int status = ::pclose(pipe);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, out, ReadFile(err)};
  }
  fs::path Path(const std::string& name) const { return dir_ / name; }
  void Write(const std::string& name, const std::string& bytes) { WriteFile(dir_ / name, bytes); }

  fs::path dir_;
};

}  // namespace cli_test

#endif  // VARNICE_TESTS_CLI_COMMAND_FIXTURE_H_
