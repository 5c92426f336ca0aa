// A file that is only in memory.
#pragma once

#include "store/Value.h"
#include "store/jet/File.h"

namespace orv::store::jet {

/// The content of a file that is being made, in `bytes`, which outlive this. Nobody else uses it,
/// so that every lock is free.
class MemoryFile : public File {
 public:
  explicit MemoryFile(Bytes& bytes) : bytes_(bytes) {}

  std::uint64_t size() override { return bytes_.size(); }
  void read(std::uint64_t offset, std::uint8_t* bytes, std::size_t length) override;
  void write(std::uint64_t offset, const std::uint8_t* bytes, std::size_t length) override;
  void truncate(std::uint64_t size) override { bytes_.resize(size); }
  void sync() override {}
  bool readOnly() const override { return false; }
  FileStamp stamp() override { return {}; }
  FileStamp touch() override { return {}; }
  bool tryLock(LockKind, bool) override { return true; }
  void unlock(LockKind) override {}
  std::string lockHolder(LockKind) override { return {}; }

 private:
  Bytes& bytes_;
};

}  // namespace orv::store::jet
