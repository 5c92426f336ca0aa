// Queries over real files: types, indexes, saved queries.
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <set>
#include <utility>

#include "errors/Error.h"
#include "model/Raised.h"
#include "store/SampleFile.h"
#include "store/StoreError.h"
#include "store/jet/catalog/Creation.h"
#include "store/sql/SqlEngine.h"
#include "support/Corpus.h"
#include "support/TemporaryFolder.h"

namespace orv::store::sql {
namespace {

using test::corpusFolder;
using testing::ElementsAre;
using testing::Lt;

class QueriedFile {
 public:
  explicit QueriedFile(const std::filesystem::path& file)
      : database_(jet::Database::open(file.string(), "")), engine_(SqlEngine::create(database_)) {}

  std::vector<std::string> rows(const std::string& sql) {
    const auto cursor = engine_->open(sql);
    std::vector<std::string> rows;
    while (cursor->step()) {
      std::string row;
      for (std::size_t i = 0; i < cursor->columns().size(); ++i) {
        const Value& value = cursor->value(i);
        row += (i > 0 ? "|" : "") + (value.isNull()         ? "-"
                                     : value.getIf<Bytes>() ? "bytes"
                                                            : value.toText());
      }
      rows.push_back(row);
    }
    return rows;
  }
  /// Rows that a query visits.
  std::uint64_t cost(const std::string& sql) {
    const std::uint64_t before = engine_->rowsRead();
    rows(sql);
    return engine_->rowsRead() - before;
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
  void SetUp() override { test::makeSampleFile(folder_ / "sample.mdb"); }

  QueriedFile sample() { return QueriedFile(folder_ / "sample.mdb"); }

  template <typename Work>
  void forEachFile(std::initializer_list<const char*> corpus, Work work) {
    QueriedFile own = sample();
    work(own);
    for (const char* name : corpus) {
      if (!test::haveCorpus()) break;
      SCOPED_TRACE(name);
      QueriedFile file(corpusFolder() / name);
      work(file);
    }
  }

  test::TemporaryFolder folder_;
};

TEST_F(SqlEngineTest, RunsASavedQueryWithConditionsOfItsCaller) {
  QueriedFile file = sample();
  EXPECT_THAT(file.rows("Select * FROM qryPanes WHERE name LIKE '*7.txt'"),
              ElementsAre("pane37.txt|Clear", "pane27.txt|Tinted", "pane17.txt|Clear",
                          "pane07.txt|Tinted"));
  EXPECT_THAT(file.cost("Select * FROM qryPanes WHERE name = 'PANE08.TXT'"), Lt(10));
  const auto cursor = file.engine().openQuery("QRYPANES");
  EXPECT_EQ(cursor->columns().size(), 2u);
  EXPECT_EQ(cursor->columns()[1].name, "grp");
  EXPECT_EQ(cursor->columns()[1].type, ColumnType::text);
  std::string last = "q";
  int count = 0;
  for (; cursor->step(); ++count) {
    EXPECT_GT(last, cursor->value(0).toText());
    last = cursor->value(0).toText();
    EXPECT_EQ(cursor->value(1).isNull(), (40 - count) % 8 == 0) << last;
  }
  EXPECT_EQ(count, 39);
  EXPECT_FALSE(cursor->step());
}

TEST_F(SqlEngineTest, GivesValuesInTheTypesOfTheirColumns) {
  QueriedFile file = sample();
  const auto cursor = file.engine().open(
      "SELECT TOP 1 p.PaneID, p.name, p.thickness, p.single_layer, p.SupplierID, p.Info, "
      "f.picture, "
      "measured, price, price*2, measured+1 "
      "FROM Pane p, Frame f WHERE f.FrameID = 2 ORDER BY p.PaneID");
  ASSERT_TRUE(cursor->step());
  EXPECT_EQ(cursor->value(0), Value(std::int32_t{1}));
  EXPECT_EQ(cursor->value(1), Value("pane01.txt"));
  EXPECT_EQ(cursor->value(2), Value(5.0));
  EXPECT_EQ(cursor->value(3), Value(false));
  EXPECT_EQ(cursor->value(4), Value(std::int32_t{3}));
  EXPECT_TRUE(cursor->value(5).isNull());
  EXPECT_EQ(cursor->value(6).getIf<Bytes>()->size(), 20'000u);
  EXPECT_EQ(cursor->value(7), Value(Date{45'001.25}));
  EXPECT_EQ(cursor->value(8), Value(Currency{3'050'000}));
  EXPECT_EQ(cursor->value(9), Value(Currency{6'100'000}));
  EXPECT_EQ(cursor->value(10), Value(Date{45'002.25}));
  EXPECT_EQ(cursor->columns()[1].size, 120u);
  EXPECT_TRUE(cursor->columns()[0].autoNumber);
}

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
  forEachFile({"access/testV2000.mdb", "access/testV1997.mdb", "access/test2V2000.mdb",
               "access/fixedNumericTestV2000.mdb", "access/testIndexCodesV1997.mdb",
               "access/delColTestV2000.mdb", "sources/orvdata-2.0.1.mdb"},
              compareWithTables);
}

TEST_F(SqlEngineTest, GoesToAnIndexForEqualityRangeAndOrder) {
  QueriedFile file = sample();
  const std::pair<const char*, std::uint64_t> costs[] = {
      {"PaneID = 7", 1},
      {"name = 'PANE07.TXT'", 1},
      {"name = 'pane07.txt' AND GroupID = 4", 1},
      {"PaneID BETWEEN 5 AND 8", 4},
      {"PaneID IN (3, 5, 99)", 2},
      {"PaneID = 7 OR name = 'pane08.txt'", 2},
      {"PaneID = 7.5", 0},
      {"PaneID > 1e10", 0},
      {"PaneID < 2.5", 2},
      {"PaneID > 38.5", 2},
      {"thickness >= 42", 3},
      {"GroupID = 1", 5},
  };
  for (const auto& [condition, cost] : costs) {
    EXPECT_EQ(file.cost(fmt::format("SELECT * FROM Pane WHERE {}", condition)), cost) << condition;
  }
  EXPECT_THAT(file.cost("SELECT TOP 3 * FROM Pane"), Lt(5));
  EXPECT_THAT(file.cost("SELECT TOP 3 * FROM Pane_spectral_data"), Lt(5));
  EXPECT_EQ(file.cost("SELECT * FROM Pane_spectral_data WHERE PaneID = 7 ORDER BY angle"), 150u);
  EXPECT_THAT(file.cost("SELECT p.name, Count(*) FROM Pane p INNER JOIN Pane_spectral_data s ON "
                        "p.PaneID = s.PaneID WHERE p.name <= 'PANE02.TXT' GROUP BY p.name"),
              Lt(320));
}

TEST_F(SqlEngineTest, MakesAnIndexInMemoryForAJoinThatHasNone) {
  QueriedFile file = sample();
  const char* sql =
      "SELECT Count(*) FROM Pane_spectral_data s INNER JOIN Pane p ON s.wavelength = p.price";
  EXPECT_THAT(file.rows(sql), ElementsAre("1600"));
  EXPECT_THAT(file.cost(sql), Lt(7000));
}

TEST_F(SqlEngineTest, OrdersWholeRowsByThePositionsOfTheirColumns) {
  QueriedFile file = sample();
  EXPECT_THAT(file.rows("SELECT * FROM FrameTypes ORDER BY 2 DESC"),
              ElementsAre("2|Wood|-", "1|Unknown|-", "3|Aluminium|-"));
  EXPECT_THAT(file.rows("SELECT * FROM FrameTypes ORDER BY 1 DESC"),
              ElementsAre("3|Aluminium|-", "2|Wood|-", "1|Unknown|-"));
  EXPECT_THAT(
      file.rows("SELECT TOP 3 single_layer, PaneID FROM Pane ORDER BY single_layer, PaneID DESC"),
      ElementsAre("True|40", "True|38", "True|36"));
}

TEST_F(SqlEngineTest, SeesWhatWasCommittedMeanwhile) {
  QueriedFile file = sample();
  const char* sql =
      "SELECT Count(*) FROM FrameTypes a INNER JOIN FrameTypes b "
      "ON a.FrameTypeName = b.FrameTypeName";
  EXPECT_THAT(file.rows(sql), ElementsAre("3"));
  const auto open = file.engine().open("SELECT * FROM FrameTypes");
  ASSERT_TRUE(open->step());
  // Rows that an index leads to are fetched ahead, and anew after a commit.
  const auto spectra =
      file.engine().open("SELECT wavelength FROM Pane_spectral_data WHERE PaneID = 3");
  ASSERT_TRUE(spectra->step());
  {
    const jet::Pager::ReadLock lock(file.database().pager());
    file.database().table("FrameTypes")->insert(std::vector<Value>{Value(), "Steel", Value()});
  }
  double last = spectra->value(0).toDouble();
  int count = 1;
  for (; spectra->step(); ++count) last += spectra->value(0).toDouble();
  EXPECT_EQ(count, 150);
  EXPECT_EQ(last, 150 * 300.0 + 5 * 149 * 75);
  EXPECT_THAT(file.rows(sql), ElementsAre("4"));
  EXPECT_THAT(file.rows("SELECT FrameTypeID FROM FrameTypes WHERE FrameTypeName = 'STEEL'"),
              ElementsAre("4"));
}

TEST_F(SqlEngineTest, RefusesByNameWhatCannotRun) {
  QueriedFile file = sample();
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
    if (!parts.empty()) jet::createQuery(file.database(), name, parts);
    const test::Raised raised = test::raisedBy([&] { file.engine().openQuery(name); });
    EXPECT_EQ(raised.number, number) << raised.description;
    EXPECT_EQ(raised.description, description);
  }
  EXPECT_EQ(test::raisedBy([&] { file.engine().selectRows("SELECT name FROM Pane"); }).description,
            "Only rows of a SELECT * over one table, with or without WHERE and ORDER BY, can be "
            "changed (at character 1 of the statement)");
  EXPECT_EQ(test::raisedBy([&] {
              file.rows(
                  "SELECT * FROM FrameTypes x, FrameTypes y WHERE "
                  "InStr(x.FrameTypeID - 1, 'a', 'a') = 1");
            }).description,
            "Invalid procedure call: InStr starts before the first character");
}

/// A table with an index over each column of numbers, some of them descending, whose values come to
/// the bounds of their types.
void makeBounds(jet::Database& database) {
  using enum ColumnType;
  jet::createTable(database, {"Bounds",
                              {{.name = "Tiny", .type = byte},
                               {.name = "Small", .type = integer},
                               {.name = "Whole", .type = longInteger},
                               {.name = "Single", .type = single},
                               {.name = "Double", .type = double_},
                               {.name = "When", .type = dateTime},
                               {.name = "Name", .size = 255},
                               {.name = "Note", .type = memo}},
                              {{"A", {{"Tiny"}, {"Small"}}},
                               {"B", {{"Small", false}, {"Tiny", false}}},
                               {"C", {{"Whole", false}}, false, false, true},
                               {"D", {{"Single"}}},
                               {"E", {{"Double", false}}},
                               {"F", {{"When"}, {"Whole"}}},
                               {"G", {{"Name", false}}},
                               {"H", {{"Note"}}}}});
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
        text.isNull() ? text : Value(text.toText() + (i % 2 == 0 ? "" : many))});
  }
  transaction.commit();
}

TEST_F(SqlEngineTest, FindsByAnIndexWhatIsAtTheBoundsOfTypes) {
  QueriedFile file = sample();
  makeBounds(file.database());
  const auto sorted = [&](const std::string& condition) {
    auto rows = file.rows("SELECT * FROM Bounds WHERE " + condition);
    std::sort(rows.begin(), rows.end());
    return rows;
  };
  const std::vector<std::string> numbers{"-1e10", "-2147483648", "-32768",     "-0.5",
                                         "0",     "0.1",         "1",          "2.5",
                                         "255",   "32767",       "2147483647", "1e10"};
  const std::string long_ = "'" + std::string(254, 'X') + "z'";
  const std::vector<std::string> texts{"''",     "'A'", "'ab'", "'gr\u00f6\u00dfE'",
                                       "'coop'", "'e'", long_};
  for (const std::string name :
       {"Tiny", "Small", "Whole", "Single", "Double", "When", "Name", "Note"}) {
    const auto scanned = [&](const std::string& condition) {
      return sorted(fmt::format("IIf(True, {0}, {0}){1}", name, condition));
    };
    const auto nulls = name == "Whole" ? 0 : scanned(" IS NULL").size();
    for (const std::string& value : name[0] == 'N' ? texts : numbers) {
      const auto equal = scanned(fmt::format(" = {}", value)).size();
      for (const std::string op : {"=", "<", "<=", ">", ">="}) {
        const std::string condition = fmt::format(" {} {}", op, value);
        const auto wanted = scanned(condition);
        const auto before = file.engine().rowsRead();
        EXPECT_EQ(sorted(name + condition), wanted) << name << condition;
        const auto read = file.engine().rowsRead() - before;
        // Rows at an open bound are read too, and those with Null, which come before all others.
        const auto most =
            wanted.size() + (op == "<" || op == ">" ? equal : 0) + (op[0] == '<' ? nulls : 0);
        const bool isAll = wanted.size() + nulls == 120;
        EXPECT_TRUE(read == most || name == "Single" || name == "Note" || wanted.empty() || isAll)
            << name << condition << ": " << read << ", " << most;
      }
    }
    for (const char* condition :
         {" IS NULL", " BETWEEN -0.5 AND 1", " NOT BETWEEN 0 AND 1", " IN (1, 255)"}) {
      if (name[0] == 'N') continue;
      EXPECT_EQ(sorted(name + condition), scanned(condition)) << name << condition;
    }
  }
  EXPECT_EQ(file.rows("SELECT * FROM Bounds ORDER BY 1 DESC")[0].substr(0, 4), "255|");
  for (const char* both :
       {"Tiny = 0 AND Small = -32768", "Tiny = 1 AND Small >= 1", "Small = 0 AND Tiny IS NULL",
        "Small = 256 AND Tiny < 256", "Tiny IS NULL AND Small IS NULL", "When = 0 AND Whole > -1",
        "When = 1 AND Whole = 1", "Small = 2.5 AND Tiny = 2"}) {
    std::string hidden = both;
    for (const char* column : {"Tiny", "Small", "Whole", "When"}) {
      const std::size_t at = hidden.find(column);
      if (at != std::string::npos)
        hidden.replace(at, std::strlen(column), fmt::format("IIf(True, {0}, {0})", column));
    }
    EXPECT_EQ(sorted(both), sorted(hidden)) << both;
    EXPECT_LE(file.cost(fmt::format("SELECT * FROM Bounds WHERE {}", both)), 20u) << both;
  }
}

/// Of orders that an index has, no more rows are read than are asked for.
TEST_F(SqlEngineTest, ReadsRowsInTheOrderOfAnIndex) {
  QueriedFile file = sample();
  const std::pair<const char*, bool> orders[] = {
      {"ORDER BY PaneID", true},
      {"ORDER BY PaneID DESC", true},
      {"ORDER BY PaneID, angle", true},
      {"ORDER BY PaneID DESC, angle DESC", true},
      {"ORDER BY PaneID, angle DESC", false},
      {"ORDER BY angle", false},
      {"ORDER BY angle, PaneID", false},
      {"ORDER BY PaneID, wavelength", false},
      {"ORDER BY wavelength", false},
      {"", true},
      {"WHERE PaneID = 7 ORDER BY angle", true},
      {"WHERE PaneID = 7 ORDER BY PaneID, angle DESC", true},
      {"WHERE PaneID > 30 ORDER BY PaneID DESC", true},
      {"WHERE PaneID < 30 ORDER BY angle", false}};
  for (const auto& [order, isByIndex] : orders) {
    const auto cursor =
        file.engine().open(fmt::format("SELECT * FROM Pane_spectral_data {}", order));
    const std::uint64_t before = file.engine().rowsRead();
    ASSERT_TRUE(cursor->step());
    EXPECT_EQ(file.engine().rowsRead() - before <= 64, isByIndex) << order;
    const bool isDescending = std::string(order).find("PaneID DESC") != std::string::npos;
    EXPECT_EQ(cursor->value(0).toLong(), std::string(order).find("= 7") != std::string::npos ? 7
                                         : isDescending                                      ? 40
                                                                                             : 1)
        << order;
  }
}

}  // namespace
}  // namespace orv::store::sql
