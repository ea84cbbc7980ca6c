#include "tools/cli/cli.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "varnice/varnice.h"

namespace cli {

const ExternalEncoding* FindEncoding(const char* name, const char* role) {
  EncodingCatalogue::CreateAll();
  const ExternalEncoding* e = Transcoder::FindEncoding(name);
  if (e == nullptr) {
    std::fprintf(stderr, "varnice: unknown %s encoding '%s' (see 'varnice list')\n", role, name);
  }
  return e;
}

const char* DisplayName(const ExternalEncoding& e) { return e.MimeName() != nullptr ? e.MimeName() : e.Name(); }

Input::Input(const std::string& path) : name_(path == "-" ? "standard input" : path), buffer_(kChunk) {
  if (path == "-") {
    file_ = stdin;
  } else {
    file_ = std::fopen(path.c_str(), "rb");
    ownsFile_ = true;
    if (file_ == nullptr) {
      std::fprintf(stderr, "varnice: cannot read %s: %s\n", path.c_str(), std::strerror(errno));
      return;
    }
  }
  struct stat st;
  if (fstat(fileno(file_), &st) == 0 && S_ISREG(st.st_mode)) size_ = st.st_size;
  if (ownsFile_ && S_ISDIR(st.st_mode)) {
    std::fprintf(stderr, "varnice: cannot read %s: it is a directory\n", path.c_str());
    std::fclose(file_);
    file_ = nullptr;
  }
}

Input::~Input() {
  if (ownsFile_ && file_ != nullptr) std::fclose(file_);
}

bool Input::Next(const char*& begin, const char*& end) {
  if (file_ == nullptr || failed_) return false;
  const std::size_t n = std::fread(buffer_.data(), 1, buffer_.size(), file_);
  if (n == 0) {
    if (std::ferror(file_)) {
      failed_ = true;
      std::fprintf(stderr, "varnice: cannot read %s: %s\n", name_.c_str(), std::strerror(errno));
    }
    return false;
  }
  begin = buffer_.data();
  end = begin + n;
  offset_ += static_cast<long long>(n);
  return true;
}

bool Input::Rewind() {
  if (file_ == nullptr || size_ < 0 || std::fseek(file_, 0, SEEK_SET) != 0) return false;
  std::clearerr(file_);
  offset_ = 0;
  return true;
}

}  // namespace cli
