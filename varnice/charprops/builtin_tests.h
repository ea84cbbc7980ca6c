// The library's own named tests in registration order. Internal.
#ifndef VARNICE_CHARPROPS_BUILTIN_TESTS_H_
#define VARNICE_CHARPROPS_BUILTIN_TESTS_H_

#include <vector>

class CharacterTest;

namespace varnice::internal {

// Appends the property objects and then the classification objects, in the
// order that fixes their registry numbers.
void AppendBuiltInTests(std::vector<CharacterTest const*>& registry);

}  // namespace varnice::internal

#endif  // VARNICE_CHARPROPS_BUILTIN_TESTS_H_
