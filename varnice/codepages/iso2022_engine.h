// The work of the ISO-2022 converters, over any sub-converter type: splitting
// the input at escape sequences and handing each stretch to the subencoding
// in force, and writing runs of characters with an escape before each change
// of subencoding. ISO2022toUnicode and ISO2022fromUnicode are thin shells
// around these.
#ifndef VARNICE_CODEPAGES_ISO2022_ENGINE_H_
#define VARNICE_CODEPAGES_ISO2022_ENGINE_H_

#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include <cstdint>
#include <type_traits>

#include "varnice/codepages/iso2022_subencoding.h"
#include "varnice/encoding/block_converter.h"
#include "varnice/tables/finite_state_machine_action.h"

namespace varnice::internal {

// The ISO-2022-JP subencoding for a code unit: 0 ASCII, 1 JIS X 0201 Roman,
// 3 JIS X 0208. ASCII characters stay in JIS X 0201 Roman while it is in
// force, except the two whose bytes differ there.
inline int ChooseISO2022JP(unsigned short c, int current) {
  if (c == 0x00A5 || c == 0x203E) return 1;
  if (c == 0x005C || c == 0x007F) return 0;
  if (c > 0x007F) return 3;
  return (current == 0 || current == 1) ? current : 0;
}

// The change to an ISO-2022-JP detector's score for the bytes [begin, end)
// of a text that starts at start: +1 for each escape into JIS X 0201 Roman or
// JIS X 0208, -1 for each byte with the high bit set. The escape search
// reaches back 2 bytes and stops 3 before the end, so that an escape split
// across two scans counts once.
inline int ScoreISO2022JP(char const* start, char const* begin, char const* end) {
  int score = 0;
  char const* p = begin - start >= 2 ? begin - 2 : start;
  for (; end - p >= 3; ++p) {
    if (p[0] != 0x1B) continue;
    if ((p[1] == 0x28 && p[2] == 0x4A) || (p[1] == 0x24 && (p[2] == 0x40 || p[2] == 0x42))) ++score;
  }
  for (p = begin; p < end; ++p) {
    if (static_cast<unsigned char>(*p) >= 0x80) --score;
  }
  return score;
}

// The first escape byte in [p, end), or end. Japanese text changes set every
// few words, so most searches are short, and a library call would cost more
// than the search itself.
inline char const* FindEscape(char const* p, char const* end) {
#if defined(__SSE2__)
  const __m128i escape = _mm_set1_epi8(0x1B);
  for (; end - p >= 16; p += 16) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<__m128i const*>(p));
    const int hits = _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, escape));
    if (hits != 0) return p + __builtin_ctz(static_cast<unsigned>(hits));
  }
#endif
  for (; p != end; ++p) {
    if (*p == 0x1B) return p;
  }
  return end;
}

// A subencoding read by its stored table alone (an MBCStoUnicode with no
// forced mapping to honour): the reader converts its whole characters itself,
// without a converter call for every stretch between escapes.
struct TableReading {
  FiniteStateMachineAction<unsigned short> const* actions = nullptr;  // null: the converter reads
  std::uint16_t const* pairs = nullptr;  // the table's pairs, when all its characters are pairs
};

// tables[i] for subs[i], i < count.
void FindTableReadings(BlockConverter_8_to_16* const* subs, int count, TableReading* tables);

// Converts the whole characters at the start of [in, stop) while out has
// room, as sub would from between characters, and reports whether that was
// all of them; leaves the rest (an invalid or partial character, or all when
// out is full or sub is within a character) to sub.
bool ReadWholeCharacters(TableReading const& t, BlockConverter_8_to_16 const* sub, char const*& in, char const* stop,
                         unsigned short*& out, unsigned short const* outEnd);

// Reads an ISO-2022 byte stream. Sub is a pointer type to a converter with
// Convert(char const*&, char const*, unsigned short*&, unsigned short const*)
// and Reset(); subs[i] reads subencoding i.
template <class Sub>
class ISO2022Reader {
 public:
  static constexpr int kBufferSize = 1024;

  ISO2022Reader(ISO2022Subencoding const* list, int count, Sub const* subs)
      : list_(list), count_(count), subs_(subs) {}

  int Convert(char const*& in, char const* inEnd, unsigned short*& out, unsigned short const* outEnd) {
    return Convert(in, inEnd, out, outEnd, true);
  }

  // The plain loop: every byte goes through the buffer. Convert ends with the
  // same output and results (taking input only as far as it used it); this
  // one is kept as the reference it is tested against.
  int ConvertBuffered(char const*& in, char const* inEnd, unsigned short*& out, unsigned short const* outEnd) {
    return Convert(in, inEnd, out, outEnd, false);
  }

  // Converts what is still buffered; an incomplete escape becomes U+001B.
  int Finish(unsigned short*& out, unsigned short const* outEnd) {
    int r = Work(out, outEnd, true);
    return r == kInputUsedUp ? kConversionDone : r;
  }

  void Reset() {
    current_ = 0;
    begin_ = end_ = 0;
    for (int i = 0; i < count_; ++i) subs_[i]->Reset();
  }

  int Current() const { return current_; }
  Sub const* Subs() const { return subs_; }
  int Count() const { return count_; }

 private:
  int Convert(char const*& in, char const* inEnd, unsigned short*& out, unsigned short const* outEnd, bool inPlace) {
    // Bytes left over from the last call (it stopped at a problem or with
    // the output full) go first, even when no new input comes: a converting
    // sink is never finished, and would otherwise hold them back for good.
    if (begin_ != end_) {
      int r = Work(out, outEnd, false);
      if (r != kInputUsedUp) return r;
    }
    while (in != inEnd) {
      if (out == outEnd) return kOutputFull;
      if (inPlace && begin_ == end_) {
        // With nothing held, a block is read where it lies. The block is
        // taken in whole, as the buffered loop takes it: what is left of it
        // (after a problem, with the output full, or an escape cut by its
        // end) is held, exactly as if it had been copied in.
        const long n = inEnd - in < kBufferSize ? inEnd - in : kBufferSize;
        char const* p = in;
        const int r = Read(p, in + n, out, outEnd, false);
        end_ = static_cast<int>(in + n - p);
        std::memcpy(buffer_, p, static_cast<std::size_t>(end_));
        begin_ = 0;
        in += n;
        if (r != kInputUsedUp) return r;
        continue;
      }
      std::memmove(buffer_, buffer_ + begin_, end_ - begin_);
      end_ -= begin_;
      begin_ = 0;
      long n = inEnd - in;
      if (n > kBufferSize - end_) n = kBufferSize - end_;
      std::memcpy(buffer_ + end_, in, n);
      end_ += static_cast<int>(n);
      in += n;
      int r = Work(out, outEnd, false);
      if (r != kInputUsedUp) return r;
    }
    return kInputUsedUp;
  }

  // The buffered loop: reads [buffer_ + begin_, buffer_ + end_).
  int Work(unsigned short*& out, unsigned short const* outEnd, bool finishing) {
    char const* p = buffer_ + begin_;
    const int r = Read(p, buffer_ + end_, out, outEnd, finishing);
    begin_ = static_cast<int>(p - buffer_);
    return r;
  }

  // Splits [p, end) at escapes; each stretch goes to the subencoding in
  // force. Unless finishing, an escape cut by end waits (kInputUsedUp).
  int Read(char const*& p, char const* end, unsigned short*& out, unsigned short const* outEnd, bool finishing) {
    constexpr int kMostTables = 8;
    TableReading tables[kMostTables];
    if constexpr (std::is_same_v<Sub, BlockConverter_8_to_16*>) {
      FindTableReadings(subs_, count_ < kMostTables ? count_ : kMostTables, tables);
    }
    while (p != end) {
      if (out == outEnd) return kOutputFull;
      if (*p == 0x1B) {
        if (end - p < 3 && !finishing) return kInputUsedUp;  // wait for the rest of the escape
        int match = end - p < 3 ? count_ : 0;
        // Three bytes compared in line: a library call per candidate would
        // cost more than the comparison.
        while (match < count_ && (p[0] != list_[match].escape[0] || p[1] != list_[match].escape[1] ||
                                  p[2] != list_[match].escape[2])) {
          ++match;
        }
        if (match < count_) {
          current_ = match;
          subs_[match]->Reset();
          p += 3;
        } else {
          *out++ = 0x001B;
          ++p;
        }
        continue;
      }
      char const* stop = FindEscape(p, end);
      if constexpr (std::is_same_v<Sub, BlockConverter_8_to_16*>) {
        if (current_ < kMostTables && tables[current_].actions != nullptr &&
            ReadWholeCharacters(tables[current_], subs_[current_], p, stop, out, outEnd)) {
          continue;
        }
      }
      int r = subs_[current_]->Convert(p, stop, out, outEnd);
      if (r != kInputUsedUp) return r;
    }
    return kInputUsedUp;
  }

  ISO2022Subencoding const* list_;
  int count_;
  Sub const* subs_;
  int current_ = 0;
  char buffer_[kBufferSize];
  int begin_ = 0;
  int end_ = 0;
};

// Writes an ISO-2022 byte stream. Sub is a pointer type to a converter with
// Convert(unsigned short const*&, unsigned short const*, char*&, char const*,
// long capacity) and Reset().
template <class Sub>
class ISO2022Writer {
 public:
  ISO2022Writer(ISO2022Subencoding const* list, int count, Sub const* subs)
      : list_(list), count_(count), subs_(subs) {}

  // choose(unit, current) picks the subencoding; reached(n, reserve, capacity)
  // is the capacity rule; capacityReached() marks the budget spent. Room for
  // the final escape back to subencoding 0 is kept in the output (2 bytes) and
  // in the budget (3 bytes) while another subencoding is in force.
  template <class Choose, class Reached, class Mark>
  int Convert(unsigned short const*& in, unsigned short const* inEnd, char*& out, char const* outEnd,
              long capacity, Choose const& choose, Reached&& reached, Mark&& capacityReached) {
    for (;;) {
      if (in == inEnd) return kInputUsedUp;
      if (outEnd - out < 3) return kOutputFull;
      int n = choose(*in, current_);
      if (n != current_) {
        if (reached(3, n != 0 ? 3 : 0, capacity)) return kCapacityReached;
        std::memcpy(out, list_[n].escape, 3);
        out += 3;
        subs_[n]->Reset();
        current_ = n;
        continue;
      }
      unsigned short const* runEnd = in + 1;
      while (runEnd != inEnd && choose(*runEnd, current_) == current_) ++runEnd;
      long reserve = current_ != 0 ? 3 : 0;
      if (reached(0, reserve, capacity)) return kCapacityReached;
      char* before = out;
      int r = subs_[current_]->Convert(in, runEnd, out, outEnd - 2,
                                       capacity == -1 ? -1 : capacity - reserve);
      if (capacity != -1) capacity -= out - before;
      if (r == kCapacityReached) capacityReached();
      if (r != kInputUsedUp) return r;
    }
  }

  // Returns to subencoding 0, into the room kept for it; kOutputFull only
  // when a caller gives less room than Convert left.
  int Finish(char*& out, char const* outEnd) {
    if (current_ != 0) {
      if (outEnd - out < 3) return kOutputFull;
      std::memcpy(out, list_[0].escape, 3);
      out += 3;
      current_ = 0;
    }
    return kConversionDone;
  }

  void Reset() {
    current_ = 0;
    for (int i = 0; i < count_; ++i) subs_[i]->Reset();
  }

  int Current() const { return current_; }
  Sub const* Subs() const { return subs_; }
  int Count() const { return count_; }

 private:
  ISO2022Subencoding const* list_;
  int count_;
  Sub const* subs_;
  int current_ = 0;
};

}  // namespace varnice::internal

#endif  // VARNICE_CODEPAGES_ISO2022_ENGINE_H_
