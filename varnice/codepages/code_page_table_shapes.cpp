#include "varnice/codepages/code_page_table_shapes.h"

#include <mutex>

namespace varnice::internal {

void CodePagePlaneTable::FillFlat() const {
  static std::mutex filling;
  const std::lock_guard<std::mutex> lock(filling);
  if (flatFilled_.load(std::memory_order_relaxed)) return;
  for (unsigned u = 0; u < 0x10000; ++u) {
    unsigned long code;
    flat_[u] = Find(static_cast<unsigned short>(u), code) && code < simd::kFlatGeneral
                   ? static_cast<std::uint16_t>(code)
                   : simd::kFlatGeneral;
  }
  flat_[0x10000] = simd::kFlatGeneral;
  flatFilled_.store(true, std::memory_order_release);
}

}  // namespace varnice::internal
