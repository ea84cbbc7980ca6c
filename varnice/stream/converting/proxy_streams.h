// Proxy streams forward to another stream of the same kind. A proxy source
// lends the proxied source's own range (no copy) and hands back what its
// reader consumed on the next fill; a proxy sink forwards every call. Both
// pass SetBehavior on to what they forward to.
//
// The directed proxies also own a pipeline's two stages (through a
// UnicodeLibDirector, first stage destroyed first) and set a new behaviour
// on both. ToUnicodeProxySource is the to-Unicode face an encoding returns
// when its decoding stage is wrapped.
//
// Plain proxies never delete what they forward to.
#ifndef VARNICE_STREAM_CONVERTING_PROXY_STREAMS_H_
#define VARNICE_STREAM_CONVERTING_PROXY_STREAMS_H_

#include "varnice/encoding/external_encoding.h"
#include "varnice/encoding/unicode_lib_director.h"
#include "varnice/stream/char16_sink.h"
#include "varnice/stream/char16_source.h"
#include "varnice/stream/char_sink.h"
#include "varnice/stream/char_source.h"
#include "varnice/varnice_export.h"

class VARNICE_API CharProxySource : public virtual CharSource {
 public:
  // Takes the proxied source's behaviour (the default when null).
  explicit CharProxySource(CharSource* proxied = nullptr);
  ~CharProxySource() override;

  // The proxied source, then this one.
  void SetBehavior(UnicodeLibBehavior* behavior) override;
  // Once the proxied source is used up the proxy stays exhausted, even
  // across SetProxy.
  bool FillBuffer() override;

  // Forwards to s from now on and takes its behaviour (a null s forwards to
  // nothing).
  void SetProxy(CharSource* s);
  CharSource* GetProxy() const { return proxied_; }

 private:
  CharSource* proxied_;
  bool exhausted_ = false;
};

class VARNICE_API Char16ProxySource : public virtual Char16Source {
 public:
  explicit Char16ProxySource(Char16Source* proxied = nullptr);
  ~Char16ProxySource() override;

  void SetBehavior(UnicodeLibBehavior* behavior) override;
  bool FillBuffer() override;

  void SetProxy(Char16Source* s);
  Char16Source* GetProxy() const { return proxied_; }

 private:
  Char16Source* proxied_;
  bool exhausted_ = false;
};

class VARNICE_API CharProxySink : public CharSink {
 public:
  explicit CharProxySink(CharSink* proxied = nullptr);
  ~CharProxySink() override;

  void SetBehavior(UnicodeLibBehavior* behavior) override;
  void Flush() override;
  long RemainingCapacity() const override;
  // Truncation upstream concerns the sink that holds the text.
  void MarkAsTruncated() override;
  // A null end means NUL-terminated text.
  void PutBuffer(const char* begin, const char* end) override;

  void SetProxy(CharSink* s);
  CharSink* GetProxy() const { return proxied_; }

 private:
  CharSink* proxied_;
};

// Its RemainingCapacity is the base's (unlimited): code-unit sinks do not
// pass a budget upstream.
class VARNICE_API Char16ProxySink : public Char16Sink {
 public:
  explicit Char16ProxySink(Char16Sink* proxied = nullptr);
  ~Char16ProxySink() override;

  void SetBehavior(UnicodeLibBehavior* behavior) override;
  void Flush() override;
  void PutBuffer(const unsigned short* begin, const unsigned short* end) override;

  void SetProxy(Char16Sink* s);
  Char16Sink* GetProxy() const { return proxied_; }

 private:
  Char16Sink* proxied_;
};

// The directed proxies: (proxied stream, first stage, second stage). The
// stages are owned; the proxied stream is usually the first of them.
class VARNICE_API DirectedCharProxySource : public CharProxySource {
 public:
  DirectedCharProxySource(CharSource* proxied, UnicodeLibActor* first, UnicodeLibActor* second);
  ~DirectedCharProxySource() override;
  // A non-null behaviour goes to both stages, then to the proxy.
  void SetBehavior(UnicodeLibBehavior* behavior) override;
  UnicodeLibDirector& Director() { return director_; }

 private:
  UnicodeLibDirector director_;
};

class VARNICE_API DirectedChar16ProxySource : public Char16ProxySource {
 public:
  DirectedChar16ProxySource(Char16Source* proxied, UnicodeLibActor* first, UnicodeLibActor* second);
  ~DirectedChar16ProxySource() override;
  void SetBehavior(UnicodeLibBehavior* behavior) override;
  UnicodeLibDirector& Director() { return director_; }

 private:
  UnicodeLibDirector director_;
};

class VARNICE_API DirectedCharProxySink : public CharProxySink {
 public:
  DirectedCharProxySink(CharSink* proxied, UnicodeLibActor* first, UnicodeLibActor* second);
  ~DirectedCharProxySink() override;
  void SetBehavior(UnicodeLibBehavior* behavior) override;
  UnicodeLibDirector& Director() { return director_; }

 private:
  UnicodeLibDirector director_;
};

class VARNICE_API DirectedChar16ProxySink : public Char16ProxySink {
 public:
  DirectedChar16ProxySink(Char16Sink* proxied, UnicodeLibActor* first, UnicodeLibActor* second);
  ~DirectedChar16ProxySink() override;
  void SetBehavior(UnicodeLibBehavior* behavior) override;
  UnicodeLibDirector& Director() { return director_; }

 private:
  UnicodeLibDirector director_;
};

// A to-Unicode stage made of other stages: it forwards to the proxied source
// and answers ActualInputEncoding with the encoding it was made for. Its
// director starts empty; the encoding that builds the pipeline hands it the
// stages to own.
class VARNICE_API ToUnicodeProxySource : public Char16ProxySource, public ExternalEncoding::ToUnicodeSource {
 public:
  ToUnicodeProxySource(const TextEncoding& encoding, Char16Source* proxied);
  ~ToUnicodeProxySource() override;

  // A non-null behaviour goes to the owned stages too.
  void SetBehavior(UnicodeLibBehavior* behavior) override;
  bool FillBuffer() override;
  // Null when the encoding given was not an external one.
  const ExternalEncoding* ActualInputEncoding() override;

  UnicodeLibDirector& Director() { return director_; }

 private:
  UnicodeLibDirector director_;
  const TextEncoding& encoding_;
};

#endif  // VARNICE_STREAM_CONVERTING_PROXY_STREAMS_H_
