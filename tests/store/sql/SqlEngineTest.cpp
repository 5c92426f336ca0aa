// Queries over real files: types, indexes, saved queries.
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "errors/Error.h"
#include "store/StoreError.h"
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
  explicit QueriedFile(const std::filesystem::path& file, const std::string& password = "")
      : database_(jet::Database::open(file.string(), password)),
        engine_(SqlEngine::create(database_)) {}

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

QueriedFile glazing() {
  return QueriedFile(corpusFolder() / "sources/glazing.mdb", "tekzil");
}
QueriedFile panes() {
  return QueriedFile(corpusFolder() / "sources/orvdata-3.0.0.mdb");
}

TEST(SqlEngine, RunsTheSavedQueryOfAGlazingDatabase) {
  ORV_NEEDS_CORPUS();
  QueriedFile file = glazing();
  EXPECT_THAT(file.rows("Select * FROM qryOptics5Grid WHERE FileName = 'PANE00004.DAT'"),
              ElementsAre("4|PANE00004.DAT|7|Product ® 4|1|0.84|0.84|0|Coated|PANE00003.DAT|"
                          "Maker 4|#"));
  EXPECT_THAT(file.cost("Select * FROM qryOptics5Grid WHERE FileName = 'pane00004.dat'"), Lt(10));
  const auto cursor = file.engine().openQuery("QRYOPTICS5GRID");
  EXPECT_EQ(cursor->columns().size(), 12u);
  EXPECT_EQ(cursor->columns()[2].type, ColumnType::single);
  std::string last;
  int count = 0;
  for (; cursor->step(); ++count) {
    EXPECT_LT(last, cursor->value(1).toText());
    last = cursor->value(1).toText();
  }
  EXPECT_EQ(count, 200);
  EXPECT_FALSE(cursor->step());
}

TEST(SqlEngine, GivesValuesInTheTypesOfTheirColumns) {
  ORV_NEEDS_CORPUS();
  QueriedFile file = panes();
  const auto cursor = file.engine().open(
      "SELECT TOP 1 p.PaneID, p.name, p.thickness, p.single_layer, p.Ra, p.Info, f.picture "
      "FROM Pane p, Frame f WHERE f.FrameID = 2 ORDER BY p.PaneID");
  ASSERT_TRUE(cursor->step());
  EXPECT_EQ(cursor->value(0), Value(std::int32_t{1}));
  EXPECT_EQ(cursor->value(1), Value("pane01.txt"));
  EXPECT_EQ(cursor->value(2), Value(5.0));
  EXPECT_EQ(cursor->value(3), Value(false));
  EXPECT_EQ(cursor->value(4), Value(std::int32_t{0}));
  EXPECT_TRUE(cursor->value(5).isNull());
  EXPECT_NE(cursor->value(6).getIf<Bytes>(), nullptr);
  EXPECT_EQ(cursor->columns()[1].size, 120u);
  EXPECT_TRUE(cursor->columns()[0].autoNumber);

  QueriedFile types(corpusFolder() / "access/testV2000.mdb");
  const auto row = types.engine().open("SELECT G, H, I, H*2, G+1 FROM Table1 ORDER BY H");
  ASSERT_TRUE(row->step());
  EXPECT_NE(row->value(0).getIf<Date>(), nullptr);
  EXPECT_NE(row->value(1).getIf<Currency>(), nullptr);
  EXPECT_NE(row->value(2).getIf<bool>(), nullptr);
  EXPECT_EQ(row->value(3).getIf<Currency>()->tenThousandths,
            2 * row->value(1).getIf<Currency>()->tenThousandths);
  EXPECT_EQ(row->value(4).getIf<Date>()->days, row->value(0).getIf<Date>()->days + 1);
}

/// Every value of every table, as the store has it and as a query gives it.
void compareWithTables(QueriedFile& file) {
  std::vector<std::string> names;
  {
    const jet::Pager::ReadLock lock(file.database().pager());
    for (const jet::CatalogEntry& entry : file.database().entries()) {
      if (entry.kind == jet::CatalogEntry::Kind::table) {
        names.push_back(entry.name);
      }
    }
  }
  for (const std::string& name : names) {
    const auto cursor = file.engine().open("SELECT * FROM [" + name + "]");
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

TEST(SqlEngine, GivesEveryValueOfEveryType) {
  ORV_NEEDS_CORPUS();
  for (const char* name : {"access/testV2000.mdb", "access/testV1997.mdb", "access/test2V2000.mdb",
                           "access/fixedNumericTestV2000.mdb", "access/testIndexCodesV1997.mdb",
                           "access/delColTestV2000.mdb", "sources/orvdata-2.0.1.mdb"}) {
    SCOPED_TRACE(name);
    QueriedFile file(corpusFolder() / name);
    compareWithTables(file);
  }
}

TEST(SqlEngine, GoesToAnIndexForEqualityRangeAndOrder) {
  ORV_NEEDS_CORPUS();
  QueriedFile file = panes();
  EXPECT_EQ(file.cost("SELECT * FROM Pane WHERE PaneID = 7"), 1u);
  EXPECT_EQ(file.cost("SELECT * FROM Pane WHERE name = 'PANE07.TXT'"), 1u);
  EXPECT_EQ(file.cost("SELECT * FROM Pane WHERE name = 'pane07.txt' AND GroupID = 4"), 1u);
  EXPECT_EQ(file.cost("SELECT * FROM Pane WHERE PaneID BETWEEN 5 AND 8"), 4u);
  EXPECT_EQ(file.cost("SELECT * FROM Pane WHERE PaneID IN (3, 5, 99)"), 2u);
  EXPECT_EQ(file.cost("SELECT * FROM Pane WHERE PaneID = 7 OR name = 'pane08.txt'"), 2u);
  EXPECT_EQ(file.cost("SELECT * FROM Pane WHERE PaneID = 7.5"), 0u);
  EXPECT_THAT(file.cost("SELECT TOP 3 * FROM Pane"), Lt(5));

  QueriedFile spectra = glazing();
  EXPECT_EQ(spectra.cost("SELECT * FROM SpectralData WHERE GlazingID = 7 ORDER BY [wavelength]"),
            100u);
  EXPECT_THAT(spectra.cost("SELECT g.FileName, Count(*) FROM GlazingProperties g INNER JOIN "
                           "SpectralData s ON g.GlazingID = s.GlazingID WHERE "
                           "g.FileName <= 'PANE00003.DAT' GROUP BY g.FileName"),
              Lt(320));
}

TEST(SqlEngine, MakesAnIndexInMemoryForAJoinThatHasNone) {
  ORV_NEEDS_CORPUS();
  QueriedFile file = glazing();
  const char* sql =
      "SELECT Count(*) FROM GlazingProperties a INNER JOIN GlazingProperties b "
      "ON a.ProductName = b.ProductName WHERE a.GlazingID > b.GlazingID - 1";
  EXPECT_THAT(file.rows(sql), ElementsAre("200"));
  EXPECT_THAT(file.cost(sql), Lt(1000));
}

std::string literal(const Value& value) {
  if (const auto* text = value.getIf<std::string>()) {
    std::string quoted;
    for (const char c : *text) {
      quoted += c;
      quoted += c == '\'' ? "'" : "";
    }
    return "'" + quoted + "'";
  }
  return fmt::format("{:.17g}", value.toDouble());
}

/// For the first column of every index: whether conditions and orders that the index serves give
/// what they give without it (the column inside IIf is one for SQLite to compare).
void compareIndexWithScan(QueriedFile& file) {
  std::vector<std::shared_ptr<jet::Table>> tables;
  {
    const jet::Pager::ReadLock lock(file.database().pager());
    for (const jet::CatalogEntry& entry : file.database().entries()) {
      if (entry.kind == jet::CatalogEntry::Kind::table && !entry.isSystem()) {
        tables.push_back(file.database().table(entry.name));
      }
    }
  }
  for (const auto& table : tables) {
    std::set<std::size_t> seen;
    for (const jet::RealIndex& index : table->definition().realIndexes) {
      if (!seen.insert(index.columns[0].column).second) {
        continue;
      }
      const jet::Column& column = table->definition().columns[index.columns[0].column];
      std::vector<Value> values;
      {
        const jet::Pager::ReadLock lock(file.database().pager());
        for (jet::TableScan scan = table->scan(); scan.next() && values.size() < 400;) {
          values.push_back(scan.row().value(column));
        }
      }
      const std::string name = fmt::format("[{}]", column.name);
      const std::string hidden = fmt::format("IIf(True, {0}, {0})", name);
      const std::string from = fmt::format("SELECT * FROM [{}] WHERE ", table->name());
      for (std::size_t i = 0; i < values.size(); i += 1 + values.size() / 2) {
        if (values[i].isNull() || values[i].getIf<Bytes>() != nullptr ||
            values[i].getIf<Guid>() != nullptr) {
          continue;
        }
        for (const char* op : {"=", "<", "<=", ">", ">=", "<>"}) {
          const std::string condition = fmt::format(" {} {}", op, literal(values[i]));
          auto indexed = file.rows(from + name + condition);
          auto scanned = file.rows(from + hidden + condition);
          std::sort(indexed.begin(), indexed.end());
          std::sort(scanned.begin(), scanned.end());
          EXPECT_EQ(indexed, scanned) << table->name() << ": " << name << condition;
        }
      }
      for (const char* direction : {"", " DESC"}) {
        const std::string select =
            fmt::format("SELECT {} FROM [{}] ORDER BY ", name, table->name());
        const auto indexed = file.rows(select + name + direction);
        const auto scanned = file.rows(select + hidden + direction);
        ASSERT_EQ(indexed.size(), scanned.size());
        for (std::size_t i = 0; i < indexed.size(); ++i) {
          const bool same = column.type == ColumnType::text || column.type == ColumnType::memo
                                ? TextOrder(column.sortOrder).compare(indexed[i], scanned[i]) == 0
                                : indexed[i] == scanned[i];
          EXPECT_TRUE(same) << name << direction << ": " << indexed[i] << ", " << scanned[i];
        }
      }
    }
  }
}

TEST(SqlEngine, GivesTheSameWithAndWithoutAnIndex) {
  ORV_NEEDS_CORPUS();
  for (const char* name : {"sources/orvdata-3.0.0.mdb", "access/testV2000.mdb",
                           "access/compIndexTestV2000.mdb", "access/indexTestV2000.mdb",
                           "access/testIndexCodesV1997.mdb", "access/compIndexTestV1997.mdb"}) {
    SCOPED_TRACE(name);
    QueriedFile file(corpusFolder() / name);
    compareIndexWithScan(file);
  }
}

TEST(SqlEngine, OrdersWholeRowsByThePositionsOfTheirColumns) {
  ORV_NEEDS_CORPUS();
  QueriedFile file = panes();
  const auto byName = file.rows("SELECT * FROM FrameTypes ORDER BY FrameTypeName DESC");
  ASSERT_EQ(byName.size(), 3u);
  EXPECT_EQ(file.rows("SELECT * FROM FrameTypes ORDER BY 2 DESC"), byName);
  const auto byId = file.rows("SELECT * FROM FrameTypes ORDER BY FrameTypeID DESC");
  EXPECT_EQ(file.rows("SELECT * FROM FrameTypes ORDER BY 1 DESC"), byId);
}

TEST(SqlEngine, SeesWhatWasCommittedMeanwhile) {
  ORV_NEEDS_CORPUS();
  const test::TemporaryFolder folder;
  QueriedFile file(folder.copyOf(corpusFolder() / "sources/orvdata-3.0.0.mdb"));
  const char* sql =
      "SELECT Count(*) FROM FrameTypes a INNER JOIN FrameTypes b "
      "ON a.FrameTypeName = b.FrameTypeName";
  EXPECT_THAT(file.rows(sql), ElementsAre("3"));
  const auto open = file.engine().open("SELECT * FROM FrameTypes");
  ASSERT_TRUE(open->step());
  {
    const jet::Pager::ReadLock lock(file.database().pager());
    const auto table = file.database().table("FrameTypes");
    table->insert(std::vector<Value>{Value(), Value("Steel")});
  }
  EXPECT_THAT(file.rows(sql), ElementsAre("4"));
  EXPECT_THAT(file.rows("SELECT FrameTypeID FROM FrameTypes WHERE FrameTypeName = 'STEEL'"),
              ElementsAre("4"));
}

TEST(SqlEngine, RefusesByNameWhatCannotRun) {
  ORV_NEEDS_CORPUS();
  QueriedFile file(corpusFolder() / "access/queryTestV2000.mdb");
  const auto numberOf = [&](const char* query) {
    try {
      file.engine().openQuery(query);
    } catch (const Error& error) {
      EXPECT_THAT(error.description(), testing::HasSubstr(query));
      return error.number();
    }
    return 0;
  };
  EXPECT_EQ(numberOf("SelectQuery"), 0);
  for (const char* query : {"UpdateQuery", "AppendQuery", "DeleteQuery", "MakeTableQuery",
                            "CrosstabQuery", "PassthroughQuery", "DataDefinitionQuery"}) {
    EXPECT_EQ(numberOf(query), kNotSupported) << query;
  }
  EXPECT_EQ(numberOf("UnionQuery"), kObjectNotFound);  // it has no FROM
  EXPECT_EQ(numberOf("NoQuery"), kObjectNotFound);
}

}  // namespace
}  // namespace orv::store::sql
