#include "varnice/encoding/unicode_lib_director.h"

#include "varnice/encoding/actors/unicode_lib_actor.h"

UnicodeLibDirector::UnicodeLibDirector(UnicodeLibActor* first, UnicodeLibActor* second)
    : first_(first), second_(second) {}

UnicodeLibDirector::~UnicodeLibDirector() {
  delete first_;
  delete second_;
}

void UnicodeLibDirector::SetBehaviors(UnicodeLibBehavior& behavior) {
  if (first_ != nullptr) first_->SetBehavior(&behavior);
  if (second_ != nullptr) second_->SetBehavior(&behavior);
}
