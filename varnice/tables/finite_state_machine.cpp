#include "varnice/tables/finite_state_machine.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "varnice/tables/action_rows.h"
#include "varnice/widec/qz_exception.h"

using varnice::internal::ActionsWithRow;
using varnice::internal::CopiedActions;
using varnice::internal::FilledActions;
using varnice::internal::InstallActions;
using varnice::internal::StoredT;

namespace {

// The category map of a machine built from scratch: every byte in category 0.
constexpr unsigned char kAllInCategoryZero[256] = {};

}  // namespace

template <class Out>
FiniteStateMachine<unsigned char, Out>::FiniteStateMachine(unsigned int categories,
                                                           unsigned short states,
                                                           Out const& defaultOutput)
    : categoryCount_(categories),
      stateCount_(states),
      ownedActions_(FilledActions(std::size_t{states} * categories,
                                  Action{static_cast<StoredT<Out>>(defaultOutput), 0})),
      actions_(ownedActions_.get()),
      categories_(kAllInCategoryZero) {}

template <class Out>
FiniteStateMachine<unsigned char, Out>::FiniteStateMachine(unsigned int categories,
                                                           unsigned short states,
                                                           Action const* actions,
                                                           unsigned char const* categoryMap)
    : categoryCount_(categories),
      stateCount_(states),
      actions_(actions),
      categories_(categoryMap) {}

template <class Out>
FiniteStateMachine<unsigned char, Out>::FiniteStateMachine(FiniteStateMachine const& other)
    : categoryCount_(other.categoryCount_),
      stateCount_(other.stateCount_),
      ownedActions_(CopiedActions(other.actions_,
                                  std::size_t{other.stateCount_} * other.categoryCount_)),
      actions_(ownedActions_.get()),
      categories_(other.categories_) {
  if (other.ownedCategories_.owns()) MakeCategoriesWritable();
}

template <class Out>
FiniteStateMachine<unsigned char, Out>::~FiniteStateMachine() = default;

template <class Out>
unsigned short FiniteStateMachine<unsigned char, Out>::AddState(Out const& output,
                                                                unsigned short next) {
  if (stateCount_ == 0xFFFF) throw qz_out_of_range("state machine has 65535 states");
  InstallActions(ownedActions_, actions_,
                 ActionsWithRow(actions_, categoryCount_, stateCount_,
                                Action{static_cast<StoredT<Out>>(output), next}));
  return stateCount_++;
}

template <class Out>
void FiniteStateMachine<unsigned char, Out>::SetDefaultTransition(unsigned short state,
                                                                  Out const& output,
                                                                  unsigned short next) {
  CheckState(state);
  MakeActionsWritable();
  Action* row = ownedActions_.get() + std::size_t{state} * categoryCount_;
  std::fill_n(row, categoryCount_, Action{static_cast<StoredT<Out>>(output), next});
}

template <class Out>
void FiniteStateMachine<unsigned char, Out>::InternalSetTransition(
    unsigned short state, unsigned char const* bytes, int count, Out const& output,
    unsigned short next) {
  CheckState(state);
  DistinguishCharacters(bytes, count);
  MakeActionsWritable();
  Action* row = ownedActions_.get() + std::size_t{state} * categoryCount_;
  for (int i = 0; i < count; ++i) {
    row[categories_[bytes[i]]] = Action{static_cast<StoredT<Out>>(output), next};
  }
}

template <class Out>
void FiniteStateMachine<unsigned char, Out>::DistinguishCharacters(unsigned char const* bytes,
                                                                   int count) {
  unsigned int const oldCount = categoryCount_;
  // remap[c]: the category the listed bytes of c move to. Identity beyond the
  // categories in use too, so that a byte listed twice stays where it went.
  std::array<unsigned char, 256> remap;
  for (unsigned int c = 0; c < 256; ++c) remap[c] = static_cast<unsigned char>(c);
  std::array<unsigned char, 256> origin{};  // origin[k]: the category k split from
  unsigned int newCount = oldCount;

  // A category is split at its first unlisted byte when it holds a listed one.
  for (unsigned int b = 0; b < 256; ++b) {
    bool split = false;
    for (int i = 0; i < count; ++i) {
      unsigned char x = bytes[i];
      if (b == x) {
        split = false;
        break;
      }
      if (categories_[b] == remap[categories_[x]]) split = true;
    }
    if (!split) continue;
    if (newCount >= 256) throw qz_out_of_range("state machine needs over 256 categories");
    origin[newCount] = categories_[b];
    remap[categories_[b]] = static_cast<unsigned char>(newCount);
    ++newCount;
  }
  if (newCount == oldCount) return;

  // A new category starts with the actions of the one it split from.
  std::size_t const states = stateCount_;
  Action* actions = varnice::internal::NewArray<Action>(states * newCount);
  qz_auto_array<Action> fresh(actions);
  for (std::size_t s = 0; s < states; ++s) {
    Action const* oldRow = actions_ + s * oldCount;
    for (unsigned int k = 0; k < newCount; ++k) {
      actions[s * newCount + k] = oldRow[k < oldCount ? k : origin[k]];
    }
  }
  MakeCategoriesWritable();

  // Nothing below can fail.
  unsigned char* map = ownedCategories_.get();
  for (int i = 0; i < count; ++i) map[bytes[i]] = remap[map[bytes[i]]];
  ownedActions_ = std::move(fresh);
  actions_ = ownedActions_.get();
  categoryCount_ = newCount;
}

template <class Out>
void FiniteStateMachine<unsigned char, Out>::MakeActionsWritable() {
  if (ownedActions_.owns()) return;
  InstallActions(ownedActions_, actions_,
                 CopiedActions(actions_, std::size_t{stateCount_} * categoryCount_));
}

template <class Out>
void FiniteStateMachine<unsigned char, Out>::MakeCategoriesWritable() {
  if (ownedCategories_.owns()) return;
  unsigned char* map = varnice::internal::NewArray<unsigned char>(256);
  std::copy_n(categories_, 256, map);
  ownedCategories_ = qz_auto_array<unsigned char>(map);
  categories_ = map;
}

template <class Out>
void FiniteStateMachine<unsigned char, Out>::CheckState(unsigned short state) const {
  if (state >= stateCount_) throw qz_out_of_range("state machine state out of range");
}

template class FiniteStateMachine<unsigned char, unsigned long>;
