#include "commands/RecordTable.h"

#include <algorithm>

#include "commands/CellText.h"
#include "commands/ColumnTitle.h"
#include "commands/RecordList.h"
#include "errors/Error.h"
#include "model/ShadingTypes.h"
#include "model/Text.h"
#include "store/Connection.h"

namespace orv::commands {

namespace DataType = sources::DataType;

namespace {

bool holdsNumbers(store::ColumnType type) {
  using store::ColumnType;
  switch (type) {
    case ColumnType::byte:
    case ColumnType::integer:
    case ColumnType::longInteger:
    case ColumnType::bigInteger:
    case ColumnType::currency:
    case ColumnType::single:
    case ColumnType::double_:
    case ColumnType::numeric:
      return true;
    default:
      return false;
  }
}

}  // namespace

RecordColumn recordColumn(const std::string& name, bool isNumber) {
  ColumnTitle title = columnTitle(name);
  RecordColumn column{name, std::move(title.text), std::move(title.unit), isNumber};
  if (name == "typeID") column.names = kShadingTypeNames;
  return column;
}

std::string cellText(const RecordColumn& column, const store::Value& value, int digits) {
  const bool isCode = !column.names.empty() && !value.isNull();
  return isCode ? codeText(column.names, value.toLong()) : cellText(value, digits);
}

namespace {

/// A database's record set. The record set itself keeps what has been read.
class RecordsetTable : public RecordTable {
 public:
  explicit RecordsetTable(const sources::datasource& node)
      : rows_(node.ADOConnection()->openRecordset(
            node.DisplayRecordSetName(), store::CursorType::static_, store::LockType::readOnly)) {
    arrangeFields(identifierColumn(node.DataType()));
    if (rows_->eof()) complete_ = true;
  }

  void readTo(std::size_t rows) override {
    if (complete_ || rows <= read_) return;
    rows_->moveTo(static_cast<std::int64_t>(rows) - 1);
    complete_ = rows_->eof();
    read_ = complete_ ? static_cast<std::size_t>(rows_->recordCount()) : rows;
  }
  std::size_t rowsRead() const override { return read_; }
  bool isComplete() const override { return complete_; }

  store::Value value(std::size_t row, std::size_t column) const override {
    const auto position = static_cast<std::int64_t>(row);
    if (rows_->eof() || rows_->position() != position) rows_->moveTo(position);
    return rows_->eof() ? store::Value() : rows_->value(fields_[column]);
  }

 private:
  /// The identifier first, the others in their order.
  void arrangeFields(const std::string& identifier) {
    const auto& fields = rows_->fields();
    for (std::size_t i = 0; i < fields.size(); ++i) fields_.push_back(i);
    const auto key = std::find_if(fields_.begin(), fields_.end(), [&](std::size_t i) {
      return equalIgnoringCase(fields[i].name, identifier);
    });
    if (key != fields_.end()) std::rotate(fields_.begin(), key, key + 1);
    for (const std::size_t field : fields_) {
      columns_.push_back(recordColumn(fields[field].name, holdsNumbers(fields[field].type)));
    }
  }

  std::unique_ptr<store::Recordset> rows_;
  std::vector<std::size_t> fields_;  ///< position in the record set of each column
  std::size_t read_ = 0;
  bool complete_ = false;
};

/// The files of a folder that the user opened.
class FolderTable : public RecordTable {
 public:
  explicit FolderTable(const sources::datasource& node) : names_(recordIdentifiers(node)) {
    columns_.push_back(recordColumn("Filename", false));
  }

  void readTo(std::size_t /*rows*/) override {}
  std::size_t rowsRead() const override { return names_.size(); }
  bool isComplete() const override { return true; }
  store::Value value(std::size_t row, std::size_t /*column*/) const override { return names_[row]; }

 private:
  std::vector<std::string> names_;
};

}  // namespace

void RecordTable::readAll() {
  constexpr std::size_t kRowsAtOnce = 10000;
  while (!isComplete()) readTo(rowsRead() + kRowsAtOnce);
}

std::unique_ptr<RecordTable> openRecordTable(const std::shared_ptr<sources::datasource>& node) {
  if (node->DataType() == DataType::textFolder) return std::make_unique<FolderTable>(*node);
  if (!node->ADOConnection() || node->DisplayRecordSetName().empty()) {
    throw Error(kInvalidCall, "\"" + node->text() + "\" has no records to show.");
  }
  return std::make_unique<RecordsetTable>(*node);
}

}  // namespace orv::commands
