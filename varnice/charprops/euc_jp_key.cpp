#include "varnice/charprops/euc_jp_key.h"

#include "varnice/codepages/mbcs_encoding.h"
#include "varnice/encoding/external_encoding.h"

namespace varnice::internal {

unsigned long EucJpCodeOf(unsigned long c) {
  if (c > 0xFFFF) return 0xFFFD;
  // The first call creates the EUC-JP singleton; it is a table-driven page.
  static MBCSEncoding const& eucJp =
      static_cast<MBCSEncoding const&>(*ExternalEncoding::EUCPkdFmtJapanese());
  return eucJp.FromUnicode(static_cast<unsigned short>(c));
}

}  // namespace varnice::internal
