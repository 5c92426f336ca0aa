#include "store/jet/repair/MendedFile.h"

#include <algorithm>
#include <cstring>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/page/Format.h"

namespace orv::store::jet {

MendedFile::MendedFile(std::unique_ptr<File> file, Bytes header)
    : file_(std::move(file)),
      header_(std::move(header)),
      wholeSize_(file_->size() / kJet4.pageSize * kJet4.pageSize),
      lastPage_(readLastPage()) {}

Bytes MendedFile::readLastPage() {
  const auto there = static_cast<std::size_t>(file_->size() - wholeSize_);
  if (there == 0) {
    return {};
  }
  Bytes page(kJet4.pageSize);
  file_->read(wholeSize_, page.data(), there);
  const auto& layout = kJet4.definition;
  if (page[0] == static_cast<std::uint8_t>(PageType::tableDefinition) &&
      (there < layout.headerSize || load32(&page[layout.length]) + layout.pageHeader > there)) {
    std::ranges::fill(page, std::uint8_t{0});
  }
  return page;
}

FileStatus MendedFile::status() {
  FileStatus status = file_->status();
  status.size = wholeSize_ + lastPage_.size();
  return status;
}

void MendedFile::read(std::uint64_t offset, std::uint8_t* bytes, std::size_t length) {
  const std::uint64_t end = offset + length;
  if (const std::uint64_t whole = std::min(end, wholeSize_); offset < whole) {
    file_->read(offset, bytes, static_cast<std::size_t>(whole - offset));
  }
  if (end > wholeSize_) {
    const std::uint64_t begin = std::max(offset, wholeSize_);
    if (end > wholeSize_ + lastPage_.size()) {
      throw Error(kStoreFailure, "Reading a damaged file failed: it ends too early.");
    }
    std::memcpy(bytes + (begin - offset), &lastPage_[static_cast<std::size_t>(begin - wholeSize_)],
                static_cast<std::size_t>(end - begin));
  }
  if (offset < header_.size()) {
    const auto there = static_cast<std::size_t>(offset);
    std::memcpy(bytes, &header_[there], std::min(length, header_.size() - there));
  }
}

void MendedFile::write(std::uint64_t, const std::uint8_t*, std::size_t) {
  throw Error(kReadOnlyStore, "A damaged file is not written to.");
}

void MendedFile::truncate(std::uint64_t) {
  throw Error(kReadOnlyStore, "A damaged file is not written to.");
}

}  // namespace orv::store::jet
