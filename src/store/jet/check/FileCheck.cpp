#include "store/jet/check/FileCheck.h"

#include <fmt/format.h>

#include "store/jet/check/CatalogCheck.h"

namespace orv::store::jet {
namespace {

/// A check reads a file as it is at one moment. A writer need not wait for its end all the same:
/// he is let in, and the check begins anew, so often. Then writers wait.
constexpr int kYieldingAttempts = 4;
struct ChangedMeanwhile {};

}  // namespace

FileCheck::FileCheck(const std::string& path, const std::string& password,
                     const CheckProgress& progress)
    : database_(Database::open(path, password)), progress_(progress) {}

CheckReport FileCheck::run() {
  for (int attempt = 0; attempt < kYieldingAttempts; ++attempt) {
    try {
      return runOnce(true);
    } catch (const ChangedMeanwhile&) {
    }
  }
  return runOnce(false);
}

CheckReport FileCheck::runOnce(bool yields) {
  Pager& pager = database_->pager();
  const Pager::ReadLock lock(pager);
  const CheckProgress progress = [&](std::size_t done, std::size_t pages) {
    if (yields && !pager.letWritersIn()) {
      throw ChangedMeanwhile();
    }
    if (progress_) {
      progress_(done, pages);
    }
  };
  CheckContext context(pager, progress);
  checkHeader(context);
  CatalogCheck catalog(context);
  catalog.run();
  context.pages.finish(context.report);
  context.log.close();
  return std::move(context.report);
}

void FileCheck::checkHeader(CheckContext& context) const {
  Pager& pager = context.pager;
  const Format& format = pager.format();
  const std::uint64_t size = pager.fileSize();
  if (size % format.pageSize != 0) {
    context.log.fault({}, Harm::header,
                      fmt::format("its size of {} bytes is not a whole number of pages: it is cut "
                                  "short",
                                  size));
  }
  if (pager.header()[0] != static_cast<std::uint8_t>(PageType::header)) {
    context.log.fault({}, Harm::header, "its first page is not marked as the header");
  }
}

}  // namespace orv::store::jet
