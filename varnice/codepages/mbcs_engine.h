// The byte work of the table-driven code pages, shared by their converters,
// detector and the printer variant: stepping the to-Unicode trie, writing
// codes big-endian, the pass-through set. Inline so that each converter's
// loop is compiled with its own table shape.
#ifndef VARNICE_CODEPAGES_MBCS_ENGINE_H_
#define VARNICE_CODEPAGES_MBCS_ENGINE_H_

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <type_traits>
#include <typeinfo>

#include "varnice/codepages/code_page_table_shapes.h"
#include "varnice/codepages/mbcs_to_unicode_table.h"
#include "varnice/encoding/block_converter.h"
#include "varnice/encoding/unicode_lib_behavior.h"
#include "varnice/simd/byte_kernels.h"
#include "varnice/tables/finite_state_machine_action.h"
#include "varnice/widec/qz_string.h"

namespace varnice::internal {

// The behaviour's forced direct mapping, held for one Convert call. Empty
// unless the converter honours it and the behaviour has one.
class PassThrough {
 public:
  PassThrough(bool honour, UnicodeLibBehavior const& behavior) {
    if (honour && behavior.HasForcedDirectMapping()) {
      set_.emplace(behavior.ForcedDirectMapping());
      bytes_ = set_->c_str();
    }
  }
  explicit operator bool() const { return bytes_ != nullptr; }
  // A C string search, so the byte 0 is always in the set.
  bool Has(unsigned char b) const {
    return std::strchr(bytes_, static_cast<char>(b)) != nullptr;
  }

 private:
  // Held only when there is one: a short call should not pay for an empty
  // string's construction and destruction.
  std::optional<qz_string> set_;
  char const* bytes_ = nullptr;
};

using MBCSAction = FiniteStateMachineAction<unsigned short>;

// Whether the action writes a code unit and ends the character. Both tests
// in one comparison: a next state other than 0 lifts the value above any
// code unit.
inline bool CompleteUnit(MBCSAction a) {
  return (static_cast<std::uint32_t>(a.nextState) << 16 | a.output) < MBCStoUnicodeTable::kInvalid;
}

// Converts one two-byte character at p if both bytes are there and make a
// complete unit; false (nothing consumed) otherwise.
inline bool DecodePair(MBCSAction const* actions, unsigned char const*& p, unsigned char const* stop,
                       unsigned short*& out) {
  if (stop - p < 2) return false;
  const MBCSAction a = actions[*p];
  if (a.output != MBCStoUnicodeTable::kNoOutput) return false;
  const MBCSAction t = actions[a.nextState * 256u + p[1]];
  if (!CompleteUnit(t)) return false;
  *out++ = t.output;
  p += 2;
  return true;
}

// Two-byte characters come in runs (kanji, kana): converts them while they
// last, without the single-byte tests.
inline void DecodePairRun(MBCSAction const* actions, unsigned char const*& in, unsigned char const* stop,
                          unsigned short*& out) {
  // Local copies: through the references every unit written would make the
  // compiler store and reload both positions.
  unsigned char const* p = in;
  unsigned short* o = out;
  while (DecodePair(actions, p, stop, o)) {
  }
  in = p;
  out = o;
}

// The same over a page's flat pair array (CodePageToUnicodeTable), one load
// a character, long runs through the kernel: for JIS X 0208, whose text is
// all pairs.
inline void DecodeFlatPairRun(std::uint16_t const* pairs, unsigned char const*& in, unsigned char const* stop,
                              unsigned short*& out) {
  unsigned char const* p = in;
  unsigned short* o = out;
  if (stop - p >= 32) {
    const std::size_t n = simd::Kernels().decodePairs(pairs, p, static_cast<std::size_t>(stop - p), o);
    p += n;
    o += n / 2;
  }
  for (; stop - p >= 2; p += 2) {
    const std::uint16_t unit = pairs[p[0] << 8 | p[1]];
    if (unit == simd::kFlatGeneral) break;
    *o++ = unit;
  }
  in = p;
  out = o;
}

// Converts whole characters of [in, stop) while the vector kernels pay: runs
// of ASCII and single-byte characters go to the kernel, two-byte characters
// between them are stepped here. Stops at anything else (an invalid byte, a
// longer code, a lead byte at stop), which the caller's loops take up. Only
// for a table whose first row writes ASCII as itself, and with room for a
// unit per byte up to stop. Kept out of line so that DecodeMBCS stays small
// enough to inline into converters that call it for short stretches.
[[gnu::noinline]] inline void DecodeStretch(MBCSAction const* actions, simd::RowIdentity identity,
                                            unsigned char const*& in, unsigned char const* stop,
                                            unsigned short*& out) {
  simd::ByteKernels const& kernels = simd::Kernels();
  if (identity == simd::RowIdentity::kAll) {
    // Every byte is its own character: widen the stretch whole.
    kernels.widenAll(in, static_cast<std::size_t>(stop - in), out);
    out += stop - in;
    in = stop;
    return;
  }
  while (in != stop) {
    const std::size_t n = kernels.decodeRow(actions, in, static_cast<std::size_t>(stop - in), out);
    in += n;
    out += n;
    while (in != stop) {
      MBCSAction a = actions[*in];
      if (*in < 0x80) {
        // A short ASCII run costs less here than a kernel call.
        std::uint64_t next8 = 0x8080808080808080ULL;
        if (stop - in >= 8) std::memcpy(&next8, in, 8);
        if ((next8 & 0x8080808080808080ULL) == 0) break;
        *out++ = a.output;
        ++in;
        continue;
      }
      if (CompleteUnit(a)) {
        *out++ = a.output;
        ++in;
        continue;
      }
      if (!DecodePair(actions, in, stop, out)) return;
      DecodePairRun(actions, in, stop, out);
    }
  }
}

// Steps the trie over [in, inEnd), writing code units to [out, outEnd).
// Returns kInputUsedUp, kOutputFull when there is no room for a code unit
// (checked before every byte), or kNoCharacterDefined after consuming an
// invalid byte. state carries a partial character between calls.
inline int DecodeMBCS(MBCSAction const* actions, unsigned short& state, PassThrough const& pass,
                      unsigned char const*& in, unsigned char const* inEnd, unsigned short*& out,
                      unsigned short const* outEnd) {
  // Which bytes the first row writes as themselves: asked once per call, when
  // a stretch is long enough for the kernels (the table may have been edited).
  bool asked = false;
  simd::RowIdentity identity = simd::RowIdentity::kNone;
  for (;;) {
    if (!pass && state == 0) {
      // Between characters nothing carries over from one character to the
      // next, so whole characters of one or two bytes are converted in a
      // tight loop; anything else (an invalid byte, a longer code, a lead
      // byte at the end of the block) is left to the general step below.
      // No character writes more units than it reads bytes, so while in is
      // short of stop there is room for one more unit: one bound suffices.
      unsigned char const* stop = in + (inEnd - in < outEnd - out ? inEnd - in : outEnd - out);
      if (stop - in >= 64) {
        if (!asked) identity = simd::RowKeeps(actions), asked = true;
        if (identity != simd::RowIdentity::kNone) DecodeStretch(actions, identity, in, stop, out);
      }
      // After a group fails (multi-byte text) the next few characters go one
      // by one, so text that is not single-byte pays little for the attempt.
      int oneByOne = 0;
      // Local copies: through the references every unit written would make
      // the compiler store and reload both positions.
      unsigned char const* p = in;
      unsigned short* o = out;
      while (p != stop) {
        // Eight single-byte characters at a time: look all up, then write
        // them only if every one is a complete unit (no branch per byte).
        if (oneByOne > 0) {
          --oneByOne;
        } else if (stop - p >= 8 && CompleteUnit(actions[*p])) {
          // (Tried only from a single-byte character: text of two-byte codes,
          // JIS X 0208 between ISO-2022 escapes, would fail every group.)
          std::uint32_t packed[8];
          std::uint32_t worst = 0;
          for (int i = 0; i < 8; ++i) {
            const MBCSAction a = actions[p[i]];
            packed[i] = static_cast<std::uint32_t>(a.nextState) << 16 | a.output;
            worst = packed[i] > worst ? packed[i] : worst;
          }
          if (worst < MBCStoUnicodeTable::kInvalid) {
            for (int i = 0; i < 8; ++i) o[i] = static_cast<unsigned short>(packed[i]);
            p += 8;
            o += 8;
            continue;
          }
          oneByOne = 16;
        }
        MBCSAction a = actions[*p];
        if (CompleteUnit(a)) {
          *o++ = a.output;
          ++p;
          continue;
        }
        if (!DecodePair(actions, p, stop, o)) break;
        // Stay with a run of two-byte characters; whatever ends it is looked
        // at again above.
        DecodePairRun(actions, p, stop, o);
      }
      in = p;
      out = o;
    }
    if (in == inEnd) return kInputUsedUp;
    if (out == outEnd) return kOutputFull;
    unsigned char b = *in;
    if (pass && state == 0 && pass.Has(b)) {
      *out++ = b;
      ++in;
      continue;
    }
    ++in;
    MBCSAction a = actions[state * 256u + b];
    state = a.nextState;
    if (a.output == MBCStoUnicodeTable::kInvalid) return kNoCharacterDefined;
    if (a.output != MBCStoUnicodeTable::kNoOutput) *out++ = a.output;
  }
}

// Scores unlabelled bytes as this code page: each invalid byte lowers
// errors, each halfwidth katakana or private-use character lowers unlikely.
inline void ScoreMBCS(MBCSAction const* actions, unsigned short& state, unsigned char const* begin,
                      unsigned char const* end, int& errors, int& unlikely) {
  for (; begin != end; ++begin) {
    MBCSAction a = actions[state * 256u + *begin];
    state = a.nextState;
    if (a.output == MBCStoUnicodeTable::kInvalid) {
      --errors;
    } else if ((a.output >= 0xFF61 && a.output <= 0xFF9F) || (a.output >= 0xE000 && a.output <= 0xF8FF)) {
      --unlikely;
    }
  }
}

// The number of bytes a code is written in: the fewest that hold it.
inline int CodeLength(unsigned long code) {
  return code < 0x100 ? 1 : code < 0x10000 ? 2 : code <= 0xFFFFFF ? 3 : 4;
}

inline void WriteBigEndian(unsigned long code, int n, char*& out) {
  for (int i = n - 1; i >= 0; --i) *out++ = static_cast<char>(code >> (8 * i));
}

// The code units a page writes as themselves in one byte: those below end,
// except hole (a unit whose table entry is the missing value).
struct IdentityUnits {
  unsigned end = 0;
  unsigned hole = 0xFFFF;
  // The largest power of two the kernels take (0x80 or 0x100) within end, or 0.
  unsigned KernelLimit() const { return end >= 0x100 ? 0x100 : end >= 0x80 ? 0x80 : 0; }
};

// One unit of the encoders' careful loops, which ask the capacity rule
// reached(n) before writing n bytes: a pass-through byte alone, else the
// unit's code in length(code) bytes. Returns kKeepConverting, or the result
// the loop returns (as EncodeMBCS).
template <class Find, class Reached, class Length>
int EncodeStep(Find const& find, PassThrough const& pass, unsigned short const*& in, unsigned short const* inEnd,
               char*& out, char const* outEnd, Reached& reached, Length length) {
  if (in == inEnd) return kInputUsedUp;
  if (outEnd - out < 4) return kOutputFull;
  const unsigned short u = *in;
  if (pass && u <= 0xFF && pass.Has(static_cast<unsigned char>(u))) {
    if (reached(1)) return kCapacityReached;
    *out++ = static_cast<char>(u);
    ++in;
    return kKeepConverting;
  }
  ++in;
  unsigned long code;
  if (!find(u, code)) return kNotInTargetRepertoire;
  const int n = length(code);
  if (reached(n)) return kCapacityReached;
  WriteBigEndian(code, n, out);
  return kKeepConverting;
}

// Writes code units as codes. find(unit, code) looks a unit up; reached(n)
// is the capacity rule, asked before writing n bytes. Returns kInputUsedUp,
// kOutputFull when fewer than 4 bytes of room remain, kNotInTargetRepertoire
// after consuming a unit without a code, or kCapacityReached when the
// capacity refuses (the unit is consumed unless it was a pass-through byte).
template <class Find, class Reached>
int EncodeMBCS(Find const& find, PassThrough const& pass, unsigned short const*& in,
               unsigned short const* inEnd, char*& out, char const* outEnd, bool unlimited,
               Reached&& reached, IdentityUnits identity = {}, std::uint16_t const* flat = nullptr) {
  for (;;) {
    if (unlimited && !pass) {
      // Nothing to ask before writing: encode in a tight loop until a unit
      // has no code or room runs short.
      // Local copies: the bytes are written through char pointers, which
      // may alias anything, so the references would be stored and reloaded
      // for every code.
      unsigned short const* p = in;
      char* o = out;
      while (p != inEnd && outEnd - o >= 4) {
        if (flat != nullptr) {
          // Codes of one and two bytes through the kernel; what stops it (a
          // unit without a code, or with a longer one) is taken up below.
          std::size_t written;
          p += simd::Kernels().encodeFlat(flat, p, static_cast<std::size_t>(inEnd - p),
                                          reinterpret_cast<unsigned char*>(o), static_cast<std::size_t>(outEnd - o),
                                          written);
          o += written;
          if (p == inEnd || outEnd - o < 4) break;
        } else if (*p < identity.end && *p != identity.hole) {
          // Units the page writes as themselves: no lookup, and long runs in
          // the vector kernel (up to the largest power of two within).
          unsigned short const* const stop = p + std::min<std::ptrdiff_t>(inEnd - p, outEnd - o - 3);
          if (identity.KernelLimit() != 0 && stop - p >= 16) {
            const std::size_t n = simd::Kernels().narrowBelow(p, static_cast<std::size_t>(stop - p),
                                                              reinterpret_cast<unsigned char*>(o),
                                                              identity.KernelLimit(), identity.hole);
            p += n;
            o += n;
          }
          while (p != stop && *p < identity.end && *p != identity.hole) *o++ = static_cast<char>(*p++);
          continue;
        }
        unsigned long code;
        if (!find(*p, code)) break;
        ++p;
        if (code < 0x100) {
          *o++ = static_cast<char>(code);
        } else if (code < 0x10000) {
          // Two-byte codes (most of a Japanese text) without the length loop.
          o[0] = static_cast<char>(code >> 8);
          o[1] = static_cast<char>(code);
          o += 2;
        } else {
          WriteBigEndian(code, CodeLength(code), o);
        }
      }
      in = p;
      out = o;
    }
    const int r = EncodeStep(find, pass, in, inEnd, out, outEnd, reached, CodeLength);
    if (r != kKeepConverting) return r;
  }
}

// The printer framing: two bytes per character, the first a zero byte for
// characters of one byte. parity is toggled by every byte; a zero byte in the
// first position of a pair is dropped. Results as DecodeMBCS.
inline int DecodePrinterPairs(MBCSAction const* actions, unsigned short& state, bool& parity,
                              PassThrough const& pass, unsigned char const*& in,
                              unsigned char const* inEnd, unsigned short*& out,
                              unsigned short const* outEnd) {
  for (;;) {
    if (in == inEnd) return kInputUsedUp;
    if (out == outEnd) return kOutputFull;
    parity = !parity;
    unsigned char b = *in++;
    if (parity && b == 0) continue;
    if (pass && state == 0 && pass.Has(b)) {
      *out++ = b;
      continue;
    }
    MBCSAction a = actions[state * 256u + b];
    state = a.nextState;
    if (a.output == MBCStoUnicodeTable::kInvalid) return kNoCharacterDefined;
    if (a.output != MBCStoUnicodeTable::kNoOutput) *out++ = a.output;
  }
}

// Writes each code in at least 2 bytes, big-endian (one-byte codes after a
// zero byte); pass-through bytes go alone. Results as EncodeMBCS.
template <class Find, class Reached>
int EncodePrinterPairs(Find const& find, PassThrough const& pass, unsigned short const*& in,
                       unsigned short const* inEnd, char*& out, char const* outEnd,
                       Reached&& reached) {
  for (;;) {
    const int r = EncodeStep(find, pass, in, inEnd, out, outEnd, reached,
                             [](unsigned long code) { return code < 0x10000 ? 2 : CodeLength(code); });
    if (r != kKeepConverting) return r;
  }
}

// The table as the stored shape Shape, or null. ISO-2022 converters build a
// finder for every run of characters, where dynamic_cast (a search of the
// hierarchy) would cost more than the run. Shape is final, so a table of
// that exact type is the whole object, and its base lies at one offset from
// it: the first cast finds the offset, later ones only compare types.
template <class Shape, class Base>
Shape const* AsShape(Base const& table) {
  static_assert(std::is_final_v<Shape>);
  // The type records compared by address, without the name comparison that
  // == may make: a copy of the record in another module would only cost the
  // fast path.
  if (&typeid(table) != &typeid(Shape)) return nullptr;
  static std::atomic<std::ptrdiff_t> offset{PTRDIFF_MIN};
  std::ptrdiff_t o = offset.load(std::memory_order_relaxed);
  if (o == PTRDIFF_MIN) {
    o = reinterpret_cast<char const*>(&table) - reinterpret_cast<char const*>(dynamic_cast<Shape const*>(&table));
    offset.store(o, std::memory_order_relaxed);
  }
  return reinterpret_cast<Shape const*>(reinterpret_cast<char const*>(&table) - o);
}

// The page's pair array, or null (single-byte pages, tables built at run time).
inline std::uint16_t const* PairsOf(MBCStoUnicodeTable const& table) {
  CodePageToUnicodeTable const* page = AsShape<CodePageToUnicodeTable>(table);
  return page != nullptr ? page->Pairs() : nullptr;
}

// The from-Unicode table, with its stored shape recognised once so that the
// conversion loops search plane and delta data inline.
class FromUnicodeFinder {
 public:
  explicit FromUnicodeFinder(LookupUnsignedLongTable<unsigned short> const& table)
      : table_(table), plane_(AsShape<CodePagePlaneTable>(table)), delta_(AsShape<CodePageDeltaTable>(table)) {}
  // With the shape recognised beforehand: plane or delta is the table itself
  // seen as that shape, or null.
  FromUnicodeFinder(LookupUnsignedLongTable<unsigned short> const& table, CodePagePlaneTable const* plane,
                    CodePageDeltaTable const* delta)
      : table_(table), plane_(plane), delta_(delta) {}

  // Calls body(find) with the fastest find(unit, code&) for the shape.
  template <class Body>
  int With(Body&& body) const {
    // The lambdas hold the raw data by value: the loops write through char
    // pointers, which would otherwise force a reload of the table's fields
    // after every byte.
    if (plane_ != nullptr) {
      return body([planes = plane_->Planes(), missing = plane_->Missing()](unsigned short u, unsigned long& code) {
        return CodePagePlaneTable::Find(planes, missing, u, code);
      });
    }
    if (delta_ != nullptr) {
      // Text keeps to a few runs (Latin letters, then kana, ...), so the run
      // of the last unit is tried before searching. It is kept as a copy on
      // the stack: the loops' byte stores could alias the table itself, and
      // would force its fields to be read again for every unit.
      ChunkTableEntryUSL lastRun{1, 0, 0};  // empty until the first search
      return body([runs = delta_->Runs(), count = delta_->Count(), last = &lastRun](unsigned short u,
                                                                                      unsigned long& code) {
        if (u < last->first || u > last->last) {
          ChunkTableEntryUSL const* run = FindChunk(runs, count, u);
          if (run == nullptr) return false;
          *last = *run;
        }
        code = static_cast<std::uint32_t>(u + last->value);
        return true;
      });
    }
    return body([t = &table_](unsigned short u, unsigned long& code) { return t->LookupUnsignedLong(u, code); });
  }

  bool Find(unsigned short u, unsigned long& code) const {
    return With([&](auto const& find) { return find(u, code) ? 1 : 0; }) != 0;
  }

  // The units written as themselves in one byte, as far as the table says
  // so at a glance: a delta table whose first run starts at U+0000 with no
  // offset, or a plane table whose first plane holds them.
  IdentityUnits Identity() const {
    if (plane_ != nullptr) return {plane_->IdentityEnd(), plane_->IdentityHole()};
    if (delta_ == nullptr || delta_->Count() == 0) return {};
    ChunkTableEntryUSL const& first = delta_->Runs()[0];
    if (first.first != 0 || first.value != 0) return {};
    return {first.last >= 0xFF ? 0x100 : first.last + 1u};
  }

  // The plane table's flat array of codes, or null.
  std::uint16_t const* Flat() const { return plane_ != nullptr ? plane_->Flat() : nullptr; }

 private:
  LookupUnsignedLongTable<unsigned short> const& table_;
  CodePagePlaneTable const* plane_;
  CodePageDeltaTable const* delta_;
};

}  // namespace varnice::internal

#endif  // VARNICE_CODEPAGES_MBCS_ENGINE_H_
