#include "store/jet/file/LogRecovery.h"

#include <algorithm>

namespace orv::store::jet {

LogRecovery::LogRecovery(Log& log, File& database, std::size_t pageSize)
    : log_(log), database_(database), pageSize_(pageSize) {
  log_.forEachRecord([&](const LogRecord::Head& head, const std::vector<LogRecord::Page>& pages) {
    collect(head, pages);
  });
}

void LogRecovery::collect(const LogRecord::Head& head, const std::vector<LogRecord::Page>& pages) {
  if (pages_.empty()) {
    pagesBefore_ = head.pageCountBefore;
  }
  pagesAfter_ = head.pageCountAfter;
  for (const LogRecord::Page& logged : pages) {
    const auto [found, isFirst] = pages_.try_emplace(logged.number);
    Page& page = found->second;
    if (isFirst) {
      page.isNew = logged.number >= head.pageCountBefore;
      page.known.resize(pageSize_ / kPieceSize);
    }
    for (std::size_t i = 0; i < page.known.size(); ++i) {
      if (isFirst && !page.isNew) {
        page.known[i].push_back(load64(&logged.checksumsBefore[i * 8]));
      }
      page.known[i].push_back(checksumOf(logged.after.subspan(i * kPieceSize, kPieceSize)));
    }
    page.content.assign(logged.after.begin(), logged.after.end());
  }
}

LogRecovery::Outcome LogRecovery::compare() {
  if (pages_.empty()) {
    return Outcome::complete;
  }
  const std::uint64_t size = database_.size();
  if (size / pageSize_ < pagesBefore_ || size / pageSize_ > pagesAfter_) {
    return Outcome::foreign;
  }
  Outcome outcome = Outcome::complete;
  for (const auto& [number, page] : pages_) {
    outcome = std::max(outcome, comparePage(number, page, size));
  }
  return outcome;
}

LogRecovery::Outcome LogRecovery::comparePage(PageNumber number, const Page& page,
                                              std::uint64_t fileSize) {
  // What a growing file has not got yet, or has got the room for only, is zeros.
  Bytes there(pageSize_);
  const std::uint64_t at = std::uint64_t{number} * pageSize_;
  if (at < fileSize) {
    database_.read(at, there.data(),
                   static_cast<std::size_t>(std::min<std::uint64_t>(pageSize_, fileSize - at)));
  }
  for (std::size_t i = 0; i < page.known.size(); ++i) {
    const auto piece = std::span<const std::uint8_t>(there).subspan(i * kPieceSize, kPieceSize);
    const bool isKnown = std::find(page.known[i].begin(), page.known[i].end(), checksumOf(piece)) !=
                         page.known[i].end();
    const bool isZero =
        std::all_of(piece.begin(), piece.end(), [](auto byte) { return byte == 0; });
    if (!isKnown && !(page.isNew && isZero)) {
      return Outcome::foreign;
    }
  }
  return there == page.content && at + pageSize_ <= fileSize ? Outcome::complete : Outcome::missing;
}

void LogRecovery::redo() {
  for (const auto& [number, page] : pages_) {
    database_.write(std::uint64_t{number} * pageSize_, page.content.data(), pageSize_);
  }
  database_.sync();
}

}  // namespace orv::store::jet
