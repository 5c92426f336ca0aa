// What only other programs write into tables: made here of what the store has written.
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "store/jet/catalog/Database.h"
#include "store/jet/index/IndexKey.h"

namespace orv::test {

/// Changes a number in the block of a column in the table's definition, which whoever opens the
/// file anew reads.
template <class Number>
void changeColumn(store::jet::Table& table, std::size_t column, std::size_t offset, Number number) {
  using store::jet::kJet4;
  store::jet::Transaction transaction(table.pager());
  std::uint8_t* at = table.pager().modify(table.definition().page) + kJet4.definition.headerSize +
                     table.definition().realIndexes.size() * kJet4.definition.realIndexEntry +
                     column * kJet4.column.size + offset;
  for (std::size_t i = 0; i < sizeof number; ++i) {
    at[i] = static_cast<std::uint8_t>(number >> 8 * i);
  }
  transaction.commit();
}

/// Gives the entries of a row the keys of a program that counts letters that expand as one.
inline void countAsOne(store::jet::Table& table, store::jet::RowId row) {
  std::vector<store::Value> values;
  for (const auto& column : table.definition().columns) {
    values.push_back(table.row(row)->value(column));
  }
  store::jet::Transaction transaction(table.pager());
  for (const auto& index : table.definition().realIndexes) {
    auto tree = table.index(index.number);
    EXPECT_NE(tree.erase(makeKey(table.definition(), index, values), row),
              store::jet::IndexTree::Change::none);
    tree.insert(makeOtherForm(table.definition(), index, values).value(), row);
  }
  transaction.commit();
}

}  // namespace orv::test
