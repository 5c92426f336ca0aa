#include "store/jet/Pager.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <map>
#include <thread>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/MemoryFile.h"
#include "store/jet/Rc4.h"

namespace orv::store::jet {
namespace {

constexpr std::size_t kCacheBytes = std::size_t{64} << 20;
constexpr std::size_t kLargestPage = 4096;
constexpr auto kLockPatience = std::chrono::seconds(3);
// Between two tries; a writer leaves the lock free for short moments only.
constexpr auto kLongestPause = std::chrono::milliseconds(4);

std::map<std::string, std::weak_ptr<Pager>>& openPagers() {
  static std::map<std::string, std::weak_ptr<Pager>> pagers;
  return pagers;
}

}  // namespace

std::shared_ptr<Pager> Pager::open(const std::string& path) {
  FileSystem& fileSystem = FileSystem::current();
  std::weak_ptr<Pager>& slot = openPagers()[fileSystem.identity(path)];
  if (auto pager = slot.lock()) {
    return pager;
  }
  std::error_code ignored;
  auto canonical = std::filesystem::canonical(path, ignored);
  std::shared_ptr<Pager> pager(new Pager(fileSystem.open(path, FileSystem::Open::existing),
                                         ignored ? path : canonical.string()));
  pager->useJournal();
  slot = pager;
  return pager;
}

void Pager::createFile(const std::string& path, const Bytes& content) {
  FileSystem& fileSystem = FileSystem::current();
  if (fileSystem.size(path) >= 0) {
    throw Error(kStoreFailure, "The file '" + path +
                                   "' exists already and is left as it is. Choose another name, "
                                   "or remove it first.");
  }
  // It is written under another name, so that nobody ever finds a part of it under its own.
  std::string written = path + "-new";
  auto file = fileSystem.open(written, fileSystem.size(written) < 0 ? FileSystem::Open::newOnly
                                                                    : FileSystem::Open::existing);
  if (!file->tryLock(LockKind::writer, true)) {
    throw Error(kStoreFailure, "'" + path + "' is being made by " +
                                   file->lockHolder(LockKind::writer) + " at this moment.");
  }
  try {
    file->truncate(0);  // of what a crash may have left
    file->write(0, content.data(), content.size());
    file->sync();
    fileSystem.remove(Journal::pathFor(path));  // of a database that was here before
    fileSystem.syncFolder(path);
    fileSystem.rename(written, path);
    written = path;
    fileSystem.syncFolder(path);
  } catch (const Error&) {
    try {
      fileSystem.remove(written);
    } catch (const Error&) {  // The first failure is the one to be told.
    }
    throw;
  }
}

std::shared_ptr<Pager> Pager::overMemory(Bytes& bytes, const std::string& path) {
  std::shared_ptr<Pager> pager(new Pager(std::make_unique<MemoryFile>(bytes), path));
  pager->countPages();
  return pager;
}

Pager::Pager(std::unique_ptr<File> file, std::string path)
    : path_(std::move(path)), file_(std::move(file)) {
  readHeader();
}

void Pager::useJournal() {
  journal_.emplace(path_, format_->pageSize);
  ReadLock recoversAndCounts(*this);
}

Pager::~Pager() {
  try {
    // While another program reads or writes, the journal is left to it.
    if (journal_ && file_->tryLock(LockKind::readers, true)) {
      journal_->removeVoidFile();
    }
  } catch (const Error&) {
    // A void journal that stays behind means nothing to whoever finds it.
  }
}

void Pager::readHeader() {
  const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(file_->size(), kLargestPage));
  header_.resize(size);
  if (size > 0) {
    file_->read(0, header_.data(), size);
  }
  format_ = detectFormat({header_, 0}, engineVersion_);
  if (format_ == nullptr) {
    throw Error(kStoreFailure, "'" + path_ + "' is not an Access database file.");
  }
  if (size < format_->pageSize) {
    throw Error(kStoreFailure, "'" + path_ + "' is cut short: not even its header page is whole.");
  }
  header_.resize(format_->pageSize);
  applyRc4(kHeaderKey,
           std::span(header_).subspan(format_->header.masked, format_->header.maskedSize));
  encodingKey_ = load32(&header_[format_->header.encodingKey]);
  if (encodingKey_ != 0 && engineVersion_ > 1) {
    throw Error(kNotSupported, "'" + path_ +
                                   "' is encrypted as Access 2007 and later do it, which "
                                   "cannot be read. Remove the password in Access and try again.");
  }
}

void Pager::countPages() {
  pageCount_ = static_cast<PageNumber>(file_->size() / format_->pageSize);
  committedPageCount_ = pageCount_;
}

// Locks -------------------------------------------------------------------------------------

void Pager::lockOrExplain(LockKind kind, bool exclusive) {
  const auto deadline = std::chrono::steady_clock::now() + kLockPatience;
  auto pause = std::chrono::milliseconds(1);
  while (!file_->tryLock(kind, exclusive)) {
    if (std::chrono::steady_clock::now() > deadline) {
      throw Error(kStoreFailure, "'" + path_ + "' is in use by " + file_->lockHolder(kind) +
                                     ". Wait until it has finished or close the file there, then "
                                     "try again.");
    }
    std::this_thread::sleep_for(pause);
    pause = std::min(pause * 2, kLongestPause);
  }
}

void Pager::acquireRead() {
  if (readers_ == 0) {
    lockOrExplain(LockKind::readers, false);
  }
  if (readers_ == 0 || undoIsDue_) {
    try {
      recoverFromJournal();
      noticeForeignChange();
    } catch (const Error&) {
      if (readers_ == 0) {
        file_->unlock(LockKind::readers);
      }
      throw;
    }
  }
  ++readers_;
}

void Pager::releaseRead() {
  if (--readers_ == 0) {
    file_->unlock(LockKind::readers);
  }
}

void Pager::acquireWrite() {
  if (writers_ == 0) {
    if (readOnly()) {
      throw Error(kReadOnlyStore,
                  "'" + path_ + "' cannot be changed: " +
                      (file_->readOnly()
                           ? "the file is read-only. Give yourself permission to write it, or "
                             "work on a copy."
                           : "files of " +
                                 (engineVersion_ > 1 ? "Access 2007 and later"
                                                     : "format " + std::string(format_->name)) +
                                 " are only read. Copy its records into a database of format "
                                 "Jet 4, or convert the file with Access 2000 or later."));
    }
    lockOrExplain(LockKind::writer, true);
    try {
      acquireRead();
    } catch (const Error&) {
      file_->unlock(LockKind::writer);
      throw;
    }
  }
  ++writers_;
}

void Pager::releaseWrite() {
  if (--writers_ == 0) {
    releaseRead();
    file_->unlock(LockKind::writer);
  }
}

void Pager::recoverFromJournal() {
  if (!journal_ || !journal_->isPresent()) {
    undoIsDue_ = false;
    return;
  }
  if (file_->readOnly()) {
    throw Error(kStoreFailure,
                "'" + path_ +
                    "' was being changed when a program stopped, and "
                    "must be put right before it is read; but it is read-only. Open it "
                    "once where it can be written.");
  }
  // Two processes that both hold the lock shared would wait for each other: begin anew.
  file_->unlock(LockKind::readers);
  lockOrExplain(LockKind::readers, true);
  if (journal_->isPresent()) {
    journal_->rollBack(*file_);
    forgetPages();
  }
  undoIsDue_ = false;
  lockOrExplain(LockKind::readers, false);
}

void Pager::noticeForeignChange() {
  const FileStamp now = file_->stamp();
  if (now == stamp_) {
    return;
  }
  forgetPages();
  stamp_ = now;
  countPages();
}

void Pager::forgetPages() {
  cache_.clear();
  ages_.clear();
  stamp_ = {};
  ++version_;
  ++epoch_;
}

// Pages -------------------------------------------------------------------------------------

PageRef Pager::read(PageNumber page) {
  if (auto dirty = dirty_.find(page); dirty != dirty_.end()) {
    return {page, dirty->second, format_->pageSize};
  }
  return {page, load(page), format_->pageSize};
}

Pager::PageBytes Pager::load(PageNumber page) {
  if (auto found = cache_.find(page); found != cache_.end()) {
    ages_.splice(ages_.end(), ages_, found->second.age);
    return found->second.bytes;
  }
  if (page >= pageCount_) {
    throw DamagedPage(page,
                      "something points to it, but the file has only " +
                          std::to_string(pageCount_) + " pages and may be cut short",
                      "'" + path_ + "'");
  }
  auto bytes = std::make_shared_for_overwrite<std::uint8_t[]>(format_->pageSize);
  file_->read(std::uint64_t{page} * format_->pageSize, bytes.get(), format_->pageSize);
  encode(page, bytes.get());
  remember(page, bytes);
  return bytes;
}

void Pager::encode(PageNumber page, std::uint8_t* bytes) const {
  if (encodingKey_ != 0 && page != 0) {
    applyRc4(encodingKey_ ^ page, {bytes, format_->pageSize});
  }
}

void Pager::remember(PageNumber page, PageBytes bytes) {
  if (auto found = cache_.find(page); found != cache_.end()) {
    found->second.bytes = std::move(bytes);
    return;
  }
  if (cache_.size() >= kCacheBytes / format_->pageSize) {
    cache_.erase(ages_.front());
    ages_.pop_front();
  }
  ages_.push_back(page);
  cache_.emplace(page, Frame{std::move(bytes), std::prev(ages_.end())});
}

std::uint8_t* Pager::modify(PageNumber page) {
  if (transactionDepth_ == 0) {
    throw Error(kStoreFailure, "A page was to be changed outside a transaction.");
  }
  auto [dirty, isNew] = dirty_.try_emplace(page);
  // Whoever still reads the page keeps the bytes that he has.
  if (isNew || dirty->second.use_count() > 1) {
    PageBytes before = isNew ? nullptr : dirty->second;
    if (isNew) {
      try {
        before = load(page);
      } catch (const Error&) {
        dirty_.erase(page);
        throw;
      }
    }
    dirty->second = std::make_shared_for_overwrite<std::uint8_t[]>(format_->pageSize);
    std::memcpy(dirty->second.get(), before.get(), format_->pageSize);
  }
  return dirty->second.get();
}

PageNumber Pager::append() {
  if ((std::uint64_t{pageCount_} + 1) * format_->pageSize > format_->maxFileSize) {
    throw Error(kDatabaseFull, "'" + path_ +
                                   "' has reached the largest size that its format "
                                   "allows (" +
                                   std::to_string(format_->maxFileSize >> 20) +
                                   " MB). Compact it, or go on in a new database.");
  }
  const PageNumber page = pageCount_++;
  dirty_[page] = std::make_shared<std::uint8_t[]>(format_->pageSize);
  return page;
}

// Transactions ------------------------------------------------------------------------------

void Pager::begin() {
  if (transactionDepth_ == 0) {
    if (undoIsDue_) {
      ReadLock recovers(*this);
    }
    committedPageCount_ = pageCount_;
  }
  ++transactionDepth_;
}

void Pager::commit() {
  if (doomed_) {
    throw Error(kStoreFailure, "A change of '" + path_ + "' failed in part and is undone whole.");
  }
  if (--transactionDepth_ > 0 || dirty_.empty()) {
    return;
  }
  try {
    writeDirtyPages();
  } catch (const Error&) {
    ++transactionDepth_;  // The transaction's end undoes it.
    throw;
  }
  for (auto& [page, bytes] : dirty_) {
    remember(page, std::move(bytes));
  }
  dirty_.clear();
  committedPageCount_ = pageCount_;
  ++version_;
}

void Pager::writeDirtyPages() {
  std::vector<PageNumber> pages;
  for (const auto& [page, bytes] : dirty_) {
    pages.push_back(page);
  }
  std::sort(pages.begin(), pages.end());

  // The journal holds pages as the file has them, so that undoing needs no decoding.
  std::vector<Bytes> before;
  std::vector<Journal::Record> records;
  before.reserve(pages.size());
  for (PageNumber page : pages) {
    if (page < committedPageCount_) {
      PageBytes old = load(page);
      Bytes& copy = before.emplace_back(old.get(), old.get() + format_->pageSize);
      encode(page, copy.data());
      records.push_back({page, copy.data()});
    }
  }

  lockOrExplain(LockKind::readers, true);
  bool overwriting = false;
  try {
    if (journal_) {
      journal_->write(committedPageCount_, records);
    }
    overwriting = true;
    for (PageNumber page : pages) {
      Bytes bytes(dirty_[page].get(), dirty_[page].get() + format_->pageSize);
      encode(page, bytes.data());
      file_->write(std::uint64_t{page} * format_->pageSize, bytes.data(), bytes.size());
    }
    file_->sync();
    stamp_ = file_->touch();
    if (journal_) {
      journal_->clear();
    }
  } catch (const Error&) {
    undoCommit(overwriting ? records : std::vector<Journal::Record>());
    file_->tryLock(LockKind::readers, false);
    throw;
  }
  lockOrExplain(LockKind::readers, false);
}

void Pager::undoCommit(const std::vector<Journal::Record>& overwritten) {
  forgetPages();
  if (!journal_) {
    return;
  }
  // Should this fail too, the journal stays, and nothing is read or changed before it succeeds.
  undoIsDue_ = true;
  try {
    if (!overwritten.empty() && !journal_->isPresent()) {
      journal_->write(committedPageCount_, overwritten);  // It was voided, but not for good.
    }
    journal_->rollBack(*file_);
    undoIsDue_ = false;
  } catch (const Error&) {
  }
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

}  // namespace orv::store::jet
