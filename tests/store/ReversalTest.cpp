// Rows that are taken back and made again, whatever tables they are in.

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gtest/gtest.h>

#include <cctype>
#include <optional>
#include <sstream>

#include "model/Raised.h"
#include "store/Connection.h"
#include "store/FileContent.h"
#include "store/History.h"
#include "store/TableDesign.h"
#include "store/jet/page/DataPage.h"
#include "support/CaseFile.h"
#include "support/MemoryFiles.h"
#include "support/ReadFile.h"

namespace orv::store {
namespace {

/// The values up to a word that is no value, or the end.
std::vector<Value> valuesIn(std::istream& words) {
  std::vector<Value> row;
  for (std::string word; words >> word && word != ";" && word != ">";) {
    const bool isNumber = std::isdigit(static_cast<unsigned char>(word[0])) != 0;
    row.push_back(word == "~" ? Value() : isNumber ? Value(std::stoi(word)) : Value(word));
  }
  return row;
}

std::string textOfRow(const std::vector<Value>& row) {
  std::vector<std::string> cells;
  for (const Value& value : row) cells.push_back(value.isNull() ? "~" : value.toText());
  return cells.empty() ? "nothing" : fmt::format("{}", fmt::join(cells, " "));
}

jet::RowId placeOf(const jet::Table& table, const std::vector<Value>& row) {
  for (jet::TableScan scan = table.scan(); scan.next();) {
    if (test::valuesOf(table, scan.row()) == row) return scan.rowId();
  }
  throw std::logic_error("there is no row " + textOfRow(row));
}

class Reversal {
 public:
  /// What comes of a line; see reversals.txt.
  std::string make(const std::string& line) {
    std::istringstream words(line);
    std::string verb, text;
    std::size_t count = 0;
    words >> verb;
    if (verb == "table") {
      std::string parts[3];
      for (std::string& part : parts) std::getline(words >> std::ws, part, '|');
      database_->createTable(
          test::design(parts[0].substr(0, parts[0].find(' ')), parts[1], parts[2]));
    } else if (verb == "keep") {
      words >> count;
      History(*database_).keep(count);
    } else if (verb == "save" || verb == "restore") {
      database_.reset();
      verb == "save" ? files_.copy(test::kFile, "saved") : files_.copy("saved", test::kFile);
      database_ = Connection::openFile(test::kFile);
      History(*database_).keep();
    } else if (verb == "damage") {
      words >> text >> count;
      database_->database().table(text)->distrust(count);
    } else if (verb == "begin") {
      scope_.emplace(*database_, "Work");
    } else if (verb == "end") {
      scope_.reset();
    } else if (verb == "lose") {
      words >> text;
      eraseUnreadable(*database_->database().table(text));
    } else if (verb == "undo" || verb == "redo") {
      words >> count;
      History history(*database_);
      return told(verb == "undo" ? history.undo(count) : history.redo(count));
    } else {
      change(line);
    }
    return told({});
  }

 private:
  /// Changes rows in one commit.
  void change(const std::string& line) {
    jet::Database& database = database_->database();
    jet::Transaction transaction(database.pager());
    std::istringstream words(line);
    for (std::string name; words >> name;) {
      const bool isNamed = name[0] != '+' && name[0] != '-';
      const auto table = database.table(isNamed ? name : name.substr(1));
      const std::vector<Value> row = valuesIn(words);
      if (name[0] == '+') table->insert(row);
      if (name[0] == '-') table->erase(placeOf(*table, row));
      if (isNamed) table->update(placeOf(*table, row), valuesIn(words));
    }
    transaction.commit();
  }

  /// Deletes the last row of a table, of which the last column cannot be read.
  static void eraseUnreadable(jet::Table& table) {
    jet::Transaction transaction(table.pager());
    jet::RowId row{};
    for (jet::TableScan scan = table.scan(); scan.next();) row = scan.rowId();
    jet::DataPageEditor page(jet::kJet4, table.pager().modify(row.page), row.page);
    const std::span<std::uint8_t> bytes = page.rowBytes(row.row);
    jet::store16(&bytes[bytes.size() - 5], 0x0fff);  // where its text begins
    table.erase(row);
    transaction.commit();
  }

  /// What keeps a change, how many there are, and the rows that are there.
  std::string told(const UndoResult& result) {
    std::string text = result.already > 0 ? "was so already; " : "";
    for (const HistoryConflict& each : result.conflicts) {
      text += fmt::format("{} of {} columns: kind {}, wanted {}, present {}; ", each.table,
                          each.columns.size(), static_cast<int>(each.kind), textOfRow(each.wanted),
                          textOfRow(each.present));
    }
    History history(*database_);
    if (const std::string failure = history.takeFailure(); !failure.empty()) text += failure + " ";
    for (const HistoryWork& work : history.works()) {
      text += work.isUndone ? "undone " : work.isLost ? "lost " : "done ";
    }
    for (const std::string& name : database_->tableNames()) {
      std::vector<std::string> rows;
      for (const auto& row : test::rowsOf(*database_->database().table(name))) {
        rows.push_back(textOfRow(row));
      }
      text += fmt::format("| {}: {} ", name, fmt::join(rows, ", "));
    }
    text.pop_back();
    return text;
  }

  test::MemoryFiles files_;
  std::shared_ptr<Connection> database_ = [] {
    const auto made = Connection::create(test::kFile, [](Connection&) {});
    History(*made).keep();
    return made;
  }();
  std::optional<History::Scope> scope_;
};

TEST(Reversals, BringBackWhatWasThereOrTellWhatKeepsThem) {
  const std::string text = test::readFile(ORV_SOURCE_DIR "/tests/store/reversals.txt");
  EXPECT_EQ(test::retold(text,
                         [](const std::vector<std::string>& lines) {
                           Reversal reversal;
                           std::vector<std::string> told;
                           for (const std::string& line : lines) {
                             std::string comes;
                             const auto raised =
                                 test::raisedBy([&] { comes = reversal.make(line); });
                             told.push_back(raised.number == 0 ? comes : raised.description);
                           }
                           return told;
                         }),
            text);
}

}  // namespace
}  // namespace orv::store
