#include "varnice/codepages/code_page_table_shapes.h"

#include <mutex>

namespace varnice::internal {

namespace {
// One lock for every table's first fill: it happens once per table.
std::mutex gFilling;
}  // namespace

void CodePagePlaneTable::FillFlat() const {
  const std::lock_guard<std::mutex> lock(gFilling);
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

void CodePageToUnicodeTable::FillPairs() const {
  const std::lock_guard<std::mutex> lock(gFilling);
  if (pairsFilled_.load(std::memory_order_relaxed)) return;
  for (unsigned lead = 0; lead < 0x100; ++lead) {
    const FiniteStateMachineAction<unsigned short> a = GetAction(0, static_cast<unsigned char>(lead));
    for (unsigned trail = 0; trail < 0x100; ++trail) {
      std::uint16_t unit = simd::kFlatGeneral;
      if (a.output == kNoOutput) {
        const FiniteStateMachineAction<unsigned short> t = GetAction(a.nextState, static_cast<unsigned char>(trail));
        if (t.nextState == 0 && t.output < kInvalid) unit = t.output;
      }
      pairs_[lead << 8 | trail] = unit;
    }
  }
  pairs_[0x10000] = simd::kFlatGeneral;
  pairsFilled_.store(true, std::memory_order_release);
}

}  // namespace varnice::internal
