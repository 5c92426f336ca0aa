// Records of ORV databases of versions 2.0.1 and 3.0.0, table by table.
#include <algorithm>
#include <unordered_map>

#include "commands/RecordList.h"
#include "commands/compare/CurveRows.h"
#include "commands/compare/Fields.h"
#include "commands/compare/ModelRecords.h"
#include "commands/compare/RecordReading.h"
#include "database/Fields.h"
#include "database/Lookups.h"
#include "database/Recordsets.h"
#include "model/IntegratedColumns.h"

namespace orv::commands::compare {

namespace {

using database::FieldToDouble;
using database::FieldToLong;
using database::FieldToString;
using database::findField;
using Position = std::optional<std::size_t>;

/// The tables of a kind of record.
struct Tables {
  const char* records;
  const char* integrated;  ///< null where there are none
  const char* spectra;
};

Tables tablesOf(RecordKind kind) {
  switch (kind) {
    case RecordKind::panes:
      return {"Pane", "Pane_integrated_data", "Pane_spectral_data"};
    case RecordKind::frames:
      return {"Frame", nullptr, nullptr};
    case RecordKind::shadings:
      break;
  }
  return {"Shading", "Shading_integrated_data_temp", "Shading_spectral_data"};
}

const database::LookupTable& tableOf(Lookup lookup) {
  switch (lookup) {
    case Lookup::group:
      return database::kGroups;
    case Lookup::supplier:
      return database::kSuppliers;
    default:
      return database::kFrameTypes;
  }
}

class OrvRecords {
 public:
  explicit OrvRecords(const Reading& reading)
      : reading_(reading),
        connection_(*reading.node->ADOConnection()),
        tables_(tablesOf(reading.kind)),
        key_(identifierColumn(reading.node->DataType())) {
    result_.kind = reading.kind;
    result_.isOfOrvDatabase = true;
  }

  RecordSet read() {
    const auto state = connection_.holdState();
    readRows();
    if (reading_.wantsIntegrated && has(tables_.integrated)) readIntegrated();
    if (reading_.wantsCurves && has(tables_.spectra)) readCurves();
    if (reading_.wantsCurves && reading_.kind == RecordKind::panes) findEmptyPanes();
    return std::move(result_);
  }

 private:
  using Names = std::unordered_map<std::int32_t, std::string>;

  /// A field and where its value is.
  struct Source {
    const Field* field;
    Position position;
    Names names = {};
  };

  bool has(const char* table) const {
    if (table == nullptr) return false;
    return std::ranges::any_of(connection_.tableNames(), [&](const std::string& name) {
      return equalIgnoringCase(name, table);
    });
  }

  database::RecordsetPtr open(const char* table) const {
    return connection_.openRecordset(table, store::CursorType::forwardOnly,
                                     store::LockType::readOnly, store::SourceKind::table);
  }

  Names namesOf(Lookup lookup) const {
    const auto& table = tableOf(lookup);
    return has(table.table) ? database::allNames(table, connection_) : Names();
  }

  std::vector<Source> sourcesOf(const store::Recordset& rows) {
    std::vector<Source> sources;
    for (const Field& field : fieldsOf(reading_.kind)) {
      Source source{&field, findField(rows, field.column.c_str())};
      if (source.position && field.lookup != Lookup::none) source.names = namesOf(field.lookup);
      if (source.position && field.lookup == Lookup::group) result_.hasGroups = true;
      if (!source.position && !field.textColumn.empty()) {
        source.position = findField(rows, field.textColumn.c_str());
      }
      sources.push_back(std::move(source));
    }
    return sources;
  }

  static Cell cellOf(const Source& source, const store::Recordset& rows) {
    if (!source.position) return {};
    store::Value value = rows.value(*source.position);
    if (source.field->lookup == Lookup::none) return value;
    if (value.getIf<std::string>()) return store::Value(knownName(value.toText()));
    const auto found = source.names.find(FieldToLong(value));
    return store::Value(knownName(found == source.names.end() ? "" : found->second));
  }

  void readRows() {
    const auto rows = open(tables_.records);
    const auto sources = sourcesOf(*rows);
    const std::size_t key = rows->fieldIndex(key_);
    std::vector<std::pair<std::int32_t, Record>> read;
    for (; !rows->eof(); rows->moveNext()) {
      reading_.goOn();
      Record record;
      for (const Source& source : sources) {
        Cell cell = cellOf(source, *rows);
        if (source.field->lookup == Lookup::group && cell) record.group = cell->toText();
        record.fields.push_back(std::move(cell));
      }
      record.name = FieldToString(*record.fields.front());
      const std::int32_t id = FieldToLong(rows->value(key));
      record.identifiers.push_back(std::to_string(id));
      read.emplace_back(id, std::move(record));
    }
    std::ranges::stable_sort(read, {}, [](const auto& each) { return each.first; });
    for (auto& [id, record] : read) {
      positions_.emplace(id, result_.records.size());
      result_.records.push_back(std::move(record));
    }
  }

  /// The record that a row of details belongs to; none for one that is gone.
  Position recordOf(const store::Recordset& rows, std::size_t key) const {
    const auto found = positions_.find(FieldToLong(rows.value(key)));
    return found == positions_.end() ? Position() : found->second;
  }

  void readIntegrated() {
    for (Record& record : result_.records) record.integrated.emplace();
    const auto rows = open(tables_.integrated);
    const std::size_t key = rows->fieldIndex(key_);
    const Position angle = findField(*rows, "angle");
    std::vector<Position> columns;
    for (const auto& value : kIntegratedColumns) columns.push_back(findField(*rows, value.column));
    for (; !rows->eof(); rows->moveNext()) {
      const Position record = recordOf(*rows, key);
      if (!record) continue;
      auto& row = result_.records[*record].integrated->emplace_back();
      if (angle) row.angle = FieldToDouble(rows->value(*angle));
      for (const Position& column : columns) {
        row.values.push_back(column ? Cell(rows->value(*column)) : Cell());
      }
    }
    for (Record& record : result_.records) {
      std::ranges::stable_sort(*record.integrated, {}, &IntegratedRow::angle);
    }
  }

  void findEmptyPanes() {
    for (Record& record : result_.records) {
      record.isWithoutData =
          record.curves.empty() && (!record.integrated || record.integrated->empty());
    }
  }

  /// Version 2.0.1 does not tell the spectra of several angles apart.
  bool tellsAngles() const { return reading_.node->DataType() != sources::DataType::orv2Panes; }

  void readCurves() {
    const auto rows = open(tables_.spectra);
    const std::size_t key = rows->fieldIndex(key_);
    const std::size_t wavelength = rows->fieldIndex("wavelength");
    const Position angle = tellsAngles() ? findField(*rows, "angle") : Position();
    const Position direction = findField(*rows, "direction");
    std::vector<Position> columns;
    std::vector<bool> areSingle;
    for (const CurveName& curve : curveNames(reading_.kind)) {
      const Position column = findField(*rows, curve.column);
      if (!column) result_.unknownCurves.insert(columns.size());
      columns.push_back(column);
      areSingle.push_back(storedInSingle(reading_.kind) ||
                          (column && rows->fields()[*column].type == store::ColumnType::single));
    }
    CurveRows curves(reading_.grids, areSingle);
    constexpr int kRowsAtOnce = 4096;
    for (int count = 0; !rows->eof(); rows->moveNext()) {
      if (++count % kRowsAtOnce == 0) reading_.goOn();
      const Position record = recordOf(*rows, key);
      if (!record) continue;
      CurveKey measurement{.record = *record};
      if (angle) measurement.angle = FieldToDouble(rows->value(*angle));
      if (direction) measurement.direction = FieldToLong(rows->value(*direction));
      curves.begin(measurement, FieldToDouble(rows->value(wavelength)));
      for (std::size_t i = 0; i < columns.size(); ++i) {
        curves.add(i, columns[i] ? FieldToDouble(rows->value(*columns[i])) : 0);
      }
    }
    curves.giveTo(result_.records);
  }

  const Reading& reading_;
  store::Connection& connection_;
  Tables tables_;
  const char* key_;
  RecordSet result_;
  std::unordered_map<std::int32_t, std::size_t> positions_;
};

}  // namespace

RecordSet readOrvRecords(const Reading& reading) {
  return OrvRecords(reading).read();
}

}  // namespace orv::commands::compare
