#include "varnice/detect/auto_detect_encoding.h"

#include <initializer_list>

#include "varnice/detect/auto_detect_sink.h"
#include "varnice/detect/auto_detect_source.h"
#include "varnice/detect/text_plausibility_detector.h"

AutoDetectEncoding::AutoDetectEncoding(TextEncodingID id, const char** names, const char* mimeName,
                                       unsigned int codePage)
    : ExternalEncoding(id, names, mimeName, codePage) {
  subEncodings_.reserve(10);
}

AutoDetectEncoding::~AutoDetectEncoding() = default;

bool AutoDetectEncoding::IsTextModeSafe() const {
  for (const ExternalEncoding* e : subEncodings_) {
    if (!e->IsTextModeSafe()) return false;
  }
  return true;
}

bool AutoDetectEncoding::IsValidForOutput() const { return false; }

ExternalEncoding::ToUnicodeSource* AutoDetectEncoding::CreateCharSourceToUnicode(CharSource& in,
                                                                                UnicodeLibAllocator& a) const {
  return new (a) AutoDetectSource(in, SubEncodings(), CountSubEncodings(), a, makeDetector_);
}

CharSource* AutoDetectEncoding::CreateCharSourceFromUnicode(Char16Source&, UnicodeLibAllocator&) const {
  return nullptr;
}

Char16Sink* AutoDetectEncoding::CreateCharSinkFromUnicode(CharSink&, UnicodeLibAllocator&) const { return nullptr; }

CharSink* AutoDetectEncoding::CreateCharSinkToUnicode(Char16Sink& out, UnicodeLibAllocator& a) const {
  return new (a) AutoDetectSink(out, SubEncodings(), CountSubEncodings(), a, makeDetector_);
}

void AutoDetectEncoding::RegisterSubEncoding(const ExternalEncoding& encoding) {
  subEncodings_.push_back(&encoding);
}

namespace {

const char* kGeneralNames[] = {"AutoDetect", "auto", nullptr};
const char* kJapaneseNames[] = {"AutoDetectJapanese", "auto-ja", nullptr};

AutoDetectEncoding* Make(TextEncodingID id, const char** names, bool western) {
  auto* made = new AutoDetectEncoding(id, names, nullptr, 0);  // kept until unload, like every encoding
  for (const ExternalEncoding* e :
       {ExternalEncoding::Unicode20ByteStream(), ExternalEncoding::Unicode20UTF8(), ExternalEncoding::Unicode20UTF7(),
        ExternalEncoding::ISO2022JP(), ExternalEncoding::EUCPkdFmtJapanese(), ExternalEncoding::ShiftJIS(),
        ExternalEncoding::CP932()}) {
    made->RegisterSubEncoding(*e);
  }
  if (western) made->RegisterSubEncoding(*ExternalEncoding::CP1252());
  made->SetDetectorFactory(TextPlausibilityDetector::Create);
  return made;
}

}  // namespace

AutoDetectEncoding* AutoDetectEncoding::General() {
  static AutoDetectEncoding* const encoding = Make(TextEncodingID(4), kGeneralNames, true);
  return encoding;
}

AutoDetectEncoding* AutoDetectEncoding::Japanese() {
  static AutoDetectEncoding* const encoding = Make(TextEncodingID(5), kJapaneseNames, false);
  return encoding;
}
