#include "store/jet/repair/Repair.h"

#include <fmt/format.h>

#include <algorithm>

#include "errors/Counted.h"
#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/check/FileCheck.h"
#include "store/jet/compact/LostRelations.h"
#include "store/jet/compact/TableCopy.h"
#include "store/jet/file/NewFile.h"
#include "store/jet/repair/CatalogMending.h"
#include "store/jet/repair/Fault.h"
#include "store/jet/repair/PageSurvey.h"
#include "store/jet/repair/SalvageSource.h"

namespace orv::store::jet {

Repair::Repair(const std::string& path, const std::string& password,
               const CompactProgress& progress)
    : source_(path, password, report_), progress_(progress) {}

CompactReport Repair::writeTo(const std::string& target) {
  Pager& pager = source_.database().pager();
  NewFile made = NewFile::beside(pager.path(), target);
  const Pager::ReadLock lock(source_.lockedPager());
  report_.sizeBefore = source_.size();
  const PageSurvey survey(pager, source_.size(), progress_);
  if (!survey.unreadable().empty()) {
    report_.notes.push_back(fmt::format("{} cannot be read from the disk, the first is {}",
                                        counted(survey.unreadable().size(), "page"),
                                        survey.unreadable().front()));
  }
  const CatalogSalvage catalog(pager, survey, report_);
  const PageRef header = pager.read(0);
  const std::size_t pages = pager.pageCount();
  CopyTarget copy(made.take(), target, {header.data(), header.size()}, [&](std::size_t done) {
    constexpr std::size_t kPagesPerReport = 64;
    if (progress_ && done % kPagesPerReport == 0) {
      progress_(pages + std::min(done, pages), 2 * pages);
    }
  });
  TableNumbers numbers;
  copyTables(survey, catalog, copy, numbers);
  copy.finish();
  mendCatalog(copy.sharedPager(), catalog, numbers, source_.hasNewHeader());
  tellLostRelations(copy.sharedPager());
  tellFaults(copy.sharedPager());
  copy.pager().sync();
  report_.sizeAfter = copy.pager().fileSize();
  made.putInPlace();
  return report_;
}

void Repair::tellLostRelations(const std::shared_ptr<Pager>& pager) {
  const auto made = Database::over(pager);
  Transaction transaction(*pager);
  for (const std::string& name : dropLostRelations(*made)) {
    report_.lost.push_back(
        fmt::format("that relation '{}' is enforced: a table or an index of it is lost", name));
  }
  transaction.commit();
}

/// There should be none: what they are is told, and that the file is not whole.
void Repair::tellFaults(const std::shared_ptr<Pager>& pager) {
  const CheckProgress progress;
  const CheckReport check = FileCheck(Database::over(pager), progress).run();
  for (const auto& fault : check.faults) {
    report_.lost.push_back("a fault of the new file: " + fault.toText());
  }
}

void Repair::copyTables(const PageSurvey& survey, const CatalogSalvage& catalog, CopyTarget& target,
                        TableNumbers& numbers) {
  for (const auto& [page, table] : catalog.tables()) {
    numbers.add(page, target.newPage());
  }
  SalvageSource source(source_.database().pager(), survey, catalog);
  for (const auto& [page, table] : catalog.tables()) {
    const CompactReport before = report_;
    try {
      TableCopy(source, target, numbers, report_, table.definition.table).run();
    } catch (const Error& error) {
      if (error.number() == kStoreFailure || error.number() == kDatabaseFull) {
        throw;
      }
      report_ = before;
      const auto without = source.doWithoutIndexes(page, faultOf(error));
      TableCopy(source, target, numbers, report_, without).run();
    }
    SalvagedTable findings = source.takeFindings(page);
    if (!findings.isWhole() || !findings.notes.empty()) {
      report_.salvaged.push_back(std::move(findings));
    }
  }
}

}  // namespace orv::store::jet
