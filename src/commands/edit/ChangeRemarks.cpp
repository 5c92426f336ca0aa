// What changes make untrue elsewhere.
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "commands/edit/ChangeReview.h"
#include "database/Fields.h"

namespace orv::commands::edit {

namespace {

/// Remarks of the same words are one, with the names of the records.
class RemarkList {
 public:
  void add(const std::string& what, const std::string& record) {
    auto found = std::ranges::find(remarks_, what, &Remark::what);
    if (found == remarks_.end()) {
      remarks_.push_back({what, {}});
      found = std::prev(remarks_.end());
    }
    if (std::ranges::find(found->records, record) == found->records.end()) {
      found->records.push_back(record);
    }
  }

  std::vector<std::string> take() const {
    constexpr std::size_t kNamed = 5;
    std::vector<std::string> lines;
    for (const Remark& remark : remarks_) {
      const auto named = std::min(remark.records.size(), kNamed);
      const std::span first(remark.records.data(), named);
      const auto more = remark.records.size() - named;
      lines.push_back(fmt::format("{}: {}{}.", remark.what, fmt::join(first, ", "),
                                  more > 0 ? fmt::format(" and {} more", more) : ""));
    }
    return lines;
  }

 private:
  struct Remark {
    std::string what;
    std::vector<std::string> records;
  };
  std::vector<Remark> remarks_;
};

bool isThermal(const EditField& field) {
  return field.column.starts_with("emission_IR") || field.column.starts_with("transmission_IR");
}

/// What depends on the fields of one pane.
class PaneRemarks {
 public:
  PaneRemarks(store::Connection& database, StoredRecords& records, RemarkList& remarks)
      : database_(database), records_(records), remarks_(remarks) {}

  void lookAt(const Change& change, const EditField& field) {
    pane_ = change.record;
    const bool isSpectral = flag("spectral_pane");
    const auto angles = records_.angles(pane_);
    if (field.column == "thickness" && (isSpectral || !angles.empty())) {
      say("The spectrum and the integrated values stay those of the former thickness");
    } else if (isThermal(field) && isSpectral && reachesInfrared()) {
      say("The emissivities and infrared transmittances are no longer those of the spectrum");
    } else if (field.perAngle && isSpectral) {
      say("Integrated values are no longer those of the spectrum (\"orv integrate --store\" "
          "computes them)");
    } else if (field.column == "spectral_pane") {
      lookAtSpectrum(change.after == store::Value(true));
    } else if (field.column == "0_30_60" && change.after == store::Value(true) && !hasAll(angles)) {
      say("There are not data at all of 0, 30 and 60 degrees");
    }
    if (flag("freeze") && field.column != "freeze") say("The record is frozen");
  }

 private:
  void say(const std::string& what) { remarks_.add(what, records_.text(pane_, "name")); }

  bool flag(const std::string& column) { return records_.key(pane_, column) != 0; }

  static bool hasAll(const std::vector<std::int16_t>& angles) {
    return std::ranges::all_of(std::initializer_list<std::int16_t>{0, 30, 60}, [&](auto angle) {
      return std::ranges::find(angles, angle) != angles.end();
    });
  }

  double longestWavelength() {
    auto rows = database::openSql(
        database_,
        fmt::format("SELECT MAX(wavelength) FROM Pane_spectral_data WHERE PaneID = {}", pane_));
    return database::FieldToDouble(rows->value(std::size_t{0}));
  }

  bool reachesInfrared() {
    constexpr double kThermalInfrared = 5000;  // nm
    return longestWavelength() > kThermalInfrared;
  }

  void lookAtSpectrum(bool isSpectral) {
    const bool hasSpectrum = longestWavelength() > 0;
    if (isSpectral && !hasSpectrum) say("There is no spectrum, though the pane is spectral now");
    if (!isSpectral && hasSpectrum) say("The spectrum is kept, but is not read any more");
  }

  store::Connection& database_;
  StoredRecords& records_;
  RemarkList& remarks_;
  std::int32_t pane_ = 0;
};

/// Shadings of one name in one group are told apart by nothing that people see.
void lookForSameShading(const Change& change, StoredRecords& records, RemarkList& remarks,
                        store::Connection& database) {
  if (change.field != "name") return;
  for (auto rows = database::openTable(database, designOf(EditSet::shadings).table); !rows->eof();
       rows->moveNext()) {
    const bool isOther = database::FieldToLong(rows->value("Shading_id")) != change.record;
    if (isOther && database::FieldToString(rows->value("name")) == change.after.toText() &&
        database::FieldToLong(rows->value("groupnameID")) ==
            records.key(change.record, "groupnameID")) {
      remarks.add("There is another shading of this name in the group", change.after.toText());
    }
  }
}

}  // namespace

std::vector<std::string> remarksOn(const std::vector<Change>& changes, EditSet set,
                                   const std::vector<EditField>& fields,
                                   store::Connection& database, StoredRecords& records) {
  RemarkList remarks;
  PaneRemarks ofPanes(database, records, remarks);
  for (const Change& change : changes) {
    if (set == EditSet::panes) ofPanes.lookAt(change, fieldNamed(fields, change.field));
    if (set == EditSet::shadings) lookForSameShading(change, records, remarks, database);
  }
  return remarks.take();
}

}  // namespace orv::commands::edit
