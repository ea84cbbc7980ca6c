#include "varnice/tables/simple_finite_state_machine.h"

#include <cstddef>

#include "varnice/tables/action_rows.h"
#include "varnice/widec/qz_exception.h"

using varnice::internal::ActionsWithRow;
using varnice::internal::CopiedActions;
using varnice::internal::FilledActions;
using varnice::internal::InstallActions;
using varnice::internal::StoredT;

template <class In, class Out>
SimpleFiniteStateMachine<In, Out>::SimpleFiniteStateMachine(unsigned int inputs,
                                                            unsigned short states,
                                                            Out const& defaultOutput)
    : inputCount_(inputs),
      stateCount_(states),
      ownedActions_(FilledActions(std::size_t{states} * inputs,
                                  Action{static_cast<StoredT<Out>>(defaultOutput), 0})),
      actions_(ownedActions_.get()) {}

template <class In, class Out>
SimpleFiniteStateMachine<In, Out>::SimpleFiniteStateMachine(unsigned int inputs,
                                                            unsigned short states,
                                                            Action const* actions)
    : inputCount_(inputs), stateCount_(states), actions_(actions) {}

template <class In, class Out>
SimpleFiniteStateMachine<In, Out>::SimpleFiniteStateMachine(
    SimpleFiniteStateMachine const& other)
    : inputCount_(other.inputCount_),
      stateCount_(other.stateCount_),
      ownedActions_(CopiedActions(other.actions_, std::size_t{other.stateCount_} * other.inputCount_)),
      actions_(ownedActions_.get()) {}

template <class In, class Out>
SimpleFiniteStateMachine<In, Out>::~SimpleFiniteStateMachine() = default;

template <class In, class Out>
unsigned short SimpleFiniteStateMachine<In, Out>::AddState(Out const& output,
                                                           unsigned short next) {
  if (stateCount_ == 0xFFFF) throw qz_out_of_range("state machine has 65535 states");
  InstallActions(ownedActions_, actions_,
                 ActionsWithRow(actions_, inputCount_, stateCount_,
                                Action{static_cast<StoredT<Out>>(output), next}));
  return stateCount_++;
}

template <class In, class Out>
void SimpleFiniteStateMachine<In, Out>::SetDefaultTransition(unsigned short state,
                                                             Out const& output,
                                                             unsigned short next) {
  CheckState(state);
  MakeActionsWritable();
  Action* row = ownedActions_.get() + std::size_t{state} * inputCount_;
  std::fill_n(row, inputCount_, Action{static_cast<StoredT<Out>>(output), next});
}

template <class In, class Out>
void SimpleFiniteStateMachine<In, Out>::InternalSetTransition(unsigned short state,
                                                              In const* inputs, int count,
                                                              Out const& output,
                                                              unsigned short next) {
  CheckState(state);
  for (int i = 0; i < count; ++i) {
    if (static_cast<unsigned long>(inputs[i]) >= inputCount_) {
      throw qz_out_of_range("state machine input out of range");
    }
  }
  MakeActionsWritable();
  Action* row = ownedActions_.get() + std::size_t{state} * inputCount_;
  for (int i = 0; i < count; ++i) {
    row[inputs[i]] = Action{static_cast<StoredT<Out>>(output), next};
  }
}

template <class In, class Out>
void SimpleFiniteStateMachine<In, Out>::MakeActionsWritable() {
  if (ownedActions_.owns()) return;
  InstallActions(ownedActions_, actions_,
                 CopiedActions(actions_, std::size_t{stateCount_} * inputCount_));
}

template <class In, class Out>
void SimpleFiniteStateMachine<In, Out>::CheckState(unsigned short state) const {
  if (state >= stateCount_) throw qz_out_of_range("state machine state out of range");
}

template class SimpleFiniteStateMachine<unsigned char, unsigned short>;
template class SimpleFiniteStateMachine<unsigned char, unsigned long>;
