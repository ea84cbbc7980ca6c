#include "varnice/charprops/euc_jp_key.h"

namespace varnice::internal {

// Stand-in for ExternalEncoding::EUCPkdFmtJapanese()->FromUnicode(c): ASCII is
// its own code and everything else is unrepresentable for now.
unsigned long EucJpCodeOf(unsigned long c) { return c < 0x80 ? c : 0xFFFD; }

}  // namespace varnice::internal
