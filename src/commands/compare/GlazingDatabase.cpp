// Panes of the IGDB and of Optics5 user databases, table by table.
#include <map>
#include <unordered_map>

#include "commands/ErrorText.h"
#include "commands/GroupName.h"
#include "commands/compare/Fields.h"
#include "commands/compare/ModelRecords.h"
#include "commands/compare/RecordReading.h"
#include "database/Fields.h"
#include "database/IgdbRows.h"
#include "database/Recordsets.h"
#include "store/TextKey.h"

namespace orv::commands::compare {

namespace {

constexpr double kNanometersPerMicron = 1000;

class GlazingRecords {
 public:
  explicit GlazingRecords(const Reading& reading)
      : reading_(reading),
        connection_(*reading.node->ADOConnection()),
        group_(groupOfSource(*reading.node)) {
    result_.kind = RecordKind::panes;
    result_.hasGroups = group_.has_value();
  }

  RecordSet read() {
    const auto state = connection_.holdState();
    readRows();
    readKeys();
    if (reading_.wantsCurves) {
      readCurves();
      for (const auto& [position, name] : substrates_) addSubstrate(position, name);
    }
    return std::move(result_);
  }

 private:
  void readRows() {
    auto rows = database::openSql(connection_, "SELECT * FROM qryOptics5Grid ORDER BY FileName");
    for (; !rows->eof(); rows->moveNext()) {
      reading_.goOn();
      const std::string name = database::FieldToString(rows->value("FileName"));
      try {
        GlazingData pane;
        database::readIgdbProperties(pane, *rows);
        Record record = recordOf(name, pane, columnsNotGiven(pane));
        setGroup(record);
        if (pane.with_and_without_film()) {
          substrates_.emplace(result_.records.size(),
                              database::FieldToString(rows->value("Substrate_FileName")));
        }
        positions_.emplace(store::textKey(name), result_.records.size());
        result_.records.push_back(std::move(record));
      } catch (const Error& error) {
        result_.failures.push_back(name + " cannot be read: " + describe(error));
      }
    }
  }

  /// The group into which a copy puts them.
  void setGroup(Record& record) const {
    if (!group_) return;
    record.group = *group_;
    record.fields[positionOf(RecordKind::panes, "groupID")] = store::Value(record.group);
  }

  /// A copy brings the substrate of a pane with film, where it is another pane that has data at the
  /// same wavelengths; else the pane goes without.
  void addSubstrate(std::size_t position, const std::string& name) {
    Record& record = result_.records[position];
    if (record.curves.empty()) return;
    Curves& own = record.curves.front();
    const auto found = positions_.find(store::textKey(name));
    const Record* other = found == positions_.end() ? nullptr : &result_.records[found->second];
    const bool fits = other && !other->curves.empty() && other->curves.front().grid == own.grid &&
                      isFraction(other->curves.front());
    if (!fits) {
      record.fields[positionOf(RecordKind::panes, kFilmColumn)] = store::Value(false);
      return;
    }
    const auto& curves = other->curves.front().values;
    std::vector<Samples> both{curves[0], curves[1]};
    own.values.insert(own.values.end(), both.begin(), both.end());
  }

  static bool isFraction(const Curves& curves) {
    for (std::size_t curve = 0; curve < 2; ++curve) {
      for (std::size_t i = 0; i < curves.grid->size(); ++i) {
        const double value = curves.values[curve][i];
        if (!(value >= 0 && value <= 1)) return false;
      }
    }
    return true;
  }

  /// The keys of the panes, and their integrated values.
  void readKeys() {
    for (auto rows = database::openTable(connection_, "GlazingProperties"); !rows->eof();
         rows->moveNext()) {
      const auto found =
          positions_.find(store::textKey(database::FieldToString(rows->value("FileName"))));
      if (found == positions_.end()) continue;
      keys_.emplace(rows->value("GlazingID").toLong(), found->second);
      GlazingData pane;
      database::readIgdbIntegrated(pane, *rows);
      auto& integrated = result_.records[found->second].integrated.emplace();
      if (auto row = integratedOf(pane)) integrated.push_back(std::move(*row));
    }
  }

  void readCurves() {
    const auto rows =
        connection_.openRecordset("SpectralData", store::CursorType::forwardOnly,
                                  store::LockType::readOnly, store::SourceKind::table);
    const std::size_t key = rows->fieldIndex("GlazingID");
    const std::size_t wavelength = rows->fieldIndex("Wavelength");
    const std::vector<std::size_t> columns{rows->fieldIndex("T"), rows->fieldIndex("Rf"),
                                           rows->fieldIndex("Rb")};
    CurveRows curves(reading_.grids, std::vector<bool>(columns.size(), true));
    constexpr int kRowsAtOnce = 4096;
    for (int count = 0; !rows->eof(); rows->moveNext()) {
      if (++count % kRowsAtOnce == 0) reading_.goOn();
      const auto found = keys_.find(database::FieldToLong(rows->value(key)));
      if (found == keys_.end()) continue;
      curves.begin({.record = found->second, .angle = 0},
                   database::FieldToDouble(rows->value(wavelength)) * kNanometersPerMicron);
      for (std::size_t i = 0; i < columns.size(); ++i) {
        curves.add(i, database::FieldToDouble(rows->value(columns[i])));
      }
    }
    curves.giveTo(result_.records);
  }

  const Reading& reading_;
  store::Connection& connection_;
  std::optional<std::string> group_;
  RecordSet result_;
  std::unordered_map<std::string, std::size_t> positions_;  ///< by name
  std::unordered_map<std::int32_t, std::size_t> keys_;
  std::map<std::size_t, std::string> substrates_;  ///< names, of panes with film
};

}  // namespace

RecordSet readGlazingDatabase(const Reading& reading) {
  return GlazingRecords(reading).read();
}

}  // namespace orv::commands::compare
