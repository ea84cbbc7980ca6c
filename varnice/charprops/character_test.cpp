#include "varnice/charprops/types/character_test.h"

#include <vector>

#include "varnice/charprops/builtin_tests.h"
#include "varnice/encoding/internal_encoding.h"

namespace {

// Built on first use with the library's tests already in it, so their numbers
// are the same in every process whatever the order of static initialisation.
std::vector<CharacterTest const*>& Registry() {
  static std::vector<CharacterTest const*> registry = [] {
    std::vector<CharacterTest const*> r;
    r.reserve(10);
    varnice::internal::AppendBuiltInTests(r);
    return r;
  }();
  return registry;
}

}  // namespace

bool CharacterTest::HasName(qz_string const&) const { return false; }

qz_string CharacterTest::Name() const { return qz_string(); }

bool CharacterTest::operator()(unsigned long c, InternalEncoding const& encoding) const {
  return Test(encoding.ToUnicode(c));
}

void CharacterTest::RegisterAsNamedTest() const { Registry().push_back(this); }

unsigned int CharacterTest::Count() { return static_cast<unsigned int>(Registry().size()); }

CharacterTest const* CharacterTest::Lookup(unsigned int index) {
  std::vector<CharacterTest const*> const& r = Registry();
  return index < r.size() ? r[index] : nullptr;
}

CharacterTest const* CharacterTest::Lookup(qz_string const& name) {
  const int index = IndexOf(name);
  return index < 0 ? nullptr : Registry()[static_cast<unsigned int>(index)];
}

int CharacterTest::IndexOf(qz_string const& name) {
  std::vector<CharacterTest const*> const& r = Registry();
  for (std::size_t i = 0; i < r.size(); ++i) {
    if (r[i]->HasName(name)) return static_cast<int>(i);
  }
  return -1;
}
