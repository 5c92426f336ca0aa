// Pages of one file: cache, locks, atomic and durable commits.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

#include "store/Value.h"
#include "store/jet/file/Bytes.h"
#include "store/jet/file/LoggedFile.h"
#include "store/jet/page/ChangeObserver.h"
#include "store/jet/page/Format.h"
#include "store/jet/page/PageCache.h"

namespace orv::store::jet {

/// A page as it was when it was read: the bytes stay valid and unchanged while this lives, even
/// when the page is changed or leaves the cache meanwhile.
class PageRef {
 public:
  PageRef() = default;
  PageRef(PageNumber number, PageBytes bytes, std::size_t size)
      : number_(number), bytes_(std::move(bytes)), size_(size) {}

  PageNumber number() const { return number_; }
  const std::uint8_t* data() const { return bytes_.get(); }
  std::size_t size() const { return size_; }
  ByteView view() const { return {{bytes_.get(), size_}, number_}; }
  PageType type() const { return static_cast<PageType>(bytes_[0]); }
  explicit operator bool() const { return bytes_ != nullptr; }

 private:
  PageNumber number_ = 0;
  PageBytes bytes_;
  std::size_t size_ = 0;
};

/// Reads and writes the pages of one file. All connections of the process to a file share one
/// pager. Changes are made within a Transaction and reach the file when it commits, atomically
/// and durably: the pages' new contents are in a log beside the file, on the disk, before the
/// first of them is overwritten (see LoggedFile).
///
/// Raises kStoreFailure for failed input or output, for a file locked by another program and for
/// one that was deleted or replaced meanwhile, kCorruptFile for a page that the file does not have,
/// kReadOnlyStore for a change where none is possible, kDatabaseFull for growth past the format's
/// limit. All descriptions name the file.
class Pager {
 public:
  /// The pager of the file at `path`, shared with everyone in the process who has it open.
  static std::shared_ptr<Pager> open(const std::string& path);
  /// Writes a new file with this content, whole or not at all; raises kStoreFailure where a file
  /// stands already, or has come to stand meanwhile.
  static void createFile(const std::string& path, const Bytes& content);

  /// A pager over a file that nobody else uses, with at least a header page: commits go into it
  /// without a log.
  static std::shared_ptr<Pager> overFile(std::unique_ptr<File> file, const std::string& path);
  /// A pager over the file content `bytes`, which it changes and which outlives it; errors name
  /// it `path`.
  static std::shared_ptr<Pager> overMemory(Bytes& bytes, const std::string& path);

  ~Pager();
  Pager(const Pager&) = delete;
  Pager& operator=(const Pager&) = delete;

  const std::string& path() const { return file_.path(); }
  const Format& format() const { return *format_; }
  /// 0 Jet 3, 1 Jet 4, 2 and above `.accdb`.
  int engineVersion() const { return engineVersion_; }
  bool readOnly() const { return file_.readOnly() || !writableFormat(); }
  /// What the error of a change says; empty where the file can be changed.
  std::string whyReadOnly() const;
  bool isReplaced() const { return file_.isReplaced(); }
  /// Returns when all commits are on the disk.
  void sync() { file_.sync(); }
  /// Within a write lock: brings all commits to the disk and removes the log, so that the file may
  /// be replaced. From then on nothing is written to it.
  void endLog() { file_.endLog(); }
  /// Within a WriteLock: raises kStoreFailure where another file stands at the path, or another
  /// program has written.
  void refuseChanged() { file_.refuseChanged(); }
  PageNumber pageCount() const { return pageCount_; }
  /// In bytes, which may end with a part of a page.
  std::uint64_t fileSize() { return file_.size(); }
  /// The header page, its hidden part decoded.
  const Bytes& header() const { return header_; }

  /// Grows with every commit and rollback, and with every change by another program that was
  /// noticed: whoever keeps something derived from rows compares it.
  std::uint64_t version() const { return version_; }
  /// Grows when what was read before may be void: after a rollback or a change by another
  /// program. Whoever keeps something that only this process changes compares it.
  std::uint64_t epoch() const { return epoch_; }

  PageRef read(PageNumber page);

  /// The bytes of a page, to be changed; only within a transaction. Valid until the next call of
  /// modify() for the same page after a read() of it, commit or rollback.
  std::uint8_t* modify(PageNumber page);
  /// Adds a zeroed page at the end of the file.
  PageNumber append();

  /// Lets somebody know of all changes from now on; outside transactions. Null ends that.
  void observe(std::shared_ptr<ChangeObserver> observer) { observer_ = std::move(observer); }
  const std::shared_ptr<ChangeObserver>& observer() const { return observer_; }

  /// How long the observer had told its file to be for the last commit that was recovered when
  /// the database was opened, the first time that it is asked for; else 0.
  std::uint64_t takeRecoveredCompanion() { return file_.takeRecoveredCompanion(); }

  bool inTransaction() const { return transactionDepth_ > 0; }
  /// Whether a lock is held, so that no other process changes the file.
  bool isLocked() const { return readers_ > 0; }
  /// For long reading, within a lock and outside transactions: lets a writer who waits have the
  /// file for a while. False when he, or anybody, has changed it: what was read is void then.
  bool letWritersIn();

  /// While one lives, no other process changes the file. Taking the first one looks whether
  /// another program has changed the file, and forgets cached pages if so.
  class ReadLock {
   public:
    explicit ReadLock(Pager& pager) : pager_(pager), scope_(pager.path()) { pager_.acquireRead(); }
    ~ReadLock() { pager_.releaseRead(); }
    ReadLock(const ReadLock&) = delete;
    ReadLock& operator=(const ReadLock&) = delete;

   private:
    Pager& pager_;
    DamagedFileScope scope_;
  };

  /// While one lives, no other process can begin to write. Waits briefly for another writer,
  /// then raises kStoreFailure saying who holds the file.
  class WriteLock {
   public:
    explicit WriteLock(Pager& pager) : pager_(pager) { pager_.acquireWrite(); }
    ~WriteLock() { pager_.releaseWrite(); }
    WriteLock(const WriteLock&) = delete;
    WriteLock& operator=(const WriteLock&) = delete;

   private:
    Pager& pager_;
  };

 private:
  friend class Transaction;
  friend class Savepoint;
  struct DirtyPage {
    PageBytes bytes;
    PageBytes before;  ///< as the file has it; null for a page that is new
  };

  Pager(std::unique_ptr<File> file, std::string path);

  void acquireRead();
  void releaseRead();
  void acquireWrite();
  void releaseWrite();
  void begin();
  void commit();
  void rollback();

  bool writableFormat() const { return format_->writable && engineVersion_ <= 1; }
  void readHeader();
  void countPages();
  void forgetPages();
  PageBytes load(PageNumber page);
  PageBytes copyOf(const PageBytes& bytes) const;
  /// The page as the file has it: the same bytes, or an encoded copy.
  PageBytes encoded(PageNumber page, const PageBytes& bytes) const;
  void encode(PageNumber page, std::uint8_t* bytes) const;
  void writeDirtyPages(std::uint64_t companion);

  LoggedFile file_;
  const Format* format_ = nullptr;
  int engineVersion_ = 0;
  std::uint32_t encodingKey_ = 0;  ///< 0: pages are not encoded
  Bytes header_;
  PageNumber pageCount_ = 0;
  std::uint64_t version_ = 1;
  std::uint64_t epoch_ = 1;

  PageCache cache_;
  std::unordered_map<PageNumber, DirtyPage> dirty_;
  PageNumber committedPageCount_ = 0;
  int transactionDepth_ = 0;
  bool doomed_ = false;  ///< an inner transaction was undone: the outer one cannot commit
  std::shared_ptr<ChangeObserver> observer_;
  int readers_ = 0;
  int writers_ = 0;
};

/// All changes made while it lives, committed together by commit() and undone when it is
/// destroyed without. A transaction begun within another joins it: only the outermost commits,
/// and one that is undone within it dooms the outer one too.
class Transaction {
 public:
  explicit Transaction(Pager& pager);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  void commit();

 private:
  Pager& pager_;
  Pager::WriteLock lock_;
  bool done_ = false;
};

/// A transaction that, within another one, can be undone by itself: destroyed without commit(), it
/// leaves the outer one as it was when this one was begun. Nobody may hold bytes of modify() over
/// its beginning.
class Savepoint {
 public:
  explicit Savepoint(Pager& pager);
  ~Savepoint();
  Savepoint(const Savepoint&) = delete;
  Savepoint& operator=(const Savepoint&) = delete;
  void commit();

 private:
  Pager& pager_;
  Transaction transaction_;
  const bool isWithin_;  ///< another transaction, which can still be committed
  /// Of the outer transaction. Since they are held here too, changes go to copies.
  std::unordered_map<PageNumber, Pager::DirtyPage> dirty_;
  PageNumber pageCount_;
  std::size_t mark_;  ///< of the observer
  bool done_ = false;
};

}  // namespace orv::store::jet
