// UnicodeLibActor: the virtual base of every pipeline stage (streams, block
// converters, detectors). It carries the behaviour that decides what happens
// to characters the stage cannot convert.
//
// The behaviour is captured when the actor is constructed: changing the global
// default later does not reach existing actors. The actor does not own it.
#ifndef VARNICE_ENCODING_ACTORS_UNICODE_LIB_ACTOR_H_
#define VARNICE_ENCODING_ACTORS_UNICODE_LIB_ACTOR_H_

#include "varnice/encoding/actors/unicode_lib_allocator.h"
#include "varnice/varnice_export.h"

class UnicodeLibBehavior;

class VARNICE_API UnicodeLibActor : public UnicodeLibPlaceable {
 public:
  // Takes the current default behaviour.
  UnicodeLibActor();
  // A null behaviour means the current default.
  explicit UnicodeLibActor(UnicodeLibBehavior* behavior);
  UnicodeLibActor(const UnicodeLibActor& other);
  // Takes the other actor's behaviour; a null actor means the current default.
  explicit UnicodeLibActor(const UnicodeLibActor* other);
  UnicodeLibActor& operator=(const UnicodeLibActor& other) = default;

  ~UnicodeLibActor() override;
  virtual void SetBehavior(UnicodeLibBehavior* behavior);

  UnicodeLibBehavior& Behavior() const { return *behavior_; }

 private:
  UnicodeLibBehavior* behavior_;
};

#endif  // VARNICE_ENCODING_ACTORS_UNICODE_LIB_ACTOR_H_
