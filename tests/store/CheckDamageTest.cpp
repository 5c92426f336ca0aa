// Each kind of damage is found where it is, and said in words; what only looks odd is a remark.
// What can be read is read, and what is repaired of it is sound.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <sstream>

#include "errors/Error.h"
#include "model/Raised.h"
#include "store/Check.h"
#include "store/Compact.h"
#include "store/DamageSteps.h"
#include "store/FileContent.h"
#include "store/SampleFile.h"
#include "store/StoreError.h"
#include "store/TableDesign.h"
#include "store/jet/catalog/Creation.h"
#include "store/jet/page/ChangeObserver.h"
#include "store/jet/table/RowReader.h"
#include "support/CaseFile.h"
#include "support/ReadFile.h"
#include "support/TemporaryFolder.h"

namespace orv::store::jet {
namespace {

namespace fs = std::filesystem;
using orv::test::contentOf;
using orv::test::makeSampleFile;
using orv::test::raisedBy;
using orv::test::textOf;

/// What reading the tables, and their rows in the order of their indexes, comes upon.
void readAll(Database& database, const std::function<void(const std::string&)>& note) {
  const auto raised = raisedBy([&] {
    for (const CatalogEntry& entry : std::vector(database.entries())) {
      if (entry.kind != CatalogEntry::Kind::table) continue;
      note(raisedBy([&] {
             const auto table = database.table(entry.name);
             const std::size_t rows = orv::test::rowsOf(*table).size(),
                               counted = table->countRows();
             if (rows != counted) note(fmt::format("{} rows, but {} are counted", rows, counted));
           }).description);
      note(raisedBy([&] {
             RowReader rows(database.table(entry.name));
             std::size_t lacking = 0;
             for (std::size_t i = 0; i < rows.table().definition().realIndexes.size(); ++i) {
               for (IndexCursor at = rows.table().index(i).first(); at.next();) {
                 lacking += rows.read(at.rowId()) == nullptr ? 1 : 0;
               }
             }
             if (lacking > 0) note(fmt::format("{} entries without a row", lacking));
           }).description);
    }
  });
  note(raised.description);
}

/// Counts what cannot be read of rows that are deleted.
class UnreadRows : public ChangeObserver {
 public:
  void rowChanged(const std::string&, std::span<const Value>, std::span<const Value>) override {}
  void rowNotRead() override { ++count; }
  std::size_t mark() const override { return 0; }
  void forgetSince(std::size_t) override {}
  void rolledBack() override {}
  std::uint64_t committing() noexcept override { return 0; }
  void committed() noexcept override {}

  int count = 0;
};

std::string repeated(const std::string& text, std::size_t times) {
  std::string all;
  for (std::size_t i = 0; i < times; ++i) all += text;
  return all;
}

/// "insert TABLE ROW COLUMN VALUE" (a copy of the row), "update" likewise, "delete TABLE ROW",
/// "create TABLE": a row is one of the sound file. Of a value, "m*250" are many letters; "-" is
/// Null.
std::string change(Database& database, const std::map<std::string, std::vector<RowId>>& rows,
                   const std::string& step) {
  std::istringstream words(step.substr(5));
  std::string what, name, column, text;
  std::size_t number = 0;
  words >> what >> name >> number >> column >> text;
  const auto observer = std::make_shared<UnreadRows>();
  database.pager().observe(observer);
  const auto raised = raisedBy([&] {
    if (what == "create") return createTable(database, orv::test::design(name, "a byte"));
    const RowId id = rows.at(name).at(number);
    const auto table = database.table(name);
    const TableDefinition& definition = table->definition();
    if (what == "delete") return table->erase(id);
    std::vector<Value> values;
    const auto found = table->row(id);
    if (!found) throw Error(kNoCurrentRecord, "the row is not there");
    const RowView& view = *found;
    for (const Column& each : definition.columns) {
      values.push_back(each.autoNumber && what == "insert" ? Value() : view.value(each));
    }
    const std::size_t star = text.find('*');
    values.at(definition.findColumn(column).value()) =
        text == "-" ? Value()
        : star == text.npos
            ? Value(text)
            : Value(repeated(text.substr(0, star), std::stoul(text.substr(star + 1))));
    what == "insert" ? void(table->insert(values)) : table->update(id, values);
  });
  database.pager().observe(nullptr);
  return step + ": " + (observer->count > 0 ? "not read whole, " : "") +
         (raised.number == 0 ? "done" : raised.description);
}

/// What a check says, of many findings of one table and index the first and the last: then the sum
/// of all comes first. Of what it advises the first sentence is enough.
std::string shortened(const CheckReport& report) {
  std::istringstream lines(textOf(report));
  std::vector<std::string> all;
  for (std::string line; std::getline(lines, line); all.push_back(line)) {
    const std::size_t advice = line.find(". ");
    if (advice != line.npos) line.resize(line.find('.', advice + 1) + 1);
  }
  const auto ownerOf = [](const std::string& line) { return line.substr(0, line.find(", page")); };
  std::string text;
  std::size_t left = 0;
  for (std::size_t i = 0; i < all.size(); ++i) {
    const bool isWithin = i > 1 && i + 1 < all.size() && ownerOf(all[i - 1]) == ownerOf(all[i]) &&
                          ownerOf(all[i + 1]) == ownerOf(all[i]);
    left += isWithin ? 1 : 0;
    if (!isWithin) text += all[i] + "\n";
  }
  return left == 0 ? text : fmt::format("{:x}: {}", orv::test::sumOf(textOf(report)), text);
}

/// Damages the sample, checks it, reads it, and compacts or repairs it; or, where it is changed,
/// checks it again.
std::vector<std::string> foundOf(const std::string& sound, const orv::test::Content& content,
                                 const std::vector<std::string>& steps) {
  std::vector<std::string> found;
  DamagedFile file(sound);
  const std::string path = file.path().string();
  const auto note = [&](std::string text) {
    for (std::size_t at = 0; (at = text.find(path)) != text.npos;)
      text.replace(at, path.size(), "~");
    const std::size_t advice = text.find(" Check the file to see what is affected");
    std::istringstream lines(text.substr(0, advice));
    for (std::string line; std::getline(lines, line);) {
      line.erase(line.find_last_not_of(" ;") + 1);
      if (found.empty() || found.back() != line) found.push_back(line);
    }
  };
  SCOPED_TRACE(steps.front());
  const auto isChange = [](const std::string& step) { return step.starts_with("then "); };
  std::map<std::string, std::vector<RowId>> rows;
  const auto tableOf = [](const std::string& change) {
    std::istringstream words(change);
    std::string name;
    for (int i = 0; i < 3; ++i) words >> name;
    return name;
  };
  for (const std::string& step : steps) {
    if (isChange(step) && file.database().find(tableOf(step)) != nullptr) {
      rows[tableOf(step)] = file.rows(tableOf(step));
    }
  }
  for (const std::string& step : steps) {
    if (!isChange(step)) inflict(file, step);
  }
  file.save();
  const CheckReport report = checkFile(path, "");
  note(shortened(report));
  const auto database = Database::open(path, "");
  readAll(*database, [&](const std::string& text) { note(text.empty() ? "" : "read: " + text); });
  if (isChange(steps.back())) {
    for (const std::string& step : steps) {
      if (isChange(step)) note(change(*database, rows, step));
    }
    const CheckReport after = checkFile(path, "");
    note(fmt::format("then {} faults, {} remarks", after.faultCount, after.remarkCount));
    const auto table = database->table(tableOf(steps.back()));
    std::string keys = fmt::format("{} rows, keys", table->rowCount());
    for (std::size_t i = 0; i < table->definition().realIndexes.size(); ++i) {
      keys += fmt::format(" {}", table->keyCount(i));
    }
    note(keys);
    return found;
  }
  const orv::test::TemporaryFolder folder;
  const std::string made = folder / "made.mdb";
  if (report.sound()) {
    const auto refused = raisedBy([&] { compactFile(path, "", made); });
    note("compacted: " +
         (refused.number != 0 ? refused.description : shortened(checkFile(made, ""))));
    fs::remove(made);
  }
  const auto raised = raisedBy([&] { note("repaired: " + textOf(repairFile(path, "", made))); });
  if (raised.number != 0) {
    note("not repaired: " + raised.description);
    return found;
  }
  const std::string differs = orv::test::difference(content, contentOf(made));
  if (!differs.empty()) {
    const std::string text = orv::test::describe(*Database::open(made, ""));
    note(fmt::format("differs: {}: {:x}", differs, orv::test::sumOf(text)));
  }
  const CheckReport left = checkFile(made, "");
  if (!left.sound()) note("left: " + shortened(left));
  return found;
}

class CheckDamage : public testing::TestWithParam<const char*> {};

TEST_P(CheckDamage, IsFoundAndNamed) {
  const orv::test::TemporaryFolder folder;
  const std::string sound = folder / "sound.mdb";
  makeSampleFile(sound);
  const orv::test::Content content = contentOf(sound);
  const std::string expected =
      orv::test::readFile(fmt::format(ORV_SOURCE_DIR "/tests/store/damages/{}.txt", GetParam()));
  const std::string found = orv::test::retold(
      expected, [&](const auto& steps) { return foundOf(sound, content, steps); });
  EXPECT_EQ(found, expected);
}

INSTANTIATE_TEST_SUITE_P(, CheckDamage,
                         testing::Values("definitions", "rows", "values", "pages", "catalogue",
                                         "indexes", "oddities", "changes"),
                         [](const auto& info) { return std::string(info.param); });

}  // namespace
}  // namespace orv::store::jet
