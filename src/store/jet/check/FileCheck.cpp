#include "store/jet/check/FileCheck.h"

#include <fmt/format.h>

#include "store/jet/check/CatalogCheck.h"

namespace orv::store::jet {

FileCheck::FileCheck(const std::string& path, const std::string& password,
                     const CheckProgress& progress)
    : database_(Database::open(path, password)), progress_(progress) {}

CheckReport FileCheck::run() {
  const Pager::ReadLock lock(database_->pager());
  CheckContext context(database_->pager(), progress_);
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
