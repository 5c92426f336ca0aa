// What a damaged file still says it holds.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <vector>

#include "store/CompactReport.h"
#include "store/jet/catalog/Database.h"
#include "store/jet/repair/DefinitionSalvage.h"
#include "store/jet/repair/PageSurvey.h"
#include "store/jet/repair/RowSalvage.h"

namespace orv::store::jet {

/// A table of which there is a definition, with its rows.
struct SalvagedTableContent {
  SalvagedDefinition definition;
  std::unique_ptr<RowSalvage> rows;
  bool isNamed = true;  ///< by the catalogue
};

/// Finds the tables that the catalogue names and those that it has lost, and leaves out of the
/// system tables what leads nowhere, so that what is left fits together.
class CatalogSalvage {
 public:
  CatalogSalvage(Pager& pager, const PageSurvey& survey, CompactReport& report);

  /// By the pages of their definitions.
  const std::map<PageNumber, SalvagedTableContent>& tables() const { return tables_; }
  /// The objects that are left in the catalogue.
  const std::vector<CatalogEntry>& entries() const { return entries_; }

 private:
  SalvagedTableContent* add(PageNumber page, const std::string& name, bool isNamed);
  void readEntries();
  void readTables();
  void addFixedTables();
  void addLostTables();
  void fitQueries();
  void leaveOutEntries();

  Pager& pager_;
  const PageSurvey& survey_;
  CompactReport& report_;
  std::map<PageNumber, SalvagedTableContent> tables_{};
  std::vector<CatalogEntry> entries_{};
  std::set<RowId> leftOut_{};  ///< rows of the catalogue
};

}  // namespace orv::store::jet
