#include "store/jet/page/Pager.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <map>
#include <utility>
#include <vector>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/file/MemoryFile.h"
#include "store/jet/file/NewFile.h"
#include "store/jet/page/Rc4.h"

namespace orv::store::jet {
namespace {

constexpr std::size_t kCacheBytes = std::size_t{64} << 20;
constexpr std::size_t kLargestPage = 4096;

using FileIdentity = std::pair<std::uint64_t, std::uint64_t>;

std::map<FileIdentity, std::weak_ptr<Pager>>& openPagers() {
  static std::map<FileIdentity, std::weak_ptr<Pager>> pagers;
  return pagers;
}

}  // namespace

std::shared_ptr<Pager> Pager::open(const std::string& path) {
  FileSystem& fileSystem = FileSystem::current();
  if (const auto status = fileSystem.status(path)) {
    if (auto pager = openPagers()[{status->device, status->inode}].lock()) {
      return pager;
    }
  }
  auto file = fileSystem.open(path, FileSystem::Open::existing);
  const FileStatus status = file->status();
  std::error_code ignored;
  const auto canonical = std::filesystem::canonical(path, ignored);
  std::shared_ptr<Pager> pager(new Pager(std::move(file), ignored ? path : canonical.string()));
  pager->file_.keepLog();
  ReadLock lock(*pager);
  pager->countPages();
  openPagers()[{status.device, status.inode}] = pager;
  return pager;
}

void Pager::createFile(const std::string& path, const Bytes& content) {
  NewFile made(path);
  const auto file = made.take();
  file->write(0, content.data(), content.size());
  file->sync();
  made.putInPlace();
}

std::shared_ptr<Pager> Pager::overFile(std::unique_ptr<File> file, const std::string& path) {
  std::shared_ptr<Pager> pager(new Pager(std::move(file), path));
  pager->countPages();
  return pager;
}

std::shared_ptr<Pager> Pager::overMemory(Bytes& bytes, const std::string& path) {
  return overFile(std::make_unique<MemoryFile>(bytes), path);
}

Pager::Pager(std::unique_ptr<File> file, std::string path)
    : file_(std::move(file), std::move(path)), cache_(kCacheBytes / kLargestPage) {
  readHeader();
  file_.setPageSize(format_->pageSize);
}

Pager::~Pager() = default;

void Pager::readHeader() {
  const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(file_.size(), kLargestPage));
  header_.resize(size);
  file_.read(0, header_.data(), size);
  format_ = detectFormat({header_, 0}, engineVersion_);
  if (format_ == nullptr) {
    throw Error(kStoreFailure, "'" + path() + "' is not an Access database file.");
  }
  if (size < format_->pageSize) {
    throw Error(kStoreFailure, "'" + path() + "' is cut short: not even its header page is whole.");
  }
  header_.resize(format_->pageSize);
  applyRc4(kHeaderKey,
           std::span(header_).subspan(format_->header.masked, format_->header.maskedSize));
  encodingKey_ = load32(&header_[format_->header.encodingKey]);
  if (encodingKey_ != 0 && engineVersion_ > 1) {
    throw Error(kNotSupported, "'" + path() +
                                   "' is encrypted as Access 2007 and later do it, which "
                                   "cannot be read. Remove the password in Access and try again.");
  }
}

void Pager::countPages() {
  pageCount_ = static_cast<PageNumber>(file_.size() / format_->pageSize);
  committedPageCount_ = pageCount_;
}

// Locks -------------------------------------------------------------------------------------

void Pager::acquireRead() {
  if (readers_ == 0 ? file_.enterShared() : file_.recoverIfDue()) {
    forgetPages();
  }
  ++readers_;
}

void Pager::releaseRead() {
  if (--readers_ == 0) {
    file_.leaveShared();
  }
}

bool Pager::letWritersIn() {
  if (!file_.isWaitedFor()) {
    return true;
  }
  file_.leaveShared();
  const bool isChanged = file_.enterShared();
  if (isChanged) {
    forgetPages();
  }
  return !isChanged;
}

std::string Pager::whyReadOnly() const {
  if (!readOnly()) return {};
  if (file_.readOnly()) return file_.whyReadOnly();
  const std::string format =
      engineVersion_ > 1 ? "Access 2007 and later" : "format " + std::string(format_->name);
  return "'" + path() + "' cannot be changed: files of " + format +
         " are only read. Copy its records into a database of format Jet 4, or convert the file "
         "with Access 2000 or later.";
}

void Pager::acquireWrite() {
  if (writers_ == 0) {
    if (readOnly()) {
      throw Error(kReadOnlyStore, whyReadOnly());
    }
    file_.enterWriter();
    try {
      acquireRead();
      try {
        file_.prepareToWrite();
      } catch (const Error&) {
        releaseRead();
        throw;
      }
    } catch (const Error&) {
      file_.leaveWriter();
      throw;
    }
  }
  ++writers_;
}

void Pager::releaseWrite() {
  if (--writers_ == 0) {
    releaseRead();
    file_.leaveWriter();
  }
}

void Pager::forgetPages() {
  cache_.clear();
  countPages();
  ++version_;
  ++epoch_;
}

// Pages -------------------------------------------------------------------------------------

PageRef Pager::read(PageNumber page) {
  if (const auto dirty = dirty_.find(page); dirty != dirty_.end()) {
    return {page, dirty->second.bytes, format_->pageSize};
  }
  return {page, load(page), format_->pageSize};
}

PageBytes Pager::load(PageNumber page) {
  if (PageBytes cached = cache_.find(page)) {
    return cached;
  }
  if (page >= pageCount_) {
    throw DamagedPage(page,
                      "something points to it, but the file has only " +
                          std::to_string(pageCount_) + " pages and may be cut short",
                      "'" + path() + "'");
  }
  auto bytes = std::make_shared_for_overwrite<std::uint8_t[]>(format_->pageSize);
  file_.read(std::uint64_t{page} * format_->pageSize, bytes.get(), format_->pageSize);
  encode(page, bytes.get());
  cache_.put(page, bytes);
  return bytes;
}

void Pager::encode(PageNumber page, std::uint8_t* bytes) const {
  if (encodingKey_ != 0 && page != 0) {
    applyRc4(encodingKey_ ^ page, {bytes, format_->pageSize});
  }
}

PageBytes Pager::copyOf(const PageBytes& bytes) const {
  auto copy = std::make_shared_for_overwrite<std::uint8_t[]>(format_->pageSize);
  std::memcpy(copy.get(), bytes.get(), format_->pageSize);
  return copy;
}

PageBytes Pager::encoded(PageNumber page, const PageBytes& bytes) const {
  if (bytes == nullptr || encodingKey_ == 0) {
    return bytes;
  }
  PageBytes copy = copyOf(bytes);
  encode(page, copy.get());
  return copy;
}

std::uint8_t* Pager::modify(PageNumber page) {
  if (transactionDepth_ == 0) {
    throw Error(kStoreFailure, "A page was to be changed outside a transaction.");
  }
  const auto found = dirty_.find(page);
  if (found == dirty_.end()) {
    PageBytes before = load(page);
    PageBytes bytes = copyOf(before);
    return dirty_.emplace(page, DirtyPage{std::move(bytes), std::move(before)})
        .first->second.bytes.get();
  }
  // Whoever still reads the page keeps the bytes that he has.
  if (found->second.bytes.use_count() > 1) {
    found->second.bytes = copyOf(found->second.bytes);
  }
  return found->second.bytes.get();
}

PageNumber Pager::append() {
  if ((std::uint64_t{pageCount_} + 1) * format_->pageSize > format_->maxFileSize) {
    throw Error(kDatabaseFull, "'" + path() +
                                   "' has reached the largest size that its format "
                                   "allows (" +
                                   std::to_string(format_->maxFileSize >> 20) +
                                   " MB). Delete records that are not needed, compact it, "
                                   "or go on in a new database.");
  }
  const PageNumber page = pageCount_++;
  dirty_[page].bytes = std::make_shared<std::uint8_t[]>(format_->pageSize);
  return page;
}

// Transactions ------------------------------------------------------------------------------

void Pager::begin() {
  if (transactionDepth_ == 0) {
    if (file_.recoverIfDue()) {
      forgetPages();
    }
    committedPageCount_ = pageCount_;
  }
  ++transactionDepth_;
}

void Pager::commit() {
  if (doomed_) {
    throw Error(kStoreFailure, "A change of '" + path() + "' failed in part and is undone whole.");
  }
  if (--transactionDepth_ > 0) return;
  if (dirty_.empty()) {
    if (observer_) observer_->committed();
    return;
  }
  const std::uint64_t companion = observer_ ? observer_->committing() : 0;
  try {
    writeDirtyPages(companion);
  } catch (const Error&) {
    ++transactionDepth_;  // The transaction's end undoes it.
    forgetPages();
    throw;
  }
  for (auto& [page, dirty] : dirty_) {
    cache_.put(page, std::move(dirty.bytes));
  }
  dirty_.clear();
  committedPageCount_ = pageCount_;
  ++version_;
  if (observer_) observer_->committed();
}

void Pager::writeDirtyPages(std::uint64_t companion) {
  std::vector<PageNumber> numbers;
  for (const auto& [number, dirty] : dirty_) {
    numbers.push_back(number);
  }
  std::sort(numbers.begin(), numbers.end());
  std::vector<PageBytes> kept;  // encoded copies live as long as they are being written
  std::vector<LoggedPage> pages;
  for (const PageNumber number : numbers) {
    const DirtyPage& dirty = dirty_[number];
    const PageBytes& before = kept.emplace_back(encoded(number, dirty.before));
    const std::uint8_t* former = before.get();
    const PageBytes& after = kept.emplace_back(encoded(number, dirty.bytes));
    pages.push_back({number, former, after.get()});
  }
  file_.commit(committedPageCount_, pageCount_, pages, companion);
}

void Pager::rollback() {
  doomed_ = --transactionDepth_ > 0;
  if (doomed_) {
    return;
  }
  dirty_.clear();
  pageCount_ = committedPageCount_;
  ++version_;
  ++epoch_;
  if (observer_) observer_->rolledBack();
}

Transaction::Transaction(Pager& pager) : pager_(pager), lock_(pager) {
  pager_.begin();
}

Transaction::~Transaction() {
  if (!done_) {
    pager_.rollback();
  }
}

void Transaction::commit() {
  pager_.commit();
  done_ = true;
}

Savepoint::Savepoint(Pager& pager)
    : pager_(pager),
      transaction_(pager),
      isWithin_(pager.transactionDepth_ > 1 && !pager.doomed_),
      pageCount_(pager.pageCount_),
      mark_(pager.observer_ ? pager.observer_->mark() : 0) {
  if (isWithin_) {
    dirty_ = pager.dirty_;
  }
}

Savepoint::~Savepoint() {
  if (done_ || !isWithin_) {
    return;
  }
  pager_.dirty_ = std::move(dirty_);
  pager_.pageCount_ = pageCount_;
  pager_.doomed_ = false;  // by a transaction within this one
  if (pager_.observer_) pager_.observer_->forgetSince(mark_);
  ++pager_.version_;
  ++pager_.epoch_;
  transaction_.commit();  // of nothing: the outer one goes on
}

void Savepoint::commit() {
  transaction_.commit();
  if (isWithin_) {
    ++pager_.version_;
  }
  done_ = true;
}

}  // namespace orv::store::jet
