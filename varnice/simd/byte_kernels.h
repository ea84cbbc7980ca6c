// Vector kernels for the conversion loops' common case: runs of ASCII,
// single-byte characters looked up in a code page's first table row, code
// units written through a flat from-Unicode table, and byte pairs read
// through a flat pair table.
//
// Each kernel exists as a plain loop (the reference, built everywhere) and,
// on x86-64, as AVX2 and AVX-512 versions compiled with target attributes.
// Kernels() picks the widest set the CPU runs, once, so the library runs on
// any x86-64 and builds on other machines with the plain loops alone. The
// kernels take whole runs and do not allocate; the converters call them only
// for stretches long enough to repay the indirect call.
#ifndef VARNICE_SIMD_BYTE_KERNELS_H_
#define VARNICE_SIMD_BYTE_KERNELS_H_

#include <cstddef>
#include <cstdint>

namespace varnice::internal::simd {

enum class Level { kPortable, kAVX2, kAVX512 };

struct ByteKernels {
  Level level;
  // Converts the leading bytes of [in, in + n) that are whole characters in
  // a code page's first row (4-byte actions: code unit, then next state 0)
  // and returns how many. Bytes below 0x80 are taken as themselves: call
  // only for a row that maps ASCII so (RowKeepsASCII). Writes out[0, count).
  std::size_t (*decodeRow)(void const* row, unsigned char const* in, std::size_t n, unsigned short* out);
  // Copies the leading code units of [in, in + n) that are below limit (0x80
  // or 0x100) and not hole as bytes and returns how many.
  std::size_t (*narrowBelow)(unsigned short const* in, std::size_t n, unsigned char* out, unsigned limit,
                             unsigned hole);
  // Copies the leading bytes below 0x80 of [in, in + n) as code units and
  // returns how many.
  std::size_t (*widenASCII)(unsigned char const* in, std::size_t n, unsigned short* out);
  // Copies the bytes [in, in + n) as code units.
  void (*widenAll)(unsigned char const* in, std::size_t n, unsigned short* out);
  // Writes the leading code units of [in, in + n) through flat (a code for
  // every unit, kFlatGeneral where the general step must decide) as one- or
  // two-byte codes, big-endian, while at least 4 bytes of the room are left
  // before each unit, as the code-page loops require. Returns how many units;
  // written gets how many bytes, and nothing past them is written.
  std::size_t (*encodeFlat)(std::uint16_t const* flat, unsigned short const* in, std::size_t n,
                            unsigned char* out, std::size_t room, std::size_t& written);
  // Converts the leading byte pairs of [in, in + n) through pairs (a code
  // unit for every two-byte code, lead byte high; kFlatGeneral for a pair
  // that is not one whole character) and returns how many bytes: an even
  // count, stopping at the first general pair or a lone last byte. Writes
  // out[0, count / 2).
  std::size_t (*decodePairs)(std::uint16_t const* pairs, unsigned char const* in, std::size_t n,
                             unsigned short* out);
};

// A flat table's entry for a unit that has no code, or one of more than two
// bytes (no page of ours writes the two bytes FF FF); in a pair table, for a
// pair that is not a character (no page reads one as U+FFFF).
constexpr std::uint16_t kFlatGeneral = 0xFFFF;
// Entries in a flat table: one past the last unit, so that a vector gather of
// four bytes at the last entry stays inside it.
constexpr std::size_t kFlatEntries = 0x10001;

// The kernels for this CPU, chosen on first use.
ByteKernels const& Kernels();

// The kernels of one level, or null when this CPU (or build) lacks it. For
// tests, which run every level against the plain loops.
ByteKernels const* KernelsAt(Level level);

// The plain byte-at-a-time loops that define what every kernel does.
ByteKernels const& ReferenceKernels();

// Makes Kernels() answer kernels (null: the CPU's choice again), so that
// tests can run the converters over every level. Not for concurrent use.
void UseKernelsForTesting(ByteKernels const* kernels);

// How much of a first row of 256 4-byte actions maps bytes to themselves as
// whole characters.
enum class RowIdentity { kNone, kASCII, kAll };
RowIdentity RowKeeps(void const* row);

// A row kept in a 4-byte action, as the kernels read it.
inline std::uint32_t RowEntry(void const* row, unsigned char b) {
  std::uint16_t unit, next;
  __builtin_memcpy(&unit, static_cast<unsigned char const*>(row) + 4u * b, 2);
  __builtin_memcpy(&next, static_cast<unsigned char const*>(row) + 4u * b + 2, 2);
  return static_cast<std::uint32_t>(next) << 16 | unit;
}
// An entry at or above this is not a whole character (an invalid byte, a
// lead byte or a switch): the unit 0xFFFD and 0xFFFF are reserved, and a next
// state lifts the entry above both.
constexpr std::uint32_t kRowIncomplete = 0xFFFD;

}  // namespace varnice::internal::simd

#endif  // VARNICE_SIMD_BYTE_KERNELS_H_
