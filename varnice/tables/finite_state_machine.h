// FiniteStateMachine: a table state machine that first maps each byte to an
// input category and has one column per category, so that bytes that always
// behave alike share a column. The action for state s and byte b is
// Actions()[s * CategoryCount() + Categories()[b]]; users step through it
// themselves.
//
// Actions and the 256-byte category map are used in place when constant and
// copied only when edited (copy on write). Edits are construction-time work:
// finish them before the machine is shared between threads. An edit that
// fails to allocate throws qz_sw_out_of_memory and leaves the previous table
// in place.
#ifndef VARNICE_TABLES_FINITE_STATE_MACHINE_H_
#define VARNICE_TABLES_FINITE_STATE_MACHINE_H_

#include <cstdint>

#include "varnice/tables/finite_state_machine_action.h"
#include "varnice/widec/qz_auto_array.h"
#include "varnice/varnice_export.h"

template <class In, class Out>
class FiniteStateMachine;

// Only byte input is provided.
template <class Out>
class FiniteStateMachine<unsigned char, Out> {
 public:
  using Action = FiniteStateMachineAction<Out>;

  // states x categories actions of its own, each {defaultOutput, 0}; every
  // byte starts in category 0 (other categories arise by splitting).
  FiniteStateMachine(unsigned int categories, unsigned short states, Out const& defaultOutput);
  // Uses actions (states rows of categories actions) and categoryMap (256
  // bytes) in place until edited; they must outlive the machine.
  FiniteStateMachine(unsigned int categories, unsigned short states, Action const* actions,
                     unsigned char const* categoryMap);
  // Takes a copy of every action; the category map is copied if owned and
  // shared if constant.
  FiniteStateMachine(FiniteStateMachine const& other);
  FiniteStateMachine& operator=(FiniteStateMachine const&) = delete;
  virtual ~FiniteStateMachine();

  // Appends a state whose every action is {output, next}; returns its number
  // (the old state count). Throws qz_out_of_range when 65535 states exist.
  unsigned short AddState(Out const& output, unsigned short next);
  // Sets every action of state to {output, next}.
  void SetDefaultTransition(unsigned short state, Out const& output, unsigned short next);
  // Gives the count listed bytes the action {output, next} in state, first
  // splitting their categories so that no other byte changes.
  void InternalSetTransition(unsigned short state, unsigned char const* bytes, int count,
                             Out const& output, unsigned short next);
  // Splits categories so that the listed bytes can be given transitions of
  // their own: each category holding both listed and unlisted bytes gets one
  // new category for its listed bytes, starting with the old one's actions in
  // every state. A category whose bytes are all listed is kept. Avoid listing
  // a byte twice. Throws qz_out_of_range if more than 256 categories would
  // result.
  void DistinguishCharacters(unsigned char const* bytes, int count);
  // Copy constant actions / the constant category map into owned arrays.
  void MakeActionsWritable();
  void MakeCategoriesWritable();

  unsigned int CategoryCount() const { return categoryCount_; }
  unsigned short StateCount() const { return stateCount_; }
  Action const* Actions() const { return actions_; }
  unsigned char const* Categories() const { return categories_; }
  Action const& GetAction(unsigned short state, unsigned char b) const {
    return actions_[state * categoryCount_ + categories_[b]];
  }
  // True once the machine has its own copy of the actions (the category map).
  bool OwnsActions() const { return ownedActions_.owns(); }
  bool OwnsCategories() const { return ownedCategories_.owns(); }

 private:
  void CheckState(unsigned short state) const;

  unsigned int categoryCount_;
  std::uint16_t stateCount_;
  qz_auto_array<Action> ownedActions_;  // empty while constant data is used
  Action const* actions_;
  qz_auto_array<unsigned char> ownedCategories_;  // empty while constant
  unsigned char const* categories_;
};

extern template class VARNICE_API FiniteStateMachine<unsigned char, unsigned long>;

#endif  // VARNICE_TABLES_FINITE_STATE_MACHINE_H_
