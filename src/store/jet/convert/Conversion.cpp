#include "store/jet/convert/Conversion.h"

#include <fmt/format.h>

#include <algorithm>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/catalog/EmptyDatabase.h"
#include "store/jet/catalog/FixedObjects.h"
#include "store/jet/compact/LostRelations.h"
#include "store/jet/compact/Soundness.h"
#include "store/jet/compact/TableNumbers.h"
#include "store/jet/convert/CatalogConversion.h"
#include "store/jet/file/NewFile.h"
#include "store/jet/index/SortOrders.h"

namespace orv::store::jet {

Conversion::Conversion(const std::string& path, const std::string& password,
                       const CompactProgress& progress)
    : source_(Database::open(path, password)), progress_(progress) {
  if (source_->format().unicodeText) {
    throw Error(kNotSupported, "'" + source_->pager().path() + "' is of format " +
                                   source_->formatName() +
                                   ", and only files of format Jet 3 can be converted.");
  }
}

CompactReport Conversion::writeTo(const std::string& target, Losses losses) {
  NewFile made = NewFile::beside(source_->pager().path(), target);
  const Pager::ReadLock lock(source_->pager());
  CompactReport report;
  report.sizeBefore = source_->pager().fileSize();
  report.lost = unconvertedObjects(*source_);
  refuseLosses(report, losses);
  if (std::string rights = droppedRights(*source_); !rights.empty()) {
    report.notes.push_back(std::move(rights));
  }
  refuseDamaged(
      source_, "converted",
      "Files of this format are not repaired: take a copy from before the damage, or what "
      "can still be read of each table (orv sql FILE TABLE).",
      stage(0));
  const auto database = makeTarget(made.take(), target);
  convert(database, report);
  refuseLosses(report, losses);
  refuseUnsound(database->sharedPager(), source_->pager().path(), "converted", stage(1));
  database->pager().sync();
  report.sizeAfter = database->pager().fileSize();
  made.putInPlace();
  return report;
}

void Conversion::refuseLosses(const CompactReport& report, Losses losses) const {
  if (!report.lost.empty() && losses == Losses::refuse) {
    throw Error(
        kNotSupported,
        fmt::format("'{}' was not converted, since this cannot be kept: {}. Convert it with "
                    "--force to go without.",
                    source_->pager().path(), fmt::join(report.lost, ", ")));
  }
}

/// Lets the checks before (0) and after (1) the work be ended.
CheckProgress Conversion::stage(std::size_t done) const {
  return [this, done](std::size_t, std::size_t) {
    if (progress_) progress_(done, 1);
  };
}

std::shared_ptr<Database> Conversion::makeTarget(std::unique_ptr<File> file,
                                                 const std::string& path) {
  const Pager& pager = source_->pager();
  const Bytes empty =
      emptyDatabase({.password = source_->storedPassword(),
                     .encodingKey = load32(&pager.header()[pager.format().header.encodingKey])});
  file->write(0, empty.data(), empty.size());
  return Database::over(Pager::overFile(std::move(file), path));
}

void Conversion::convert(const std::shared_ptr<Database>& target, CompactReport& report) {
  std::map<PageNumber, TableConversion> tables = placeTables(target);
  copyRows(tables, report);
  TableNumbers numbers;
  for (auto& [former, table] : tables) {
    Transaction transaction(target->pager());
    table.buildIndexes(report.lost);
    transaction.commit();
    numbers.add(former, table.page());
    report.indexes += table.indexCount();
    ++report.tables;
  }
  Transaction transaction(target->pager());
  for (auto& [former, table] : tables) {
    table.nameIndexes(tables, report.lost);
  }
  convertCatalog(*source_, *target, numbers);
  dropLostRelations(*target);
  transaction.commit();
  const std::uint16_t language =
      load16(&source_->pager().header()[source_->format().header.sortOrder]);
  if (language != kGeneralLanguage) {
    report.notes.push_back(fmt::format(
        "each column keeps its sort order, but new ones will have \"{}\", and no longer \"{}\"",
        languageName(kGeneralLanguage), languageName(language)));
  }
}

std::map<PageNumber, TableConversion> Conversion::placeTables(
    const std::shared_ptr<Database>& target) {
  std::map<PageNumber, TableConversion> tables;
  Transaction transaction(target->pager());
  for (const CatalogEntry& entry : source_->entries()) {
    const auto page = static_cast<PageNumber>(entry.id);
    if (entry.kind == CatalogEntry::Kind::table && isConverted(entry) && !isFixed(entry)) {
      tables.emplace(page, TableConversion(source_->pager(),
                                           readTableDefinition(source_->pager(), page, entry.name),
                                           target->sharedPager()));
    }
  }
  transaction.commit();
  return tables;
}

void Conversion::copyRows(std::map<PageNumber, TableConversion>& tables, CompactReport& report) {
  constexpr std::size_t kRowsPerReport = 256;
  std::size_t expected = 0;
  for (const auto& [former, table] : tables) {
    const auto& layout = source_->format().definition;
    expected += source_->pager().read(former).view().u32(layout.rowCount);
  }
  std::size_t done = 0;
  for (auto& [former, table] : tables) {
    report.rows += table.copyRows(
        [&] {
          if (++done % kRowsPerReport == 0 && progress_) {
            progress_(std::min(done, expected), expected);
          }
        },
        report.lost);
  }
}

}  // namespace orv::store::jet
