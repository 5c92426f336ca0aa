// Every Access file of the corpus holds what an independent reader found in it.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>

#include "errors/Error.h"
#include "store/jet/catalog/Database.h"
#include "support/Corpus.h"

namespace orv::store::jet {
namespace {

namespace fs = std::filesystem;

std::string typeName(ColumnType type) {
  switch (type) {
    case ColumnType::boolean:
      return "BOOLEAN";
    case ColumnType::byte:
      return "BYTE";
    case ColumnType::integer:
      return "INT";
    case ColumnType::longInteger:
      return "LONG";
    case ColumnType::currency:
      return "MONEY";
    case ColumnType::single:
      return "FLOAT";
    case ColumnType::double_:
      return "DOUBLE";
    case ColumnType::dateTime:
      return "SHORT_DATE_TIME";
    case ColumnType::binary:
      return "BINARY";
    case ColumnType::text:
      return "TEXT";
    case ColumnType::ole:
      return "OLE";
    case ColumnType::memo:
      return "MEMO";
    case ColumnType::guid:
      return "GUID";
    case ColumnType::numeric:
      return "NUMERIC";
    default:
      return "?";
  }
}

/// A floating-point number with its zeros, but without a point that nothing follows.
template <class T>
std::string dumpedNumber(T number, int digits) {
  char text[40];
  std::snprintf(text, sizeof text, "%#.*g", digits, static_cast<double>(number));
  std::string result = text;
  if (result.back() == '.') {
    result.pop_back();
  }
  return result;
}

/// A value as the dumps have it.
std::string dumped(const Column& column, const Value& value) {
  if (value.isNull()) {
    return "NULL";
  }
  if (const auto* flag = value.getIf<bool>()) {
    return *flag ? "true" : "false";
  }
  if (const auto* single = value.getIf<float>()) {
    return dumpedNumber(*single, 7);
  }
  if (const auto* number = value.getIf<double>()) {
    return dumpedNumber(*number, 15);
  }
  if (const auto* bytes = value.getIf<Bytes>()) {
    std::string text = "0x";
    for (std::uint8_t byte : *bytes) {
      text += fmt::format("{:02x}", byte);
    }
    return text;
  }
  if (column.type == ColumnType::byte) {  // Access has no sign there, the dumps' reader has.
    return std::to_string(static_cast<std::int8_t>(value.toLong()));
  }
  std::string text = value.toText();
  if (value.getIf<Date>() != nullptr) {
    const auto blank = text.find(' ');
    text = blank == std::string::npos ? text + "T00:00" : text.replace(blank, 1, "T");
    if (text.size() == 19 && text.ends_with(":00")) {
      text.resize(16);
    }
  }
  std::string escaped;
  for (char c : text) {
    escaped += c == '\n'   ? "\\n"
               : c == '\r' ? "\\r"
               : c == '\t' ? "\\t"
               : c == '\\' ? "\\\\"
                           : std::string(1, c);
  }
  return escaped;
}

/// The reader that made the dumps did not know the code page of Jet 3's text.
std::string withoutForeignLetters(const std::string& line) {
  std::string plain;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const auto byte = static_cast<unsigned char>(line[i]);
    if (byte < 0x80) {
      plain += line[i];
    } else if (byte >= 0xc0) {
      plain += "\xef\xbf\xbd";
    }
  }
  return plain;
}

std::multiset<std::string> dumpOf(Database& database) {
  std::multiset<std::string> lines;
  for (const CatalogEntry& entry : database.entries()) {
    if (entry.kind != CatalogEntry::Kind::table || entry.isSystem()) {
      continue;
    }
    const std::shared_ptr<Table> table = database.table(entry.name);
    const TableDefinition& definition = table->definition();
    const std::string in = entry.name + ": ";
    lines.insert(fmt::format("TABLE {} rows={}", entry.name, table->rowCount()));
    for (const Column& column : definition.columns) {
      lines.insert(in + fmt::format("  COL {} {} {}", column.name, typeName(column.type),
                                    column.type == ColumnType::boolean ? 1 : column.length));
    }
    for (const LogicalIndex& index : definition.logicalIndexes) {
      std::string columns;
      for (const IndexColumn& key : definition.realIndexes[index.realIndex].columns) {
        columns += (columns.empty() ? "" : ",") + definition.columns[key.column].name +
                   (key.ascending ? "" : " desc");
      }
      const bool primary = index.kind == LogicalIndex::Kind::primary;
      const bool unique = definition.realIndexes[index.realIndex].unique || primary;
      lines.insert(
          in + fmt::format("  IDX {} unique={} pk={} {}", index.name, unique, primary, columns));
    }
    for (TableScan scan = table->scan(); scan.next();) {
      std::string line = "  ";
      for (const Column& column : definition.columns) {
        line += dumped(column, scan.row().value(column)) + "\t";
      }
      lines.insert(in + line);
    }
  }
  return lines;
}

std::multiset<std::string> readDump(const fs::path& path) {
  std::multiset<std::string> lines;
  std::ifstream file(path);
  std::string table;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("TABLE ")) {
      table = line.substr(6, line.rfind(" rows=") - 6);
      lines.insert(line);
    } else {
      lines.insert(table + ": " + line);
    }
  }
  return lines;
}

class CorpusFile : public testing::TestWithParam<std::string> {};

TEST_P(CorpusFile, HoldsWhatItsDumpSays) {
  ORV_NEEDS_CORPUS();
  const fs::path path = test::corpusFolder() / (GetParam() + ".mdb");
  const std::string name = path.filename().string();
  const std::string password = name.starts_with("password")  ? "password"
                               : name.starts_with("glazing") ? "tekzil"
                                                             : "";
  auto database = Database::open(path.string(), password);
  Pager::ReadLock lock(database->pager());
  auto found = dumpOf(*database);
  if (!database->format().unicodeText) {
    std::multiset<std::string> plain;
    for (const std::string& line : found) {
      plain.insert(withoutForeignLetters(line));
    }
    found = std::move(plain);
  }
  const auto expected = readDump(fs::path(path).replace_extension(".dump"));
  int shown = 0;
  for (const std::string& line : expected) {
    if (!found.contains(line) && ++shown < 10) {
      ADD_FAILURE() << "missing: " << line;
    }
  }
  for (const std::string& line : found) {
    if (!expected.contains(line) && ++shown < 20) {
      ADD_FAILURE() << "not in the dump: " << line;
    }
  }
  EXPECT_EQ(found.size(), expected.size());
}

std::vector<std::string> corpusFiles() {
  std::vector<std::string> names;
  for (const char* folder : {"access", "sources"}) {
    std::error_code absent;
    for (const auto& file : fs::directory_iterator(test::corpusFolder() / folder, absent)) {
      if (file.path().extension() == ".mdb") {
        names.push_back(std::string(folder) + "/" + file.path().stem().string());
      }
    }
  }
  if (names.empty()) {
    names.push_back("none");
  }
  return names;
}

INSTANTIATE_TEST_SUITE_P(Corpus, CorpusFile, testing::ValuesIn(corpusFiles()),
                         [](const auto& info) {
                           std::string name = info.param;
                           for (char& c : name) {
                             c = std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
                           }
                           return name;
                         });

}  // namespace
}  // namespace orv::store::jet
