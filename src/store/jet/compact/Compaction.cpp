#include "store/jet/compact/Compaction.h"

#include <algorithm>
#include <vector>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/compact/CopySource.h"
#include "store/jet/compact/CopyTarget.h"
#include "store/jet/compact/Soundness.h"
#include "store/jet/compact/TableCopy.h"
#include "store/jet/compact/TableNumbers.h"
#include "store/jet/file/NewFile.h"

namespace orv::store::jet {
namespace {

constexpr std::size_t kPagesPerReport = 64;

using TableList = std::vector<std::shared_ptr<const TableDefinition>>;

/// The tables that the catalogue names, in the order of their pages.
TableList readTables(Database& database) {
  TableList tables;
  for (const CatalogEntry& entry : database.entries()) {
    if (entry.kind == CatalogEntry::Kind::table) {
      const auto page = static_cast<PageNumber>(entry.id);
      tables.push_back(readTableDefinition(database.pager(), page, entry.name));
    }
  }
  std::ranges::sort(tables, {}, &TableDefinition::page);
  const auto twin = std::ranges::adjacent_find(tables, {}, &TableDefinition::page);
  if (twin != tables.end()) {
    raiseDamaged((*twin)->page, "two tables of the catalogue are defined on it");
  }
  return tables;
}

}  // namespace

Compaction::Compaction(const std::string& path, const std::string& password,
                       const CompactProgress& progress)
    : database_(openToCopy(path, password, "compacted",
                           "Convert it into a new file of format Jet 4 (orv compact FILE NEW "
                           "--jet4).")),
      progress_(progress) {}

CompactReport Compaction::writeTo(const std::string& target) {
  NewFile made = NewFile::beside(database_->pager().path(), target);
  const Pager::ReadLock lock(database_->pager());
  const CompactReport report = copyInto(made.take(), target, false);
  made.putInPlace();
  return report;
}

CompactReport Compaction::replace(const std::string& backup) {
  Pager& pager = database_->pager();
  const Pager::WriteLock lock(pager);
  const DamagedFileScope scope(pager.path());
  NewFile made = NewFile::inPlaceOf(pager.path());
  CompactReport report = copyInto(made.take(), pager.path(), true);
  for (const std::string& name : made.attributesLacking()) {
    report.notes.push_back("the new file is without the attribute '" + name +
                           "' of the old one, which could not be set");
  }
  pager.endLog();
  if (!backup.empty()) {
    backUp(backup);
  }
  pager.refuseChanged();
  made.replace();
  return report;
}

CompactReport Compaction::copyInto(std::unique_ptr<File> file, const std::string& path,
                                   bool check) {
  Pager& pager = database_->pager();
  CompactReport report;
  report.sizeBefore = pager.fileSize();
  const std::size_t expected = pager.pageCount();
  const std::size_t work = (check ? 3 : 2) * expected;
  refuseDamaged(database_, "compacted",
                "Repair it into a new file (orv compact FILE NEW --repair).", stage(0, work));
  const PageRef header = pager.read(0);
  CopyTarget target(std::move(file), path, {header.data(), header.size()}, [&](std::size_t pages) {
    if (progress_ && pages % kPagesPerReport == 0) {
      progress_(expected + std::min(pages, expected), work);
    }
  });
  CopySource source(pager);
  const TableList tables = readTables(*database_);
  TableNumbers numbers;
  for (const auto& table : tables) {
    numbers.add(table->page, target.newPage());
  }
  for (const auto& table : tables) {
    TableCopy(source, target, numbers, report, table).run();
  }
  target.finish();
  if (check) {
    refuseUnsound(target.sharedPager(), pager.path(), "compacted", stage(2 * expected, work));
  }
  report.sizeAfter = target.pager().fileSize();
  return report;
}

/// The progress of a check that begins when `done` of all pages are done.
CheckProgress Compaction::stage(std::size_t done, std::size_t all) const {
  return [this, done, all](std::size_t pages, std::size_t) {
    if (progress_) {
      progress_(std::min(done + pages, all), all);
    }
  };
}

/// Copies the file, which nobody changes, as it is.
void Compaction::backUp(const std::string& path) {
  constexpr std::size_t kBlock = std::size_t{1} << 20;
  const std::string& former = database_->pager().path();
  NewFile made = NewFile::beside(former, path);
  const auto from = FileSystem::current().open(former, FileSystem::Open::existing);
  const auto to = made.take();
  Bytes block(kBlock);
  const std::uint64_t size = from->size();
  for (std::uint64_t at = 0; at < size; at += kBlock) {
    const auto length = static_cast<std::size_t>(std::min<std::uint64_t>(kBlock, size - at));
    from->read(at, block.data(), length);
    to->write(at, block.data(), length);
  }
  to->sync();
  made.putInPlace();
}

}  // namespace orv::store::jet
