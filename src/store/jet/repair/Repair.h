// A damaged database file, written anew.
#pragma once

#include <memory>
#include <string>

#include "store/CompactReport.h"
#include "store/jet/catalog/Database.h"
#include "store/jet/compact/CopyTarget.h"
#include "store/jet/compact/TableNumbers.h"
#include "store/jet/repair/CatalogSalvage.h"
#include "store/jet/repair/DamagedDatabase.h"

namespace orv::store::jet {

/// Takes out of a file what can be read. See store/Compact.h.
class Repair {
 public:
  Repair(const std::string& path, const std::string& password, const CompactProgress& progress);
  CompactReport writeTo(const std::string& target);

 private:
  void tellLostRelations(const std::shared_ptr<Pager>& pager);
  void tellFaults(const std::shared_ptr<Pager>& pager);
  void copyTables(const PageSurvey& survey, const CatalogSalvage& catalog, CopyTarget& target,
                  TableNumbers& numbers);

  CompactReport report_{};
  DamagedDatabase source_;
  const CompactProgress& progress_;
};

}  // namespace orv::store::jet
