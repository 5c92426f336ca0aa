// Linked into a test program: the store's files do not wait for the disk, which tests of what
// is in them need not.

#include <gtest/gtest.h>

#include "store/jet/File.h"

namespace orv::test {
namespace {

using store::jet::File;
using store::jet::FileStamp;
using store::jet::FileSystem;
using store::jet::LockKind;

class FileWithoutSync final : public File {
 public:
  explicit FileWithoutSync(std::unique_ptr<File> file) : file_(std::move(file)) {}

  std::uint64_t size() override { return file_->size(); }
  void read(std::uint64_t offset, std::uint8_t* bytes, std::size_t length) override {
    file_->read(offset, bytes, length);
  }
  void write(std::uint64_t offset, const std::uint8_t* bytes, std::size_t length) override {
    file_->write(offset, bytes, length);
  }
  void truncate(std::uint64_t size) override { file_->truncate(size); }
  void sync() override {}
  bool readOnly() const override { return file_->readOnly(); }
  FileStamp stamp() override { return file_->stamp(); }
  FileStamp touch() override { return file_->touch(); }
  bool tryLock(LockKind kind, bool exclusive) override { return file_->tryLock(kind, exclusive); }
  void unlock(LockKind kind) override { file_->unlock(kind); }
  std::string lockHolder(LockKind kind) override { return file_->lockHolder(kind); }

 private:
  std::unique_ptr<File> file_;
};

class FilesWithoutSync final : public FileSystem {
 public:
  std::unique_ptr<File> open(const std::string& path, Open mode) override {
    return std::make_unique<FileWithoutSync>(system().open(path, mode));
  }
  std::int64_t size(const std::string& path) override { return system().size(path); }
  void remove(const std::string& path) override { system().remove(path); }
  void rename(const std::string& from, const std::string& to) override {
    system().rename(from, to);
  }
  void syncFolder(const std::string&) override {}
  std::string identity(const std::string& path) override { return system().identity(path); }
};

class WithoutSync final : public testing::Environment {
 public:
  void SetUp() override { FileSystem::setCurrent(&files_); }
  void TearDown() override { FileSystem::setCurrent(nullptr); }

 private:
  FilesWithoutSync files_;
};

[[maybe_unused]] testing::Environment* const environment =
    testing::AddGlobalTestEnvironment(new WithoutSync);

}  // namespace
}  // namespace orv::test
