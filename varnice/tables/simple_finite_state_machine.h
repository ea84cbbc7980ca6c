// SimpleFiniteStateMachine: a table state machine with one column per input
// value. The action for state s and input i is Actions()[s * InputCount() + i];
// users step through it themselves (the machine keeps no current state).
//
// A machine built over a constant action array uses it in place and copies it
// only when edited (copy on write), so stored code-page machines cost no
// memory. Edits are construction-time work: finish them before the machine is
// shared between threads. An edit that fails to allocate throws
// qz_sw_out_of_memory and leaves the previous table in place.
#ifndef VARNICE_TABLES_SIMPLE_FINITE_STATE_MACHINE_H_
#define VARNICE_TABLES_SIMPLE_FINITE_STATE_MACHINE_H_

#include <cstdint>

#include "varnice/tables/finite_state_machine_action.h"
#include "varnice/widec/qz_auto_array.h"
#include "varnice/varnice_export.h"

template <class In, class Out>
class SimpleFiniteStateMachine {
 public:
  using Action = FiniteStateMachineAction<Out>;

  // states x inputs actions of its own, each {defaultOutput, 0}.
  SimpleFiniteStateMachine(unsigned int inputs, unsigned short states, Out const& defaultOutput);
  // Uses actions (states rows of inputs actions) in place until edited; they
  // must outlive the machine.
  SimpleFiniteStateMachine(unsigned int inputs, unsigned short states, Action const* actions);
  // Takes a copy of every action, also when other uses constant data.
  SimpleFiniteStateMachine(SimpleFiniteStateMachine const& other);
  SimpleFiniteStateMachine& operator=(SimpleFiniteStateMachine const&) = delete;
  virtual ~SimpleFiniteStateMachine();

  // Appends a state whose every action is {output, next}; returns its number
  // (the old state count). Throws qz_out_of_range when 65535 states exist.
  unsigned short AddState(Out const& output, unsigned short next);
  // Sets every action of state to {output, next}.
  void SetDefaultTransition(unsigned short state, Out const& output, unsigned short next);
  // Sets the actions of state for the count listed inputs to {output, next}.
  // Throws qz_out_of_range for a state or input outside the table.
  void InternalSetTransition(unsigned short state, In const* inputs, int count,
                             Out const& output, unsigned short next);
  // Copies constant actions into an array of the machine's own.
  void MakeActionsWritable();

  unsigned int InputCount() const { return inputCount_; }
  unsigned short StateCount() const { return stateCount_; }
  Action const* Actions() const { return actions_; }
  Action const& GetAction(unsigned short state, In input) const {
    return actions_[state * inputCount_ + input];
  }
  // True once the machine has its own copy of the actions.
  bool OwnsActions() const { return ownedActions_.owns(); }

 private:
  void CheckState(unsigned short state) const;

  unsigned int inputCount_;
  std::uint16_t stateCount_;
  qz_auto_array<Action> ownedActions_;  // empty while constant data is used
  Action const* actions_;
};

extern template class VARNICE_API SimpleFiniteStateMachine<unsigned char, unsigned short>;
extern template class VARNICE_API SimpleFiniteStateMachine<unsigned char, unsigned long>;

#endif  // VARNICE_TABLES_SIMPLE_FINITE_STATE_MACHINE_H_
