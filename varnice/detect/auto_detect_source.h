// AutoDetectSource: UTF-16 from bytes in an unknown encoding. On the first
// read (or the first ActualInputEncoding) it pulls chunks from the byte
// source into an EncodingChooser until one candidate wins, or the input ends
// and the chooser guesses; then it reads everything, the examined bytes first,
// through the chosen encoding. The choice is made once.
//
// Memory: the examined bytes are kept for the life of the source, so input
// that no detector can tell apart (plain ASCII, say) is held whole.
#ifndef VARNICE_DETECT_AUTO_DETECT_SOURCE_H_
#define VARNICE_DETECT_AUTO_DETECT_SOURCE_H_

#include "varnice/detect/encoding_chooser.h"
#include "varnice/encoding/external_encoding.h"
#include "varnice/stream/converting/proxy_streams.h"
#include "varnice/varnice_export.h"

class BufferCharSource;
class DualCharSource;

class VARNICE_API AutoDetectSource : public Char16ProxySource, public ExternalEncoding::ToUnicodeSource {
 public:
  // The behaviour is the byte source's. The byte source is not owned; the
  // stages made once the choice is made live in `allocator`, or on the heap.
  AutoDetectSource(CharSource& bytes, const ExternalEncoding* const* candidates, int count,
                   UnicodeLibAllocator& allocator,
                 EncodingChooser::DetectorFactory makeDetector = nullptr);
  ~AutoDetectSource() override;
  AutoDetectSource(const AutoDetectSource&) = delete;
  AutoDetectSource& operator=(const AutoDetectSource&) = delete;

  void SetBehavior(UnicodeLibBehavior* behavior) override;
  bool FillBuffer() override;
  // The chosen encoding, choosing it now if need be (null without candidates).
  const ExternalEncoding* ActualInputEncoding() override;

  // Reads until the chooser decides and builds the pipeline of the choice.
  void ChooseEncodingNow();
  const EncodingChooser& Chooser() const { return chooser_; }

 private:
  EncodingChooser chooser_;
  CharSource* bytes_;
  BufferCharSource* replay_ = nullptr;
  DualCharSource* dual_ = nullptr;
  ExternalEncoding::ToUnicodeSource* converting_ = nullptr;
  const ExternalEncoding* chosen_ = nullptr;
  UnicodeLibAllocator& allocator_;
  bool choiceMade_ = false;
};

#endif  // VARNICE_DETECT_AUTO_DETECT_SOURCE_H_
