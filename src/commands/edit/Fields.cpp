// The fields of each set. Their names are those of RecordDetails.cpp and ShadingDetails.cpp.
#include <algorithm>

#include "commands/ShadingFieldNames.h"
#include "commands/edit/Field.h"
#include "model/IntegratedColumns.h"
#include "model/ShadingTypes.h"
#include "model/Text.h"

namespace orv::commands::edit {

namespace {

constexpr double kLongest = 1e5;  ///< mm
constexpr double kThickest = 1e3;
constexpr double kBestConductor = 500;  ///< W/(m·K): above copper
constexpr double kHighestUValue = 20;
constexpr double kWidestFrame = 10;  ///< m

EditField text(std::string name, std::string column, bool mayBeEmpty = true) {
  EditField field{
      .name = std::move(name), .column = std::move(column), .shownColumn = {}, .unit = {}};
  field.mayBeEmpty = mayBeEmpty;
  return field;
}

EditField choice(std::string name, EditSet choices, EditSet of) {
  EditField field = text(std::move(name), referenceColumn(choices, of), false);
  field.type = FieldType::choice;
  field.choices = choices;
  field.shownColumn = designOf(choices).shownName;
  return field;
}

EditField number(std::string name, std::string column, double least, double most,
                 std::string unit = "") {
  EditField field = text(std::move(name), std::move(column), false);
  field.type = FieldType::number;
  field.least = least;
  field.most = most;
  field.unit = std::move(unit);
  return field;
}

EditField fraction(std::string name, std::string column) {
  return number(std::move(name), std::move(column), 0, 1);
}

EditField flag(std::string name, std::string column) {
  EditField field = text(std::move(name), std::move(column), false);
  field.type = FieldType::flag;
  return field;
}

std::vector<EditField> paneFields() {
  std::vector<EditField> fields{text("name", "name", false),
                                text("product name", "product_name"),
                                choice("supplier", EditSet::suppliers, EditSet::panes),
                                choice("group", EditSet::groups, EditSet::panes),
                                text("description", "info"),
                                text("acceptance", "acceptance"),
                                number("thickness", "thickness", 0, kThickest, "mm"),
                                number("conductivity", "conduction", 0, kBestConductor, "W/(m·K)"),
                                fraction("infrared transmittance front", "transmission_IR_outdoor"),
                                fraction("infrared transmittance back", "transmission_IR_indoor"),
                                fraction("database emissivity front", "emission_IR_outdoor"),
                                fraction("database emissivity back", "emission_IR_indoor"),
                                text("coating class", "coatingcode"),
                                flag("frozen", "freeze"),
                                flag("single layer", "single_layer"),
                                flag("spectral pane", "spectral_pane"),
                                flag("with and without film", "with_and_without_film"),
                                flag("film on outdoor side", "film_outdoor_side"),
                                flag("data at 0, 30 and 60 degrees", "0_30_60"),
                                flag("use estimation", "use_estimation")};
  std::ranges::find(fields, "coatingcode", &EditField::column)->isCapital = true;
  for (const IntegratedColumn& column : kIntegratedColumns) {
    fields.push_back(fraction(column.title, column.column));
    fields.back().perAngle = true;
  }
  return fields;
}

std::vector<EditField> frameFields() {
  return {text("name", "name", false),
          text("product name", "product_name"),
          choice("supplier", EditSet::suppliers, EditSet::frames),
          choice("group", EditSet::groups, EditSet::frames),
          choice("frame type", EditSet::frameTypes, EditSet::frames),
          number("U-value", "u_value", 0, kHighestUValue, "W/(m²·K)"),
          number("width", "width", 0, kWidestFrame, "m"),
          text("info", "Info")};
}

/// The field of a column of shadings.
struct ShadingField {
  std::string name;
  std::string column;

  EditField operator()(database::ShadingKey key) const {
    const bool isGroup = key == database::ShadingKey::group;
    return choice(name, isGroup ? EditSet::groups : EditSet::suppliers, EditSet::shadings);
  }
  EditField operator()(Property<double> ShadingDataClass::*member) const {
    constexpr double kHalfTurn = 180;
    const std::string unit = shadingUnit(member);
    if (unit.empty()) return fraction(name, column);
    if (unit == "°") return number(name, column, -kHalfTurn, kHalfTurn, unit);
    return number(name, column, 0, unit == "mm" ? kLongest : kBestConductor, unit);
  }
  EditField operator()(Property<bool> ShadingDataClass::*) const { return flag(name, column); }
  EditField operator()(Property<std::int32_t> ShadingDataClass::*member) const {
    EditField field = number(name, column, INT32_MIN, INT32_MAX);
    field.type = FieldType::whole;
    if (member == &ShadingDataClass::typeID) {
      field.codes = kShadingTypeNames;
      field.least = 0;
      field.most = kShadingTypeNames.back().code;
    }
    return field;
  }
  EditField operator()(Property<std::string> ShadingDataClass::*member) const {
    return text(name, column, member != &ShadingDataClass::name);
  }
};

std::vector<EditField> shadingFields() {
  std::vector<EditField> fields;
  for (const auto& column : database::shadingColumns()) {
    const ShadingField field{distinctShadingFieldName(column.name), column.name};
    fields.push_back(std::visit(field, column.member));
  }
  for (const IntegratedColumn& column : kIntegratedColumns) {
    fields.push_back(fraction(column.column, column.column));
    fields.back().perAngle = true;
  }
  return fields;
}

std::vector<EditField> fieldsOf(EditSet set) {
  switch (set) {
    case EditSet::panes:
      return paneFields();
    case EditSet::frames:
      return frameFields();
    case EditSet::shadings:
      return shadingFields();
    default:
      return {text("name", designOf(set).nameColumn, false)};
  }
}

/// What the columns of a table are like.
class Columns {
 public:
  Columns(const store::Connection& database, const char* table) : table_(database.table(table)) {}

  const store::ColumnInfo* find(const std::string& name) const {
    const auto found = std::ranges::find_if(table_.columns, [&](const store::ColumnInfo& column) {
      return equalIgnoringCase(column.name, name);
    });
    return found == table_.columns.end() ? nullptr : &*found;
  }

 private:
  store::TableInfo table_;
};

/// The longest name that a set of names takes.
std::size_t longestName(EditSet names, const store::Connection& database) {
  const SetDesign& design = designOf(names);
  const Columns columns(database, design.table);
  const store::ColumnInfo* column = columns.find(design.nameColumn);
  return column ? column->size : 0;
}

}  // namespace

const char* angleTable(EditSet set) {
  return set == EditSet::panes      ? "Pane_integrated_data"
         : set == EditSet::shadings ? "Shading_integrated_data_temp"
                                    : nullptr;
}

std::vector<EditField> editFields(EditSet set, const store::Connection& database) {
  const Columns columns(database, designOf(set).table);
  std::optional<Columns> ofAngles;
  if (const char* table = angleTable(set)) ofAngles.emplace(database, table);
  std::vector<EditField> fields;
  for (EditField& field : fieldsOf(set)) {
    const auto* column = (field.perAngle ? *ofAngles : columns).find(field.column);
    if (!column) continue;
    field.isSingle = column->type == store::ColumnType::single;
    if (field.choices) {
      field.longest = longestName(*field.choices, database);
    } else {
      field.longest = column->size;
      if (!field.perAngle) field.shownColumn = column->name;
    }
    fields.push_back(std::move(field));
  }
  return fields;
}

}  // namespace orv::commands::edit
