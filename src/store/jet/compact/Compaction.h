// A database file, written anew.
#pragma once

#include <memory>
#include <string>

#include "store/CheckReport.h"
#include "store/CompactReport.h"
#include "store/jet/catalog/Database.h"
#include "store/jet/compact/CopyTarget.h"

namespace orv::store::jet {

/// Copies a whole database. See store/Compact.h for what that keeps and raises.
class Compaction {
 public:
  Compaction(const std::string& path, const std::string& password, const CompactProgress& progress);

  CompactReport writeTo(const std::string& target);
  CompactReport replace(const std::string& backup);

 private:
  CompactReport copyInto(std::unique_ptr<File> file, const std::string& path, bool check);
  CheckProgress stage(std::size_t done, std::size_t all) const;
  void backUp(const std::string& path);

  std::shared_ptr<Database> database_;
  const CompactProgress& progress_;
};

}  // namespace orv::store::jet
