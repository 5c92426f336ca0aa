// What a database holds, as a foreign reader finds it: records, each with all that belongs to it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <string>

namespace orv::test {

struct Content {
  /// By kind, name and group of a record its parts: of a pane one for each angle (the row of the
  /// pane with the names of its supplier and group, the integrated row, the spectrum), of others
  /// one. A database counts as a record too.
  std::map<std::string, std::multiset<std::string>> records;
  /// Rows that belong to no record: details without their record, lookup rows that none names.
  std::multiset<std::string> strays;
};

/// Reads a database with mdbtools. Where there is no file, nothing; a table that cannot be read is
/// a stray.
Content contentOf(const std::filesystem::path& database);

/// How many records there are, without the database itself.
std::size_t recordCount(const Content& content);

/// How two contents differ, in a few lines; empty when they do not.
std::string difference(Content expected, Content found);

/// How much of a work is done whose beginning and end are known, in records. What is not whole, or
/// of neither, is told in `faults`.
std::uint64_t progress(Content before, Content after, Content now, std::string& faults);

}  // namespace orv::test
