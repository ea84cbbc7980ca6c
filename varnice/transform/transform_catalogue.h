// The library's transforms by number and by name: the numbers are those of
// TransformUnicodeString, the names those of `varnice convert --transform`.
//
//   TransformCatalogue::Entry const* e = TransformCatalogue::Find("halfwidth");
//   std::unique_ptr<UnicodeTransform> t = e->Create(source, *InternalEncoding::Unicode(), *test);
//
// A transform whose class is not in the library yet has a row without a
// factory (Available() is false), so its number is known but refused.
#ifndef VARNICE_TRANSFORM_TRANSFORM_CATALOGUE_H_
#define VARNICE_TRANSFORM_TRANSFORM_CATALOGUE_H_

#include <cstddef>
#include <memory>

#include "varnice/varnice_export.h"

class Char16Source;
class CharacterTest;
class InternalEncoding;
class UnicodeTransform;

class VARNICE_API TransformCatalogue {
 public:
  // Room that Place needs: no transform is larger.
  static constexpr std::size_t kStorageSize = 4096;

  struct Entry {
    int selector;           // TransformUnicodeString's number, 1-28
    const char* name;       // short name for the command ("upper", "crlf")
    const char* className;  // the class built
    const char* summary;    // one line for `varnice list --transforms`
    // Builds the transform in `where` (kStorageSize bytes, suitably aligned);
    // null while the transform is not in the library.
    UnicodeTransform* (*place)(void* where, Char16Source& source,
                               const InternalEncoding& encoding, const CharacterTest& test);
    // The same on the heap.
    UnicodeTransform* (*create)(Char16Source& source, const InternalEncoding& encoding,
                                const CharacterTest& test);

    bool Available() const { return place != nullptr; }
    std::unique_ptr<UnicodeTransform> Create(Char16Source& source,
                                             const InternalEncoding& encoding,
                                             const CharacterTest& test) const;
  };

  // Every row, in selector order.
  static Entry const* begin();
  static Entry const* end();
  // Null for a number outside 1-28.
  static Entry const* Find(int selector);
  // By short name or class name, ignoring case; null when neither matches.
  static Entry const* Find(const char* name);
};

// Destroys a transform built by Entry::place in storage of its own.
struct PlacedTransformDeleter {
  void operator()(UnicodeTransform* t) const;
};

#endif  // VARNICE_TRANSFORM_TRANSFORM_CATALOGUE_H_
