#include "varnice/detect/auto_detect_sink.h"

#include <cstring>

#include "varnice/encoding/external_encoding.h"
#include "varnice/stream/char16_sink.h"

AutoDetectSink::AutoDetectSink(Char16Sink& target, const ExternalEncoding* const* candidates, int count,
                               UnicodeLibAllocator& allocator, EncodingChooser::DetectorFactory makeDetector)
    : UnicodeLibActor(static_cast<const UnicodeLibActor&>(target)),
      CharSink(static_cast<const UnicodeLibActor&>(target)),
      chooser_(target, candidates, count, allocator, makeDetector),
      target_(&target),
      allocator_(allocator) {}

AutoDetectSink::~AutoDetectSink() { delete converting_; }

void AutoDetectSink::SetBehavior(UnicodeLibBehavior* behavior) {
  if (converting_ != nullptr) converting_->SetBehavior(behavior);
  CharSink::SetBehavior(behavior);
}

void AutoDetectSink::PutBuffer(const char* begin, const char* end) {
  if (end == nullptr) end = begin + std::strlen(begin);
  if (converting_ != nullptr) {
    converting_->PutBuffer(begin, end);
    return;
  }
  if (chosen_ != nullptr) return;  // chosen, but the encoding cannot read
  if (const ExternalEncoding* choice = chooser_.Scan(begin, end)) Choose(choice);
}

void AutoDetectSink::Flush() {
  if (chosen_ == nullptr) Choose(chooser_.Guess());
  if (converting_ != nullptr) {
    converting_->Flush();
  } else {
    target_->Flush();
  }
}

void AutoDetectSink::Choose(const ExternalEncoding* choice) {
  chosen_ = choice;
  if (choice == nullptr) return;
  converting_ = choice->CreateCharSinkToUnicode(*target_, allocator_);
  if (converting_ == nullptr || chooser_.ExaminedCount() == 0) return;
  converting_->PutBuffer(chooser_.Examined(), chooser_.Examined() + chooser_.ExaminedCount());
}
