// The class pipelines fed in random pieces: reading through a converting
// source, or writing into a converting sink, gives the same UTF-16 whatever
// the block boundaries, and the same as the whole buffer at once.
#include <algorithm>
#include <memory>
#include <string>

#include "fuzz/fuzz_support.h"
#include "varnice/encoding/linear_allocator.h"
#include "varnice/stream/char16_sink.h"
#include "varnice/stream/char_sink.h"
#include "varnice/stream/char_source.h"

namespace {

// Lends the text in pieces whose lengths come from the fuzzer.
class PieceSource : public CharSource {
 public:
  PieceSource(const std::string& text, const std::vector<std::size_t>& cuts) : text_(text), cuts_(cuts) {}
  bool FillBuffer() override {
    if (at_ == text_.size()) return false;
    std::size_t n = next_ < cuts_.size() ? cuts_[next_++] : text_.size();
    if (n == 0) n = 1;
    if (n > text_.size() - at_) n = text_.size() - at_;
    position_ = text_.data() + at_;
    end_ = position_ + n;
    at_ += n;
    return true;
  }

 private:
  const std::string& text_;
  const std::vector<std::size_t>& cuts_;
  std::size_t at_ = 0;
  std::size_t next_ = 0;
};

class Collect : public Char16Sink {
 public:
  Collect() : Char16Sink(static_cast<const UnicodeLibActor*>(nullptr)) {}
  void Flush() override {}
  void PutBuffer(const unsigned short* b, const unsigned short* e) override { text.append(b, e); }
  std::u16string text;
};

std::u16string ViaSource(const ExternalEncoding& e, const std::string& text, const std::vector<std::size_t>& cuts) {
  LinearAllocator arena(16384, __FILE__, __LINE__);
  PieceSource pieces(text, cuts);
  std::unique_ptr<ExternalEncoding::ToUnicodeSource> decoded(e.CreateCharSourceToUnicode(pieces, arena));
  Collect out;
  out.Put(*decoded);
  return out.text;
}

std::u16string ViaSink(const ExternalEncoding& e, const std::string& text, const std::vector<std::size_t>& cuts) {
  LinearAllocator arena(16384, __FILE__, __LINE__);
  Collect out;
  std::unique_ptr<CharSink> decode(e.CreateCharSinkToUnicode(out, arena));
  std::size_t at = 0;
  for (std::size_t cut : cuts) {
    const std::size_t n = std::min(cut, text.size() - at);
    decode->PutBuffer(text.data() + at, text.data() + at + n);
    at += n;
  }
  decode->PutBuffer(text.data() + at, text.data() + text.size());
  decode->Flush();
  return out.text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input in(data, size);
  const auto& encodings = fuzz::Encodings(true);  // the detecting encodings decide per block
  const ExternalEncoding& e = *encodings[in.Below(encodings.size())].encoding;
  std::vector<std::size_t> cuts(in.Byte() % 8);
  for (std::size_t& cut : cuts) cut = in.Byte();
  const std::string text(in.Rest(), in.Left());
  const std::u16string whole = ViaSource(e, text, {});
  FUZZ_CHECK(ViaSource(e, text, cuts) == whole);
  FUZZ_CHECK(ViaSink(e, text, cuts) == ViaSink(e, text, {}));
  return 0;
}
