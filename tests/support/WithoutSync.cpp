// Linked into a test program: the store's files do not wait for the disk, which tests of what
// is in them need not.

#include <gtest/gtest.h>

#include "store/jet/file/File.h"

namespace orv::test {
namespace {

using store::jet::File;
using store::jet::FileStatus;
using store::jet::FileSystem;
using store::jet::LockKind;

class FileWithoutSync final : public File {
 public:
  explicit FileWithoutSync(std::unique_ptr<File> file) : file_(std::move(file)) {}

  FileStatus status() override { return file_->status(); }
  void read(std::uint64_t offset, std::uint8_t* bytes, std::size_t length) override {
    file_->read(offset, bytes, length);
  }
  void write(std::uint64_t offset, const std::uint8_t* bytes, std::size_t length) override {
    file_->write(offset, bytes, length);
  }
  void truncate(std::uint64_t size) override { file_->truncate(size); }
  void sync() override {}
  bool readOnly() const override { return file_->readOnly(); }
  bool tryLock(LockKind kind, bool exclusive) override { return file_->tryLock(kind, exclusive); }
  void unlock(LockKind kind) override { file_->unlock(kind); }
  bool isFree(LockKind kind) override { return file_->isFree(kind); }
  std::string lockHolder(LockKind kind) override { return file_->lockHolder(kind); }

 private:
  std::unique_ptr<File> file_;
};

class FilesWithoutSync final : public FileSystem {
 public:
  std::unique_ptr<File> open(const std::string& path, Open mode) override {
    return std::make_unique<FileWithoutSync>(system().open(path, mode));
  }
  std::optional<FileStatus> status(const std::string& path) override {
    return system().status(path);
  }
  std::unique_ptr<File> openCompanion(const std::string& path) override {
    auto file = system().openCompanion(path);
    return file == nullptr ? nullptr : std::make_unique<FileWithoutSync>(std::move(file));
  }
  std::unique_ptr<File> createCompanion(const std::string& path,
                                        const std::string& database) override {
    return std::make_unique<FileWithoutSync>(system().createCompanion(path, database));
  }
  std::vector<std::string> attributesLacking(const std::string& path,
                                             const std::string& former) override {
    return system().attributesLacking(path, former);
  }
  void remove(const std::string& path) override { system().remove(path); }
  bool rename(const std::string& from, const std::string& to) override {
    return system().rename(from, to);
  }
  void replace(const std::string& from, const std::string& to) override {
    system().replace(from, to);
  }
  void syncFolder(const std::string&) override {}
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
