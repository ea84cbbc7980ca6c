// CharacterTest: anything that answers whether a character belongs to a class.
// Named tests are kept in one process-wide registry whose positions are the
// numbers the qz_wctype family hands out.
#ifndef VARNICE_CHARPROPS_TYPES_CHARACTER_TEST_H_
#define VARNICE_CHARPROPS_TYPES_CHARACTER_TEST_H_

#include "varnice/varnice_export.h"
#include "varnice/widec/qz_string.h"

class InternalEncoding;

class VARNICE_API CharacterTest {
 public:
  // Unnamed by default: HasName is false for every name and Name is empty.
  virtual bool HasName(qz_string const& name) const;
  virtual qz_string Name() const;
  virtual bool Test(unsigned long c) const = 0;

  // Tests c after mapping it from the given internal encoding to Unicode 2.0.
  bool operator()(unsigned long c, InternalEncoding const& encoding) const;

  // Appends this test to the registry. The test must outlive every lookup.
  void RegisterAsNamedTest() const;

  // The registry. It is filled with the library's own tests, in a fixed
  // order, on first use of any of these, so their numbers do not depend on
  // which translation unit starts first.
  static unsigned int Count();
  static CharacterTest const* Lookup(unsigned int index);  // null past the end
  static CharacterTest const* Lookup(qz_string const& name);  // first with HasName
  static int IndexOf(qz_string const& name);                  // -1 if none

 protected:
  constexpr CharacterTest() = default;
  CharacterTest(CharacterTest const&) = default;
  CharacterTest& operator=(CharacterTest const&) = default;
  // Tests are static objects and never deleted through this interface, so the
  // destructor is neither virtual nor public.
  ~CharacterTest() = default;
};

#endif  // VARNICE_CHARPROPS_TYPES_CHARACTER_TEST_H_
