// The differences of two records.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "commands/compare/Compare.h"
#include "commands/compare/Fields.h"
#include "commands/compare/Record.h"

namespace orv::commands::compare {

/// Compares records of one kind.
class RecordComparison {
 public:
  /// All of these outlive it. The differences are added to the list.
  RecordComparison(const RecordSet& a, const RecordSet& b, const FieldChoice& choice,
                   const CompareOptions& options, std::vector<Difference>& list);

  void compare(const Record& a, const Record& b, std::size_t pair);

  /// In how many records things differ that a copy leaves as they are, by their names.
  const std::map<std::string, std::size_t>& leftAsTheyAre() const { return left_; }

 private:
  using Measurements = std::vector<const Curves*>;

  void compareFields();
  void compareIntegrated();
  void compareRows(const IntegratedRow& a, const IntegratedRow& b);
  void tellMissingRow(double angle, bool isInA);
  void compareCurves();
  void compareAt(Measurements a, Measurements b);
  void compareForCopy(const std::optional<double>& angle, Measurements a, Measurements b);
  void compareMeasurements(const Curves& a, const Curves& b);
  void tellDirections(const Curves& a, const Curves& b);
  void tellMissing(const Curves& curves, bool isInA);

  bool isLeftOut(const Field& field) const;
  bool haveSubstrate() const;
  bool isBrought(double angle) const;
  void leave(const std::string& what) { leftHere_.insert(what); }
  void tell(std::optional<double> angle, std::string_view field, store::Value a, store::Value b,
            std::optional<double> wavelength = {});

  const RecordSet& setA_;
  const RecordSet& setB_;
  const FieldChoice& choice_;
  const CompareOptions& options_;
  std::vector<Difference>& list_;
  std::map<std::string, std::size_t> left_;
  std::set<std::string> leftHere_;  ///< of the records under comparison
  const Record* a_ = nullptr;
  const Record* b_ = nullptr;
  std::size_t pair_ = 0;
  std::optional<double> angle_;  ///< of the measurements under comparison
};

}  // namespace orv::commands::compare
