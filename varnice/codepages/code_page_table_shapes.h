// The tables of the stored code pages. They are the ordinary state machines
// and plane and delta tables, and also keep their raw data within reach (or
// derive flat arrays from it) so that the converters can search it inline
// instead of making a virtual call per character.
#ifndef VARNICE_CODEPAGES_CODE_PAGE_TABLE_SHAPES_H_
#define VARNICE_CODEPAGES_CODE_PAGE_TABLE_SHAPES_H_

#include <atomic>
#include <cstdint>

#include "varnice/codepages/mbcs_to_unicode_table.h"
#include "varnice/simd/byte_kernels.h"
#include "varnice/tables/delta_table.h"
#include "varnice/tables/lookup_records.h"
#include "varnice/tables/lookup_search.h"
#include "varnice/tables/plane_table.h"

namespace varnice::internal {

class CodePagePlaneTable final : public PlaneTable<unsigned short, unsigned long> {
 public:
  CodePagePlaneTable(unsigned long missing, std::uint32_t const* const* planes)
      : PlaneTable<unsigned short, unsigned long>(missing, planes),
        planes_(planes),
        missing_(static_cast<std::uint32_t>(missing)) {
    // The units of the first plane written as themselves, so that the
    // conversion loops can copy them without a lookup. One unit that is not
    // (the one whose code equals the missing value, say) is a hole in the
    // run rather than its end.
    std::uint32_t const* first = planes[0];
    if (first == nullptr) return;
    unsigned u = 0;
    for (; u < 0x100; ++u) {
      if (first[u] == u && first[u] != missing_) continue;
      if (identityHole_ != 0xFFFF) break;
      identityHole_ = u;
    }
    identityEnd_ = u;
  }

  // What LookupUnsignedLong answers, without the virtual call.
  static bool Find(std::uint32_t const* const* planes, std::uint32_t missing, unsigned short key,
                   unsigned long& value) {
    return TakeUnlessMissing(FindInPlanes(planes, key), missing, value);
  }
  bool Find(unsigned short key, unsigned long& value) const { return Find(planes_, missing_, key, value); }
  std::uint32_t const* const* Planes() const { return planes_; }
  std::uint32_t Missing() const { return missing_; }
  // Units below IdentityEnd() but IdentityHole() are written as themselves.
  unsigned IdentityEnd() const { return identityEnd_; }
  unsigned IdentityHole() const { return identityHole_; }

  // Every unit's code of one or two bytes in one array, for the encoders'
  // kernels (simd::kFlatGeneral for the others). Filled on first use: 128 KB
  // that a page never written to does not touch.
  std::uint16_t const* Flat() const {
    if (!flatFilled_.load(std::memory_order_acquire)) FillFlat();
    return flat_;
  }

 private:
  void FillFlat() const;

  std::uint32_t const* const* planes_;
  std::uint32_t missing_;
  unsigned identityEnd_ = 0;
  unsigned identityHole_ = 0xFFFF;
  // The tables are static objects, so this lies in zeroed memory until filled.
  mutable std::atomic<bool> flatFilled_{false};
  mutable std::uint16_t flat_[simd::kFlatEntries];
};

// The to-Unicode machine of a stored page whose characters are all two
// bytes long: JIS X 0208, which ISO-2022-JP reads in long stretches of pairs.
// (Where pairs are mixed with single bytes, as in Shift_JIS, the machine's
// two steps cost less than the branch between the two kinds.)
class CodePageToUnicodeTable final : public MBCStoUnicodeTable {
 public:
  CodePageToUnicodeTable(unsigned int inputs, unsigned short states,
                         FiniteStateMachineAction<unsigned short> const* actions)
      : MBCStoUnicodeTable(inputs, states, actions) {}

  // The code unit of every two-byte character, indexed by its code (lead
  // byte high), in one array for the decoders' kernels: simd::kFlatGeneral
  // for a pair that is not one whole character. Filled on first use; the
  // machine is const, so it cannot change afterwards.
  std::uint16_t const* Pairs() const {
    if (!pairsFilled_.load(std::memory_order_acquire)) FillPairs();
    return pairs_;
  }

 private:
  void FillPairs() const;

  mutable std::atomic<bool> pairsFilled_{false};
  mutable std::uint16_t pairs_[simd::kFlatEntries];
};

class CodePageDeltaTable final : public DeltaTable<unsigned short, unsigned long> {
 public:
  // deltas must be a ChunkTable over the same runs.
  CodePageDeltaTable(unsigned long missing, Table<unsigned short, long> const* deltas,
                     ChunkTableEntryUSL const* runs, long count)
      : DeltaTable<unsigned short, unsigned long>(missing, deltas), runs_(runs), count_(count) {}

  static bool Find(ChunkTableEntryUSL const* runs, long count, unsigned short key, unsigned long& value) {
    ChunkTableEntryUSL const* run = FindChunk(runs, count, key);
    if (run == nullptr) return false;
    value = static_cast<std::uint32_t>(key + run->value);
    return true;
  }
  bool Find(unsigned short key, unsigned long& value) const { return Find(runs_, count_, key, value); }
  ChunkTableEntryUSL const* Runs() const { return runs_; }
  long Count() const { return count_; }

 private:
  ChunkTableEntryUSL const* runs_;
  long count_;
};

}  // namespace varnice::internal

#endif  // VARNICE_CODEPAGES_CODE_PAGE_TABLE_SHAPES_H_
