#include "varnice/encoding/encoding_registry.h"

namespace varnice::internal {

namespace {

constexpr std::size_t kInitialCapacity = 10;

template <typename T>
std::vector<T*>& MakeList() {
  auto* list = new std::vector<T*>();
  list->reserve(kInitialCapacity);
  return *list;
}

}  // namespace

// The lists are never destroyed: encodings are process-wide singletons, and a
// static destructor elsewhere may still look an encoding up.
std::vector<TextEncoding*>& AllEncodings() {
  static std::vector<TextEncoding*>& list = MakeList<TextEncoding>();
  return list;
}

std::vector<ExternalEncoding*>& ExternalEncodings() {
  static std::vector<ExternalEncoding*>& list = MakeList<ExternalEncoding>();
  return list;
}

std::vector<InternalEncoding*>& InternalEncodings() {
  static std::vector<InternalEncoding*>& list = MakeList<InternalEncoding>();
  return list;
}

bool NarrowName(const unsigned short* name, char (&buffer)[1023]) {
  std::size_t i = 0;
  for (;; ++i) {
    if (i == sizeof buffer) return false;
    const unsigned short unit = name[i];
    if (unit > 126) return false;
    buffer[i] = static_cast<char>(unit);
    if (unit == 0) return true;
  }
}

qz_wstring WidenName(const char* name) {
  qz_wstring wide;
  for (; *name != 0; ++name) {
    const auto byte = static_cast<unsigned char>(*name);
    wide.push_back(byte < 0x80 ? byte : 0xFFFD);
  }
  return wide;
}

}  // namespace varnice::internal
