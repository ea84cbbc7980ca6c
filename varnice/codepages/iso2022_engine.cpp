#include "varnice/codepages/iso2022_engine.h"

#include <typeinfo>

#include "varnice/codepages/mbcs_encoding.h"
#include "varnice/codepages/mbcs_engine.h"

namespace varnice::internal {

void FindTableReadings(BlockConverter_8_to_16* const* subs, int count, TableReading* tables) {
  for (int i = 0; i < count; ++i) {
    tables[i] = {};
    if (typeid(*subs[i]) != typeid(MBCStoUnicode)) continue;
    auto const* m = static_cast<MBCStoUnicode const*>(subs[i]);
    if (m->HonoursForcedMapping()) continue;
    tables[i] = {m->Table().Actions(), PairsOf(m->Table())};
  }
}

bool ReadWholeCharacters(TableReading const& t, BlockConverter_8_to_16 const* sub, char const*& in, char const* stop,
                         unsigned short*& out, unsigned short const* outEnd) {
  if (!static_cast<MBCStoUnicode const*>(sub)->BetweenCharacters()) return false;
  auto const* p = reinterpret_cast<unsigned char const*>(in);
  auto const* const end = reinterpret_cast<unsigned char const*>(stop);
  unsigned short* o = out;
  if (t.pairs != nullptr) {
    unsigned char const* const last = end - p <= 2 * (outEnd - o) ? end : p + 2 * (outEnd - o);
    DecodeFlatPairRun(t.pairs, p, last, o);
  } else {
    for (; p != end && o != outEnd; ++p) {
      const MBCSAction a = t.actions[*p];
      if (!CompleteUnit(a)) break;
      *o++ = a.output;
    }
  }
  in = reinterpret_cast<char const*>(p);
  out = o;
  return p == end;
}

}  // namespace varnice::internal
