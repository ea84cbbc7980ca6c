#include "varnice/encoding/unicode_lib_actor.h"

#include "varnice/encoding/unicode_lib_behavior.h"

namespace {

UnicodeLibBehavior* OrDefault(UnicodeLibBehavior* behavior) {
  return behavior != nullptr ? behavior : UnicodeLibBehavior::GetDefaultBehavior();
}

}  // namespace

UnicodeLibActor::UnicodeLibActor() : behavior_(UnicodeLibBehavior::GetDefaultBehavior()) {}
UnicodeLibActor::UnicodeLibActor(UnicodeLibBehavior* behavior) : behavior_(OrDefault(behavior)) {}
UnicodeLibActor::UnicodeLibActor(const UnicodeLibActor& other) : UnicodeLibPlaceable(), behavior_(other.behavior_) {}
UnicodeLibActor::UnicodeLibActor(const UnicodeLibActor* other)
    : behavior_(other != nullptr ? other->behavior_ : UnicodeLibBehavior::GetDefaultBehavior()) {}
UnicodeLibActor::~UnicodeLibActor() = default;

void UnicodeLibActor::SetBehavior(UnicodeLibBehavior* behavior) { behavior_ = behavior; }
