// Encoding converters: whole pipelines from one encoding to another, as a
// single stream. A converter asks the two encodings for their stages, places
// them in an arena of its own, owns them through a director and forwards to
// the stage next to its reader (sources) or writer (sinks):
//
//   ExternalEncodingConverter      bytes (or UTF-16) in  -> bytes out     source
//   InternalEncodingConverter      bytes (or UTF-16) in  -> UTF-16 out    source
//   ExternalEncodingConverterSink  bytes in  -> UTF-16 (or bytes) out     sink
//   InternalEncodingConverterSink  UTF-16 in -> UTF-16 (or bytes) out     sink
//
// Between the two stages the text is always Unicode 2.0; a side whose
// encoding is InternalEncoding::Unicode() gets no stage at all (except the
// decoding stage of a byte input, which is always there). The stages take the
// behaviour of the stream given; SetBehavior on the converter reaches both.
// A converter converts one stream once; the stream given is not owned.
#ifndef VARNICE_ENCODING_ENCODINGCONVERTER_ENCODING_CONVERTER_H_
#define VARNICE_ENCODING_ENCODINGCONVERTER_ENCODING_CONVERTER_H_

#include "varnice/encoding/external_encoding.h"
#include "varnice/encoding/linear_allocator.h"
#include "varnice/encoding/unicode_lib_director.h"
#include "varnice/encoding/unicode_library.h"
#include "varnice/stream/converting/proxy_streams.h"
#include "varnice/varnice_export.h"
#include "varnice/widec/qz_string.h"

class InternalEncoding;

// Thrown when the output encoding cannot write (its from-Unicode factory
// gives nothing, as for an automatically detecting encoding).
class VARNICE_API InvalidOutputEncoding : public UnicodeLibraryException {
 public:
  explicit InvalidOutputEncoding(const TextEncoding& encoding);
  ~InvalidOutputEncoding() override;
  // "Invalid output encoding: " and the encoding's name.
  const char* what() const noexcept override;

 private:
  qz_string message_;
};

class VARNICE_API ExternalEncodingConverter : public CharProxySource {
 public:
  static constexpr unsigned int kArenaSize = 7040;

  // Both throw InvalidOutputEncoding when the output encoding cannot write.
  ExternalEncodingConverter(CharSource& in, const ExternalEncoding& inputEncoding,
                            const ExternalEncoding& outputEncoding);
  ExternalEncodingConverter(Char16Source& in, const InternalEncoding& inputEncoding,
                            const ExternalEncoding& outputEncoding);
  ~ExternalEncodingConverter() override;

  // This converter, then both stages.
  void SetBehavior(UnicodeLibBehavior* behavior) override;
  // The encoding the bytes are read in (for a detecting input, the one it
  // chose); null for UTF-16 input.
  const ExternalEncoding* ActualInputEncoding();

  const UnicodeLibDirector& Director() const { return director_; }

 private:
  LinearAllocator arena_;
  UnicodeLibDirector director_;  // declared after the arena: its stages go first
  CharSource* target_ = nullptr;
  const ExternalEncoding* inputEncoding_ = nullptr;
  ExternalEncoding::ToUnicodeSource* toUnicode_ = nullptr;
};

class VARNICE_API InternalEncodingConverter : public Char16ProxySource {
 public:
  static constexpr unsigned int kArenaSize = 5828;

  // Never throw InvalidOutputEncoding: an output side that gives no stage is
  // left out.
  InternalEncodingConverter(CharSource& in, const ExternalEncoding& inputEncoding,
                            const InternalEncoding& outputEncoding);
  InternalEncodingConverter(Char16Source& in, const InternalEncoding& inputEncoding,
                            const InternalEncoding& outputEncoding);
  ~InternalEncodingConverter() override;

  void SetBehavior(UnicodeLibBehavior* behavior) override;
  const ExternalEncoding* ActualInputEncoding();

  const UnicodeLibDirector& Director() const { return director_; }

 private:
  LinearAllocator arena_;
  UnicodeLibDirector director_;
  Char16Source* target_ = nullptr;
  const ExternalEncoding* inputEncoding_ = nullptr;
  ExternalEncoding::ToUnicodeSource* toUnicode_ = nullptr;
};

class VARNICE_API ExternalEncodingConverterSink : public CharProxySink {
 public:
  static constexpr unsigned int kArenaSize = 1344;

  ExternalEncodingConverterSink(const ExternalEncoding& inputEncoding, const InternalEncoding& outputEncoding,
                                Char16Sink& out);
  // Throws InvalidOutputEncoding when the output encoding cannot write.
  ExternalEncodingConverterSink(const ExternalEncoding& inputEncoding, const ExternalEncoding& outputEncoding,
                                CharSink& out);
  ~ExternalEncodingConverterSink() override;

  void SetBehavior(UnicodeLibBehavior* behavior) override;

  const UnicodeLibDirector& Director() const { return director_; }

 private:
  LinearAllocator arena_;
  UnicodeLibDirector director_;
  CharSink* target_ = nullptr;
};

class VARNICE_API InternalEncodingConverterSink : public Char16ProxySink {
 public:
  static constexpr unsigned int kArenaSize = 1200;

  InternalEncodingConverterSink(const InternalEncoding& inputEncoding, const InternalEncoding& outputEncoding,
                                Char16Sink& out);
  // Throws InvalidOutputEncoding when the output encoding cannot write.
  InternalEncodingConverterSink(const InternalEncoding& inputEncoding, const ExternalEncoding& outputEncoding,
                                CharSink& out);
  ~InternalEncodingConverterSink() override;

  void SetBehavior(UnicodeLibBehavior* behavior) override;

  const UnicodeLibDirector& Director() const { return director_; }

 private:
  LinearAllocator arena_;
  UnicodeLibDirector director_;
  Char16Sink* target_ = nullptr;
};

#endif  // VARNICE_ENCODING_ENCODINGCONVERTER_ENCODING_CONVERTER_H_
