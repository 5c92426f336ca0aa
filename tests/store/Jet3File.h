// Files of format Jet 3 (Access 97), which the store reads but does not write, for tests. They are
// made from the format's description alone: nothing here knows the store's own tables of it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace orv::test {

struct Jet3Column {
  std::string name;
  unsigned type = 0;
  std::size_t size = 0;
  unsigned flags = 0;
  unsigned codePage = 0;  ///< or what a decimal has in this place
  bool deleted = false;
  unsigned language = 0x409;
};

struct Jet3Index {
  std::string name;
  unsigned flags = 0;
  unsigned kind = 0;
  std::string relation;
  std::vector<int> columns;
};

/// What is stored of each value of a row; none for Null and for No.
using Jet3Row = std::vector<std::optional<std::string>>;

struct Jet3Table {
  std::string name;
  unsigned lastNumber = 0;
  bool worn = false;
  std::vector<Jet3Column> columns;
  std::vector<Jet3Index> indexes;
  std::vector<Jet3Row> rows;
};

/// The tables that jet3/tables.txt describes.
std::vector<Jet3Table> jet3Sample();

struct Jet3Header {
  unsigned codePage = 1252;
  unsigned language = 0x409;
  std::string password{};
  std::uint32_t encodingKey = 0;  ///< hides all other pages, unless it is 0
};

/// A file of tables whose definitions begin on pages 2, 3 and so on. The last page is free.
std::string jet3File(const std::vector<Jet3Table>& tables, const Jet3Header& header = {});

/// Writes the sample, converted into a file of Jet 4: many kinds of things, and few of each. Most
/// rows of Panes are deleted, so that pages are free.
void makeConvertedFile(const std::filesystem::path& path);

}  // namespace orv::test
