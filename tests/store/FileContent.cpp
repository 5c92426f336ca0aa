#include "store/FileContent.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>

#include "store/Check.h"
#include "store/jet/page/Text.h"
#include "support/Corpus.h"

namespace orv::test {
namespace {

namespace fs = std::filesystem;
using namespace store;
using namespace store::jet;

/// The tables of a file by the numbers that other tables know them by.
using Names = std::map<std::uint32_t, std::string>;

Names tablesByNumber(Database& database) {
  Names names;
  for (const CatalogEntry& entry : database.entries()) {
    if (entry.kind == CatalogEntry::Kind::table) {
      names[static_cast<std::uint32_t>(entry.id)] = entry.name;
    }
  }
  return names;
}

/// Whether the column of a system table has the number of a table.
bool namesTable(const std::string& table, const std::string& column) {
  const bool hasId = table == "MSysObjects" || table == "MSysNavPaneObjectIDs";
  return table.starts_with("MSys") &&
         (sameName(column, "ObjectId") || (hasId && sameName(column, "Id")));
}

std::string valueText(const Value& value) {
  if (value.isNull()) return "Null";
  const Bytes* bytes = value.getIf<Bytes>();
  if (bytes == nullptr) return value.toText();
  if (bytes->size() <= 20) return fmt::format("0x{:02x}", fmt::join(*bytes, ""));
  return fmt::format("{} bytes {:x}", bytes->size(), sumOf({bytes->begin(), bytes->end()}));
}

std::string lineOf(const Table& table, const std::vector<Value>& row, const Names& names) {
  std::string line;
  for (std::size_t i = 0; i < row.size(); ++i) {
    const bool isName = namesTable(table.name(), table.definition().columns[i].name);
    const auto name = isName && !row[i].isNull()
                          ? names.find(static_cast<std::uint32_t>(row[i].toLong()))
                          : names.end();
    line += (name != names.end() ? name->second : valueText(row[i])) + "|";
  }
  return line;
}

std::string columnLine(const Column& column) {
  const ColumnInfo info = describe(column);
  return fmt::format("{} type {} of {}, {}.{}, auto {}, required {}, empty {}, default {}",
                     info.name, static_cast<int>(info.type), info.size, info.precision, info.scale,
                     info.autoNumber, info.required, info.allowZeroLength,
                     info.defaultValue.value_or("none"));
}

std::string indexLine(const TableDefinition& table, const LogicalIndex& index, const Names& names) {
  const RealIndex& real = table.realIndexes[index.realIndex];
  std::string line =
      fmt::format("{} kind {}, unique {}, nulls {}, required {}:", index.name,
                  static_cast<int>(index.kind), real.unique, !real.ignoreNulls, real.required);
  for (const IndexColumn& key : real.columns) {
    line += fmt::format(" {}{}", table.columns[key.column].name, key.ascending ? "" : "-");
  }
  if (index.relationTable == 0) return line;
  return line + fmt::format(" -> {} {}, type {}, cascades {} {}", names.at(index.relationTable),
                            index.relationIndex, index.relationType, index.cascadeUpdates,
                            index.cascadeDeletes);
}

void addTable(Content& content, Database& database, const std::string& name, const Names& names) {
  const auto table = database.table(name);
  const TableDefinition& definition = table->definition();
  const PageRef page = database.pager().read(definition.page);
  content[name + " last number"] = {
      std::to_string(page.view().u32(database.format().definition.autoNumber))};
  for (const Column& column : definition.columns) {
    content[name + " columns"].push_back(columnLine(column));
    content[name + " numbers"].push_back(std::to_string(column.number));
  }
  auto& indexes = content[name + " indexes"];
  for (const LogicalIndex& index : definition.logicalIndexes) {
    indexes.push_back(indexLine(definition, index, names));
  }
  std::ranges::sort(indexes);
  auto& rows = content[name + " rows"];
  for (const auto& row : rowsOf(*table)) rows.push_back(lineOf(*table, row, names));
  std::map<RowId, std::size_t> places;
  for (TableScan scan = table->scan(); scan.next();) places.emplace(scan.rowId(), places.size());
  for (const RealIndex& index : definition.realIndexes) {
    auto& order = content[fmt::format("{} index {}", name, index.number)];
    for (IndexCursor cursor = table->index(index.number).first(); cursor.next();) {
      order.push_back(std::to_string(places.at(cursor.rowId())));
    }
  }
}

}  // namespace

std::vector<Value> valuesOf(const Table& table, const RowView& row) {
  std::vector<Value> values;
  for (const Column& column : table.definition().columns) values.push_back(row.value(column));
  return values;
}

Rows rowsOf(const Table& table) {
  Rows rows;
  for (TableScan scan = table.scan(); scan.next();) rows.push_back(valuesOf(table, scan.row()));
  return rows;
}

Content contentOf(const fs::path& file, const std::string& password) {
  const auto database = Database::open(file.string(), password);
  const Pager::ReadLock lock(database->pager());
  const Bytes& header = database->pager().header();
  Content content{{"header", {std::string(header.begin(), header.end())}}};
  const Names names = tablesByNumber(*database);
  for (const auto& [page, name] : names) addTable(content, *database, name, names);
  for (const RelationInfo& relation : database->relations()) {
    content["relation " + relation.name] = {fmt::format(
        "{} ({}) -> {} ({}), enforced {}", relation.table, fmt::join(relation.columns, ", "),
        relation.referencedTable, fmt::join(relation.referencedColumns, ", "), relation.enforced)};
  }
  for (const CatalogEntry& entry : std::vector(database->entries())) {
    if (entry.kind != CatalogEntry::Kind::query) continue;
    auto& lines = content["query " + entry.name] = {fmt::format("flags {}", entry.flags)};
    for (const QueryPart& part : database->queryParts(entry)) {
      lines.push_back(fmt::format("{}|{}|{}|{}|{}", part.attribute, part.flag, part.expression,
                                  part.name1, part.name2));
    }
  }
  return content;
}

std::string difference(const Content& before, const Content& after) {
  std::vector<std::string> subjects;
  for (auto [subject, lines] : before) {
    const auto found = after.find(subject);
    if (found == after.end()) {
      subjects.push_back(subject + " missing");
      continue;
    }
    auto others = found->second;
    if (subject.starts_with("MSys")) {
      std::ranges::sort(lines);
      std::ranges::sort(others);
    }
    if (lines != others) subjects.push_back(subject);
  }
  for (const auto& [subject, lines] : after) {
    if (!before.contains(subject)) subjects.push_back(subject + " more");
  }
  return fmt::format("{}", fmt::join(subjects, ", "));
}

std::string describe(Database& database) {
  const Pager::ReadLock lock(database.pager());
  std::string text;
  for (const auto& [page, name] : tablesByNumber(database)) {
    const auto table = database.table(name);
    std::vector<std::string> lines;
    for (auto& row : rowsOf(*table)) {
      for (Value& value : row) {
        if (value.getIf<Date>() != nullptr) value = {};
      }
      lines.push_back(lineOf(*table, row, {}));
    }
    std::ranges::sort(lines);
    text += fmt::format("{} with {} indexes:\n{}\n", name, table->definition().realIndexes.size(),
                        fmt::join(lines, "\n"));
  }
  return text;
}

CheckReport expectSound(const fs::path& file, const std::string& password) {
  CheckReport report = checkFile(file.string(), password);
  for (const CheckFinding& fault : report.faults) ADD_FAILURE() << file << ": " << fault.toText();
  return report;
}

std::string textOf(const CheckReport& report) {
  std::string text = fmt::format(
      "{} pages, {} free, {} lost, {} tables, {} rows, {} long values, {} entries, {} queries\n",
      report.pages, report.freePages, report.lostPages, report.tables, report.rows,
      report.longValues, report.indexEntries, report.queries);
  for (const CheckFinding& fault : report.faults) text += fault.toText() + '\n';
  for (const CheckFinding& remark : report.remarks) text += "remark: " + remark.toText() + '\n';
  return text;
}

std::string textOf(const CompactReport& told) {
  std::string text =
      fmt::format("{} tables, {} rows, {} long values, {} indexes, {} -> {}: {}; {}\n", told.tables,
                  told.rows, told.longValues, told.indexes, told.sizeBefore, told.sizeAfter,
                  fmt::join(told.lost, ", "), fmt::join(told.notes, ", "));
  for (const auto& t : told.salvaged) {
    text +=
        fmt::format("{}: {} saved, {} lost, {} pages, {} cut; {}; {}; {}\n", t.table, t.rowsSaved,
                    t.rowsLost, t.pagesLost, t.valuesCut, fmt::join(t.places, ", "),
                    fmt::join(t.lost, ", "), fmt::join(t.notes, ", "));
  }
  return text;
}

std::uint64_t sumOf(const std::string& text) {
  std::uint64_t sum = 0xcbf29ce484222325;
  for (const char c : text) sum = (sum ^ static_cast<std::uint8_t>(c)) * 0x100000001b3;
  return sum;
}

void expectBytes(const std::string& path, std::uint64_t sum) {
  const auto file = FileSystem::current().open(path, FileSystem::Open::existing);
  Bytes content(static_cast<std::size_t>(file->size()));
  file->read(0, content.data(), content.size());
  for (const auto& row : rowsOf(*Database::open(path, "")->table("MSysObjects"))) {
    for (const Value& value : row) {
      if (value.getIf<Date>() == nullptr) continue;
      const auto bytes = std::bit_cast<std::array<std::uint8_t, 8>>(value.getIf<Date>()->days);
      for (auto at = content.begin();; std::fill_n(at, 8, std::uint8_t{0})) {
        at = std::search(at, content.end(), bytes.begin(), bytes.end());
        if (at == content.end()) break;
      }
    }
  }
  const std::uint64_t found = sumOf({content.begin(), content.end()});
  EXPECT_EQ(found, sum) << fmt::format("the sum of '{}' is {:#x}", path, found);
}

std::vector<fs::path> corpusFiles(const std::string& folder) {
  std::vector<fs::path> files;
  std::error_code absent;
  for (const auto& file : fs::directory_iterator(corpusFolder() / folder, absent)) {
    if (file.path().extension() == ".mdb") files.push_back(file.path());
  }
  std::ranges::sort(files);
  return files;
}

std::string passwordOf(const fs::path& corpusFile) {
  const std::string name = corpusFile.filename().string();
  return name.starts_with("password") ? "password" : name.starts_with("glazing") ? "tekzil" : "";
}

}  // namespace orv::test
