#include "varnice/tables/table.h"

template <class K, class V>
Table<K, V>::~Table() = default;

template class LookupUnsignedLongTable<unsigned short>;
template class Table<unsigned short, unsigned long>;
template class Table<unsigned short, long>;
