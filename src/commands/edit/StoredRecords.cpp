#include "commands/edit/StoredRecords.h"

#include <fmt/format.h>

#include <algorithm>

#include "database/Fields.h"
#include "errors/Error.h"
#include "model/Text.h"
#include "store/StoreError.h"
#include "store/TextKey.h"

namespace orv::commands::edit {

using database::FieldToLong;
using database::FieldToString;

namespace {

std::vector<store::Value> valuesOf(const store::Recordset& rows) {
  std::vector<store::Value> values;
  for (std::size_t i = 0; i < rows.fields().size(); ++i) values.push_back(rows.value(i));
  return values;
}

/// A value as Editor::value() gives it.
store::Value asField(const EditField& field, const store::Value& value) {
  switch (field.type) {
    case FieldType::text:
    case FieldType::choice:
      return FieldToString(value);
    case FieldType::flag:
      return !value.isNull() && value.toBoolean();
    case FieldType::number:
    case FieldType::whole:
      break;
  }
  if (value.isNull()) return {};
  if (field.type == FieldType::whole) return value.toLong();
  return field.isSingle ? store::Value(static_cast<float>(value.toDouble()))
                        : store::Value(value.toDouble());
}

}  // namespace

const std::optional<StoredRecords::Row>& StoredRecords::row(std::int32_t record) {
  const auto known = records_.find(record);
  if (known != records_.end()) return known->second;
  if (!rows_) rows_ = database::openTable(database_, design_.table);
  rows_->moveFirst();
  rows_->find(fmt::format("{} = '{}'", design_.key, record));
  return records_[record] = rows_->eof() ? std::nullopt : std::optional(valuesOf(*rows_));
}

const std::vector<StoredRecords::AngleRow>& StoredRecords::angleRows(std::int32_t record) {
  const auto known = angleRows_.find(record);
  if (known != angleRows_.end()) return known->second;
  std::vector<AngleRow>& found = angleRows_[record];
  const char* table = angleTable(design_.set);
  if (!table) return found;
  auto rows = database::openSql(
      database_, fmt::format("SELECT * FROM {} WHERE {} = {}", table, design_.key, record));
  angleColumns_ = rows->fields();
  for (; !rows->eof(); rows->moveNext()) {
    const std::int32_t angle = FieldToLong(rows->value("angle"));
    found.push_back({static_cast<std::int16_t>(angle), valuesOf(*rows)});
  }
  return found;
}

std::vector<std::int16_t> StoredRecords::angles(std::int32_t record) {
  std::vector<std::int16_t> angles;
  for (const AngleRow& row : angleRows(record)) angles.push_back(row.angle);
  return angles;
}

store::Value StoredRecords::column(std::int32_t record, const std::string& name) {
  const auto& values = row(record);
  if (!values) raiseMissing(record);
  return (*values)[rows_->fieldIndex(name)];
}

std::string StoredRecords::text(std::int32_t record, const std::string& name) {
  return FieldToString(column(record, name));
}

std::int32_t StoredRecords::key(std::int32_t record, const std::string& name) {
  return FieldToLong(column(record, name));
}

store::Value StoredRecords::value(std::int32_t record, const EditField& field,
                                  std::optional<std::int16_t> angle) {
  if (field.choices) {
    const auto& all = names(*field.choices);
    const auto name = all.find(key(record, field.column));
    return name == all.end() ? std::string() : name->second;
  }
  if (!field.perAngle) return asField(field, column(record, field.column));
  if (!exists(record)) raiseMissing(record);
  const auto& rows = angleRows(record);
  const auto row =
      std::ranges::find_if(rows, [&](const AngleRow& each) { return each.angle == angle; });
  if (row == rows.end()) {
    throw Error(kInvalidCall, fmt::format("The {} {} has no values at {} degrees.", design_.one,
                                          record, angle.value_or(0)));
  }
  const auto at = std::ranges::find_if(angleColumns_, [&](const store::ColumnInfo& each) {
    return equalIgnoringCase(each.name, field.column);
  });
  return asField(field, row->values[static_cast<std::size_t>(at - angleColumns_.begin())]);
}

const std::map<std::int32_t, std::string>& StoredRecords::names(EditSet set) {
  const auto known = names_.find(set);
  if (known != names_.end()) return known->second;
  const SetDesign& design = designOf(set);
  auto& names = names_[set];
  for (auto rows = database::openTable(database_, design.table); !rows->eof(); rows->moveNext()) {
    names.emplace(FieldToLong(rows->value(design.key)),
                  FieldToString(rows->value(design.nameColumn)));
  }
  return names;
}

std::string StoredRecords::knownName(EditSet set, const std::string& name) {
  const auto [known, isNew] = namesByKey_.try_emplace(set);
  if (isNew) {
    for (const auto& [id, each] : names(set)) {
      known->second.emplace(nameKey(database_, set, each), each);
    }
  }
  const auto found = known->second.find(nameKey(database_, set, name));
  return found == known->second.end() ? name : found->second;
}

void StoredRecords::raiseMissing(std::int32_t record) const {
  throw Error(kInvalidCall, fmt::format("There is no {} {}.", design_.one, record));
}

std::string nameKey(store::Connection& database, EditSet set, const std::string& name) {
  const SetDesign& design = designOf(set);
  try {
    return store::textKey(database, design.table, design.nameColumn, name);
  } catch (const Error& error) {
    if (error.number() != store::kNotSupported) throw;
    return lowerCase(name);
  }
}

}  // namespace orv::commands::edit
