#include "store/jet/repair/SalvageSource.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "errors/Error.h"
#include "store/jet/catalog/FixedObjects.h"
#include "store/jet/check/IndexCheck.h"
#include "store/jet/page/DataPage.h"
#include "store/jet/row/LongValue.h"

namespace orv::store::jet {

const SalvagedDefinition& SalvageSource::definitionOf(PageNumber table) const {
  const auto without = withoutIndexes_.find(table);
  return without != withoutIndexes_.end() ? without->second
                                          : catalog_.tables().at(table).definition;
}

std::shared_ptr<const TableDefinition> SalvageSource::doWithoutIndexes(PageNumber table,
                                                                       const std::string& why) {
  valuesCut_ = 0;
  lost_.clear();
  withoutIndexes_[table] = withoutIndexes(pager(), definitionOf(table), why);
  return withoutIndexes_[table].table;
}

Bytes SalvageSource::definition(const TableDefinition& table) {
  return definitionOf(table.page).bytes;
}

void SalvageSource::forEachRow(const std::shared_ptr<const TableDefinition>& table,
                               const std::function<void(RowId, const RowView&)>& visit) {
  const RowSalvage& rows = *catalog_.tables().at(table->page).rows;
  for (const RowSalvage::Place& place : rows.rows()) {
    visit(place.home, rows.view(place));
  }
}

/// Up to where its chain breaks.
Bytes SalvageSource::longValue(std::span<const std::uint8_t> stored, PageNumber page) {
  const LongValueDefinition said = LongValueDefinition::read(stored, page);
  Bytes value;
  const std::uint64_t most = pager().fileSize();  // of a chain that does not run in a circle
  try {
    forEachLongValuePart(pager(), stored, page, [&](RowId part) {
      const PageRef ref = pager().read(part.page);
      const Slot slot = DataPage(pager().format(), ref.view()).slot(part.row);
      const std::size_t end = std::min(slot.offset + slot.length, survey_.bytesThere(part.page));
      auto bytes = ref.view().span(slot.offset, std::max(end, slot.offset) - slot.offset);
      if (said.form == LongValueDefinition::Form::chain) {
        bytes = bytes.subspan(std::min(bytes.size(), LongValueDefinition::kNextSize));
      }
      value.insert(value.end(), bytes.begin(), bytes.end());
      if (end < slot.offset + slot.length) {
        raiseDamaged(part.page, "the file ends before the value does");
      }
      if (value.size() > most) {
        raiseDamaged(part.page, "the parts of a memo or picture form a loop");
      }
    });
  } catch (const Error&) {
    ++valuesCut_;
  }
  return value;
}

std::uint32_t SalvageSource::inRowLength(std::uint32_t said, std::size_t room, PageNumber) {
  if (said <= room) {
    return said;
  }
  ++valuesCut_;
  return static_cast<std::uint32_t>(room);
}

void SalvageSource::refuse(const TableDefinition& table, const RealIndex& index,
                           const std::string& why) {
  lost_.push_back(fmt::format("the rule of index '{}': {}", nameOfIndex(table, index), why));
}

SalvagedTable SalvageSource::takeFindings(PageNumber table) {
  SalvagedTable report = catalog_.tables().at(table).rows->report();
  const SalvagedDefinition& definition = definitionOf(table);
  report.valuesCut = std::exchange(valuesCut_, 0);
  report.lost = std::exchange(lost_, {});
  if (!definition.fault.empty()) {
    report.lost.push_back(fmt::format("parts of the definition: {}; {}", definition.fault,
                                      nameOfFixedTable(table).empty()
                                          ? "the table has no indexes any more"
                                          : "it was made anew"));
  }
  return report;
}

}  // namespace orv::store::jet
