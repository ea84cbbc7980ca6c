#include "varnice/detect/dual_char_source.h"

DualCharSource::DualCharSource(CharSource& first, CharSource& second)
    : UnicodeLibActor(static_cast<const UnicodeLibActor&>(first)), first_(&first), second_(&second) {}

DualCharSource::~DualCharSource() = default;

bool DualCharSource::Borrow(CharSource& source) {
  source.DoneWith(position_);
  return source.GetBuffer(position_, end_);
}

bool DualCharSource::FillBuffer() {
  if (phase_ == 0) {
    if (Borrow(*first_)) return true;
    phase_ = 1;
    position_ = end_ = nullptr;
  }
  if (phase_ == 1) {
    if (Borrow(*second_)) return true;
    phase_ = 2;
  }
  return false;
}
