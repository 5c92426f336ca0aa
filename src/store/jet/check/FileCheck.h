// Checking a whole file.
#pragma once

#include <memory>
#include <string>

#include "store/CheckReport.h"
#include "store/jet/catalog/Database.h"
#include "store/jet/check/CheckContext.h"

namespace orv::store::jet {

/// Walks a file: header, catalogue, each table that the catalogue names, and last the pages that
/// are left over.
class FileCheck {
 public:
  /// Raises what Database::open() raises.
  FileCheck(const std::string& path, const std::string& password, const CheckProgress& progress);
  FileCheck(std::shared_ptr<Database> database, const CheckProgress& progress)
      : database_(std::move(database)), progress_(progress) {}
  CheckReport run();

 private:
  CheckReport runOnce(bool yields);
  void checkHeader(CheckContext& context) const;

  std::shared_ptr<Database> database_;
  const CheckProgress& progress_;
};

}  // namespace orv::store::jet
