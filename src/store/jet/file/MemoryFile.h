// A file that is only in memory.
#pragma once

#include "store/Value.h"
#include "store/jet/file/File.h"

namespace orv::store::jet {

/// The content of a file that is being made, in `bytes`, which outlive this. Nobody else uses it,
/// so that every lock is free.
class MemoryFile : public File {
 public:
  explicit MemoryFile(Bytes& bytes) : bytes_(bytes) {}

  FileStatus status() override { return {.links = 1, .size = bytes_.size()}; }
  void read(std::uint64_t offset, std::uint8_t* bytes, std::size_t length) override;
  void write(std::uint64_t offset, const std::uint8_t* bytes, std::size_t length) override;
  void truncate(std::uint64_t size) override { bytes_.resize(size); }
  void sync() override {}
  bool readOnly() const override { return false; }
  bool tryLock(LockKind, bool) override { return true; }
  void unlock(LockKind) override {}
  bool isFree(LockKind) override { return true; }
  std::string lockHolder(LockKind) override { return {}; }

 private:
  Bytes& bytes_;
};

}  // namespace orv::store::jet
