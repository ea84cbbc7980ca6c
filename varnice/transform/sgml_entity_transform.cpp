#include "varnice/transform/sgml_entity_transform.h"

#include <algorithm>
#include <cstring>

#include "varnice/transform/language_tables.h"
#include "varnice/transform/transform_frame.h"
#include "varnice/widec/utf16_units.h"

namespace {

constexpr int kMaxDigits = 8;

bool IsDigit(unsigned short c) { return c >= '0' && c <= '9'; }
bool IsHexDigit(unsigned short c) {
  return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}
bool IsAlpha(unsigned short c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

unsigned short* WritePoint(char32_t cp, unsigned short* out) {
  if (cp > 0xFFFF) {
    *out++ = varnice::internal::HighSurrogateOf(cp);
    *out++ = varnice::internal::LowSurrogateOf(cp);
  } else {
    *out++ = static_cast<unsigned short>(cp);
  }
  return out;
}

// The entry named [name, name + length), or null.
const varnice::internal::EntityEntry* FindEntity(const char* name, int length) {
  using varnice::internal::kEntities;
  using varnice::internal::kEntityCount;
  using varnice::internal::kEntityNames;
  const auto less = [](const varnice::internal::EntityEntry& e, std::pair<const char*, int> key) {
    const int n = std::min<int>(e.length, key.second);
    const int order = std::memcmp(kEntityNames + e.name, key.first, n);
    return order < 0 || (order == 0 && e.length < key.second);
  };
  const auto* end = kEntities + kEntityCount;
  const auto* e = std::lower_bound(kEntities, end, std::make_pair(name, length), less);
  if (e == end || e->length != length || std::memcmp(kEntityNames + e->name, name, length) != 0)
    return nullptr;
  return e;
}

}  // namespace

FromSGMLEntityTransform::~FromSGMLEntityTransform() = default;

// Whether c can extend the pending reference and still leave it well formed.
bool FromSGMLEntityTransform::Continues(unsigned short c) const {
  if (count_ == 1) return c == '#' || IsAlpha(c);
  if (pending_[1] != '#') return (IsAlpha(c) || IsDigit(c)) && count_ < kMaxReference - 1;
  const bool hex = count_ >= 3 && (pending_[2] == 'x' || pending_[2] == 'X');
  if (count_ == 2) return c == 'x' || c == 'X' || IsDigit(c);
  const int digits = count_ - (hex ? 3 : 2);
  return digits < kMaxDigits && (hex ? IsHexDigit(c) : IsDigit(c));
}

// The pending reference, ';' included, as its characters, or as written.
unsigned short* FromSGMLEntityTransform::Resolve(unsigned short* out) const {
  if (pending_[1] == '#') {
    const bool hex = pending_[2] == 'x' || pending_[2] == 'X';
    const int first = hex ? 3 : 2;
    char32_t value = 0;
    for (int i = first; i < count_ - 1; ++i) {
      const unsigned short d = pending_[i];
      value = value * (hex ? 16 : 10) +
              (IsDigit(d) ? d - '0' : (d | 0x20) - 'a' + 10);
    }
    const bool isCharacter = count_ - 1 > first && value != 0 && value <= 0x10FFFF &&
                             !varnice::internal::IsSurrogate(value);
    if (isCharacter) return WritePoint(value, out);
  } else if (count_ > 2) {
    char name[kMaxReference];
    for (int i = 1; i < count_ - 1; ++i) name[i - 1] = static_cast<char>(pending_[i]);
    if (const auto* e = FindEntity(name, count_ - 2); e != nullptr) {
      out = WritePoint(e->first, out);
      return e->second != 0 ? WritePoint(e->second, out) : out;
    }
  }
  return std::copy(pending_, pending_ + count_, out);
}

unsigned short* FromSGMLEntityTransform::Feed(unsigned short c, unsigned short* out) {
  if (count_ == 0) {
    if (c == '&') {
      pending_[count_++] = c;
      return out;
    }
    *out = c;
    return out + 1;
  }
  if (c == ';') {
    pending_[count_++] = c;
    out = Resolve(out);
    count_ = 0;
    return out;
  }
  if (Continues(c)) {
    pending_[count_++] = c;
    return out;
  }
  // Not a reference after all: written as it was, and c (perhaps a new '&') afresh.
  out = std::copy(pending_, pending_ + count_, out);
  count_ = 0;
  return Feed(c, out);
}

bool FromSGMLEntityTransform::FillBuffer() {
  bool ended;
  unsigned short* out = varnice::internal::FillUnits(
      source_, buffer_, buffer_ + kBufferSize - (kMaxReference + 1), ended,
      [this](unsigned short c, unsigned short* out) { return Feed(c, out); });
  if (ended && count_ != 0) {
    out = std::copy(pending_, pending_ + count_, out);
    count_ = 0;
  }
  return Lend(out);
}
