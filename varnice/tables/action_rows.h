// Row operations shared by the state machines' action tables. Each builds a
// complete new array before anything is installed, so an allocation failure
// leaves the machine's previous table in place.
#ifndef VARNICE_TABLES_ACTION_ROWS_H_
#define VARNICE_TABLES_ACTION_ROWS_H_

#include <algorithm>
#include <cstddef>

#include "varnice/tables/new_array.h"
#include "varnice/widec/qz_auto_array.h"

namespace varnice::internal {

// A new array of count copies of fill.
template <class Action>
Action* FilledActions(std::size_t count, Action const& fill) {
  Action* actions = NewArray<Action>(count);
  std::fill_n(actions, count, fill);
  return actions;
}

// A new copy of count actions.
template <class Action>
Action* CopiedActions(Action const* from, std::size_t count) {
  Action* actions = NewArray<Action>(count);
  std::copy_n(from, count, actions);
  return actions;
}

// A copy of states rows of width actions with one more row of fill.
template <class Action>
Action* ActionsWithRow(Action const* from, std::size_t width, std::size_t states,
                       Action const& fill) {
  Action* actions = NewArray<Action>((states + 1) * width);
  std::copy_n(from, states * width, actions);
  std::fill_n(actions + states * width, width, fill);
  return actions;
}

// Makes fresh the owned array and the current one.
template <class Action>
void InstallActions(qz_auto_array<Action>& owned, Action const*& current,
                    Action* fresh) noexcept {
  owned = qz_auto_array<Action>(fresh);
  current = owned.get();
}

}  // namespace varnice::internal

#endif  // VARNICE_TABLES_ACTION_ROWS_H_
