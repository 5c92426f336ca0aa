// Queries over real files: types, indexes, saved queries.
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "model/Raised.h"
#include "store/SampleFile.h"
#include "store/StoreError.h"
#include "store/TableDesign.h"
#include "store/jet/catalog/Creation.h"
#include "store/sql/SqlEngine.h"
#include "support/CaseFile.h"
#include "support/Corpus.h"
#include "support/TemporaryFolder.h"

namespace orv::store::sql {
namespace {

using testing::ElementsAre;

class QueriedFile {
 public:
  explicit QueriedFile(const std::filesystem::path& file)
      : database_(jet::Database::open(file.string(), "")), engine_(SqlEngine::create(database_)) {}

  /// The first values of the rows.
  std::vector<std::string> rows(const std::string& sql) {
    std::vector<std::string> values;
    for (const auto cursor = engine_->open(sql); cursor->step();) {
      values.push_back(cursor->value(0).toText());
    }
    return values;
  }
  SqlEngine& engine() { return *engine_; }
  jet::Database& database() { return *database_; }

 private:
  std::shared_ptr<jet::Database> database_;
  std::shared_ptr<SqlEngine> engine_;
};

/// The sample of our own, and the files of others where there are such.
class SqlEngineTest : public testing::Test {
 protected:
  static std::filesystem::path makeSample(const test::TemporaryFolder& folder) {
    test::makeSampleFile(folder / "sample.mdb");
    return folder / "sample.mdb";
  }

  const test::TemporaryFolder folder_;
  QueriedFile file_{makeSample(folder_)};
};

/// Every value of every table, as the store has it and as a query gives it.
void compareWithTables(QueriedFile& file) {
  std::vector<std::string> names;
  {
    const jet::Pager::ReadLock lock(file.database().pager());
    for (const jet::CatalogEntry& entry : file.database().entries()) {
      if (entry.kind == jet::CatalogEntry::Kind::table) names.push_back(entry.name);
    }
  }
  for (const std::string& name : names) {
    for (const char* outputs : {"*", "*, 1"}) {  // rows as they are, and values that SQLite gives
      const auto cursor = file.engine().open(fmt::format("SELECT {} FROM [{}]", outputs, name));
      const jet::Pager::ReadLock lock(file.database().pager());
      const auto table = file.database().table(name);
      for (jet::TableScan scan = table->scan(); scan.next();) {
        ASSERT_TRUE(cursor->step()) << name;
        for (std::size_t i = 0; i < table->definition().columns.size(); ++i) {
          EXPECT_EQ(cursor->value(i), scan.row().value(table->definition().columns[i]))
              << name << "." << table->definition().columns[i].name;
        }
      }
      EXPECT_FALSE(cursor->step()) << name;
    }
  }
}

TEST_F(SqlEngineTest, GivesEveryValueOfEveryType) {
  compareWithTables(file_);
  for (const char* name : {"access/testV2000.mdb", "access/testV1997.mdb", "access/test2V2000.mdb",
                           "access/fixedNumericTestV2000.mdb", "access/testIndexCodesV1997.mdb",
                           "access/delColTestV2000.mdb", "sources/orvdata-2.0.1.mdb"}) {
    if (!test::haveCorpus()) break;
    SCOPED_TRACE(name);
    QueriedFile file(test::corpusFolder() / name);
    compareWithTables(file);
  }
}

/// A table with an index over each column of numbers, some of them descending, whose values come to
/// the bounds of their types.
void makeBounds(jet::Database& database) {
  using enum ColumnType;
  jet::createTable(
      database,
      test::design(
          "Bounds",
          "Tiny byte, Small integer, Whole longInteger, Single single, Double double, When "
          "dateTime, "
          "Name text 255, Note memo, BareSingle single, BareDouble double, BareDay dateTime",
          "A: Tiny, Small; B: Small-, Tiny-; C ignoreNulls: Whole-; D: Single; E: Double-; F: "
          "When, Whole; "
          "G: Name-; H: Note"));
  const auto table = database.table("Bounds");
  const std::vector<double> bounds{0,   -0.0,   1,     2.5,          -0.5,          255,
                                   256, -32768, 32767, 2147483647.0, -2147483648.0, 0.1};
  const std::string many(254, 'x');
  const std::vector<Value> texts{
      "",      "a",    "A",     "ab",     "Gr\u00f6\u00dfe", "Gr\u00f6sse",
      "co-op", "coop", Value(), "\u00e9", many + "y",        many + "Z"};
  jet::Transaction transaction(database.pager());
  for (int i = 0; i < 120; ++i) {
    const Value& text = texts[static_cast<std::size_t>(i * 5) % texts.size()];
    const double value = bounds[static_cast<std::size_t>(i) % bounds.size()];
    const auto within = [&](double least, double most) {
      return i % 11 == 10 ? Value() : Value(std::clamp(std::trunc(value), least, most));
    };
    table->insert(std::vector<Value>{
        within(0, 255), within(-32768, 32767), within(-2147483648.0, 2147483647.0),
        static_cast<float>(value), i % 7 == 6 ? Value() : Value(value),
        Date{std::clamp(value, -600'000.0, 2'900'000.0)}, text,
        text.isNull() ? text : Value(text.toText() + (i % 2 == 0 ? "" : many)),
        static_cast<float>(value), value, Date{std::clamp(value, -600'000.0, 2'900'000.0)}});
  }
  transaction.commit();
}

/// Rows behind an index that have grown, many of which have moved to other pages.
void makeGrown(jet::Database& database) {
  jet::createTable(database, test::design("Grown", "A longInteger, B text 250", "ByA: A; ByB: B"));
  const auto table = database.table("Grown");
  std::vector<jet::RowId> places;
  for (int i = 0; i < 90; ++i) {
    places.push_back(table->insert(std::vector<Value>{i, fmt::format("{:040}", i)}));
  }
  for (std::size_t i = 0; i < places.size(); i += 3) {
    const int number = static_cast<int>(i);
    table->update(places[i], std::vector<Value>{number, fmt::format("{:0240}", number)});
  }
}

/// Columns of other types, each with an index: most are not searched by it.
void makeOthers(jet::Database& database) {
  jet::createTable(
      database,
      test::design("Others",
                   "Id longInteger auto, Amount currency, Exact numeric 8.2, Flag boolean, "
                   "Raw binary 4, Once longInteger, Pair longInteger, Code text 9",
                   "A: Amount; X: Exact; F: Flag; R: Raw; O unique: Once; P unique "
                   "ignoreNulls: Pair, Once; C unique required: Code"));
  const auto table = database.table("Others");
  for (int i = 0; i < 50; ++i) {
    table->insert(std::vector<Value>{Value(), Currency{i * 5000},
                                     Decimal::fromText(fmt::format("{}.25", i / 2), 8, 2),
                                     i % 3 == 0, Bytes{0, static_cast<std::uint8_t>(i)}, i,
                                     i % 10 == 0 ? Value() : Value(i / 5), fmt::format("C{}", i)});
  }
}

/// Of each statement the first row, how many rows it has, and how many were visited for the first
/// batch and for all.
TEST_F(SqlEngineTest, ReadsAsManyRowsAsTheTableOfCostsSays) {
  makeBounds(file_.database());
  makeGrown(file_.database());
  makeOthers(file_.database());
  for (const auto& [statement, costs] : test::examplesOf("store/sql/costs.txt", 60)) {
    const std::uint64_t before = file_.engine().rowsRead();
    const auto cursor = file_.engine().open("SELECT " + statement);
    int rows = 0;
    std::string first = "none";
    std::uint64_t read = 0;
    for (; cursor->step(); ++rows) {
      if (rows > 0) continue;
      first = cursor->value(0).isNull() ? "-" : cursor->value(0).toText();
      read = file_.engine().rowsRead() - before;
    }
    EXPECT_EQ(
        fmt::format("{} of {}; {}, {}", first, rows, read, file_.engine().rowsRead() - before),
        costs)
        << statement;
  }
}

/// Batches grow with the rows, and end where their values become large or one cannot be made.
TEST_F(SqlEngineTest, ReadsRowsInBatches) {
  const std::pair<const char*, const char*> cases[] = {
      {"* FROM Pane_spectral_data", "64 256 1024 1024 1024 1024 1024 560 0 0"},
      {"String(IIf(PaneID = 3, 499999, 500000), 'x') FROM Pane WHERE PaneID < 9", "2 3 2 1 0 0"},
      {"picture, 1 FROM Frame, Pane, Groups WHERE FrameID = 2", "50 50 50 10 0 0"},
      {"Left('a', 790 - wavelength) FROM Pane_spectral_data", "64 error 5 0 0"},
      {"* FROM Shading", "0 0"}};
  for (const auto& [statement, batches] : cases) {
    const auto cursor = file_.engine().open(fmt::format("SELECT {}", statement));
    std::string found;
    std::vector<Value> values;
    for (int ends = 0; ends < 2;) {
      const std::size_t before = values.size();
      std::size_t rows = 0;
      const test::Raised raised = test::raisedBy([&] { rows = cursor->readRows(values); });
      EXPECT_EQ(values.size(), before + rows * cursor->columns().size());
      found +=
          raised.number != 0 ? fmt::format(" error {}", raised.number) : fmt::format(" {}", rows);
      ends += raised.number == 0 && rows == 0 ? 1 : 0;
    }
    EXPECT_EQ(found.substr(1), batches) << statement;
  }
}

TEST_F(SqlEngineTest, SeesWhatWasCommittedMeanwhile) {
  const char* sql =
      "SELECT Count(*) FROM FrameTypes a INNER JOIN FrameTypes b "
      "ON a.FrameTypeName = b.FrameTypeName";
  EXPECT_THAT(file_.rows(sql), ElementsAre("3"));
  const auto open = file_.engine().open("SELECT * FROM FrameTypes");
  ASSERT_TRUE(open->step());
  // Rows that an index leads to are fetched ahead, and anew after a commit.
  const auto spectra =
      file_.engine().open("SELECT wavelength FROM Pane_spectral_data WHERE PaneID = 3");
  ASSERT_TRUE(spectra->step());
  const auto sorted =
      file_.engine().open("SELECT * FROM Pane_spectral_data WHERE PaneID > 38 ORDER BY wavelength");
  ASSERT_TRUE(sorted->step());
  {
    const jet::Pager::ReadLock lock(file_.database().pager());
    file_.database().table("FrameTypes")->insert(std::vector<Value>{Value(), "Steel", Value()});
    const auto data = file_.database().table("Pane_spectral_data");
    for (const jet::RowId row :
         file_.engine().selectRows("SELECT * FROM Pane_spectral_data WHERE PaneID = 40").rows) {
      data->erase(row);
    }
  }
  std::size_t left = 1;
  while (sorted->step()) ++left;
  EXPECT_EQ(left, 150U + 32) << "those that were read before, and those that are there";
  double last = spectra->value(0).toDouble();
  int count = 1;
  for (; spectra->step(); ++count) last += spectra->value(0).toDouble();
  EXPECT_EQ(count, 150);
  EXPECT_EQ(last, 150 * 300.0 + 5 * 149 * 75);
  EXPECT_THAT(file_.rows(sql), ElementsAre("4"));
  EXPECT_THAT(file_.rows("SELECT FrameTypeID FROM FrameTypes WHERE FrameTypeName = 'STEEL'"),
              ElementsAre("4"));
}

TEST_F(SqlEngineTest, RefusesByNameWhatCannotRun) {
  const std::tuple<const char*, std::vector<jet::QueryPart>, std::int32_t, const char*> cases[] = {
      {"Pass",
       {{1, 8, "exec x"}},
       kNotSupported,
       "The saved query \"Pass\" is a pass-through query, which only the server that it is written "
       "for "
       "can run."},
      {"Append",
       {{1, 3, "", "T"}, {6, -0x8000, "1", "", "a"}},
       kNotSupported,
       "An append query (INSERT INTO) cannot be run: only SELECT queries without parameters can "
       "(at "
       "character 1 of the saved query \"Append\")"},
      {"None", {}, kObjectNotFound, "There is no saved query \"None\"."}};
  for (const auto& [name, parts, number, description] : cases) {
    if (!parts.empty()) jet::createQuery(file_.database(), name, parts);
    const test::Raised raised = test::raisedBy([&] { file_.engine().openQuery(name); });
    EXPECT_EQ(raised.number, number) << raised.description;
    EXPECT_EQ(raised.description, description);
  }
  EXPECT_EQ(test::raisedBy([&] { file_.engine().selectRows("SELECT name FROM Pane"); }).description,
            "Only rows of a SELECT * over one table, with or without WHERE and ORDER BY, can be "
            "changed (at character 1 of the statement)");
  EXPECT_EQ(test::raisedBy([&] {
              file_.rows(
                  "SELECT * FROM FrameTypes x, FrameTypes y WHERE "
                  "InStr(x.FrameTypeID - 1, 'a', 'a') = 1");
            }).description,
            "Invalid procedure call: InStr starts before the first character");
}

}  // namespace
}  // namespace orv::store::sql
