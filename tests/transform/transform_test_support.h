// Helpers for the transform tests: a source that lends text in chosen or
// random pieces, and a runner that reads a transform to the end.
#ifndef VARNICE_TESTS_TRANSFORM_TRANSFORM_TEST_SUPPORT_H_
#define VARNICE_TESTS_TRANSFORM_TRANSFORM_TEST_SUPPORT_H_

#include <cstddef>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "varnice/charprops/character_property.h"
#include "varnice/encoding/internal_encoding.h"
#include "varnice/stream/char16_source.h"
#include "varnice/transform/transform_catalogue.h"
#include "varnice/transform/unicode_transform.h"

namespace testing_transforms {

// Lends `text` in pieces of the given sizes (the last size repeats).
class PieceSource : public Char16Source {
 public:
  PieceSource(std::u16string text, std::vector<std::size_t> sizes)
      : text_(std::move(text)), sizes_(std::move(sizes)) {}
  bool FillBuffer() override {
    if (at_ >= text_.size()) return false;
    std::size_t n = sizes_.empty() ? text_.size() : sizes_[std::min(next_, sizes_.size() - 1)];
    ++next_;
    n = std::max<std::size_t>(1, std::min(n, text_.size() - at_));
    position_ = reinterpret_cast<const unsigned short*>(text_.data()) + at_;
    end_ = position_ + n;
    at_ += n;
    return true;
  }

 private:
  std::u16string text_;
  std::vector<std::size_t> sizes_;
  std::size_t at_ = 0;
  std::size_t next_ = 0;
};

inline std::vector<std::size_t> RandomSizes(std::mt19937& rng, std::size_t count = 64) {
  std::uniform_int_distribution<std::size_t> size(1, 700);
  std::vector<std::size_t> out;
  for (std::size_t i = 0; i < count; ++i) out.push_back(size(rng));
  return out;
}

// Reads a transform to the end, recording the size of every block it lends.
inline std::u16string ReadAll(Char16Source& t, std::vector<long>* blocks = nullptr) {
  std::u16string out;
  const unsigned short* b;
  const unsigned short* e;
  while (t.GetBuffer(b, e)) {
    out.append(b, e);
    if (blocks != nullptr) blocks->push_back(e - b);
    t.DoneWith(e);
  }
  return out;
}

// The text through the catalogued transform `name`, lent in pieces of `sizes`.
inline std::u16string Through(const char* name, const std::u16string& text,
                              std::vector<std::size_t> sizes = {},
                              const CharacterTest& test = *AnyCharacterProperty,
                              std::vector<long>* blocks = nullptr) {
  PieceSource in(text, std::move(sizes));
  std::unique_ptr<UnicodeTransform> t =
      TransformCatalogue::Find(name)->Create(in, *InternalEncoding::Unicode(), test);
  return ReadAll(*t, blocks);
}

}  // namespace testing_transforms

#endif  // VARNICE_TESTS_TRANSFORM_TRANSFORM_TEST_SUPPORT_H_
