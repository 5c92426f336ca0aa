// Changes sound and damaged files. A sound file must stay sound whatever is done to it.

#include <cstdio>
#include <cstdlib>

#include "fuzz/Specimens.h"
#include "fuzz/TryTo.h"
#include "store/Check.h"
#include "store/Connection.h"

namespace {

using namespace orv::store;
using orv::fuzz::Input;
using orv::fuzz::tryTo;

constexpr int kMostChanges = 60;

std::string printable(Input& input, std::size_t most) {
  std::string text = input.text(input.below(most));
  for (char& letter : text) {
    letter = static_cast<char>(' ' + static_cast<unsigned char>(letter) % 95);
  }
  return text;
}

Value valueFor(const ColumnInfo& column, Input& input) {
  switch (input.below(8)) {
    case 0:
      return {};
    case 1:
      return printable(input, 80);  // of the wrong type, often
    default:
      break;
  }
  switch (column.type) {
    case ColumnType::boolean:
      return input.below(2) == 1;
    case ColumnType::text:
      return printable(input, column.size + 2);
    case ColumnType::memo:
      return std::string(input.below(20'000), 'm');
    case ColumnType::ole:
      return Bytes(input.below(20'000), 0x55);
    case ColumnType::binary:
      return Bytes(input.below(column.size + 2), input.byte());
    case ColumnType::dateTime:
      return Date{static_cast<double>(input.number(2)) / 3};
    case ColumnType::currency:
      return Currency{static_cast<std::int64_t>(input.number(8))};
    case ColumnType::guid:
      return Guid{{input.byte(), input.byte()}};
    case ColumnType::single:
    case ColumnType::double_:
      return static_cast<double>(input.number(2)) - 30'000.5;
    default:
      return static_cast<std::int32_t>(input.number(2)) - 100;
  }
}

void changeRow(Recordset& rows, Input& input) {
  const std::vector<ColumnInfo>& fields = rows.fields();
  for (std::size_t i = input.below(fields.size() + 1); i > 0; --i) {
    const std::size_t field = input.below(fields.size());
    rows.setValue(field, valueFor(fields[field], input));
  }
  rows.update();
}

void changeTable(Connection& database, const std::string& name, Input& input) {
  const auto rows =
      database.openRecordset(name, CursorType::keyset, LockType::optimistic, SourceKind::table);
  const std::size_t kind = input.below(4);
  if (kind > 1 && rows->recordCount() > 0) {
    rows->moveTo(static_cast<std::int64_t>(
        input.below(static_cast<std::size_t>(std::min<std::int64_t>(rows->recordCount(), 5000)))));
    if (kind == 2) {
      return rows->deleteRow();
    }
  } else {
    rows->addNew();
  }
  changeRow(*rows, input);
}

void changeDesign(Connection& database, const std::vector<std::string>& tables, Input& input) {
  const TableInfo& pattern = database.table(tables[input.below(tables.size())]);
  const std::size_t column = input.below(std::max<std::size_t>(pattern.columns.size(), 1));
  const IndexInfo index{.name = printable(input, 12),
                        .columns = {{pattern.columns.at(column).name, input.below(2) == 1}},
                        .unique = input.below(2) == 1,
                        .ignoreNulls = input.below(2) == 1};
  switch (input.below(3)) {
    case 0:
      return database.createIndex(pattern.name, index);
    case 1:
      return database.createTable(
          {.name = printable(input, 12), .columns = pattern.columns, .indexes = {index}});
    default:
      return database.createQuery({.name = printable(input, 12),
                                   .outputs = {{printable(input, 30)}},
                                   .tables = {pattern.name},
                                   .where = printable(input, 30)});
  }
}

void changeOnce(Connection& database, Input& input) {
  const std::vector<std::string> tables = database.tableNames();
  if (tables.empty()) {
    return;
  }
  if (input.below(8) == 0) {
    changeDesign(database, tables, input);
  } else {
    changeTable(database, tables[input.below(tables.size())], input);
  }
}

void mustBeSound(const orv::fuzz::Specimens::Copy& file) {
  const CheckReport report = checkFile(file.path, file.password);
  for (const CheckFinding& fault : report.faults) {
    std::fprintf(stderr, "%s\n", fault.toText().c_str());
  }
  if (!report.sound()) {
    std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  Input input(bytes, size);
  const std::size_t mostPatches = input.below(2) * 20;
  const auto file = orv::fuzz::specimens().damaged(input, mostPatches);
  tryTo([&] {
    const auto database = Connection::openFile(file.path, file.password);
    for (int i = 0; i < kMostChanges && !input.empty(); ++i) {
      tryTo([&] { changeOnce(*database, input); });
    }
  });
  if (!file.damaged) {
    mustBeSound(file);
  }
  return 0;
}
