// The virtual interface over every lookup table shape, so that a code page can
// be given any table from UTF-16 code unit to code without knowing how it is
// stored. LookupUnsignedLongTable is the narrow face a code page needs; Table
// adds typed lookups and the bounds of the key space.
//
// Tables are read-only views over constant data they do not own; they hold no
// locks and may be read by any number of threads at once.
#ifndef VARNICE_TABLES_TABLE_H_
#define VARNICE_TABLES_TABLE_H_

#include "varnice/varnice_export.h"

template <class K>
class LookupUnsignedLongTable {
 public:
  // Finds key and widens its value to unsigned long; false when absent.
  virtual bool LookupUnsignedLong(K key, unsigned long& value) const = 0;

 protected:
  // Tables are deleted through Table, which has the virtual destructor.
  ~LookupUnsignedLongTable() = default;
};

template <class K, class V>
class Table : public LookupUnsignedLongTable<K> {
 public:
  virtual ~Table();
  // Finds key; false when it has no value.
  virtual bool Lookup(K key, V& value) const = 0;
  // The value of key, or the missing value when it has none.
  virtual V LookupWithDefault(K key) const = 0;
  // The smallest and largest key that has a value.
  virtual K SmallestIndex() const = 0;
  virtual K LargestIndex() const = 0;
  // The value that stands for "no mapping" in this table.
  virtual V GetMissingValue() const = 0;
};

// The overrides every table shape declares, in the order of its virtual
// slots: the narrow lookup, the destructor, then Table's operations. A shape's
// own header says where its answers differ from the comments above.
#define VARNICE_TABLE_OVERRIDES(Shape)                                 \
  bool LookupUnsignedLong(K key, unsigned long& value) const override; \
  ~Shape() override;                                                   \
  bool Lookup(K key, V& value) const override;                         \
  V LookupWithDefault(K key) const override;                           \
  K SmallestIndex() const override;                                    \
  K LargestIndex() const override;                                     \
  V GetMissingValue() const override

extern template class VARNICE_API LookupUnsignedLongTable<unsigned short>;
extern template class VARNICE_API Table<unsigned short, unsigned long>;
extern template class VARNICE_API Table<unsigned short, long>;

#endif  // VARNICE_TABLES_TABLE_H_
