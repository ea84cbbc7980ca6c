// Shared pieces of the varnice command: exit codes, subcommands, encoding
// lookup with the messages a person needs, and input files read in large
// pieces.
#ifndef VARNICE_TOOLS_CLI_CLI_H_
#define VARNICE_TOOLS_CLI_CLI_H_

#include <cstdio>
#include <string>
#include <vector>

class ExternalEncoding;

namespace cli {

enum ExitCode {
  kOk = 0,
  kConversionFailed = 1,  // --on-error=fail met input it could not convert
  kUsage = 2,             // bad options, unknown or unusable encodings
  kIoError = 3,           // unreadable input, unwritable output
};

int RunList(int argc, char** argv);
int RunChar(int argc, char** argv);
int RunConvert(int argc, char** argv);
int RunDetect(int argc, char** argv);
int RunSample(int argc, char** argv);

// The transforms of `--transform`: NAME[:TEST][,NAME[:TEST]...], in the order
// given. False after a usage message that lists the valid names.
struct TransformStage {
  const void* entry;  // a TransformCatalogue::Entry
  const void* test;   // a CharacterTest
};
bool ParseTransforms(const char* spec, std::vector<TransformStage>& stages);
// `varnice list --transforms`: one line each.
void ListTransforms(std::FILE* out);

// The encoding named, or null after a message naming `role` ("source",
// "target"). Every encoding is created first, so any name in `varnice list`
// is found.
const ExternalEncoding* FindEncoding(const char* name, const char* role);

// The name a person knows an encoding by: its MIME name when it has one.
const char* DisplayName(const ExternalEncoding& e);

// One input file ("-" is standard input) read in 64 KiB pieces.
class Input {
 public:
  static constexpr std::size_t kChunk = 64 * 1024;

  // Reports the failure and leaves IsOpen() false when the file cannot be opened.
  explicit Input(const std::string& path);
  ~Input();
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;

  bool IsOpen() const { return file_ != nullptr; }
  // The next piece; false at end of input (or on a read error, see Failed).
  bool Next(const char*& begin, const char*& end);
  // Starts again from the first byte; false when the input cannot seek.
  bool Rewind();
  // A read error was met (and reported).
  bool Failed() const { return failed_; }
  const std::string& Name() const { return name_; }
  long long Offset() const { return offset_; }
  // The size of a regular file, else -1.
  long long Size() const { return size_; }

 private:
  std::FILE* file_ = nullptr;
  bool ownsFile_ = false;
  bool failed_ = false;
  std::string name_;
  long long offset_ = 0;
  long long size_ = -1;
  std::vector<char> buffer_;
};

}  // namespace cli

#endif  // VARNICE_TOOLS_CLI_CLI_H_
