#include "commands/compare/RecordComparison.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "commands/compare/CurveDifference.h"
#include "commands/compare/Values.h"
#include "database/Directions.h"
#include "model/IntegratedColumns.h"
#include "model/Text.h"

namespace orv::commands::compare {

namespace {

/// The curves of a substrate are behind those of the pane.
constexpr std::size_t kFirstOfSubstrate = 3;
/// Where a copy puts a spectrum for which no angle is told.
constexpr double kUsualAngle = 0;

/// Of a record with integrated values.
bool hasRowAt(const Record& record, double angle) {
  return std::ranges::find(*record.integrated, angle, &IntegratedRow::angle) !=
         record.integrated->end();
}

/// Whether a record has one spectrum for all of its angles, and this is one of them.
bool isAtAnyAngle(const Record& record, const std::optional<double>& angle) {
  if (!angle || record.curves.empty() || record.curves.front().angle) return false;
  const bool hasAngles = record.integrated && !record.integrated->empty();
  return hasAngles ? hasRowAt(record, *angle) : *angle == kUsualAngle;
}

std::vector<const Curves*> measurementsAt(const Record& record,
                                          const std::optional<double>& angle) {
  std::vector<const Curves*> found;
  const bool isAtAny = isAtAnyAngle(record, angle);
  for (const Curves& curves : record.curves) {
    if (isAtAny || curves.angle == angle) found.push_back(&curves);
  }
  return found;
}

/// The angles of the spectra of both; none where neither tells them.
std::set<std::optional<double>> anglesOf(const Record& a, const Record& b) {
  std::set<std::optional<double>> angles;
  for (const Record* record : {&a, &b}) {
    for (const Curves& curves : record->curves) angles.insert(curves.angle);
  }
  if (angles.size() < 2 || angles.erase(std::nullopt) == 0) return angles;
  // One of them tells its angles, and the other does not.
  for (const Record* record : {&a, &b}) {
    if (record->curves.empty() || record->curves.front().angle) continue;
    angles.insert(kUsualAngle);
    for (const IntegratedRow& row : record->integrated.value_or(std::vector<IntegratedRow>())) {
      angles.insert(row.angle);
    }
  }
  return angles;
}

/// That of the direction which a copy takes; null where there is none.
const Curves* takenOf(const std::vector<const Curves*>& measurements,
                      std::int32_t wanted = database::kAnyDirection) {
  if (measurements.empty()) return nullptr;
  std::vector<std::int32_t> directions;
  for (const Curves* each : measurements) directions.push_back(each->direction.value_or(0));
  const std::int32_t taken = database::directionToUse(directions, wanted);
  const auto found = std::ranges::find(directions, taken);
  return measurements[found == directions.end()
                          ? 0
                          : static_cast<std::size_t>(found - directions.begin())];
}

/// A direction that is not told, as databases tell by 0.
bool isUntold(const Curves& curves) {
  return curves.direction.value_or(database::kAnyDirection) == database::kAnyDirection;
}

/// What is told of it behind the name of a field.
std::string directionOf(const Curves& curves) {
  return isUntold(curves) ? "" : fmt::format(", direction {}", *curves.direction);
}

std::string extentOf(const std::vector<double>& wavelengths) {
  if (wavelengths.size() == 1) return fmt::format("1 point, {:g} nm", wavelengths.front());
  return fmt::format("{} points, {:g} to {:g} nm", wavelengths.size(), wavelengths.front(),
                     wavelengths.back());
}

/// How many wavelengths only this one has, and the first of them.
std::string ownWavelengths(const std::vector<double>& wavelengths,
                           const std::vector<double>& others) {
  std::vector<double> own;
  std::ranges::set_difference(wavelengths, others, std::back_inserter(own));
  const std::string extent = extentOf(wavelengths);
  return own.empty()
             ? extent
             : fmt::format("{}; only here: {}, from {:g} nm", extent, own.size(), own.front());
}

}  // namespace

RecordComparison::RecordComparison(const RecordSet& a, const RecordSet& b,
                                   const FieldChoice& choice, const CompareOptions& options,
                                   std::vector<Difference>& list)
    : setA_(a), setB_(b), choice_(choice), options_(options), list_(list) {}

void RecordComparison::compare(const Record& a, const Record& b, std::size_t pair) {
  a_ = &a;
  b_ = &b;
  pair_ = pair;
  leftHere_.clear();
  compareFields();
  compareIntegrated();
  compareCurves();
  for (const std::string& each : leftHere_) ++left_[each];
}

bool RecordComparison::isLeftOut(const Field& field) const {
  if (!choice_.has(field.name)) return true;
  if (field.lookup != Lookup::group) return false;
  return options_.group || options_.isForCopy;
}

void RecordComparison::compareFields() {
  const auto& fields = fieldsOf(setA_.kind);
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const Field& field = fields[i];
    const Cell& a = a_->fields[i];
    const Cell& b = b_->fields[i];
    if (!a || !b) continue;
    const bool isOtherSpelling = options_.isForCopy && !options_.group &&
                                 field.lookup == Lookup::group && *a != *b &&
                                 choice_.has(field.name);
    if (isOtherSpelling && database::areSameNames(a->toText(), b->toText())) {
      leave("spelling of the " + field.name);
    }
    if (isLeftOut(field)) continue;
    if (areSameInField(field, *a, *b, options_.tolerance)) continue;
    if (options_.isForCopy && fateOf(setA_.kind, field.name) != Fate::brought) {
      leave(field.name);
    } else if (options_.isForCopy && field.lookup != Lookup::none &&
               database::areSameNames(a->toText(), b->toText())) {
      leave("spelling of the " + field.name);
    } else {
      auto [toldA, toldB] = toldValues(*a, *b);
      // As it will be written.
      if (options_.isForCopy && !field.hasCase) toldA = upperCase(toldA.toText());
      tell({}, field.name, std::move(toldA), std::move(toldB));
    }
  }
}

void RecordComparison::compareIntegrated() {
  if (!a_->integrated || !b_->integrated || !choice_.hasAnyIntegrated()) return;
  auto a = a_->integrated->begin();
  auto b = b_->integrated->begin();
  const auto endA = a_->integrated->end();
  const auto endB = b_->integrated->end();
  while (a != endA || b != endB) {
    if (b == endB || (a != endA && a->angle < b->angle)) {
      tellMissingRow(a++->angle, true);
    } else if (a == endA || b->angle < a->angle) {
      tellMissingRow(b++->angle, false);
    } else {
      compareRows(*a++, *b++);
    }
  }
}

void RecordComparison::compareRows(const IntegratedRow& a, const IntegratedRow& b) {
  const database::Likeness likeness{options_.tolerance, setA_.kind == RecordKind::panes};
  for (std::size_t i = 0; i < kIntegratedColumns.size(); ++i) {
    const char* const title = kIntegratedColumns[i].title;
    if (!a.values[i] || !b.values[i] || !choice_.has(title)) continue;
    if (database::areSameValues(*a.values[i], *b.values[i], likeness)) continue;
    auto [toldA, toldB] = toldValues(*a.values[i], *b.values[i]);
    tell(a.angle, title, std::move(toldA), std::move(toldB));
  }
}

/// Of a pane with integrated values a copy brings the spectra at their angles; else all.
bool RecordComparison::isBrought(double angle) const {
  const bool hasRows = a_->integrated && !a_->integrated->empty();
  return setA_.areFiles || !hasRows || hasRowAt(*a_, angle);
}

/// Files need not give values; a copy computes those that are not there.
void RecordComparison::tellMissingRow(double angle, bool isInA) {
  if (!choice_.has(kIntegratedValues)) return;
  if ((isInA ? setB_ : setA_).areFiles) return;
  if (options_.isForCopy && !isInA && !measurementsAt(*a_, angle).empty()) {
    if (!isBrought(angle)) leave(std::string(kIntegratedValues));
    return;
  }
  tell(angle, kIntegratedValues, isInA ? "there" : "none", isInA ? "none" : "there");
}

void RecordComparison::compareCurves() {
  if (!choice_.hasAnyCurve(setA_.kind)) return;
  for (const auto& angle : anglesOf(*a_, *b_)) {
    angle_ = angle;
    Measurements a = measurementsAt(*a_, angle);
    Measurements b = measurementsAt(*b_, angle);
    options_.isForCopy ? compareForCopy(angle, std::move(a), std::move(b))
                       : compareAt(std::move(a), std::move(b));
  }
}

/// Spectra of one direction belong together, one whose direction is not told with the first that is
/// left, the others in their order.
void RecordComparison::compareAt(Measurements a, Measurements b) {
  const auto pairOff = [&](auto isOne) {
    for (auto each = a.begin(); each != a.end();) {
      const auto other =
          std::ranges::find_if(b, [&](const Curves* in) { return isOne(**each, *in); });
      if (other == b.end()) {
        ++each;
        continue;
      }
      tellDirections(**each, **other);
      compareMeasurements(**each, **other);
      b.erase(other);
      each = a.erase(each);
    }
  };
  pairOff([](const Curves& in, const Curves& other) { return in.direction == other.direction; });
  pairOff([](const Curves& in, const Curves& other) { return isUntold(in) || isUntold(other); });
  pairOff([](const Curves&, const Curves&) { return true; });
  for (const Curves* each : a) tellMissing(*each, true);
  for (const Curves* each : b) tellMissing(*each, false);
}

/// A copy is of one direction, in the place of one; the others that are there stay.
void RecordComparison::compareForCopy(const std::optional<double>& angle, Measurements a,
                                      Measurements b) {
  // A file may be of one angle of several: a copy of it lets the others stand.
  if (setA_.areFiles && a.empty()) return;
  const std::size_t flag = positionOf(RecordKind::panes, "spectral_pane");
  const bool isRead = setA_.kind != RecordKind::panes || setA_.areFiles || a.empty() ||
                      !a_->fields[flag] || a_->fields[flag]->isNull() ||
                      a_->fields[flag]->toBoolean();
  if (!isRead || (!a.empty() && angle && !isBrought(*angle))) {
    const std::size_t told = list_.size();
    compareAt(std::move(a), std::move(b));
    if (list_.size() > told) leave(std::string(kSpectrum));
    list_.resize(told);
    return;
  }
  const Curves* taken = takenOf(a);
  if (taken == nullptr) {
    for (const Curves* each : b) tellMissing(*each, false);
    return;
  }
  const Curves* replaced = takenOf(b, taken->direction.value_or(database::kAnyDirection));
  if (a.size() > 1 || b.size() > 1) leave("spectra of other directions");
  if (replaced == nullptr) return tellMissing(*taken, true);
  if (!isUntold(*taken) && !isUntold(*replaced) && taken->direction != replaced->direction) {
    leave(std::string(kDirection));
  }
  compareMeasurements(*taken, *replaced);
}

void RecordComparison::tellDirections(const Curves& a, const Curves& b) {
  if (isUntold(a) || isUntold(b) || a.direction == b.direction || !choice_.has(kDirection)) return;
  tell(angle_, kDirection, *a.direction, *b.direction);
}

void RecordComparison::tellMissing(const Curves& curves, bool isInA) {
  if (!choice_.has(kSpectrum)) return;
  store::Value there = extentOf(*curves.grid);
  tell(angle_, std::string(kSpectrum) + directionOf(curves), isInA ? there : store::Value("none"),
       isInA ? store::Value("none") : there);
}

/// Only that of a pane with film has a meaning.
bool RecordComparison::haveSubstrate() const {
  const std::size_t position = positionOf(RecordKind::panes, kFilmColumn);
  const auto isSet = [&](const Record& record) {
    const Cell& cell = record.fields[position];
    return cell && !cell->isNull() && cell->toBoolean();
  };
  return isSet(*a_) && isSet(*b_);
}

void RecordComparison::compareMeasurements(const Curves& a, const Curves& b) {
  const std::string direction = a.direction == b.direction ? directionOf(a) : "";
  if (a.grid != b.grid && choice_.has(kWavelengths)) {
    tell(angle_, std::string(kWavelengths) + direction, ownWavelengths(*a.grid, *b.grid),
         ownWavelengths(*b.grid, *a.grid));
  }
  const auto& curves = curveNames(setA_.kind);
  const std::size_t count = std::min(a.values.size(), b.values.size());
  for (std::size_t i = 0; i < count; ++i) {
    const bool isOfSubstrate = setA_.kind == RecordKind::panes && i >= kFirstOfSubstrate;
    if (!choice_.has(curves[i].name) || (isOfSubstrate && !haveSubstrate())) continue;
    if (setA_.unknownCurves.contains(i) || setB_.unknownCurves.contains(i)) continue;
    const auto largest = largestDifference(a, b, i, options_.tolerance);
    if (!largest) continue;
    // The retrieval from a database does not read what the substrate reflects.
    const bool isLeft = options_.isForCopy && setA_.isOfOrvDatabase &&
                        fateOf(setA_.kind, curves[i].name) != Fate::brought;
    if (isLeft) {
      leave(std::string(curves[i].name));
      continue;
    }
    const auto [inA, inB] = toldNumbers(largest->a, largest->b);
    tell(angle_, std::string(curves[i].name) + direction,
         fmt::format("{} at {:g} nm", inA, largest->wavelength),
         fmt::format("{} at {:g} nm ({:+.4g})", inB, largest->wavelength, largest->b - largest->a),
         largest->wavelength);
  }
}

void RecordComparison::tell(std::optional<double> angle, std::string_view field, store::Value a,
                            store::Value b, std::optional<double> wavelength) {
  list_.push_back({.pair = pair_,
                   .angle = angle,
                   .field = std::string(field),
                   .a = std::move(a),
                   .b = std::move(b),
                   .wavelength = wavelength});
}

}  // namespace orv::commands::compare
