#include "store/jet/compact/RowFiller.h"

#include <algorithm>
#include <cstring>

#include "store/jet/compact/CopyTarget.h"
#include "store/jet/page/DataPage.h"

namespace orv::store::jet {
namespace {

// What share of a page must be left for it to be offered for more rows: one that a row did not
// fit on, and the last one.
constexpr std::size_t kShareOfPassed = 4;
constexpr std::size_t kShareOfLast = 32;

}  // namespace

void RowFiller::openPage() {
  page_ = target_.newPage();
  bytes_.resize(target_.pager().format().pageSize);
  DataPageEditor(target_.pager().format(), bytes_.data(), page_).initialize(owner_);
}

void RowFiller::closePage(std::size_t leastRoom) {
  if (page_ == 0) {
    return;
  }
  const DataPage page(target_.pager().format(), {bytes_, page_});
  if (page.hasRoom(leastRoom)) {
    pagesWithRoom_.push_back(page_);
  }
  pages_.push_back(page_);
  std::memcpy(target_.pager().modify(page_), bytes_.data(), bytes_.size());
  page_ = 0;
}

RowId RowFiller::add(std::span<const std::uint8_t> row) {
  const Format& format = target_.pager().format();
  if (page_ != 0) {
    const DataPage page(format, {bytes_, page_});
    if (!page.takes(row.size())) {
      closePage(format.pageSize / kShareOfPassed);
    }
  }
  if (page_ == 0) {
    openPage();
  }
  return {page_, DataPageEditor(format, bytes_.data(), page_).add(row)};
}

void RowFiller::finish() {
  closePage(target_.pager().format().pageSize / kShareOfLast);
  std::sort(pages_.begin(), pages_.end());
  std::sort(pagesWithRoom_.begin(), pagesWithRoom_.end());
}

void RowFiller::writeAlone(PageNumber page, std::span<const std::uint8_t> row) {
  DataPageEditor editor(target_.pager().format(), target_.pager().modify(page), page);
  editor.initialize(owner_);
  editor.add(row);
  pages_.push_back(page);
}

LongValueDefinition RowFiller::addLongValue(std::span<const std::uint8_t> value) {
  constexpr std::size_t kNextSize = LongValueDefinition::kNextSize;
  using Form = LongValueDefinition::Form;
  const Format& format = target_.pager().format();
  const std::size_t room = format.pageSize - format.data.rowTable - 2;
  const auto length = static_cast<std::uint32_t>(value.size());
  if (value.size() <= room) {
    return {length, Form::onePart, add(value)};
  }
  // Parts that fill a page stand on pages that follow each other; the rest shares one.
  const std::size_t partSize = room - kNextSize;
  std::vector<RowId> places((value.size() - 1) / partSize);
  Bytes part(kNextSize);
  const auto rest = value.subspan(places.size() * partSize);
  part.insert(part.end(), rest.begin(), rest.end());
  const RowId last = add(part);
  for (RowId& place : places) {
    place = {target_.newPage(), 0};
  }
  for (std::size_t i = 0; i < places.size(); ++i) {
    const auto bytes = value.subspan(i * partSize, partSize);
    part.resize(kNextSize);
    store32(part.data(), (i + 1 < places.size() ? places[i + 1] : last).toPointer());
    part.insert(part.end(), bytes.begin(), bytes.end());
    writeAlone(places[i].page, part);
  }
  return {length, Form::chain, places.front()};
}

}  // namespace orv::store::jet
