#include "varnice/encoding/actors/unicode_lib_actor.h"

// The constructors that capture the default behaviour are defined beside it,
// in unicode_lib_behavior.cpp: the behaviour sits a layer above the actors.

UnicodeLibActor::UnicodeLibActor(const UnicodeLibActor& other) : UnicodeLibPlaceable(), behavior_(other.behavior_) {}
UnicodeLibActor::~UnicodeLibActor() = default;

void UnicodeLibActor::SetBehavior(UnicodeLibBehavior* behavior) { behavior_ = behavior; }
