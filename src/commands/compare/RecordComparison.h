// The differences of two records.
#pragma once

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

 private:
  void compareFields();
  void compareIntegrated();
  void compareRows(const IntegratedRow& a, const IntegratedRow& b);
  void tellMissingRow(double angle, bool isInA);
  void compareCurves();
  void compareAt(std::vector<const Curves*> a, std::vector<const Curves*> b);
  void compareMeasurements(const Curves& a, const Curves& b);
  void tellMissing(const Curves& curves, bool isInA);

  bool isLeftOut(const Field& field) const;
  bool haveSubstrate() const;
  void tell(std::optional<double> angle, std::string_view field, store::Value a, store::Value b,
            std::optional<double> wavelength = {});

  const RecordSet& setA_;
  const RecordSet& setB_;
  const FieldChoice& choice_;
  const CompareOptions& options_;
  std::vector<Difference>& list_;
  const Record* a_ = nullptr;
  const Record* b_ = nullptr;
  std::size_t pair_ = 0;
};

}  // namespace orv::commands::compare
