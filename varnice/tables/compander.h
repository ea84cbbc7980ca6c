// Compander: maps the byte sequences of a multi-byte character set onto a
// dense run of integers 0 .. OutputSize() - 1, so that code-page tables can be
// plain arrays indexed by that integer.
//
// The character set is described by a CompanderEntry array made of
// sub-tables, one per byte position: a run of entries in ascending `low`
// order closed by a terminator whose `low` is 256 or more. Entry i covers the
// bytes from its `low` up to the next entry's `low` - 1. The first sub-table
// reads the first byte; a lead entry names the sub-table of the next byte.
#ifndef VARNICE_TABLES_COMPANDER_H_
#define VARNICE_TABLES_COMPANDER_H_

#include <cstdint>
#include <memory>

#include "varnice/varnice_export.h"

struct CompanderEntry {
  // Kinds of entry.
  static constexpr std::int32_t kFinal = 0;    // the sequence ends here
  static constexpr std::int32_t kLead = 1;     // continue in sub-table `next`
  static constexpr std::int32_t kInvalid = 2;  // no character uses this byte

  std::int32_t low;
  std::int32_t kind;
  // kLead: index, in the whole array, of the first entry of the next byte's
  // sub-table.
  std::int32_t next;
  // Computed by the Compander constructor; whatever the data holds is
  // overwritten.
  std::int32_t offset = 0;
  std::int32_t multiplier = 0;
};
static_assert(sizeof(CompanderEntry) == 20);

// Where a byte-at-a-time caller is inside a character. A fresh state is all
// zero; it returns to zero after each complete or invalid character.
struct CompanderState {
  std::uint32_t base = 0;          // row of the current sub-table times 256
  std::int32_t partialIndex = 0;   // accumulated from the bytes read so far
};
static_assert(sizeof(CompanderState) == 8);

class VARNICE_API Compander {
 public:
  // Computes the constants of entries (writing `offset` and `multiplier` into
  // the array) and builds the state table. Construction writes shared data:
  // finish it before the array is used from several threads, or use Shared().
  explicit Compander(CompanderEntry* entries);
  ~Compander();
  Compander(Compander const&) = delete;
  Compander& operator=(Compander const&) = delete;

  // The compander over entries, constructed on the first call for that array
  // and kept for the life of the process. Safe to call from any thread.
  static Compander const& Shared(CompanderEntry* entries);

  // The number of dense indices.
  long OutputSize() const;
  // The number of entries up to and including the last sub-table's terminator.
  long EntryCount() const;
  // True if some first byte is a lead byte, i.e. the set has multi-byte
  // characters.
  bool HasState() const;
  // True if the first byte b starts a multi-byte character.
  bool IsLeadByte(unsigned char b) const;
  static bool IsLeadByte(CompanderEntry const* entries, unsigned char b);

  // Reads one character from bytes and writes its index. Returns the number
  // of bytes it is made of, or 0 if it is invalid (index untouched). Reads as
  // many bytes as the table asks for; the caller must supply them.
  int Compand(unsigned char const* bytes, long& index) const;
  static int Compand(CompanderEntry const* entries, unsigned char const* bytes, long& index);
  // The same for a code given as an integer: its big-endian bytes without
  // leading zero bytes (0 is the single byte 0), followed by a zero byte.
  int Compand(unsigned long code, long& index) const;

  // Feeds one byte. Returns CompanderEntry::kFinal with index written (the
  // state is reset), kLead when more bytes are needed (the partial index is
  // kept in state), or kInvalid (the state is reset). One table cell per byte.
  int CompandByte(CompanderState& state, unsigned char b, long& index) const;

 private:
  // One cell per (sub-table, byte).
  struct Cell {
    std::int32_t kind;
    std::uint32_t nextBase;  // row of the next byte's sub-table times 256
    std::int32_t offset;
    std::int32_t multiplier;
  };

  CompanderEntry* entries_;
  std::int32_t outputSize_;
  std::unique_ptr<Cell[]> cells_;
};

#endif  // VARNICE_TABLES_COMPANDER_H_
