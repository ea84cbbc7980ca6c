#include "varnice/tables/compander.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace {

constexpr std::int32_t kFinal = CompanderEntry::kFinal;
constexpr std::int32_t kLead = CompanderEntry::kLead;
constexpr std::int32_t kInvalid = CompanderEntry::kInvalid;

bool IsTerminator(CompanderEntry const& e) { return e.low >= 256; }

// One past the last byte entry i covers.
std::int32_t EndOf(CompanderEntry const* entries, long i) {
  return std::min<std::int32_t>(entries[i + 1].low, 256);
}

// Index of the entry of the sub-table starting at `start` that covers b.
long EntryFor(CompanderEntry const* entries, long start, int b) {
  long i = start;
  while (b >= entries[i + 1].low) ++i;
  return i;
}

// Gives every entry of the sub-table starting at `start` its offset (and lead
// entries their multiplier) and returns the number of indices the sub-table
// spans. A sub-table shared by several lead entries is simply assigned again,
// with the same result.
std::int32_t AssignConstants(CompanderEntry* entries, long start) {
  std::int32_t count = 0;
  for (long i = start; !IsTerminator(entries[i]); ++i) {
    CompanderEntry& e = entries[i];
    std::int32_t width = EndOf(entries, i) - e.low;
    if (e.kind == kFinal) {
      e.offset = count - e.low;
      count += width;
    } else if (e.kind == kLead) {
      std::int32_t size = AssignConstants(entries, e.next);
      e.multiplier = size;
      e.offset = count - e.low * size;
      count += width * size;
    }
  }
  return count;
}

struct Extent {
  long entryCount;
  long subTableCount;
};

// Walks the entries to the terminator of the last sub-table any lead entry
// reaches.
Extent Measure(CompanderEntry const* entries) {
  long largestNext = 0;
  long subTables = 0;
  for (long i = 0;; ++i) {
    if (IsTerminator(entries[i])) {
      ++subTables;
      if (i >= largestNext) return {i + 1, subTables};
    } else if (entries[i].kind == kLead) {
      largestNext = std::max<long>(largestNext, entries[i].next);
    }
  }
}

// Row (sub-table number) holding entry j: the terminators before it.
std::uint32_t RowOf(CompanderEntry const* entries, long j) {
  std::uint32_t row = 0;
  for (long i = 0; i < j; ++i) row += IsTerminator(entries[i]) ? 1 : 0;
  return row;
}

}  // namespace

Compander::Compander(CompanderEntry* entries)
    : entries_(entries), outputSize_(AssignConstants(entries, 0)) {
  Extent extent = Measure(entries);
  // Bytes no entry covers (below a sub-table's first low) stay invalid.
  cells_ = std::make_unique<Cell[]>(extent.subTableCount * 256);
  std::fill_n(cells_.get(), extent.subTableCount * 256, Cell{kInvalid, 0, 0, 0});
  std::uint32_t row = 0;
  for (long i = 0; i < extent.entryCount; ++i) {
    CompanderEntry const& e = entries[i];
    if (IsTerminator(e)) {
      ++row;
      continue;
    }
    Cell cell{e.kind, e.kind == kLead ? RowOf(entries, e.next) * 256 : 0, e.offset,
              e.multiplier};
    for (std::int32_t b = std::max(e.low, 0); b < EndOf(entries, i); ++b) {
      cells_[row * 256 + b] = cell;
    }
  }
}

Compander::~Compander() = default;

Compander const& Compander::Shared(CompanderEntry* entries) {
  // Never destroyed, so that companders outlive every static user.
  struct Registry {
    std::mutex mutex;
    std::vector<std::unique_ptr<Compander>> companders;
  };
  static Registry* registry = new Registry;
  std::lock_guard<std::mutex> lock(registry->mutex);
  for (auto const& compander : registry->companders) {
    if (compander->entries_ == entries) return *compander;
  }
  registry->companders.reserve(registry->companders.size() + 1);
  registry->companders.push_back(std::make_unique<Compander>(entries));
  return *registry->companders.back();
}

long Compander::OutputSize() const { return outputSize_; }

long Compander::EntryCount() const { return Measure(entries_).entryCount; }

bool Compander::HasState() const {
  for (long i = 0; !IsTerminator(entries_[i]); ++i) {
    if (entries_[i].kind == kLead) return true;
  }
  return false;
}

bool Compander::IsLeadByte(unsigned char b) const { return cells_[b].kind == kLead; }

bool Compander::IsLeadByte(CompanderEntry const* entries, unsigned char b) {
  return entries[EntryFor(entries, 0, b)].kind == kLead;
}

int Compander::Compand(unsigned char const* bytes, long& index) const {
  CompanderState state;
  for (int length = 1;; ++length) {
    int kind = CompandByte(state, bytes[length - 1], index);
    if (kind != kLead) return kind == kFinal ? length : 0;
  }
}

int Compander::Compand(CompanderEntry const* entries, unsigned char const* bytes,
                       long& index) {
  long partial = 0;
  long start = 0;
  for (int length = 1;; ++length) {
    int b = bytes[length - 1];
    CompanderEntry const& e = entries[EntryFor(entries, start, b)];
    if (e.kind == kFinal) {
      index = b + partial + e.offset;
      return length;
    }
    if (e.kind != kLead) return 0;
    partial += b * e.multiplier + e.offset;
    start = e.next;
  }
}

int Compander::Compand(unsigned long code, long& index) const {
  unsigned char bytes[sizeof code + 1];
  int length = 0;
  for (int shift = 8 * (sizeof code - 1); shift >= 0; shift -= 8) {
    unsigned char b = static_cast<unsigned char>(code >> shift);
    if (length > 0 || b != 0 || shift == 0) bytes[length++] = b;
  }
  bytes[length++] = 0;
  // As Compand(bytes), but a table that wants more bytes than the code has
  // finds the character invalid instead of reading past them.
  CompanderState state;
  for (int i = 0; i < length; ++i) {
    int kind = CompandByte(state, bytes[i], index);
    if (kind != kLead) return kind == kFinal ? i + 1 : 0;
  }
  return 0;
}

int Compander::CompandByte(CompanderState& state, unsigned char b, long& index) const {
  Cell const& cell = cells_[state.base + b];
  if (cell.kind == kLead) {
    state.partialIndex += b * cell.multiplier + cell.offset;
    state.base = cell.nextBase;
  } else {
    if (cell.kind == kFinal) index = b + state.partialIndex + cell.offset;
    state.partialIndex = 0;
    state.base = cell.nextBase;
  }
  return cell.kind;
}
