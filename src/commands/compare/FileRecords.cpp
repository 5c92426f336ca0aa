// Records of text files and of files of products.
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <map>

#include "commands/ErrorText.h"
#include "commands/RecordList.h"
#include "commands/RecordReader.h"
#include "commands/compare/Fields.h"
#include "commands/compare/ModelRecords.h"
#include "commands/compare/RecordReading.h"
#include "commands/compare/Values.h"
#include "database/SpectralValidation.h"
#include "store/TextKey.h"

namespace orv::commands::compare {

namespace {

class FileRecords {
 public:
  explicit FileRecords(const Reading& reading)
      : reading_(reading),
        reader_(reading.session, reading.node),
        curves_(reading.grids,
                std::vector<bool>(curveNames(reading.kind).size(), storedInSingle(reading.kind))) {
    result_.kind = reading.kind;
    result_.areFiles = true;
  }

  RecordSet read() {
    for (const std::string& file : recordIdentifiers(*reading_.node)) {
      reading_.goOn();
      reading_.session.ui.status("Reading " + file + "...");
      try {
        reading_.kind == RecordKind::panes ? readPane(file) : readShading(file);
      } catch (const Error& error) {
        result_.failures.push_back(file + " cannot be read: " + describe(error));
      }
    }
    curves_.giveTo(result_.records);
    return std::move(result_);
  }

 private:
  void readPane(const std::string& file) {
    std::vector<std::shared_ptr<GlazingData>> panes;
    for (const std::int16_t angle : reader_.angles(file)) {
      panes.push_back(reader_.pane(file, angle));
      reader_.readReferences(file, panes.back());
      dropUnfitSubstrate(*panes.back());
    }
    Record& record = recordFor(file, panes);
    const auto position = static_cast<std::size_t>(&record - result_.records.data());
    for (const auto& pane : panes) {
      angles_[position].push_back(pane->ORV_Angle());
      if (reading_.wantsCurves) addCurves(*pane, position, curves_);
      auto row = reading_.wantsIntegrated ? integratedOf(*pane) : std::nullopt;
      if (!row) continue;
      if (!record.integrated) record.integrated.emplace();
      record.integrated->push_back(std::move(*row));
    }
    if (record.integrated) {
      std::ranges::stable_sort(*record.integrated, {}, &IntegratedRow::angle);
    }
  }

  /// A copy leaves out a substrate that has no data at the wavelengths of the pane.
  static void dropUnfitSubstrate(GlazingData& pane) {
    if (!pane.HasSubstrate() || !pane.SpectralData()) return;
    try {
      database::checkSubstrate(*pane.SpectralData(), *pane.SubstrateReference());
    } catch (const Error&) {
      pane.with_and_without_film(false);
      pane.SubstrateReference(nullptr);
    }
  }

  /// The record of another file, where that holds the same pane at other angles; a new one else.
  Record& recordFor(const std::string& file,
                    const std::vector<std::shared_ptr<GlazingData>>& panes) {
    const std::string name = store::textKey(panes.front()->filename());
    const auto missing = reader_.columnsNotGiven(file, *panes.front());
    if (const auto known = positions_.find(name); known != positions_.end()) {
      const auto& angles = angles_[known->second];
      const bool isOther = std::ranges::none_of(panes, [&](const auto& pane) {
        return std::ranges::find(angles, pane->ORV_Angle()) != angles.end();
      });
      if (isOther) {
        Record& record = result_.records[known->second];
        record.identifiers.push_back(file);
        tellDisagreement(record, file, cellsOf(*panes.front(), missing));
        return record;
      }
    }
    positions_.emplace(name, result_.records.size());
    return result_.records.emplace_back(recordOf(file, *panes.front(), missing));
  }

  void tellDisagreement(const Record& record, const std::string& file,
                        const std::vector<Cell>& cells) {
    const auto& fields = fieldsOf(RecordKind::panes);
    std::vector<std::string> others;
    for (std::size_t i = 0; i < fields.size(); ++i) {
      const store::Value first = record.fields[i].value_or(store::Value());
      const store::Value other = cells[i].value_or(store::Value());
      if (!areSameInField(fields[i], first, other, 0)) others.push_back(fields[i].name);
    }
    if (others.empty()) return;
    result_.remarks.push_back(
        fmt::format("{} and {} are files of one pane and differ in {}: that of "
                    "the first is taken.",
                    record.identifiers.front(), file, fmt::join(others, ", ")));
  }

  void readShading(const std::string& file) {
    const auto shading = reader_.shading(file);
    if (reading_.wantsCurves) addCurves(*shading, result_.records.size(), curves_);
    result_.records.push_back(recordOf(file, *shading, reader_.columnsNotGiven(file, *shading)));
  }

  const Reading& reading_;
  RecordReader reader_;
  CurveRows curves_;
  RecordSet result_;
  std::map<std::string, std::size_t> positions_;  ///< of panes, by name
  std::map<std::size_t, std::vector<std::int16_t>> angles_;
};

}  // namespace

RecordSet readFiles(const Reading& reading) {
  return FileRecords(reading).read();
}

}  // namespace orv::commands::compare
