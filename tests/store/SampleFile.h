// A database of our own with something of each kind that a file holds, for tests of whole files.
#pragma once

#include <filesystem>
#include <vector>

#include "store/Schema.h"
#include "store/Value.h"

namespace orv::test {

/// A table with columns of every type of Jet 4, and rows for it: the number `i` from 0 on has the
/// ID i + 1.
store::TableInfo allTypes();
std::vector<store::Value> rowOfAllTypes(int i);

/// Writes it to `path`: 40 panes with an index by key, by name and by group (with a Null); 6000
/// rows of spectra whose index has two levels; frames, of which the second has a picture of several
/// parts; rows that have moved; 30 rows of all types; a
/// saved query.
void makeSampleFile(const std::filesystem::path& path);

}  // namespace orv::test
