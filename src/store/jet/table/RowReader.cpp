#include "store/jet/table/RowReader.h"

namespace orv::store::jet {
namespace {

constexpr auto kLongestTrust = std::chrono::seconds(1);

}  // namespace

bool RowReader::hasPage(PageNumber page) const {
  Pager& pager = table_->pager();
  if (!page_ || page_.number() != page || version_ != pager.version()) return false;
  // While it is held, changes go to a copy of it.
  if (pager.inTransaction()) return pager.read(page).data() == page_.data();
  return pager.isLocked() || std::chrono::steady_clock::now() - readAt_ < kLongestTrust;
}

void RowReader::readPage(PageNumber page) {
  Pager& pager = table_->pager();
  Pager::ReadLock lock(pager);
  version_ = pager.version();
  readAt_ = std::chrono::steady_clock::now();
  page_ = {};  // should reading fail
  PageRef read = pager.read(page);
  rows_ = DataPage(pager.format(), read.view());
  if (rows_.owner() != table_->definition().page) {
    raiseDamaged(page, "a row pointer of one table leads to another's page");
  }
  page_ = std::move(read);
}

const RowView* RowReader::read(RowId id) {
  if (!hasPage(id.page)) {
    readPage(id.page);
  }
  if (id.row >= rows_.rowCount()) {
    return nullptr;
  }
  const Slot slot = rows_.slot(id.row);
  if (slot.kind == SlotKind::row) {
    row_.show(table_->pager(), table_->definition(), page_, slot.offset, slot.length);
    return &row_;
  }
  if (slot.kind != SlotKind::pointer) {
    return nullptr;
  }
  auto elsewhere = table_->row(id);
  if (!elsewhere) {
    return nullptr;
  }
  row_ = *std::move(elsewhere);
  return &row_;
}

}  // namespace orv::store::jet
