// The whole public interface of Varnice: the class interface and the C interface.
#ifndef VARNICE_VARNICE_H_
#define VARNICE_VARNICE_H_

#include "varnice/capi/varnice_c.h"
#include "varnice/encoding/unicode_library.h"
#include "varnice/tables/chunk_table.h"
#include "varnice/tables/compander.h"
#include "varnice/tables/compander_tables.h"
#include "varnice/tables/delta_table.h"
#include "varnice/tables/finite_state_machine.h"
#include "varnice/tables/gap_table.h"
#include "varnice/tables/lookup_functions.h"
#include "varnice/tables/plane_table.h"
#include "varnice/tables/range_table.h"
#include "varnice/tables/simple_finite_state_machine.h"
#include "varnice/widec/qz_exception.h"

#endif  // VARNICE_VARNICE_H_
