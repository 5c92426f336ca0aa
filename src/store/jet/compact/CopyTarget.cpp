#include "store/jet/compact/CopyTarget.h"

#include "store/jet/page/DataPage.h"
#include "store/jet/page/FreePages.h"
#include "store/jet/page/UsageMap.h"

namespace orv::store::jet {
namespace {

constexpr PageNumber kPagesOfACommit = 2048;
constexpr std::uint32_t kMapsOwner = 0;  // of pages that hold maps

std::shared_ptr<Pager> begin(std::unique_ptr<File> file, const std::string& path,
                             std::span<const std::uint8_t> header) {
  file->write(0, header.data(), header.size());
  return Pager::overFile(std::move(file), path);
}

void setBit(Bytes& bytes, std::size_t at) {
  bytes[at / 8] |= static_cast<std::uint8_t>(1 << at % 8);
}

}  // namespace

CopyTarget::CopyTarget(std::unique_ptr<File> file, const std::string& path,
                       std::span<const std::uint8_t> header,
                       std::function<void(PageNumber)> pageAdded)
    : pager_(begin(std::move(file), path, header)),
      pageAdded_(std::move(pageAdded)),
      transaction_(std::in_place, *pager_),
      maps_(*this, kMapsOwner) {
  // The map of free pages, and another that is empty in every file.
  constexpr PageNumber kPage = FreePages::kPlace.page;
  pager_->append();
  DataPageEditor editor(pager_->format(), pager_->modify(kPage), kPage);
  editor.initialize(kPage);
  editor.add(UsageMap::emptyRow(pager_->format()));
  editor.add(UsageMap::emptyRow(pager_->format()));
}

PageNumber CopyTarget::newPage() {
  const PageNumber page = pager_->append();
  if (page % kPagesOfACommit == 0) {
    transaction_->commit();
    transaction_.emplace(*pager_);
  }
  pageAdded_(page + 1);
  return page;
}

RowId CopyTarget::addMap(std::span<const PageNumber> pages) {
  constexpr std::size_t kBitmapHeader = 5;  // kind, page of the first bit
  constexpr std::size_t kPageHeader = 4;
  constexpr std::uint8_t kPointers = 1;
  const Format& format = pager_->format();
  Bytes row = UsageMap::emptyRow(format);
  const PageNumber start = pages.empty() ? 0 : pages.front() / 8 * 8;
  if (pages.empty() || pages.back() - start < 8 * format.inlineMapBytes) {
    store32(&row[1], start);
    for (const PageNumber page : pages) {
      setBit(row, 8 * kBitmapHeader + page - start);
    }
    return maps_.add(row);
  }
  row[0] = kPointers;
  const auto bits = static_cast<PageNumber>(8 * (format.pageSize - kPageHeader));
  while (!pages.empty()) {
    const PageNumber part = pages.front() / bits;
    Bytes content(format.pageSize);
    content[0] = static_cast<std::uint8_t>(PageType::usageMap);
    content[1] = 1;
    for (; !pages.empty() && pages.front() / bits == part; pages = pages.subspan(1)) {
      setBit(content, 8 * kPageHeader + pages.front() % bits);
    }
    const PageNumber page = newPage();
    std::memcpy(pager_->modify(page), content.data(), content.size());
    store32(&row.at(1 + std::size_t{4} * part), page);
  }
  return maps_.add(row);
}

void CopyTarget::finish() {
  maps_.finish();
  writeFreePages();
  transaction_->commit();
  transaction_.reset();
  pager_->sync();
}

/// None of the file's pages is free; those that it does not have yet are.
void CopyTarget::writeFreePages() {
  FreePages free(*pager_);
  for (PageNumber page = FreePages::kFirst; page < pager_->pageCount(); ++page) {
    free.remove(page);
  }
  const auto end = static_cast<PageNumber>(8 * pager_->format().inlineMapBytes);
  for (PageNumber page = pager_->pageCount(); page < end; ++page) {
    free.add(page);
  }
}

}  // namespace orv::store::jet
