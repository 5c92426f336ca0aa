// Records as they are compared, whatever source they come from.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "commands/RecordKind.h"
#include "store/Value.h"

namespace orv::commands::compare {

/// A field; none where the source has no place for it.
using Cell = std::optional<store::Value>;

/// The values of a curve in the precision of their column.
class Samples {
 public:
  explicit Samples(bool isSingle) : isSingle_(isSingle) {}

  void add(double value) {
    if (isSingle_) {
      singles_.push_back(static_cast<float>(value));
    } else {
      doubles_.push_back(value);
    }
    isZero_ = isZero_ && value == 0;
  }
  double operator[](std::size_t i) const {
    if (isZero_) return 0;
    return isSingle_ ? double{singles_[i]} : doubles_[i];
  }
  /// Whether all of it is 0.
  bool isZero() const { return isZero_; }
  bool isSingle() const { return isSingle_; }
  /// Keeps nothing of a curve that is 0 everywhere, such as those of substrates mostly are.
  void compact();
  /// Gets ready for more values behind these `count`.
  void expand(std::size_t count);
  /// Brings the values into another order: the first is that which was at `order[0]`.
  void arrange(const std::vector<std::size_t>& order);

 private:
  bool isSingle_;
  bool isZero_ = true;
  std::vector<float> singles_;
  std::vector<double> doubles_;
};

/// Wavelengths in nm, ascending. Most spectra of a source have the same.
using Grid = std::shared_ptr<const std::vector<double>>;

class Grids {
 public:
  /// The grid of these wavelengths, the same one for the same wavelengths.
  Grid of(std::vector<double> wavelengths);

 private:
  std::map<std::vector<double>, Grid> known_;
};

/// The curves of one measurement: those of curveNames(), in that order, or the first of them where
/// the source knows no more.
struct Curves {
  std::optional<double> angle;            ///< degrees; none where spectra have no angle
  std::optional<std::int32_t> direction;  ///< none where the source knows no directions
  Grid grid;
  std::vector<Samples> values;
};

/// The integrated values at an angle, those of kIntegratedColumns.
struct IntegratedRow {
  double angle = 0;  ///< degrees
  std::vector<Cell> values;
};

struct Record {
  /// One but for panes of which several files hold an angle each.
  std::vector<std::string> identifiers;
  std::string name;
  std::string group;         ///< empty where the source has no groups
  std::vector<Cell> fields;  ///< those of fieldsOf() the kind, in that order
  /// None where the source has no place for them, or gives none.
  std::optional<std::vector<IntegratedRow>> integrated = {};
  std::vector<Curves> curves = {};
};

/// The records of one kind of a source.
struct RecordSet {
  RecordKind kind = RecordKind::panes;
  bool hasGroups = false;
  bool areFiles = false;
  std::vector<Record> records = {};
  /// "NAME cannot be read: WHY".
  std::vector<std::string> failures = {};
};

}  // namespace orv::commands::compare
