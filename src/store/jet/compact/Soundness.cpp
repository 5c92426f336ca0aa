#include "store/jet/compact/Soundness.h"

#include <fmt/format.h>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/check/FileCheck.h"

namespace orv::store::jet {
namespace {

/// The first fault, without the advice of the check: what is to be done is said by whoever asks.
std::string firstFault(const CheckReport& report) {
  CheckFinding fault = report.faults.front();
  fault.advice.clear();
  return fault.toText();
}

}  // namespace

void refuseDamaged(const std::shared_ptr<Database>& database, std::string_view done,
                   std::string_view remedy, const CheckProgress& progress) {
  const CheckReport report = FileCheck(database, progress).run();
  if (!report.sound()) {
    throw Error(kCorruptFile,
                fmt::format("'{}' is damaged, and was not {}, since rows could be "
                            "lost: {} {}",
                            database->pager().path(), done, firstFault(report), remedy));
  }
}

void refuseUnsound(const std::shared_ptr<Pager>& made, const std::string& former,
                   std::string_view done, const CheckProgress& progress) {
  const CheckReport report = FileCheck(Database::over(made), progress).run();
  if (!report.sound()) {
    throw Error(kStoreFailure, fmt::format("'{}' was not {}: the new file would have had a fault, "
                                           "and the old one is as it was. {}",
                                           former, done, firstFault(report)));
  }
}

}  // namespace orv::store::jet
