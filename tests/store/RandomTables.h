// A new database with every kind of index, changed at random.
#pragma once

#include <string>

#include "store/RandomChanges.h"

namespace orv::test {

/// Random changes of a new database whose tables have, between them, indexes over every type that
/// can be indexed, ascending and descending, single and composite, unique, primary, required,
/// without Nulls, with text in both General orders; and memos and pictures.
class RandomTables : public RandomChanges {
 public:
  RandomTables(const std::string& path, unsigned seed);
};

}  // namespace orv::test
