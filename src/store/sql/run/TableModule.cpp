#include "store/sql/run/TableModule.h"

#include <fmt/format.h>

#include <cstdlib>
#include <cstring>
#include <new>
#include <vector>

#include "store/sql/run/IndexPlan.h"
#include "store/sql/run/KeyBound.h"
#include "store/sql/run/RowSource.h"
#include "store/sql/translate/Catalog.h"

namespace orv::store::sql {
namespace {

// idxNum holds a plan: its kind, whether it goes backward, and the number of its index or column.
constexpr int kBackward = 4;
constexpr int kNumberShift = 3;

int planNumber(const IndexPlan& plan) {
  return static_cast<int>(plan.kind) | (plan.backward ? kBackward : 0) |
         static_cast<int>(plan.number) << kNumberShift;
}

/// The type and collation of a column in CREATE TABLE.
std::string declaration(const jet::Column& column) {
  switch (column.type) {
    case ColumnType::text:
    case ColumnType::memo:
    case ColumnType::guid:
      return fmt::format("TEXT COLLATE {}", kTextCollation);
    case ColumnType::currency:
    case ColumnType::numeric:
      return fmt::format("TEXT COLLATE {}", kDecimalCollation);
    case ColumnType::single:
    case ColumnType::double_:
    case ColumnType::dateTime:
    case ColumnType::extendedDate:
      return "REAL";
    case ColumnType::binary:
    case ColumnType::ole:
      return "BLOB";
    default:
      return "INTEGER";
  }
}

void giveText(sqlite3_context* context, const std::string& text) {
  sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

/// Hands a value of a row to SQLite.
struct ValueGiver {
  sqlite3_context* context;
  void operator()(std::monostate) const { sqlite3_result_null(context); }
  void operator()(bool v) const { sqlite3_result_int(context, v ? -1 : 0); }
  void operator()(std::int32_t v) const { sqlite3_result_int(context, v); }
  void operator()(std::int64_t v) const { sqlite3_result_int64(context, v); }
  void operator()(float v) const { sqlite3_result_double(context, static_cast<double>(v)); }
  void operator()(double v) const { sqlite3_result_double(context, v); }
  void operator()(const Date& v) const { sqlite3_result_double(context, v.days); }
  void operator()(const Currency& v) const { giveText(context, Value(v).toText()); }
  void operator()(const Decimal& v) const { giveText(context, v.toText()); }
  void operator()(const Guid& v) const { giveText(context, v.toText()); }
  void operator()(const std::string& v) const { giveText(context, v); }
  void operator()(const Bytes& v) const {
    if (v.empty()) {
      return sqlite3_result_zeroblob(context, 0);  // an address of null would give Null
    }
    sqlite3_result_blob64(context, v.data(), v.size(), SQLITE_TRANSIENT);
  }
};

struct VirtualTable : sqlite3_vtab {
  TableModule* module = nullptr;
  std::shared_ptr<jet::Table> table;
};

struct VirtualCursor : sqlite3_vtab_cursor {
  std::unique_ptr<RowSource> source;
  bool atEnd = true;
  VirtualTable& table() const { return *static_cast<VirtualTable*>(pVtab); }
};

char kindLetter(Constraint::Kind kind) {
  constexpr char kLetters[] = {'=', '0', '>', '<'};
  return kLetters[static_cast<std::size_t>(kind)];
}

Constraint::Kind kindOf(char letter) {
  return letter == '='   ? Constraint::Kind::equal
         : letter == '0' ? Constraint::Kind::isNull
         : letter == '>' ? Constraint::Kind::lower
                         : Constraint::Kind::upper;
}

std::optional<Constraint::Kind> kindOfOperator(unsigned char op) {
  switch (op) {
    case SQLITE_INDEX_CONSTRAINT_EQ:
      return Constraint::Kind::equal;
    case SQLITE_INDEX_CONSTRAINT_ISNULL:
      return Constraint::Kind::isNull;
    case SQLITE_INDEX_CONSTRAINT_GT:
    case SQLITE_INDEX_CONSTRAINT_GE:
      return Constraint::Kind::lower;
    case SQLITE_INDEX_CONSTRAINT_LT:
    case SQLITE_INDEX_CONSTRAINT_LE:
      return Constraint::Kind::upper;
    default:
      return std::nullopt;
  }
}

/// The constraints that keys can serve: text has to be compared by the collation of its keys.
std::vector<Constraint> constraintsOf(sqlite3_index_info* info,
                                      const jet::TableDefinition& definition) {
  std::vector<Constraint> constraints;
  for (int i = 0; i < info->nConstraint; ++i) {
    const auto& offered = info->aConstraint[i];
    const auto kind = kindOfOperator(offered.op);
    if (offered.usable == 0 || offered.iColumn < 0 || !kind) {
      continue;
    }
    const auto column = static_cast<std::size_t>(offered.iColumn);
    const ColumnType type = definition.columns[column].type;
    const char* collation = sqlite3_vtab_collation(info, i);
    const bool text = type == ColumnType::text || type == ColumnType::memo;
    if (!text || (collation != nullptr && std::strcmp(collation, kTextCollation) == 0)) {
      constraints.push_back({i, column, *kind});
    }
  }
  return constraints;
}

std::vector<SortTerm> sortTermsOf(const sqlite3_index_info* info) {
  std::vector<SortTerm> terms;
  for (int i = 0; i < info->nOrderBy; ++i) {
    if (info->aOrderBy[i].iColumn < 0) {
      return {};
    }
    terms.push_back(
        {static_cast<std::size_t>(info->aOrderBy[i].iColumn), info->aOrderBy[i].desc != 0});
  }
  return terms;
}

void describePlan(const IndexPlan& plan, sqlite3_index_info* info) {
  info->idxNum = planNumber(plan);
  std::string letters;
  for (std::size_t i = 0; i < plan.used.size(); ++i) {
    info->aConstraintUsage[plan.used[i].position].argvIndex = static_cast<int>(i) + 1;
    letters += kindLetter(plan.used[i].kind);
  }
  info->idxStr = sqlite3_mprintf("%s", letters.c_str());
  info->needToFreeIdxStr = 1;
  info->orderByConsumed = plan.ordered ? 1 : 0;
  info->idxFlags = plan.unique ? SQLITE_INDEX_SCAN_UNIQUE : 0;
  info->estimatedCost = plan.cost;
  info->estimatedRows = static_cast<sqlite3_int64>(plan.rows);
}

}  // namespace

/// The functions that SQLite calls. Each lets no exception through.
struct ModuleCallbacks {
  static int connect(sqlite3* db, void* aux, int count, const char* const* arguments,
                     sqlite3_vtab** made, char** /*error*/) {
    auto* module = static_cast<TableModule*>(aux);
    const bool done = module->failure_.guard([&] {
      const int number = count > 3 ? std::atoi(arguments[3]) : 0;
      auto table = std::make_unique<VirtualTable>();
      table->module = module;
      table->table = module->tables_.at(number).table;
      std::string sql = "CREATE TABLE t(";
      const auto& columns = table->table->definition().columns;
      for (std::size_t i = 0; i < columns.size(); ++i) {
        sql += fmt::format("{}c{} {}", i > 0 ? ", " : "", i, declaration(columns[i]));
      }
      sqlite3_declare_vtab(db, (sql + ")").c_str());
      *made = table.release();
    });
    return done ? SQLITE_OK : SQLITE_ERROR;
  }

  static int disconnect(sqlite3_vtab* table) {
    delete static_cast<VirtualTable*>(table);
    return SQLITE_OK;
  }

  static int bestIndex(sqlite3_vtab* vtab, sqlite3_index_info* info) {
    auto& table = *static_cast<VirtualTable*>(vtab);
    const bool done = table.module->failure_.guard([&] {
      describePlan(choosePlan(*table.table, table.module->textOrder_.sortOrder(),
                              constraintsOf(info, table.table->definition()), sortTermsOf(info)),
                   info);
    });
    return done ? SQLITE_OK : SQLITE_ERROR;
  }

  static int open(sqlite3_vtab*, sqlite3_vtab_cursor** made) {
    *made = new (std::nothrow) VirtualCursor();
    return *made == nullptr ? SQLITE_NOMEM : SQLITE_OK;
  }

  static int close(sqlite3_vtab_cursor* base) {
    auto* cursor = static_cast<VirtualCursor*>(base);
    cursor->table().module->visited_ = nullptr;
    delete cursor;
    return SQLITE_OK;
  }

  static int filter(sqlite3_vtab_cursor* base, int plan, const char* letters, int count,
                    sqlite3_value** values) {
    auto& cursor = *static_cast<VirtualCursor*>(base);
    TableModule& module = *cursor.table().module;
    module.visited_ = nullptr;
    const bool done = module.failure_.guard([&] {
      cursor.source = sourceFor(cursor.table(), plan, letters,
                                BoundValues(values, static_cast<std::size_t>(count)));
    });
    return done ? next(base) : SQLITE_ERROR;
  }

  static std::unique_ptr<RowSource> sourceFor(VirtualTable& vtab, int plan, const char* letters,
                                              BoundValues values) {
    const auto kind = static_cast<IndexPlan::Kind>(plan & 3);
    const auto number = static_cast<std::size_t>(plan >> kNumberShift);
    if (kind == IndexPlan::Kind::index) {
      std::vector<Constraint::Kind> kinds;
      for (std::size_t i = 0; i < values.size(); ++i) {
        kinds.push_back(kindOf(letters[i]));
      }
      return indexedRows(vtab.table, number, (plan & kBackward) != 0, kinds, values);
    }
    if (kind == IndexPlan::Kind::lookup) {
      if (auto lookup = vtab.module->lookups_.get(*vtab.table, number)) {
        return lookedUpRows(vtab.table, number, std::move(lookup), values[0]);
      }
    }
    return scanRows(*vtab.table);
  }

  static int next(sqlite3_vtab_cursor* base) {
    auto& cursor = *static_cast<VirtualCursor*>(base);
    TableModule& module = *cursor.table().module;
    module.visited_ = nullptr;
    const bool done = module.failure_.guard([&] {
      cursor.atEnd = !cursor.source->next();
      if (!cursor.atEnd) module.visited_ = cursor.source.get();
      module.rowsRead_ += cursor.atEnd ? 0 : 1;
    });
    return done ? SQLITE_OK : SQLITE_ERROR;
  }

  static int eof(sqlite3_vtab_cursor* base) {
    return static_cast<VirtualCursor*>(base)->atEnd ? 1 : 0;
  }

  static int column(sqlite3_vtab_cursor* base, sqlite3_context* context, int index) {
    auto& cursor = *static_cast<VirtualCursor*>(base);
    const bool done = cursor.table().module->failure_.guard([&] {
      const auto& columns = cursor.table().table->definition().columns;
      const Value value = cursor.source->row().value(columns[static_cast<std::size_t>(index)]);
      std::visit(ValueGiver{context}, value.variant());
    });
    return done ? SQLITE_OK : SQLITE_ERROR;
  }

  static int rowId(sqlite3_vtab_cursor* base, sqlite3_int64* id) {
    *id = static_cast<VirtualCursor*>(base)->source->rowId().toPointer();
    return SQLITE_OK;
  }

  static const sqlite3_module kModule;
};

const sqlite3_module ModuleCallbacks::kModule = [] {
  sqlite3_module module{};
  module.iVersion = 1;
  module.xCreate = connect;
  module.xConnect = connect;
  module.xBestIndex = bestIndex;
  module.xDisconnect = disconnect;
  module.xDestroy = disconnect;
  module.xOpen = open;
  module.xClose = close;
  module.xFilter = filter;
  module.xNext = next;
  module.xEof = eof;
  module.xColumn = column;
  module.xRowid = rowId;
  return module;
}();

TableModule::TableModule(sqlite3* db, const TextOrder& textOrder, CallbackFailure& failure)
    : db_(db), textOrder_(textOrder), failure_(failure) {
  sqlite3_create_module_v2(db, "jet", &ModuleCallbacks::kModule, this, nullptr);
}

const jet::RowView* TableModule::visitedRow(jet::RowId id) const {
  return visited_ != nullptr && visited_->rowId() == id ? &visited_->row() : nullptr;
}

std::string TableModule::nameOf(const std::shared_ptr<jet::Table>& table) {
  for (auto entry = tables_.begin(); entry != tables_.end();) {
    const std::string name = fmt::format("jet_{}", entry->first);
    const Entry& known = entry->second;
    if (known.table == table && known.definition == table->sharedDefinition()) {
      return name;
    }
    // A table that was read anew after its definition may have changed replaces the older one,
    // unless a query still runs over that.
    const bool replaced = known.definition->page == table->definition().page;
    const bool dropped = replaced && sqlite3_exec(db_, fmt::format("DROP TABLE {}", name).c_str(),
                                                  nullptr, nullptr, nullptr) == SQLITE_OK;
    entry = dropped ? tables_.erase(entry) : std::next(entry);
  }
  const int number = ++lastNumber_;
  tables_[number] = {table, table->sharedDefinition()};
  const std::string name = fmt::format("jet_{}", number);
  sqlite3_exec(db_, fmt::format("CREATE VIRTUAL TABLE {} USING jet({})", name, number).c_str(),
               nullptr, nullptr, nullptr);
  failure_.rethrow();
  return name;
}

}  // namespace orv::store::sql
