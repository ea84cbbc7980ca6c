// Shared by the fuzz targets: the encodings to exercise, registered through
// the C interface, and buffers sized exactly so that AddressSanitizer sees
// any write past the room a call was given.
#ifndef VARNICE_FUZZ_FUZZ_SUPPORT_H_
#define VARNICE_FUZZ_FUZZ_SUPPORT_H_

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "varnice/capi/varnice_c.h"
#include "varnice/encoding/catalogue/encoding_catalogue.h"
#include "varnice/encoding/external_encoding.h"

namespace fuzz {

struct Registered {
  int number;                       // the C interface's data-encoding number
  const ExternalEncoding* encoding;
};

// Every external encoding the catalogue makes (variants included), once.
inline const std::vector<Registered>& Encodings(bool forOutput) {
  static std::vector<Registered>* lists[2] = {};
  std::vector<Registered>*& list = lists[forOutput];
  if (list == nullptr) {
    EncodingCatalogue::CreateAll();
    list = new std::vector<Registered>;
    for (unsigned int i = 0; i < ExternalEncoding::Count(); ++i) {
      const ExternalEncoding* e = ExternalEncoding::Lookup(i);
      if (forOutput ? !e->IsValidForOutput() : !e->IsValidForInput()) continue;
      const int number = VarniceRegisterEncoding(e->Name());
      if (number > 0) list->push_back({number, e});
    }
  }
  return *list;
}

// Takes bytes off the front of the fuzzer's input for choices.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : p_(data), end_(data + size) {}
  std::uint8_t Byte() { return p_ != end_ ? *p_++ : 0; }
  unsigned Below(unsigned n) { return n == 0 ? 0 : (Byte() | Byte() << 8) % n; }
  const char* Rest() const { return reinterpret_cast<const char*>(p_); }
  std::size_t Left() const { return end_ - p_; }

 private:
  const std::uint8_t* p_;
  const std::uint8_t* end_;
};

// A heap block of exactly n elements (at least one, so the pointer is real).
template <class T>
struct Exact {
  explicit Exact(std::size_t n) : size(n), data(static_cast<T*>(std::malloc((n ? n : 1) * sizeof(T)))) {}
  ~Exact() { std::free(data); }
  Exact(const Exact&) = delete;
  Exact& operator=(const Exact&) = delete;
  std::size_t size;
  T* data;
};

// Copies n elements; nothing (and no null pointer handed on) when n is 0.
template <class T>
void Copy(T* to, const T* from, std::size_t n) {
  if (n != 0) std::memcpy(to, from, n * sizeof(T));
}

// The input's bytes as UTF-16 units, in a block of exactly their size.
inline std::vector<unsigned short> Units(const char* bytes, std::size_t n) {
  std::vector<unsigned short> units(n / 2);
  if (!units.empty()) std::memcpy(units.data(), bytes, units.size() * 2);
  return units;
}

}  // namespace fuzz

#define FUZZ_CHECK(condition)   \
  do {                          \
    if (!(condition)) std::abort(); \
  } while (0)

#endif  // VARNICE_FUZZ_FUZZ_SUPPORT_H_
