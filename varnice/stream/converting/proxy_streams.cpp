#include "varnice/stream/converting/proxy_streams.h"

#include <cstring>

// Proxies take the proxied stream's behaviour in the constructor body rather
// than through the virtual base, so that classes derived from them do too.

namespace {

// Both widths lend the proxied source's own range; the logic lives here once.
template <class Source, class Unit>
bool TakeOverRange(Source* proxied, bool& exhausted, const Unit*& position, const Unit*& end) {
  if (proxied == nullptr || exhausted) return false;
  // What our reader consumed is consumed in the proxied source.
  proxied->DoneWith(position);
  const Unit* begin;
  const Unit* stop;
  if (!proxied->GetBuffer(begin, stop)) {
    exhausted = true;
    return false;
  }
  position = begin;
  end = stop;
  return true;
}

}  // namespace

// --- Sources ------------------------------------------------------------------

CharProxySource::CharProxySource(CharSource* proxied) : proxied_(proxied) {
  if (proxied != nullptr) UnicodeLibActor::SetBehavior(&proxied->Behavior());
}

CharProxySource::~CharProxySource() = default;

void CharProxySource::SetBehavior(UnicodeLibBehavior* behavior) {
  if (proxied_ != nullptr) proxied_->SetBehavior(behavior);
  UnicodeLibActor::SetBehavior(behavior);
}

void CharProxySource::SetProxy(CharSource* s) {
  proxied_ = s;
  if (s != nullptr) SetBehavior(&s->Behavior());
}

bool CharProxySource::FillBuffer() { return TakeOverRange(proxied_, exhausted_, position_, end_); }

Char16ProxySource::Char16ProxySource(Char16Source* proxied) : proxied_(proxied) {
  if (proxied != nullptr) UnicodeLibActor::SetBehavior(&proxied->Behavior());
}

Char16ProxySource::~Char16ProxySource() = default;

void Char16ProxySource::SetBehavior(UnicodeLibBehavior* behavior) {
  if (proxied_ != nullptr) proxied_->SetBehavior(behavior);
  UnicodeLibActor::SetBehavior(behavior);
}

void Char16ProxySource::SetProxy(Char16Source* s) {
  proxied_ = s;
  if (s != nullptr) SetBehavior(&s->Behavior());
}

bool Char16ProxySource::FillBuffer() { return TakeOverRange(proxied_, exhausted_, position_, end_); }

// --- Sinks --------------------------------------------------------------------

CharProxySink::CharProxySink(CharSink* proxied) : CharSink(proxied), proxied_(proxied) {
  if (proxied != nullptr) UnicodeLibActor::SetBehavior(&proxied->Behavior());
}

CharProxySink::~CharProxySink() = default;

void CharProxySink::SetBehavior(UnicodeLibBehavior* behavior) {
  if (proxied_ != nullptr) proxied_->SetBehavior(behavior);
  UnicodeLibActor::SetBehavior(behavior);
}

void CharProxySink::SetProxy(CharSink* s) {
  proxied_ = s;
  if (s != nullptr) SetBehavior(&s->Behavior());
}

void CharProxySink::Flush() {
  if (proxied_ != nullptr) proxied_->Flush();
}

long CharProxySink::RemainingCapacity() const {
  return proxied_ != nullptr ? proxied_->RemainingCapacity() : -1;
}

void CharProxySink::MarkAsTruncated() {
  if (proxied_ != nullptr) proxied_->MarkAsTruncated();
}

void CharProxySink::PutBuffer(const char* begin, const char* end) {
  if (proxied_ == nullptr || begin == nullptr) return;  // null begin: an empty range
  proxied_->PutBuffer(begin, end != nullptr ? end : begin + std::strlen(begin));
}

Char16ProxySink::Char16ProxySink(Char16Sink* proxied) : Char16Sink(proxied), proxied_(proxied) {
  if (proxied != nullptr) UnicodeLibActor::SetBehavior(&proxied->Behavior());
}

Char16ProxySink::~Char16ProxySink() = default;

void Char16ProxySink::SetBehavior(UnicodeLibBehavior* behavior) {
  if (proxied_ != nullptr) proxied_->SetBehavior(behavior);
  UnicodeLibActor::SetBehavior(behavior);
}

void Char16ProxySink::SetProxy(Char16Sink* s) {
  proxied_ = s;
  if (s != nullptr) SetBehavior(&s->Behavior());
}

void Char16ProxySink::Flush() {
  if (proxied_ != nullptr) proxied_->Flush();
}

void Char16ProxySink::PutBuffer(const unsigned short* begin, const unsigned short* end) {
  if (proxied_ == nullptr || begin == nullptr) return;  // null begin: an empty range
  if (end == nullptr) {
    end = begin;
    while (*end != 0) ++end;
  }
  proxied_->PutBuffer(begin, end);
}

// --- Directed proxies ---------------------------------------------------------

DirectedCharProxySource::DirectedCharProxySource(CharSource* proxied, UnicodeLibActor* first,
                                                 UnicodeLibActor* second)
    : CharProxySource(proxied), director_(first, second) {}

DirectedCharProxySource::~DirectedCharProxySource() = default;

void DirectedCharProxySource::SetBehavior(UnicodeLibBehavior* behavior) {
  if (behavior != nullptr) director_.SetBehaviors(*behavior);
  CharProxySource::SetBehavior(behavior);
}

DirectedChar16ProxySource::DirectedChar16ProxySource(Char16Source* proxied, UnicodeLibActor* first,
                                                     UnicodeLibActor* second)
    : Char16ProxySource(proxied), director_(first, second) {}

DirectedChar16ProxySource::~DirectedChar16ProxySource() = default;

void DirectedChar16ProxySource::SetBehavior(UnicodeLibBehavior* behavior) {
  if (behavior != nullptr) director_.SetBehaviors(*behavior);
  Char16ProxySource::SetBehavior(behavior);
}

DirectedCharProxySink::DirectedCharProxySink(CharSink* proxied, UnicodeLibActor* first, UnicodeLibActor* second)
    : CharProxySink(proxied), director_(first, second) {}

DirectedCharProxySink::~DirectedCharProxySink() = default;

void DirectedCharProxySink::SetBehavior(UnicodeLibBehavior* behavior) {
  if (behavior != nullptr) director_.SetBehaviors(*behavior);
  CharProxySink::SetBehavior(behavior);
}

DirectedChar16ProxySink::DirectedChar16ProxySink(Char16Sink* proxied, UnicodeLibActor* first,
                                                 UnicodeLibActor* second)
    : Char16ProxySink(proxied), director_(first, second) {}

DirectedChar16ProxySink::~DirectedChar16ProxySink() = default;

void DirectedChar16ProxySink::SetBehavior(UnicodeLibBehavior* behavior) {
  if (behavior != nullptr) director_.SetBehaviors(*behavior);
  Char16ProxySink::SetBehavior(behavior);
}

// --- ToUnicodeProxySource -----------------------------------------------------

ToUnicodeProxySource::ToUnicodeProxySource(const TextEncoding& encoding, Char16Source* proxied)
    : Char16ProxySource(proxied), encoding_(encoding) {}

ToUnicodeProxySource::~ToUnicodeProxySource() = default;

void ToUnicodeProxySource::SetBehavior(UnicodeLibBehavior* behavior) {
  if (behavior != nullptr) director_.SetBehaviors(*behavior);
  Char16ProxySource::SetBehavior(behavior);
}

bool ToUnicodeProxySource::FillBuffer() { return Char16ProxySource::FillBuffer(); }

const ExternalEncoding* ToUnicodeProxySource::ActualInputEncoding() { return encoding_.AsExternalEncoding(); }
