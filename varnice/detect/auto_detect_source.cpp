#include "varnice/detect/auto_detect_source.h"

#include "varnice/detect/dual_char_source.h"
#include "varnice/stream/buffer_char_source.h"

AutoDetectSource::AutoDetectSource(CharSource& bytes, const ExternalEncoding* const* candidates, int count,
                                   UnicodeLibAllocator& allocator, EncodingChooser::DetectorFactory makeDetector)
    : UnicodeLibActor(static_cast<const UnicodeLibActor&>(bytes)),
      chooser_(bytes, candidates, count, allocator, makeDetector),
      bytes_(&bytes),
      allocator_(allocator) {}

AutoDetectSource::~AutoDetectSource() {
  // The converting stage reads the dual source, which reads the replay.
  delete converting_;
  delete dual_;
  delete replay_;
}

void AutoDetectSource::SetBehavior(UnicodeLibBehavior* behavior) { Char16ProxySource::SetBehavior(behavior); }

bool AutoDetectSource::FillBuffer() {
  if (!choiceMade_) ChooseEncodingNow();
  return Char16ProxySource::FillBuffer();
}

const ExternalEncoding* AutoDetectSource::ActualInputEncoding() {
  if (!choiceMade_) ChooseEncodingNow();
  return chosen_;
}

void AutoDetectSource::ChooseEncodingNow() {
  if (choiceMade_) return;
  choiceMade_ = true;
  const char* b;
  const char* e;
  const ExternalEncoding* choice = nullptr;
  while (choice == nullptr) {
    if (!bytes_->GetBuffer(b, e)) {
      choice = chooser_.Guess();
      break;
    }
    choice = chooser_.Scan(b, e);
    bytes_->DoneWith(e);  // the chooser keeps its own copy
  }
  chosen_ = choice;
  if (choice == nullptr) return;
  replay_ = new BufferCharSource(chooser_.Examined(), chooser_.Examined() + chooser_.ExaminedCount());
  dual_ = new DualCharSource(*replay_, *bytes_);
  // The converting stage takes its behaviour from what it reads.
  dual_->SetBehavior(&Behavior());
  converting_ = choice->CreateCharSourceToUnicode(*dual_, allocator_);
  SetProxy(converting_);
}
