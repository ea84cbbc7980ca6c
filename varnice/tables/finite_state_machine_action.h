// FiniteStateMachineAction: one cell of a state machine's action table, the
// output for a (state, input) pair and the state to go to. Stored code-page
// tables are arrays of these, so the layout is fixed: 4 bytes for 16-bit
// outputs, 8 bytes for 32-bit outputs (the output is kept in 32 bits).
#ifndef VARNICE_TABLES_FINITE_STATE_MACHINE_ACTION_H_
#define VARNICE_TABLES_FINITE_STATE_MACHINE_ACTION_H_

#include <cstdint>

#include "varnice/tables/stored_value.h"

template <class Out>
struct FiniteStateMachineAction {
  varnice::internal::StoredT<Out> output;  // meaning is the user's
  std::uint16_t nextState;
};

static_assert(sizeof(FiniteStateMachineAction<unsigned short>) == 4);
static_assert(sizeof(FiniteStateMachineAction<unsigned long>) == 8);

#endif  // VARNICE_TABLES_FINITE_STATE_MACHINE_ACTION_H_
