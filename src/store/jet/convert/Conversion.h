// A database of format Jet 3, written as one of Jet 4.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "store/CheckReport.h"
#include "store/CompactReport.h"
#include "store/jet/catalog/Database.h"
#include "store/jet/convert/TableConversion.h"

namespace orv::store::jet {

/// Makes tables with their rows and indexes anew, and takes over the catalogue. See
/// store/Compact.h.
class Conversion {
 public:
  /// Raises kNotSupported for a file that is not of format Jet 3.
  Conversion(const std::string& path, const std::string& password, const CompactProgress& progress);

  CompactReport writeTo(const std::string& target, Losses losses);

 private:
  void refuseLosses(const CompactReport& report, Losses losses) const;
  CheckProgress stage(std::size_t done) const;
  std::shared_ptr<Database> makeTarget(std::unique_ptr<File> file, const std::string& path);
  void convert(const std::shared_ptr<Database>& target, CompactReport& report);
  std::map<PageNumber, TableConversion> placeTables(const std::shared_ptr<Database>& target);
  void copyRows(std::map<PageNumber, TableConversion>& tables, CompactReport& report);

  std::shared_ptr<Database> source_;
  const CompactProgress& progress_;
};

}  // namespace orv::store::jet
