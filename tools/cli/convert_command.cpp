// varnice convert: bytes in one encoding to bytes in another, streamed
// through the library's converting sinks in pieces, so memory stays constant
// whatever the input size.
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "tools/cli/cli.h"
#include "tools/cli/detection_window.h"
#include "varnice/varnice.h"
#include "varnice/widec/utf16_units.h"

namespace cli {
namespace {

const char kHelp[] =
    "usage: varnice convert -f FROM -t TO [-x T,...] [-o OUT] [--on-error=MODE] [--subst=TEXT]\n"
    "                       [-c] [-q] [--lenient] [FILE...]\n"
    "\n"
    "Converts each FILE (standard input when none, or for \"-\") from encoding FROM to\n"
    "encoding TO and writes the result to OUT, else to standard output.\n"
    "\n"
    "  -f, --from=NAME     the input encoding; \"auto\" (or \"auto-ja\" for text known to\n"
    "                      be Japanese) detects it from the first bytes that tell\n"
    "  -t, --to=NAME       the output encoding (names as in 'varnice list')\n"
    "  -x, --transform=T,...  run the text through these transforms, in order, between\n"
    "                      reading and writing ('varnice list --transforms'); T:CLASS\n"
    "                      changes only characters of a class, as upper:LatinScript\n"
    "  -o, --output=OUT    write OUT; a regular file is replaced only once everything\n"
    "                      converted (on any failure it is left as it was, and it\n"
    "                      keeps its permissions); devices, pipes and the files that\n"
    "                      links point to are written in place\n"
    "  --on-error=replace  ill-formed or cut-off input becomes U+FFFD, and characters\n"
    "                      TO lacks become the substitute (the default)\n"
    "  --on-error=skip     both are dropped (-c says the same)\n"
    "  --on-error=fail     stop at the first one, naming its byte offset\n"
    "  --subst=TEXT        the substitute for characters TO lacks, as UTF-8 text\n"
    "                      (default: the SUB control of TO, else \"?\")\n"
    "  -q, --quiet         no summary of replaced or skipped characters\n"
    "  --lenient           read as the library's converters always have: overlong\n"
    "                      UTF-8 and encoded surrogates pass, a broken sequence takes\n"
    "                      the byte after it, a character cut off at the end vanishes\n"
    "\n"
    "Input is read strictly: every ill-formed sequence and a character cut off at\n"
    "the end count as errors. When characters were replaced or skipped, a line on\n"
    "standard error says how many. A progress bar appears on standard error for\n"
    "long conversions when it is a terminal. Exit status: 0 done, 1 stopped by\n"
    "--on-error=fail, 2 bad usage or unknown encoding, 3 unreadable input or\n"
    "unwritable output.\n";

enum class OnError { kReplace, kSkip, kFail };

// Thrown by the failing behaviour; carries what could not be converted.
struct Unconvertible {
  std::string what;
};

class CommandBehavior : public UnicodeLibBehavior {
 public:
  explicit CommandBehavior(OnError mode) : mode_(mode) {}

  // The substitute, as UTF-16 converted by the encoder like any text, so that
  // it is a whole character of the target whatever state the encoder is in.
  // `rawByte` (or -1) follows the text, for targets that lack it as a character.
  void SetSubstitute(const std::u16string& text, int rawByte) {
    substitute_ = text;
    rawByte_ = rawByte;
  }

  void HandleExternalToInternalConversionProblem(ExternalToInternalConversionProblem& p) override {
    if (mode_ == OnError::kFail) throw Unconvertible{std::string("input that is not ") + DisplayName(p.source)};
    ++replaced;
    if (mode_ == OnError::kReplace) UnicodeLibBehavior::HandleExternalToInternalConversionProblem(p);
  }
  void HandleNoCharacterDefinedForCodepoint(NoCharacterDefinedForCodepoint& p) override {
    if (mode_ != OnError::kFail) return HandleExternalToInternalConversionProblem(p);
    throw Unconvertible{std::string("a ") + DisplayName(p.source) + " code with no Unicode character"};
  }
  void HandleInternalToExternalConversionProblem(InternalToExternalConversionProblem& p) override {
    const unsigned short last = p.inputStop[-1];
    // The low half of a pair whose high half was already settled.
    if (varnice::internal::IsLowSurrogate(last) && highSettled_) {
      highSettled_ = false;
      return;
    }
    highSettled_ = varnice::internal::IsHighSurrogate(last);
    if (mode_ == OnError::kFail) {
      unsigned long c = last;
      if (highSettled_ && p.inputStop < p.inputEnd) c = varnice::internal::CombineSurrogates(c, p.inputStop[0]);
      char text[80];
      std::snprintf(text, sizeof text, "U+%04lX, which %s cannot represent,", c, DisplayName(p.target));
      throw Unconvertible{text};
    }
    ++replaced;
    if (mode_ == OnError::kSkip) return;
    const auto* units = reinterpret_cast<const unsigned short*>(substitute_.data());
    p.InsertInput(units, units + substitute_.size());
    if (rawByte_ >= 0) {
      const char byte = static_cast<char>(rawByte_);
      p.InsertOutput(&byte, &byte + 1);
    }
  }

  long long replaced = 0;

 private:
  OnError mode_;
  std::u16string substitute_;
  int rawByte_ = -1;
  bool highSettled_ = false;
};

// Counts the UTF-16 units passing between the two halves of a conversion.
class CountingSink : public Char16ProxySink {
 public:
  using Char16ProxySink::Char16ProxySink;
  void PutBuffer(const unsigned short* b, const unsigned short* e) override {
    units += e - b;
    Char16ProxySink::PutBuffer(b, e);
  }
  long long units = 0;
};

class NullSink : public CharSink {
 public:
  NullSink() : CharSink(static_cast<const UnicodeLibActor*>(nullptr)) {}
  void Flush() override {}
  void PutBuffer(const char*, const char*) override {}
};

// from bytes -> UTF-16 -> counted -> to bytes -> output.
class Pipeline {
 public:
  Pipeline(const ExternalEncoding& from, const ExternalEncoding& to, CharSink& output)
      : fromUnicode_(to.CreateCharSinkFromUnicode(output, arena_)),
        counter_(fromUnicode_.get()),
        toUnicode_(from.CreateCharSinkToUnicode(counter_, arena_)) {}

  void Put(const char* b, const char* e) { toUnicode_->PutBuffer(b, e); }
  void Finish() { toUnicode_->Flush(); }
  long long Units() const { return counter_.units; }

 private:
  LinearAllocator arena_{4096, __FILE__, __LINE__};
  // Destroyed in reverse: the stage that receives the text goes first.
  std::unique_ptr<Char16Sink> fromUnicode_;
  CountingSink counter_;
  std::unique_ptr<CharSink> toUnicode_;
};

class ProgressBar {
 public:
  ProgressBar(const Input& in) : in_(in), shown_(isatty(2) && in.Size() > 0), start_(Clock::now()) {}
  ~ProgressBar() {
    if (drawn_) std::fputs("\r\033[K", stderr);
  }
  void Update() {
    if (!shown_) return;
    const auto now = Clock::now();
    // Only conversions that last show a bar, and it is redrawn ten times a second.
    if (now - start_ < std::chrono::milliseconds(500) || now - last_ < std::chrono::milliseconds(100)) return;
    last_ = now;
    const double seconds = std::chrono::duration<double>(now - start_).count();
    const double part = static_cast<double>(in_.Offset()) / static_cast<double>(in_.Size());
    const int filled = static_cast<int>(part * 30);
    std::fprintf(stderr, "\r%.30s %3d%% [%.*s%*s] %.1f MB/s", in_.Name().c_str(), static_cast<int>(part * 100),
                 filled, "##############################", 30 - filled, "", in_.Offset() / seconds / 1e6);
    drawn_ = true;
  }

 private:
  using Clock = std::chrono::steady_clock;
  const Input& in_;
  bool shown_;
  bool drawn_ = false;
  Clock::time_point start_;
  Clock::time_point last_{};
};

// Where the unconvertible character starts: the conversion is run again up
// to the failing piece, then byte by byte, and the answer is the end of the
// last byte that completed a character. False when the input cannot be read
// again or the second run does not fail.
bool LocateFailure(Input& in, const ExternalEncoding& from, const ExternalEncoding& to, long long pieceStart,
                   long long& offset) {
  if (!in.Rewind()) return false;
  NullSink discard;
  Pipeline again(from, to, discard);
  const long long byteWiseFrom = pieceStart > 8 ? pieceStart - 8 : 0;  // a split character starts before
  offset = byteWiseFrom;
  try {
    const char* b;
    const char* e;
    while (in.Next(b, e)) {
      const long long at = in.Offset() - (e - b);
      const char* bulkEnd = at >= byteWiseFrom ? b : b + std::min<long long>(e - b, byteWiseFrom - at);
      if (bulkEnd > b) again.Put(b, bulkEnd);
      for (const char* p = bulkEnd; p < e; ++p) {
        const long long units = again.Units();
        again.Put(p, p + 1);
        if (again.Units() != units) offset = at + (p + 1 - b);
      }
    }
    again.Finish();
  } catch (const Unconvertible&) {
    return true;
  }
  return false;  // no failure the second time: cannot say where
}

struct Options {
  const char* from = nullptr;
  const char* to = nullptr;
  const char* output = nullptr;
  const char* subst = nullptr;
  OnError onError = OnError::kReplace;
  bool lenient = false;
  bool quiet = false;
  std::vector<TransformStage> transforms;
  std::vector<std::string> files;
};

// Parses the options; returns kOk, kUsage after a message, or -1 for --help.
int Parse(int argc, char** argv, Options& o) {
  bool optionsEnded = false;
  for (int i = 0; i < argc; ++i) {
    const std::string arg = argv[i];
    auto value = [&](const char* shortName, const char* longName, const char*& into) {
      const std::string longEq = std::string(longName) + "=";
      if (arg == shortName || arg == longName) {
        if (i + 1 == argc) {
          std::fprintf(stderr, "varnice convert: %s needs a value\n", arg.c_str());
          return -1;
        }
        into = argv[++i];
        return 1;
      }
      if (arg.rfind(longEq, 0) == 0) {
        into = argv[i] + longEq.size();
        return 1;
      }
      return 0;
    };
    if (optionsEnded || arg == "-" || arg[0] != '-') {
      o.files.push_back(arg);
      continue;
    }
    if (arg == "--") {
      optionsEnded = true;
      continue;
    }
    if (arg == "-h" || arg == "--help") return -1;
    if (arg == "--lenient" || arg == "-q" || arg == "--quiet" || arg == "-c") {
      if (arg == "--lenient") o.lenient = true;
      if (arg == "-q" || arg == "--quiet") o.quiet = true;
      if (arg == "-c") o.onError = OnError::kSkip;  // as iconv -c
      continue;
    }
    int r = value("-f", "--from", o.from);
    if (r == 0) r = value("-t", "--to", o.to);
    if (r == 0) r = value("-o", "--output", o.output);
    if (r == 0) r = value("--subst", "--subst", o.subst);
    const char* mode = nullptr;
    if (r == 0) r = value("--on-error", "--on-error", mode);
    const char* transforms = nullptr;
    if (r == 0) r = value("-x", "--transform", transforms);
    if (r < 0) return kUsage;
    if (transforms != nullptr && !ParseTransforms(transforms, o.transforms)) return kUsage;
    if (mode != nullptr) {
      if (std::strcmp(mode, "replace") == 0) {
        o.onError = OnError::kReplace;
      } else if (std::strcmp(mode, "skip") == 0) {
        o.onError = OnError::kSkip;
      } else if (std::strcmp(mode, "fail") == 0) {
        o.onError = OnError::kFail;
      } else {
        std::fprintf(stderr, "varnice convert: --on-error takes replace, skip or fail, not '%s'\n", mode);
        return kUsage;
      }
    }
    if (r == 0) {
      std::fprintf(stderr, "varnice convert: unknown option '%s' (see 'varnice convert --help')\n", arg.c_str());
      return kUsage;
    }
  }
  if (o.from == nullptr || o.to == nullptr) {
    std::fputs("varnice convert: both -f FROM and -t TO are needed (see 'varnice convert --help')\n", stderr);
    return kUsage;
  }
  if (o.files.empty()) o.files.push_back("-");
  return kOk;
}

// The input as a byte source, the detection window's bytes first.
class InputSource : public CharSource {
 public:
  InputSource(Input& in, DetectionWindow* window, ProgressBar& progress)
      : in_(in), window_(window), progress_(progress) {}
  bool FillBuffer() override {
    for (; window_ != nullptr && stage_ < 2; ++stage_) {
      const char* b = stage_ == 0 ? window_->Examined() : window_->LeftoverBegin();
      const char* e = stage_ == 0 ? b + window_->ExaminedCount() : window_->LeftoverEnd();
      if (b != e) {
        position_ = b;
        end_ = e;
        ++stage_;
        return true;
      }
    }
    const char* b;
    const char* e;
    previousStart_ = pieceStart_;
    pieceStart_ = in_.Offset();
    if (!in_.Next(b, e)) return false;
    progress_.Update();
    position_ = b;
    end_ = e;
    return true;
  }
  // Where the text still inside the pipeline began: the pieces before the one
  // being read may still be held by its stages.
  long long HeldFrom() const { return previousStart_; }

 private:
  Input& in_;
  DetectionWindow* window_;
  ProgressBar& progress_;
  int stage_ = 0;
  long long pieceStart_ = 0;
  long long previousStart_ = 0;
};

// Transforms work on pulled UTF-16, so with transforms the text is pulled
// through: input -> decoder -> transforms -> encoder -> out. A failure is then
// placed between byte offsets, since the stages hold text ahead of it.
int ConvertThroughTransforms(Input& in, DetectionWindow* window, const ExternalEncoding& from,
                             const ExternalEncoding& to, const std::vector<TransformStage>& stages,
                             bool lenient, CharSink& out) {
  ProgressBar progress(in);
  InputSource bytes(in, window, progress);
  try {
    LinearAllocator arena{4096, __FILE__, __LINE__};
    std::unique_ptr<Char16Source> decoded(
        !lenient && StrictDecoder::CanRead(from)
            ? new (arena) CharSource_8_to_16(bytes, from, StrictDecoder::Create(from, arena), *InternalEncoding::Unicode())
            : from.CreateCharSourceToUnicode(bytes, arena));
    std::vector<std::unique_ptr<UnicodeTransform>> transforms;
    Char16Source* top = decoded.get();
    for (const TransformStage& stage : stages) {
      const auto& entry = *static_cast<TransformCatalogue::Entry const*>(stage.entry);
      transforms.push_back(entry.Create(*top, *InternalEncoding::Unicode(),
                                        *static_cast<CharacterTest const*>(stage.test)));
      top = transforms.back().get();
    }
    std::unique_ptr<Char16Sink> encoder(to.CreateCharSinkFromUnicode(out, arena));
    encoder->Put(*top);
    encoder->Flush();
    encoder.reset();
    while (!transforms.empty()) transforms.pop_back();  // nearest the output first
  } catch (const Unconvertible& failure) {
    std::fprintf(stderr, "varnice: %s: %s between byte offsets %lld and %lld\n", in.Name().c_str(),
                 failure.what.c_str(), bytes.HeldFrom(), in.Offset());
    return kConversionFailed;
  }
  return in.Failed() ? kIoError : kOk;
}

// Hands the Transcoder's bytes to the output.
class SinkReceiver final : public Transcoder::Receiver {
 public:
  explicit SinkReceiver(CharSink& out) : out_(out) {}
  void Take(const void* data, std::size_t units) override {
    const char* b = static_cast<const char*>(data);
    out_.PutBuffer(b, b + units);
  }

 private:
  CharSink& out_;
};

// Strict conversion: every problem is found where it is, so a failure names
// its exact byte offset even in input that cannot be read again.
int ConvertStrictly(Input& in, DetectionWindow* window, const ExternalEncoding& from, const ExternalEncoding& to,
                    const Options& o, const std::u16string& substitute, CharSink& out, long long& replaced) {
  static const Transcoder::ErrorMode kModes[] = {Transcoder::kReplace, Transcoder::kSkip, Transcoder::kStop};
  SinkReceiver receiver(out);
  Transcoder t(&from, &to, kModes[static_cast<int>(o.onError)], receiver);
  if (!substitute.empty()) {
    t.SetSubstitute(reinterpret_cast<const unsigned short*>(substitute.data()), substitute.size());
  }
  ProgressBar progress(in);
  bool going = true;
  if (window != nullptr && window->ExaminedCount() > 0) going = t.Put(window->Examined(), window->ExaminedCount());
  if (going && window != nullptr && window->LeftoverBegin() != window->LeftoverEnd()) {
    going = t.Put(window->LeftoverBegin(), window->LeftoverEnd() - window->LeftoverBegin());
  }
  const char* b;
  const char* e;
  while (going && in.Next(b, e)) {
    going = t.Put(b, e - b);
    progress.Update();
  }
  if (going) going = t.Finish();
  const Transcoder::Status& st = t.GetStatus();
  replaced += static_cast<long long>(st.replacements);
  if (going) return in.Failed() ? kIoError : kOk;
  std::string what;
  if (st.problem == Transcoder::kUnmappable) {
    char text[80];
    std::snprintf(text, sizeof text, "U+%04lX, which %s cannot represent,", st.character, DisplayName(to));
    what = text;
  } else if (st.problem == Transcoder::kIncomplete) {
    what = std::string("an incomplete ") + DisplayName(from) + " character";
  } else {
    what = std::string("input that is not ") + DisplayName(from);
  }
  std::fprintf(stderr, "varnice: %s: %s at byte offset %lld\n", in.Name().c_str(), what.c_str(), st.problemOffset);
  return kConversionFailed;
}

// Converts one input into `out`; kOk, kConversionFailed, kIoError, or kUsage
// when detection has no candidates.
int ConvertOne(Input& in, const ExternalEncoding& from, const ExternalEncoding& to, const Options& o,
               const std::u16string& substitute, CharSink& out, long long& replaced) {
  const ExternalEncoding* source = &from;
  std::unique_ptr<DetectionWindow> window;
  if (const auto* detecting = dynamic_cast<const AutoDetectEncoding*>(&from)) {
    window = std::make_unique<DetectionWindow>(*detecting);
    // A regular file can be read again, so ASCII that decides nothing may be
    // skipped until a byte does, and the whole file then read from the start.
    const bool canReread = in.Size() >= 0;
    source = window->Choose(in, canReread ? DetectionWindow::PassOn([](const char*, const char*,
                                                                         const ExternalEncoding&) {})
                                          : nullptr);
    if (source == nullptr) return kUsage;
    if (window->PassedOn() > 0) {
      if (!in.Rewind()) return kIoError;
      window.reset();
    }
  }
  if (!o.transforms.empty()) {
    return ConvertThroughTransforms(in, window.get(), *source, to, o.transforms, o.lenient, out);
  }
  if (!o.lenient && Transcoder::CanRead(*source) && Transcoder::CanWrite(to)) {
    return ConvertStrictly(in, window.get(), *source, to, o, substitute, out, replaced);
  }
  long long pieceStart = 0;
  try {
    Pipeline pipeline(*source, to, out);
    ProgressBar progress(in);
    if (window != nullptr && window->ExaminedCount() > 0) {
      pipeline.Put(window->Examined(), window->Examined() + window->ExaminedCount());
    }
    if (window != nullptr && window->LeftoverBegin() != window->LeftoverEnd()) {
      pipeline.Put(window->LeftoverBegin(), window->LeftoverEnd());
    }
    const char* b;
    const char* e;
    pieceStart = in.Offset();
    while (in.Next(b, e)) {
      pipeline.Put(b, e);
      pieceStart = in.Offset();
      progress.Update();
    }
    pipeline.Finish();
  } catch (const Unconvertible& failure) {
    long long offset;
    if (LocateFailure(in, *source, to, pieceStart, offset)) {
      std::fprintf(stderr, "varnice: %s: %s at byte offset %lld\n", in.Name().c_str(), failure.what.c_str(),
                   offset);
    } else {
      std::fprintf(stderr, "varnice: %s: %s between byte offsets %lld and %lld\n", in.Name().c_str(),
                   failure.what.c_str(), pieceStart, in.Offset());
    }
    return kConversionFailed;
  }
  return in.Failed() ? kIoError : kOk;
}

// Output: standard output, a device or pipe written in place, or for a
// regular file a temporary beside it that replaces it only when everything
// succeeded. A symbolic link is followed, so the link stays and its target
// gets the text.
class Output {
 public:
  explicit Output(const char* path) : shown_(path != nullptr ? path : "standard output") {
    if (path == nullptr) {
      file_ = stdout;
      return;
    }
    std::string target = path;
    struct stat st;
    const bool link = lstat(path, &st) == 0 && S_ISLNK(st.st_mode);
    if (link) {
      char* resolved = realpath(path, nullptr);
      if (resolved != nullptr) {
        target = resolved;
        std::free(resolved);
      }
    }
    const bool exists = stat(target.c_str(), &st) == 0;
    if ((exists && !S_ISREG(st.st_mode)) || (link && !exists)) {
      // Nothing to replace: a device, a pipe, or a link to a file yet to be made.
      file_ = std::fopen(target.c_str(), "wb");
      if (file_ == nullptr) std::fprintf(stderr, "varnice: cannot write %s: %s\n", path, std::strerror(errno));
      return;
    }
    const mode_t mask = umask(0);
    umask(mask);
    mode_ = exists ? st.st_mode & 07777 : 0666 & ~mask;
    path_ = target;
    temporary_ = path_ + ".varnice-XXXXXX";
    const int fd = mkstemp(temporary_.data());
    if (fd >= 0) file_ = fdopen(fd, "wb");
    if (file_ == nullptr) std::fprintf(stderr, "varnice: cannot write %s: %s\n", path, std::strerror(errno));
  }
  ~Output() {
    if (!temporary_.empty() && file_ != nullptr) {
      std::fclose(file_);
      std::remove(temporary_.c_str());
    }
  }
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  std::FILE* File() const { return file_; }
  // Puts the output in place when `ok`, else drops a temporary unused. False
  // (after a message) when the output was wanted and could not be written;
  // standard output and files written in place report their errors either way.
  bool Close(bool ok) {
    bool written = std::fflush(file_) == 0 && !std::ferror(file_);
    int error = errno;
    if (temporary_.empty()) {
      if (file_ != stdout && std::fclose(file_) != 0 && written) {
        written = false;
        error = errno;
      }
      file_ = nullptr;
      if (!written) std::fprintf(stderr, "varnice: cannot write %s: %s\n", shown_.c_str(), std::strerror(error));
      return written;
    }
    fchmod(fileno(file_), mode_);
    written = std::fclose(file_) == 0 && written;
    file_ = nullptr;
    if (ok && written && std::rename(temporary_.c_str(), path_.c_str()) == 0) return true;
    if (ok) std::fprintf(stderr, "varnice: cannot write %s: %s\n", shown_.c_str(), std::strerror(errno));
    std::remove(temporary_.c_str());
    return !ok;
  }

 private:
  std::string shown_;
  std::string path_;
  std::string temporary_;
  mode_t mode_ = 0644;
  std::FILE* file_ = nullptr;
};

// UTF-8 text as UTF-16; false when it is not well-formed.
bool FromUtf8(const char* text, std::u16string& units) {
  struct Collect final : Transcoder::Receiver {
    std::u16string& to;
    explicit Collect(std::u16string& t) : to(t) {}
    void Take(const void* data, std::size_t n) override { to.append(static_cast<const char16_t*>(data), n); }
  } collect(units);
  Transcoder t(ExternalEncoding::Unicode20UTF8(), nullptr, Transcoder::kStrict, collect);
  return t.Put(text, std::strlen(text)) && t.Finish();
}

}  // namespace

int RunConvert(int argc, char** argv) {
  Options o;
  const int parsed = Parse(argc, argv, o);
  if (parsed < 0) {
    std::fputs(kHelp, stdout);
    return kOk;
  }
  if (parsed != kOk) return parsed;
  const ExternalEncoding* from = FindEncoding(o.from, "source");
  const ExternalEncoding* to = FindEncoding(o.to, "target");
  if (from == nullptr || to == nullptr) return kUsage;
  if (!to->IsValidForOutput()) {
    std::fprintf(stderr, "varnice convert: %s only reads; choose a target encoding that can be written\n",
                 to->Name());
    return kUsage;
  }
  std::u16string substitute;
  if (o.subst != nullptr && !FromUtf8(o.subst, substitute)) {
    std::fputs("varnice convert: --subst takes UTF-8 text\n", stderr);
    return kUsage;
  }
  int rawByte = -1;
  if (o.subst == nullptr) {
    unsigned short unit;
    if (Transcoder::DefaultSubstitute(*to, &unit, &rawByte) == 1) substitute.assign(1, static_cast<char16_t>(unit));
  }
  // Every stage takes the default behaviour when it is made.
  CommandBehavior behavior(o.onError);
  behavior.SetSubstitute(substitute, rawByte);
  UnicodeLibBehavior::SetDefaultBehavior(behavior);

  Output output(o.output);
  if (output.File() == nullptr) return kIoError;
  // The converting sinks write in small pieces; a large buffer saves system calls.
  static char outputBuffer[1 << 18];
  std::setvbuf(output.File(), outputBuffer, _IOFBF, sizeof outputBuffer);
  int status = kOk;
  long long replaced = 0;
  {
    FileCharSink out(output.File());
    for (const std::string& path : o.files) {
      Input in(path);
      const int result =
          in.IsOpen() ? ConvertOne(in, *from, *to, o, o.subst != nullptr ? substitute : std::u16string(), out, replaced)
                      : kIoError;
      if (result == kConversionFailed || (result != kOk && status == kOk)) status = result;
      if (status == kConversionFailed) break;
    }
  }
  if (!output.Close(status == kOk) && status == kOk) status = kIoError;
  replaced += behavior.replaced;
  if (replaced > 0 && !o.quiet) {
    std::fprintf(stderr, "varnice: %lld character%s %s\n", replaced, replaced == 1 ? "" : "s",
                 o.onError == OnError::kSkip ? "skipped" : "replaced");
  }
  return status;
}

}  // namespace cli
