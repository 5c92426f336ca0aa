// What all parts of a check work with.
#pragma once

#include "store/CheckReport.h"
#include "store/jet/check/CheckLog.h"
#include "store/jet/check/PageLedger.h"
#include "store/jet/check/RowLedger.h"
#include "store/jet/page/Pager.h"

namespace orv::store::jet {

/// One check of one file.
struct CheckContext {
  CheckContext(Pager& file, const CheckProgress& progress)
      : pager(file), log(report), pages(file, log, progress) {}

  Pager& pager;
  CheckReport report{};
  CheckLog log;
  PageLedger pages;
  RowLedger longValueParts{};  ///< those that rows name
};

}  // namespace orv::store::jet
