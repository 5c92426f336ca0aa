// Every Access file of the corpus holds what an independent reader found in it.

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <set>

#include "store/FileContent.h"
#include "support/Corpus.h"

namespace orv::store::jet {
namespace {

namespace fs = std::filesystem;
using Lines = std::multiset<std::string>;

/// The names that the dumps have for the types, by their codes.
constexpr const char* kTypeNames[] = {
    "?",      "BOOLEAN", "BYTE", "INT",  "LONG", "MONEY", "FLOAT", "DOUBLE", "SHORT_DATE_TIME",
    "BINARY", "TEXT",    "OLE",  "MEMO", "?",    "?",     "GUID",  "NUMERIC"};

/// A floating-point number with its zeros, but without a point that nothing follows.
std::string dumpedNumber(double number, int digits) {
  char text[64];
  std::snprintf(text, sizeof text, "%#.*g", digits, number);
  return std::string_view(text).ends_with('.') ? std::string(text, std::strlen(text) - 1) : text;
}

std::string dumpedDate(std::string text) {
  const auto blank = text.find(' ');
  text = blank == std::string::npos ? text + "T00:00" : text.replace(blank, 1, "T");
  return text.size() == 19 && text.ends_with(":00") ? text.substr(0, 16) : text;
}

/// A value as the dumps have it.
std::string dumped(const Column& column, const Value& value) {
  if (value.isNull()) return "NULL";
  if (const auto* flag = value.getIf<bool>()) return *flag ? "true" : "false";
  if (const auto* single = value.getIf<float>()) return dumpedNumber(*single, 7);
  if (const auto* number = value.getIf<double>()) return dumpedNumber(*number, 15);
  if (const auto* bytes = value.getIf<Bytes>()) {
    return fmt::format("0x{:02x}", fmt::join(*bytes, ""));
  }
  if (value.getIf<Date>() != nullptr) return dumpedDate(value.toText());
  if (column.type == ColumnType::byte) {  // Access has no sign there, the dumps' reader has.
    return std::to_string(static_cast<std::int8_t>(value.toLong()));
  }
  std::string escaped;
  for (const char c : value.toText()) {
    const auto special = std::string_view("\n\r\t\\").find(c);
    escaped += special == std::string_view::npos ? std::string(1, c)
                                                 : std::string("\\") + "nrt\\"[special];
  }
  return escaped;
}

/// The reader that made the dumps did not know the code page of Jet 3's text.
std::string withoutForeignLetters(const std::string& line) {
  std::string plain;
  for (const char c : line) {
    const auto byte = static_cast<unsigned char>(c);
    plain += byte < 0x80 ? std::string(1, c) : byte >= 0xc0 ? "\xef\xbf\xbd" : "";
  }
  return plain;
}

void dumpTable(const Table& table, Lines& lines) {
  const TableDefinition& definition = table.definition();
  const std::string in = table.name() + ": ";
  lines.insert(fmt::format("TABLE {} rows={}", table.name(), table.rowCount()));
  for (const Column& column : definition.columns) {
    lines.insert(in + fmt::format("  COL {} {} {}", column.name,
                                  kTypeNames[static_cast<std::size_t>(column.type)],
                                  column.type == ColumnType::boolean ? 1 : column.length));
  }
  for (const LogicalIndex& index : definition.logicalIndexes) {
    const RealIndex& real = definition.realIndexes[index.realIndex];
    std::string columns;
    for (const IndexColumn& key : real.columns) {
      columns += (columns.empty() ? "" : ",") + definition.columns[key.column].name +
                 (key.ascending ? "" : " desc");
    }
    const bool primary = index.kind == LogicalIndex::Kind::primary;
    lines.insert(in + fmt::format("  IDX {} unique={} pk={} {}", index.name, real.unique || primary,
                                  primary, columns));
  }
  for (const auto& row : test::rowsOf(table)) {
    std::string line = in + "  ";
    for (std::size_t i = 0; i < row.size(); ++i) {
      line += dumped(definition.columns[i], row[i]) + "\t";
    }
    lines.insert(line);
  }
}

Lines readDump(const fs::path& path) {
  Lines lines;
  std::ifstream file(path);
  std::string table;
  for (std::string line; std::getline(file, line);) {
    const bool begins = line.starts_with("TABLE ");
    if (begins) table = line.substr(6, line.rfind(" rows=") - 6);
    lines.insert(begins ? line : table + ": " + line);
  }
  return lines;
}

TEST(Corpus, FilesHoldWhatTheirDumpsSay) {
  ORV_NEEDS_CORPUS();
  for (const char* folder : {"access", "sources"}) {
    for (const fs::path& path : test::corpusFiles(folder)) {
      const auto database = Database::open(path.string(), test::passwordOf(path));
      const Pager::ReadLock lock(database->pager());
      Lines found;
      for (const CatalogEntry& entry : std::vector(database->entries())) {
        if (entry.kind != CatalogEntry::Kind::table || entry.isSystem()) continue;
        dumpTable(*database->table(entry.name), found);
      }
      if (!database->format().unicodeText) {
        Lines plain;
        for (const std::string& line : found) plain.insert(withoutForeignLetters(line));
        found = std::move(plain);
      }
      const Lines expected = readDump(fs::path(path).replace_extension(".dump"));
      const auto [a, b] = std::ranges::mismatch(found, expected);
      EXPECT_TRUE(found == expected) << path << ": " << (a != found.end() ? *a : "nothing")
                                     << "\nin the dump " << (b != expected.end() ? *b : "nothing");
    }
  }
}

}  // namespace
}  // namespace orv::store::jet
