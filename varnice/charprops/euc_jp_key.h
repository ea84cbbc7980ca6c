// The EUC-JP code of a character, as the JIS comparator keys it. Internal.
#ifndef VARNICE_CHARPROPS_EUC_JP_KEY_H_
#define VARNICE_CHARPROPS_EUC_JP_KEY_H_

namespace varnice::internal {

// The EUC-JP bytes of c read as one big-endian integer (0x00-0x7F, 0x8EA1-
// 0x8EDF, 0xA1A1-0xF4FE, 0x8FA2A1 and up), or 0xFFFD when EUC-JP has no code
// for c: ExternalEncoding::EUCPkdFmtJapanese()'s mapping of one character.
unsigned long EucJpCodeOf(unsigned long c);

}  // namespace varnice::internal

#endif  // VARNICE_CHARPROPS_EUC_JP_KEY_H_
