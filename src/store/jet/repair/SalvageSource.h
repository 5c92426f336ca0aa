// What a repair takes of a damaged database.
#pragma once

#include <functional>
#include <map>

#include "store/jet/compact/CopySource.h"
#include "store/jet/repair/CatalogSalvage.h"

namespace orv::store::jet {

/// The rows that were found, and of their long values what there is; indexes allow what the rows
/// are. Says of each table what is lost.
class SalvageSource : public CopySource {
 public:
  SalvageSource(Pager& pager, const PageSurvey& survey, const CatalogSalvage& catalog)
      : CopySource(pager), survey_(survey), catalog_(catalog) {}

  Bytes definition(const TableDefinition& table) override;
  void forEachRow(const std::shared_ptr<const TableDefinition>& table,
                  const std::function<void(RowId, const RowView&)>& visit) override;
  Bytes longValue(std::span<const std::uint8_t> stored, PageNumber page) override;
  std::uint32_t inRowLength(std::uint32_t said, std::size_t room, PageNumber page) override;
  void refuse(const TableDefinition& table, const RealIndex& index,
              const std::string& why) override;

  /// From now on the table has no indexes, since `why`. Gives its definition.
  std::shared_ptr<const TableDefinition> doWithoutIndexes(PageNumber table, const std::string& why);
  /// What was found out while the table that was copied last was copied.
  SalvagedTable takeFindings(PageNumber table);

 private:
  const SalvagedDefinition& definitionOf(PageNumber table) const;

  const PageSurvey& survey_;
  const CatalogSalvage& catalog_;
  std::map<PageNumber, SalvagedDefinition> withoutIndexes_{};
  std::size_t valuesCut_ = 0;
  std::vector<std::string> lost_{};
};

}  // namespace orv::store::jet
