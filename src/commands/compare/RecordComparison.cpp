#include "commands/compare/RecordComparison.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "commands/NumberText.h"
#include "commands/compare/CurveDifference.h"
#include "commands/compare/Values.h"
#include "model/IntegratedColumns.h"
#include "model/Text.h"

namespace orv::commands::compare {

namespace {

/// The curves of a substrate are behind those of the pane.
constexpr std::size_t kFirstOfSubstrate = 3;
constexpr std::string_view kSubstrateReflectance = "R of the substrate";
constexpr std::string_view kCoatingClass = "coating class";

using Measurements = std::vector<const Curves*>;

Measurements measurementsAt(const Record& record, std::optional<double> angle) {
  Measurements found;
  for (const Curves& curves : record.curves) {
    if (curves.angle == angle) found.push_back(&curves);
  }
  return found;
}

std::string extentOf(const std::vector<double>& wavelengths) {
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

/// What a copy cannot make the same: it has no place for it, or keeps the spelling that is there.
bool isLeftBehind(RecordKind kind, const Field& field) {
  if (field.lookup == Lookup::group || field.name == "Ra") return true;
  return kind == RecordKind::frames && field.name == "product name";
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
  compareFields();
  compareIntegrated();
  compareCurves();
}

bool RecordComparison::isLeftOut(const Field& field) const {
  if (!choice_.has(field.name)) return true;
  if (options_.group && field.lookup == Lookup::group) return true;
  return options_.isForCopy && isLeftBehind(setA_.kind, field);
}

void RecordComparison::compareFields() {
  const auto& fields = fieldsOf(setA_.kind);
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const Cell& a = a_->fields[i];
    const Cell& b = b_->fields[i];
    if (!a || !b || isLeftOut(fields[i])) continue;
    if (areSameValues(*a, *b, options_.tolerance)) continue;
    const bool isSpelled = fields[i].lookup != Lookup::none || fields[i].name == kCoatingClass;
    if (options_.isForCopy && isSpelled) {
      if (a->isNull() || a->toText().empty()) continue;
      if (!b->isNull() && equalIgnoringCase(a->toText(), b->toText())) continue;
    }
    auto [toldA, toldB] = toldValues(*a, *b);
    tell({}, fields[i].name, std::move(toldA), std::move(toldB));
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
  for (std::size_t i = 0; i < kIntegratedColumns.size(); ++i) {
    const char* const title = kIntegratedColumns[i].title;
    if (!a.values[i] || !b.values[i] || !choice_.has(title)) continue;
    if (areSameValues(*a.values[i], *b.values[i], options_.tolerance)) continue;
    auto [toldA, toldB] = toldValues(*a.values[i], *b.values[i]);
    tell(a.angle, title, std::move(toldA), std::move(toldB));
  }
}

/// Files need not give values; a copy computes those that are not there.
void RecordComparison::tellMissingRow(double angle, bool isInA) {
  if (!choice_.has(kIntegratedValues)) return;
  if ((isInA ? setB_ : setA_).areFiles) return;
  if (options_.isForCopy && !isInA && !measurementsAt(*a_, angle).empty()) return;
  tell(angle, kIntegratedValues, isInA ? "there" : "none", isInA ? "none" : "there");
}

void RecordComparison::compareCurves() {
  if (!choice_.hasAnyCurve(setA_.kind)) return;
  std::set<std::optional<double>> angles;
  for (const Record* record : {a_, b_}) {
    for (const Curves& curves : record->curves) angles.insert(curves.angle);
  }
  for (const auto& angle : angles) {
    Measurements a = measurementsAt(*a_, angle);
    // A file may be of one angle of several: a copy of it lets the others stand.
    if (options_.isForCopy && setA_.areFiles && a.empty()) continue;
    compareAt(std::move(a), measurementsAt(*b_, angle));
  }
}

void RecordComparison::compareAt(Measurements a, Measurements b) {
  if (options_.isForCopy) {  // which is of one direction
    a.resize(std::min<std::size_t>(a.size(), 1));
    b.resize(std::min<std::size_t>(b.size(), 1));
  }
  if (a.size() == 1 && b.size() == 1) {
    const auto& inA = a.front()->direction;
    const auto& inB = b.front()->direction;
    if (inA && inB && inA != inB && choice_.has(kDirection) && !options_.isForCopy) {
      tell(a.front()->angle, kDirection, *inA, *inB);
    }
    return compareMeasurements(*a.front(), *b.front());
  }
  for (const Curves* each : a) {
    const auto other = std::ranges::find(b, each->direction, &Curves::direction);
    if (other == b.end()) {
      tellMissing(*each, true);
    } else {
      compareMeasurements(*each, **other);
      b.erase(other);
    }
  }
  for (const Curves* each : b) tellMissing(*each, false);
}

void RecordComparison::tellMissing(const Curves& curves, bool isInA) {
  if (!choice_.has(kSpectrum)) return;
  store::Value there = extentOf(*curves.grid);
  tell(curves.angle, kSpectrum, isInA ? there : store::Value("none"),
       isInA ? store::Value("none") : there);
}

/// Only that of a pane with film has a meaning.
bool RecordComparison::haveSubstrate() const {
  const auto& fields = fieldsOf(setA_.kind);
  const auto found = std::ranges::find(fields, "with_and_without_film", &Field::column);
  if (found == fields.end()) return true;
  const auto position = static_cast<std::size_t>(found - fields.begin());
  const auto isSet = [&](const Record& record) {
    const Cell& cell = record.fields[position];
    return cell && !cell->isNull() && cell->toBoolean();
  };
  return isSet(*a_) && isSet(*b_);
}

void RecordComparison::compareMeasurements(const Curves& a, const Curves& b) {
  const std::string direction = a.direction.value_or(0) != 0 && a.direction == b.direction
                                    ? fmt::format(", direction {}", *a.direction)
                                    : "";
  if (a.grid != b.grid && choice_.has(kWavelengths)) {
    tell(a.angle, std::string(kWavelengths) + direction, ownWavelengths(*a.grid, *b.grid),
         ownWavelengths(*b.grid, *a.grid));
  }
  const auto& curves = curveNames(setA_.kind);
  const std::size_t count = std::min(a.values.size(), b.values.size());
  for (std::size_t i = 0; i < count; ++i) {
    const bool isOfSubstrate = setA_.kind == RecordKind::panes && i >= kFirstOfSubstrate;
    if (!choice_.has(curves[i].name) || (isOfSubstrate && !haveSubstrate())) continue;
    if (options_.isForCopy && curves[i].name == kSubstrateReflectance) continue;
    const auto largest = largestDifference(a, b, i, options_.tolerance);
    if (!largest) continue;
    tell(a.angle, std::string(curves[i].name) + direction,
         fmt::format("{} at {:g} nm", numberText(largest->a), largest->wavelength),
         fmt::format("{} at {:g} nm ({:+.4g})", numberText(largest->b), largest->wavelength,
                     largest->b - largest->a),
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
