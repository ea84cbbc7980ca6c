// The byte-sequence layouts of the library's multi-byte character sets, as
// CompanderEntry arrays (see compander.h). The arrays are writable because a
// Compander writes its computed constants into them; obtain companders over
// them with Compander::Shared so that each is constructed once. Each array
// ends with the terminator of its last sub-table.
#ifndef VARNICE_TABLES_COMPANDER_TABLES_H_
#define VARNICE_TABLES_COMPANDER_TABLES_H_

#include "varnice/tables/compander.h"
#include "varnice/varnice_export.h"

VARNICE_API extern CompanderEntry latin_compander_table[];
VARNICE_API extern CompanderEntry sjis_compander_table[];
VARNICE_API extern CompanderEntry cp932_compander_table[];
VARNICE_API extern CompanderEntry gb_2312_80_compander_table[];
VARNICE_API extern CompanderEntry euc_kr_compander_table[];
VARNICE_API extern CompanderEntry big_5_compander_table[];
VARNICE_API extern CompanderEntry ks_c_5601_1987_compander_table[];
VARNICE_API extern CompanderEntry cp949_compander_table[];
VARNICE_API extern CompanderEntry ks_c_5601_1992_compander_table[];
VARNICE_API extern CompanderEntry jeuc_compander_table[];
VARNICE_API extern CompanderEntry cns11643_1986_compander_table[];
VARNICE_API extern CompanderEntry cns11643_1992_compander_table[];
VARNICE_API extern CompanderEntry jis_x_0208_compander_table[];
VARNICE_API extern CompanderEntry iso_2022_kr_compander_table[];

#endif  // VARNICE_TABLES_COMPANDER_TABLES_H_
