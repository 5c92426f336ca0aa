// Plain SQLite tables that are queried in Access SQL, to test the translation without a file.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "store/sql/functions/Functions.h"
#include "store/sql/run/Collations.h"
#include "store/sql/run/OutputValue.h"
#include "store/sql/syntax/Parser.h"
#include "store/sql/translate/Catalog.h"
#include "store/sql/translate/QueryWriter.h"

namespace orv::store::sql {

/// Panes, Suppliers, Orders, and Kinds of columns, with a few rows each.
class TranslatedDatabase final : public Catalog {
 public:
  TranslatedDatabase() {
    sqlite3_open(":memory:", &db_);
    registerCollations(db_, TextOrder::standard());
    registerFunctions(db_, failure_);
    using enum ColumnType;
    addTable("Panes", {{"id", longInteger},
                       {"name", text},
                       {"supplier", longInteger},
                       {"thickness", double_},
                       {"3D", boolean},
                       {"made", dateTime},
                       {"price", currency}});
    run("INSERT INTO Panes VALUES (1,'Clear',1,3.9,-1,43861.5,'10.5000'),"
        "(2,'CLEAR ',2,5.7,0,43862.0,'9.9900'),(3,'Größe',1,5.7,0,NULL,'100.0000'),"
        "(4,'Grosse',NULL,8.0,-1,43900.25,NULL),(5,NULL,3,12.0,0,44000.0,'0.0001')");
    addTable("Suppliers", {{"id", longInteger}, {"name", text}});
    run("INSERT INTO Suppliers VALUES (1,'Glas & Co'),(2,'Verre'),(4,'Nobody')");
    addTable("Orders", {{"pane", longInteger}, {"supplier", longInteger}, {"count", integer}});
    run("INSERT INTO Orders VALUES (1,1,10),(1,2,20),(2,2,5),(3,9,7)");
    addTable("Kinds", {{"byte", byte},
                       {"single", single},
                       {"exact", numeric},
                       {"big", bigInteger},
                       {"memo", memo},
                       {"small", integer}});
    run("INSERT INTO Kinds VALUES (7,0.1,'12.345',9007199254740993,'Memo',-3),"
        "(8,-2.5,'-12.345',-9000000000000001,'8',4),(NULL,16777216,'0.000',12,NULL,300)");
  }
  ~TranslatedDatabase() override { sqlite3_close(db_); }

  std::optional<TableBinding> table(const std::string& name) override {
    for (const auto& [known, binding] : tables_) {
      if (sameName(known, name)) return binding;
    }
    return std::nullopt;
  }
  std::optional<std::string> queryText(const std::string& name) override {
    for (const auto& [known, text] : queries) {
      if (sameName(known, name)) return text;
    }
    return std::nullopt;
  }
  bool isQuery(const std::string& name) override { return queryText(name).has_value(); }

  /// The rows of a statement: values parted by "|", Null as "-".
  std::vector<std::string> rows(const std::string& sql) {
    const Translation translation =
        QueryWriter::translate(*this, SqlText{sql}, Parser::parse(SqlText{sql}));
    columns = translation.columns;
    sqlite3_stmt* raw = nullptr;
    if (sqlite3_prepare_v2(db_, translation.sql.c_str(), -1, &raw, nullptr) != SQLITE_OK) {
      throw std::runtime_error(std::string(sqlite3_errmsg(db_)) + ": " + translation.sql);
    }
    const std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> statement(raw, sqlite3_finalize);
    std::vector<std::string> rows;
    int result = 0;
    while ((result = sqlite3_step(raw)) == SQLITE_ROW) {
      std::string row;
      for (std::size_t i = 0; i < columns.size(); ++i) {
        const Value value = outputValue(raw, static_cast<int>(i), columns[i]);
        row += (i > 0 ? "|" : "") + (value.isNull() ? "-" : value.toText());
      }
      rows.push_back(row);
    }
    failure_.rethrow();
    if (result != SQLITE_DONE) throw std::runtime_error(sqlite3_errmsg(db_));
    return rows;
  }

  /// The only value that `SELECT expression` gives.
  std::string value(const std::string& expression) {
    const auto result = rows("SELECT " + expression);
    return result.size() == 1 ? result[0] : "not one row";
  }

  std::map<std::string, std::string> queries;  ///< saved queries by name
  std::vector<TypedColumn> columns;            ///< of the latest statement

 private:
  void run(std::string sql) {
    for (const auto& [name, binding] : tables_) {
      const std::size_t at = sql.find(" " + name + " ");
      if (at != std::string::npos) sql.replace(at + 1, name.size(), binding.sqlName);
    }
    if (sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
      throw std::runtime_error(sqlite3_errmsg(db_));
    }
  }

  void addTable(const std::string& name, std::vector<std::pair<std::string, ColumnType>> columns) {
    TableBinding binding{"base_" + std::to_string(tables_.size()), {}};
    std::string sql = "CREATE TABLE " + binding.sqlName + "(";
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const ColumnType type = columns[i].second;
      ColumnInfo info;
      info.name = columns[i].first;
      info.type = type;
      binding.columns.push_back(info);
      sql += (i > 0 ? ", c" : "c") + std::to_string(i);
      sql += isTextType(type)                                   ? " TEXT COLLATE JET"
             : isDecimalType(type)                              ? " TEXT COLLATE JETDECIMAL"
             : isWholeType(type) || type == ColumnType::boolean ? " INTEGER"
                                                                : " REAL";
    }
    sqlite3_exec(db_, (sql + ")").c_str(), nullptr, nullptr, nullptr);
    tables_.emplace_back(name, std::move(binding));
  }

  sqlite3* db_ = nullptr;
  CallbackFailure failure_;
  std::vector<std::pair<std::string, TableBinding>> tables_;
};

}  // namespace orv::store::sql
