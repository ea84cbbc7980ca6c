// The lists behind the registry: every encoding, and each kind's own list, in
// order of construction. Internal to the library.
#ifndef VARNICE_ENCODING_ENCODING_REGISTRY_H_
#define VARNICE_ENCODING_ENCODING_REGISTRY_H_

#include <vector>

#include "varnice/widec/qz_wstring.h"

class TextEncoding;
class ExternalEncoding;
class InternalEncoding;

namespace varnice::internal {

// Each list is created on first use. Registration is not synchronised: hosts
// create encodings before converting on several threads.
std::vector<TextEncoding*>& AllEncodings();
std::vector<ExternalEncoding*>& ExternalEncodings();
std::vector<InternalEncoding*>& InternalEncodings();

// Removes every occurrence of `item` from `list`: an encoding whose
// construction failed part-way must not stay findable.
template <class T>
void Forget(std::vector<T*>& list, const void* item) {
  std::erase_if(list, [item](T* entry) { return entry == item; });
}

// Appends `item` to `list`, then runs `offer` (which hands the new encoding to
// the variations); if that throws, the entry is taken back first.
template <class T, class Offer>
void Register(std::vector<T*>& list, T* item, Offer offer) {
  list.push_back(item);
  try {
    offer();
  } catch (...) {
    Forget(list, item);
    throw;
  }
}

// Narrows a UTF-16 name into `buffer` (size 1023); false when a code unit is
// above 126 or the name does not fit with its terminator.
bool NarrowName(const unsigned short* name, char (&buffer)[1023]);

// Widens an ASCII name; bytes above 0x7F become U+FFFD as the ASCII encoding
// would make them.
qz_wstring WidenName(const char* name);

}  // namespace varnice::internal

#endif  // VARNICE_ENCODING_ENCODING_REGISTRY_H_
