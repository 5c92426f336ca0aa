#include "outside/Content.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

#include "outside/Program.h"

namespace orv::test {

namespace fs = std::filesystem;

namespace {

/// By the columns' names in small letters, without what is null.
using Row = std::map<std::string, std::string>;

std::string small(std::string text) {
  std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

std::string textOf(const Row& row) {
  std::string text;
  for (const auto& [column, value] : row) text += column + "=" + value + " ";
  return text;
}

/// A record's own table and the tables of its details.
struct Kind {
  const char* table;
  const char* key;
  std::vector<const char*> details;
  const char* partedBy;  ///< the column of the details by which the record has parts, or null
};

const Kind kKinds[] = {
    {"Pane", "paneid", {"Pane_integrated_data", "Pane_spectral_data"}, "angle"},
    {"Shading", "shading_id", {"Shading_integrated_data_temp", "Shading_spectral_data"}, nullptr},
    {"Frame", "frameid", {}, nullptr}};

struct Lookup {
  const char* table;
  const char* key;
  const char* name;
  std::vector<const char*> columns;  ///< that refer to it
};

const Lookup kLookups[] = {{"Groups", "groupid", "groupname", {"groupid", "groupnameid"}},
                           {"Suppliers", "supplierid", "suppliername", {"supplierid"}},
                           {"FrameTypes", "frametypeid", "frametypename", {"frametypeid"}}};

class Reader {
 public:
  explicit Reader(const fs::path& database) : database_(database) {}

  Content read() {
    for (const Row& row : rowsOf("ORVdata_version"))
      content_.records["database"].insert(textOf(row));
    for (const Lookup& lookup : kLookups) {
      for (Row& row : rowsOf(lookup.table)) {
        names_[lookup.table][row[lookup.key]] = row[lookup.name];
      }
    }
    for (const Kind& kind : kKinds) readRecords(kind);
    for (const auto& [table, names] : names_) {
      for (const auto& [key, name] : names) {
        if (!used_.contains(table + key)) content_.strays.insert(table + ": " + name);
      }
    }
    return std::move(content_);
  }

 private:
  /// By the values of the column that parts them, the sorted texts of a record's details.
  using Details = std::map<std::string, std::multiset<std::string>>;

  std::vector<Row> rowsOf(const std::string& name) {
    const Ended ended = run({ORV_MDB_JSON, database_.string(), name},
                            {.folder = database_.parent_path(), .isWatched = false});
    std::vector<Row> rows;
    std::istringstream lines(ended.out);
    for (std::string line; ended.exit == 0 && std::getline(lines, line);) {
      Row& row = rows.emplace_back();
      const auto fields = nlohmann::json::parse(line);
      for (const auto& [column, value] : fields.items())
        row[small(column)] = value.is_string() ? value.get<std::string>() : value.dump();
    }
    if (ended.exit != 0) content_.strays.insert("The table " + name + " cannot be read.");
    return rows;
  }

  void readRecords(const Kind& kind) {
    std::map<std::string, Details> details;
    for (const char* table : kind.details) {
      for (Row& row : rowsOf(table)) {
        const std::string key = row[kind.key];
        const std::string part = kind.partedBy != nullptr ? row[kind.partedBy] : "";
        row.erase(kind.key);
        details[key][part].insert(std::string(table) + ": " + textOf(row));
      }
    }
    for (Row& row : rowsOf(kind.table)) {
      const std::string key = row[kind.key];
      row.erase(kind.key);
      addRecord(kind, withNames(row), details[key]);
      details.erase(key);
    }
    for (const auto& [key, parts] : details) {
      for (const auto& [part, texts] : parts) {
        content_.strays.insert(std::to_string(texts.size()) + " rows of a " + kind.table +
                               " that is not there, the first " + *texts.begin());
      }
    }
  }

  void addRecord(const Kind& kind, Row row, const Details& parts) {
    const std::string group = row["groupid"] + row["groupnameid"];  // it has one of them
    const std::string title = std::string(kind.table) + " " + row["name"] + " of " + group;
    if (parts.empty()) content_.records[title].insert(textOf(row));
    for (const auto& [part, texts] : parts) {
      std::string text = textOf(row);
      for (const std::string& detail : texts) text += "\n" + detail;
      content_.records[title].insert(text);
    }
  }

  /// The row with names in place of the keys of lookup rows.
  Row withNames(Row row) {
    for (const Lookup& lookup : kLookups) {
      for (const char* column : lookup.columns) {
        const auto field = row.find(column);
        if (field == row.end() || field->second.empty()) continue;
        const auto& names = names_[lookup.table];
        const auto name = names.find(field->second);
        used_.insert(lookup.table + field->second);
        field->second = name != names.end()
                            ? name->second
                            : "a row of " + std::string(lookup.table) + " that is not there";
      }
    }
    return row;
  }

  fs::path database_;
  Content content_;
  std::map<std::string, std::map<std::string, std::string>> names_;
  std::set<std::string> used_;
};

using Parts = std::multiset<std::string>;

std::string shortened(const std::string& text) {
  return text.size() <= 300 ? text : text.substr(0, 300) + "...";
}

std::set<std::string> titlesOf(std::initializer_list<const Content*> contents) {
  std::set<std::string> titles;
  for (const Content* content : contents) {
    for (const auto& [title, parts] : content->records) titles.insert(title);
  }
  return titles;
}

/// The number of lines of each part.
std::string sizesOf(const Parts& parts) {
  if (parts.empty()) return "nothing";
  std::string sizes;
  for (const std::string& part : parts) {
    sizes += (sizes.empty() ? "" : " + ") + std::to_string(std::ranges::count(part, '\n') + 1);
  }
  return sizes + " rows";
}

}  // namespace

Content contentOf(const fs::path& database) {
  return fs::exists(database) ? Reader(database).read() : Content();
}

std::size_t recordCount(const Content& content) {
  return content.records.size() - content.records.count("database");
}

std::string difference(Content expected, Content found) {
  std::string text;
  for (const std::string& title : titlesOf({&expected, &found})) {
    const Parts& wanted = expected.records[title];
    const Parts& there = found.records[title];
    if (wanted != there) text += title + ": " + sizesOf(there) + ", not " + sizesOf(wanted) + "\n";
  }
  for (const std::string& stray : found.strays) {
    if (!expected.strays.contains(stray)) text += "stray: " + shortened(stray) + "\n";
  }
  return text;
}

std::uint64_t progress(Content before, Content after, Content now, std::string& faults) {
  std::uint64_t done = 0;
  for (const std::string& title : titlesOf({&before, &after, &now})) {
    const Parts& first = before.records[title];
    const Parts& last = after.records[title];
    const Parts& there = now.records[title];
    const bool grows = std::ranges::includes(there, first) && std::ranges::includes(last, there);
    if (there != first && !grows && there != last) {
      faults += title + ": " + sizesOf(there) + ", of " + sizesOf(last) + "\n";
    }
    if (there == last && first != last) ++done;
  }
  for (const std::string& stray : now.strays) {
    if (!before.strays.contains(stray) && !after.strays.contains(stray)) {
      faults += "stray: " + shortened(stray) + "\n";
    }
  }
  return done;
}

}  // namespace orv::test
