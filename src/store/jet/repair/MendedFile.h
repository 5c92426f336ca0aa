// A damaged file, as if it were of whole pages and had a header.
#pragma once

#include <memory>

#include "store/Value.h"
#include "store/jet/file/File.h"

namespace orv::store::jet {

/// Reads a Jet 4 file with another header page, and with zeros for what is missing of its last
/// page. Of a definition that has not all its bytes there, nothing is read. Never changes the file.
class MendedFile : public File {
 public:
  MendedFile(std::unique_ptr<File> file, Bytes header);

  FileStatus status() override;
  void read(std::uint64_t offset, std::uint8_t* bytes, std::size_t length) override;
  void write(std::uint64_t offset, const std::uint8_t* bytes, std::size_t length) override;
  void truncate(std::uint64_t size) override;
  void sync() override {}
  bool readOnly() const override { return true; }

  bool tryLock(LockKind kind, bool exclusive) override { return file_->tryLock(kind, exclusive); }
  void unlock(LockKind kind) override { file_->unlock(kind); }
  bool isFree(LockKind kind) override { return file_->isFree(kind); }
  std::string lockHolder(LockKind kind) override { return file_->lockHolder(kind); }

 private:
  Bytes readLastPage();

  std::unique_ptr<File> file_;
  Bytes header_;
  std::uint64_t wholeSize_;  ///< without the part of a page at the end
  Bytes lastPage_;           ///< that part and zeros; empty where there is none
};

}  // namespace orv::store::jet
