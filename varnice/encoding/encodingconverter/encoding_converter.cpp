#include "varnice/encoding/encodingconverter/encoding_converter.h"

#include "varnice/encoding/internal_encoding.h"
#include "varnice/encoding/unicode_lib_behavior.h"

namespace {

bool IsUnicode(const InternalEncoding& encoding) { return &encoding == InternalEncoding::Unicode(); }

}  // namespace

// Each stage is handed to the director as soon as it exists, so that if a
// later step throws, the director (destroyed before the arena) takes it down.

// --- InvalidOutputEncoding ----------------------------------------------------

InvalidOutputEncoding::InvalidOutputEncoding(const TextEncoding& encoding)
    : message_(qz_string("Invalid output encoding: ") + qz_string(encoding.Name())) {
  // Terminated now, so that what() can hand out the text without allocating.
  message_.c_str();
}

InvalidOutputEncoding::~InvalidOutputEncoding() = default;

const char* InvalidOutputEncoding::what() const noexcept { return message_.data(); }

// --- ExternalEncodingConverter ------------------------------------------------

ExternalEncodingConverter::ExternalEncodingConverter(CharSource& in, const ExternalEncoding& inputEncoding,
                                                     const ExternalEncoding& outputEncoding)
    : arena_(kArenaSize, __FILE__, __LINE__), inputEncoding_(&inputEncoding) {
  toUnicode_ = inputEncoding.CreateCharSourceToUnicode(in, arena_);
  director_.DeleteSecond(toUnicode_);
  CharSource* fromUnicode = outputEncoding.CreateCharSourceFromUnicode(*toUnicode_, arena_);
  if (fromUnicode == nullptr) throw InvalidOutputEncoding(outputEncoding);
  director_.DeleteFirst(fromUnicode);
  target_ = fromUnicode;
  SetProxy(target_);
}

ExternalEncodingConverter::ExternalEncodingConverter(Char16Source& in, const InternalEncoding& inputEncoding,
                                                     const ExternalEncoding& outputEncoding)
    : arena_(kArenaSize, __FILE__, __LINE__) {
  Char16Source* unicode = &in;
  if (!IsUnicode(inputEncoding)) {
    unicode = inputEncoding.CreateCharSourceToUnicode(in, arena_);
    director_.DeleteSecond(unicode);
  }
  CharSource* fromUnicode = outputEncoding.CreateCharSourceFromUnicode(*unicode, arena_);
  if (fromUnicode == nullptr) throw InvalidOutputEncoding(outputEncoding);
  director_.DeleteFirst(fromUnicode);
  target_ = fromUnicode;
  SetProxy(target_);
}

ExternalEncodingConverter::~ExternalEncodingConverter() = default;

void ExternalEncodingConverter::SetBehavior(UnicodeLibBehavior* behavior) {
  UnicodeLibActor::SetBehavior(behavior);
  if (behavior != nullptr) director_.SetBehaviors(*behavior);
}

const ExternalEncoding* ExternalEncodingConverter::ActualInputEncoding() {
  // The decoding stage knows best: a detecting one reports its choice.
  return toUnicode_ != nullptr ? toUnicode_->ActualInputEncoding() : inputEncoding_;
}

// --- InternalEncodingConverter ------------------------------------------------

InternalEncodingConverter::InternalEncodingConverter(CharSource& in, const ExternalEncoding& inputEncoding,
                                                     const InternalEncoding& outputEncoding)
    : arena_(kArenaSize, __FILE__, __LINE__), inputEncoding_(&inputEncoding) {
  toUnicode_ = inputEncoding.CreateCharSourceToUnicode(in, arena_);
  director_.DeleteSecond(toUnicode_);
  target_ = toUnicode_;
  if (!IsUnicode(outputEncoding)) {
    if (Char16Source* fromUnicode = outputEncoding.CreateCharSourceFromUnicode(*toUnicode_, arena_)) {
      director_.DeleteFirst(fromUnicode);
      target_ = fromUnicode;
    }
  }
  SetProxy(target_);
}

InternalEncodingConverter::InternalEncodingConverter(Char16Source& in, const InternalEncoding& inputEncoding,
                                                     const InternalEncoding& outputEncoding)
    : arena_(kArenaSize, __FILE__, __LINE__) {
  target_ = &in;
  if (!IsUnicode(inputEncoding)) {
    target_ = inputEncoding.CreateCharSourceToUnicode(in, arena_);
    director_.DeleteSecond(target_);
  }
  if (!IsUnicode(outputEncoding)) {
    if (Char16Source* fromUnicode = outputEncoding.CreateCharSourceFromUnicode(*target_, arena_)) {
      director_.DeleteFirst(fromUnicode);
      target_ = fromUnicode;
    }
  }
  SetProxy(target_);
}

InternalEncodingConverter::~InternalEncodingConverter() = default;

void InternalEncodingConverter::SetBehavior(UnicodeLibBehavior* behavior) {
  UnicodeLibActor::SetBehavior(behavior);
  if (behavior != nullptr) director_.SetBehaviors(*behavior);
}

const ExternalEncoding* InternalEncodingConverter::ActualInputEncoding() {
  return toUnicode_ != nullptr ? toUnicode_->ActualInputEncoding() : inputEncoding_;
}

// --- ExternalEncodingConverterSink --------------------------------------------

ExternalEncodingConverterSink::ExternalEncodingConverterSink(const ExternalEncoding& inputEncoding,
                                                             const InternalEncoding& outputEncoding,
                                                             Char16Sink& out)
    : CharProxySink(nullptr), arena_(kArenaSize, __FILE__, __LINE__) {
  Char16Sink* unicode = &out;
  if (!IsUnicode(outputEncoding)) {
    if (Char16Sink* fromUnicode = outputEncoding.CreateCharSinkFromUnicode(out, arena_)) {
      director_.DeleteFirst(fromUnicode);
      unicode = fromUnicode;
    }
  }
  target_ = inputEncoding.CreateCharSinkToUnicode(*unicode, arena_);
  director_.DeleteSecond(target_);
  SetProxy(target_);
}

ExternalEncodingConverterSink::ExternalEncodingConverterSink(const ExternalEncoding& inputEncoding,
                                                             const ExternalEncoding& outputEncoding,
                                                             CharSink& out)
    : CharProxySink(nullptr), arena_(kArenaSize, __FILE__, __LINE__) {
  Char16Sink* fromUnicode = outputEncoding.CreateCharSinkFromUnicode(out, arena_);
  if (fromUnicode == nullptr) throw InvalidOutputEncoding(outputEncoding);
  director_.DeleteFirst(fromUnicode);
  target_ = inputEncoding.CreateCharSinkToUnicode(*fromUnicode, arena_);
  director_.DeleteSecond(target_);
  SetProxy(target_);
}

ExternalEncodingConverterSink::~ExternalEncodingConverterSink() = default;

void ExternalEncodingConverterSink::SetBehavior(UnicodeLibBehavior* behavior) {
  UnicodeLibActor::SetBehavior(behavior);
  if (behavior != nullptr) director_.SetBehaviors(*behavior);
}

// --- InternalEncodingConverterSink --------------------------------------------

InternalEncodingConverterSink::InternalEncodingConverterSink(const InternalEncoding& inputEncoding,
                                                             const InternalEncoding& outputEncoding,
                                                             Char16Sink& out)
    : Char16ProxySink(nullptr), arena_(kArenaSize, __FILE__, __LINE__) {
  target_ = &out;
  if (!IsUnicode(outputEncoding)) {
    if (Char16Sink* fromUnicode = outputEncoding.CreateCharSinkFromUnicode(out, arena_)) {
      director_.DeleteFirst(fromUnicode);
      target_ = fromUnicode;
    }
  }
  if (!IsUnicode(inputEncoding)) {
    target_ = inputEncoding.CreateCharSinkToUnicode(*target_, arena_);
    director_.DeleteSecond(target_);
  }
  SetProxy(target_);
}

InternalEncodingConverterSink::InternalEncodingConverterSink(const InternalEncoding& inputEncoding,
                                                             const ExternalEncoding& outputEncoding,
                                                             CharSink& out)
    : Char16ProxySink(nullptr), arena_(kArenaSize, __FILE__, __LINE__) {
  Char16Sink* fromUnicode = outputEncoding.CreateCharSinkFromUnicode(out, arena_);
  if (fromUnicode == nullptr) throw InvalidOutputEncoding(outputEncoding);
  director_.DeleteFirst(fromUnicode);
  target_ = fromUnicode;
  if (!IsUnicode(inputEncoding)) {
    target_ = inputEncoding.CreateCharSinkToUnicode(*fromUnicode, arena_);
    director_.DeleteSecond(target_);
  }
  SetProxy(target_);
}

InternalEncodingConverterSink::~InternalEncodingConverterSink() = default;

void InternalEncodingConverterSink::SetBehavior(UnicodeLibBehavior* behavior) {
  UnicodeLibActor::SetBehavior(behavior);
  if (behavior != nullptr) director_.SetBehaviors(*behavior);
}
