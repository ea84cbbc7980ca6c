// The checked C conversion functions: a Transcoder per call over the caller's
// buffers, its status copied out, every exception turned into a result code.
#include <algorithm>
#include <cstring>
#include <mutex>
#include <new>

#include "varnice/capi/data_encoding_table.h"
#include "varnice/capi/varnice_c.h"
#include "varnice/encoding/catalogue/encoding_catalogue.h"
#include "varnice/encoding/external_encoding.h"
#include "varnice/encoding/catalogue/transcoder.h"

namespace {

using varnice::internal::DataEncodings;

// Stores what fits of the output and counts all of it.
class BufferReceiver final : public Transcoder::Receiver {
 public:
  BufferReceiver(void* dst, std::size_t capacity, std::size_t unitSize)
      : dst_(static_cast<char*>(dst)), capacity_(capacity), unitSize_(unitSize) {}
  void Take(const void* data, std::size_t units) override {
    if (stored_ + units <= capacity_) {
      std::memcpy(dst_ + stored_ * unitSize_, data, units * unitSize_);
      stored_ += units;
    } else {
      overflow_ = true;
    }
    needed_ += units;
  }
  std::size_t stored_ = 0;
  std::size_t needed_ = 0;
  bool overflow_ = false;

 private:
  char* dst_;
  std::size_t capacity_;
  std::size_t unitSize_;
};

void Clear(VarniceStatus* status) {
  if (status == nullptr) return;
  *status = VarniceStatus{};
  status->problem_offset = VARNICE_NO_OFFSET;
}

// A registered number other than 0, or null.
const ExternalEncoding* Registered(int number) {
  return number >= 1 ? DataEncodings().Encoding(number) : nullptr;
}

int Run(const ExternalEncoding* from, const ExternalEncoding* to, const void* src, std::size_t srcLen,
        void* dst, std::size_t capacity, std::size_t unitSize, int mode, VarniceStatus* status) {
  Clear(status);
  if ((src == nullptr && srcLen != 0) || (dst == nullptr && capacity != 0) || mode < VARNICE_REPLACE ||
      mode > VARNICE_STRICT) {
    return VARNICE_ERROR_BAD_ARGUMENT;
  }
  try {
    BufferReceiver out(dst, capacity, unitSize);
    Transcoder t(from, to, static_cast<Transcoder::ErrorMode>(mode), out);
    if (!t.Ready()) return VARNICE_ERROR_UNSUPPORTED;
    if (srcLen != 0) t.Put(src, srcLen);
    t.Finish();
    const Transcoder::Status& s = t.GetStatus();
    int result = VARNICE_OK;
    std::size_t written = out.stored_;
    if (s.stopped) {
      result = VARNICE_ERROR_PROBLEM;
      if (mode == VARNICE_STRICT) written = 0;
    } else if (out.overflow_) {
      result = VARNICE_ERROR_OUTPUT_TOO_SMALL;
    }
    if (out.overflow_) written = 0;
    if (status != nullptr) {
      status->consumed = static_cast<std::size_t>(s.consumed);
      status->written = written;
      status->needed = out.needed_;
      status->replacements = static_cast<std::size_t>(s.replacements);
      status->problem = s.problem;
      if (s.problemOffset >= 0) status->problem_offset = static_cast<std::size_t>(s.problemOffset);
    }
    return result;
  } catch (...) {
    Clear(status);
    return VARNICE_ERROR_INTERNAL;
  }
}

}  // namespace

extern "C" int VarniceFindEncoding(const char* name, int* number) {
  if (number != nullptr) *number = 0;
  if (name == nullptr || number == nullptr) return VARNICE_ERROR_BAD_ARGUMENT;
  static std::mutex lock;  // two hosts' threads registering at once
  try {
    std::lock_guard<std::mutex> hold(lock);
    EncodingCatalogue::CreateAll();
    const ExternalEncoding* encoding = Transcoder::FindEncoding(name);
    if (encoding == nullptr) return VARNICE_ERROR_UNKNOWN_ENCODING;
    // Builds what converting it needs now, not on several threads later.
    Transcoder::CanRead(*encoding);
    Transcoder::CanWrite(*encoding);
    *number = DataEncodings().Add(*encoding);
    return *number != 0 ? VARNICE_OK : VARNICE_ERROR_TOO_MANY_ENCODINGS;
  } catch (...) {
    return VARNICE_ERROR_INTERNAL;
  }
}

extern "C" int VarniceDecode(int number, const char* src, size_t srcLen, unsigned short* dst, size_t dstCapacity,
                             int mode, VarniceStatus* status) {
  const ExternalEncoding* from = Registered(number);
  if (from == nullptr) {
    Clear(status);
    return VARNICE_ERROR_UNKNOWN_ENCODING;
  }
  return Run(from, nullptr, src, srcLen, dst, dstCapacity, sizeof(unsigned short), mode, status);
}

extern "C" int VarniceEncode(int number, const unsigned short* src, size_t srcLen, char* dst, size_t dstCapacity,
                             int mode, VarniceStatus* status) {
  const ExternalEncoding* to = Registered(number);
  if (to == nullptr) {
    Clear(status);
    return VARNICE_ERROR_UNKNOWN_ENCODING;
  }
  return Run(nullptr, to, src, srcLen, dst, dstCapacity, 1, mode, status);
}

extern "C" int VarniceTranscode(int fromNumber, const char* src, size_t srcLen, int toNumber, char* dst,
                                size_t dstCapacity, int mode, VarniceStatus* status) {
  const ExternalEncoding* from = Registered(fromNumber);
  const ExternalEncoding* to = Registered(toNumber);
  if (from == nullptr || to == nullptr) {
    Clear(status);
    return VARNICE_ERROR_UNKNOWN_ENCODING;
  }
  return Run(from, to, src, srcLen, dst, dstCapacity, 1, mode, status);
}

extern "C" const char* VarniceResultText(int result) {
  switch (result) {
    case VARNICE_OK: return "done";
    case VARNICE_ERROR_BAD_ARGUMENT: return "bad argument";
    case VARNICE_ERROR_UNKNOWN_ENCODING: return "unknown encoding";
    case VARNICE_ERROR_UNSUPPORTED: return "the encoding cannot be converted this way";
    case VARNICE_ERROR_OUTPUT_TOO_SMALL: return "output buffer too small";
    case VARNICE_ERROR_PROBLEM: return "input that cannot be converted";
    case VARNICE_ERROR_TOO_MANY_ENCODINGS: return "too many encodings registered";
    case VARNICE_ERROR_INTERNAL: return "internal failure";
    default: return "unknown result";
  }
}
