// UnicodeLibDirector: owns the two stages of a converter's pipeline and applies
// one behaviour to both. The first stage is the one nearest the converter's
// output; it is destroyed first.
#ifndef VARNICE_ENCODING_UNICODE_LIB_DIRECTOR_H_
#define VARNICE_ENCODING_UNICODE_LIB_DIRECTOR_H_

#include "varnice/varnice_export.h"

class UnicodeLibActor;
class UnicodeLibBehavior;

class VARNICE_API UnicodeLibDirector {
 public:
  explicit UnicodeLibDirector(UnicodeLibActor* first = nullptr, UnicodeLibActor* second = nullptr);
  UnicodeLibDirector(const UnicodeLibDirector&) = delete;
  UnicodeLibDirector& operator=(const UnicodeLibDirector&) = delete;
  ~UnicodeLibDirector();

  // Hands the director an actor to own in that place. The names say what the
  // director will do with it: delete it, first or second, when it goes.
  void DeleteFirst(UnicodeLibActor* actor) { first_ = actor; }
  void DeleteSecond(UnicodeLibActor* actor) { second_ = actor; }

  // Sets the behaviour on the first stage, then on the second.
  void SetBehaviors(UnicodeLibBehavior& behavior);

  UnicodeLibActor* First() const { return first_; }
  UnicodeLibActor* Second() const { return second_; }

 private:
  UnicodeLibActor* first_;
  UnicodeLibActor* second_;
};

#endif  // VARNICE_ENCODING_UNICODE_LIB_DIRECTOR_H_
