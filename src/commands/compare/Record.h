// Records as they are compared, whatever source they come from.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
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
    if (isZero_) {
      if (value == 0) {
        ++zeros_;
        return;
      }
      begin();
    }
    if (isSingle_) {
      singles_.push_back(static_cast<float>(value));
    } else {
      doubles_.push_back(value);
    }
  }
  double operator[](std::size_t i) const {
    if (isZero_) return 0;
    return isSingle_ ? double{singles_[i]} : doubles_[i];
  }
  /// Whether all of it is 0, as curves of substrates mostly are. Then nothing is kept of it.
  bool isZero() const { return isZero_; }
  bool isSingle() const { return isSingle_; }
  /// No more values will come.
  void compact();
  /// Brings the values into another order: the first is that which was at `order[0]`.
  void arrange(const std::vector<std::size_t>& order);

 private:
  void begin();

  bool isSingle_;
  bool isZero_ = true;
  std::size_t zeros_ = 0;  ///< while all of it is 0
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
  /// Degrees. None where spectra have no angle: those of shadings, and of panes of version 2.0.1,
  /// whose spectrum is that of all of their angles.
  std::optional<double> angle;
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
  /// A copy has nothing to copy: a pane without integrated values and spectra.
  bool isWithoutData = false;
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
  bool isOfOrvDatabase = false;
  std::vector<Record> records = {};
  /// "NAME cannot be read: WHY".
  std::vector<std::string> failures = {};
  std::vector<std::string> remarks = {};     ///< sentences
  std::set<std::size_t> unknownCurves = {};  ///< which the source has no place for, of curveNames()
};

}  // namespace orv::commands::compare
