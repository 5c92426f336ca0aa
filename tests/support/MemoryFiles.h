// A file system in memory that loses power, runs full or fails when a test says so.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "store/Value.h"
#include "store/jet/file/File.h"

namespace orv::test {

/// The file of a test that needs but one there.
inline constexpr const char* kFile = "orvdata.mdb";

/// While it lives, the store's files are in memory. Every call that changes something or waits
/// for the disk is counted, and one of them can be made to fail.
class MemoryFiles final : public store::jet::FileSystem {
 public:
  MemoryFiles() { setCurrent(this); }
  ~MemoryFiles() override { setCurrent(nullptr); }

  /// Puts a file of the real disk here, as `name`.
  void load(const std::filesystem::path& file, const std::string& name);
  /// Over a file that is there its content is written, as by a program that copies.
  void copy(const std::string& from, const std::string& to);
  /// Puts a file of here on the real disk.
  void save(const std::string& name, const std::filesystem::path& file) const;

  /// Number of counted calls so far.
  std::size_t calls() const { return calls_; }
  /// Makes `count` calls fail from that of this number on (from now on, 0 the next).
  void failAt(std::size_t call, std::size_t count = 1) {
    failAt_ = calls_ + call;
    failEnd_ = failAt_ + count;
  }
  /// Makes the power go at the call of this number: it and all later ones fail until restart().
  void losePowerAt(std::size_t call) { powerOffAt_ = calls_ + call; }
  /// Writing beyond this many bytes in all files together fails as on a full disk.
  void limitSpace(std::uint64_t bytes) { space_ = bytes; }

  /// What a disk holds after a loss of power: of what was not synced, some writes, in pieces of
  /// 512 bytes, and some not, as `seed` has it; files whose creation was not synced may be gone,
  /// and those whose new name was not synced may have the old one.
  void restart(unsigned seed);

  std::unique_ptr<store::jet::File> open(const std::string& path, Open mode) override;
  std::optional<store::jet::FileStatus> status(const std::string& path) override;
  std::unique_ptr<store::jet::File> openCompanion(const std::string& path) override;
  std::unique_ptr<store::jet::File> createCompanion(const std::string& path,
                                                    const std::string& database) override;
  std::vector<std::string> attributesLacking(const std::string&, const std::string&) override {
    return {};
  }
  void remove(const std::string& path) override;
  bool rename(const std::string& from, const std::string& to) override;
  void replace(const std::string& from, const std::string& to) override;
  void syncFolder(const std::string& path) override;
  /// Size in bytes; -1 when there is no such file.
  std::int64_t size(const std::string& path) const;
  const store::Bytes& content(const std::string& path) const { return files_.at(path)->content; }

 private:
  friend class MemoryFile;
  struct Change {
    std::uint64_t offset;
    store::Bytes bytes;      ///< written there, or,
    bool truncates = false;  ///< the file was cut to `offset`
  };
  struct Node {
    store::Bytes content;
    store::Bytes synced;
    std::vector<Change> unsynced;
    std::uint64_t number = 0;
    bool isRemoved = false;
    bool creationSynced = false;
    std::int64_t modified = 0;
  };

  std::shared_ptr<Node> newNode();
  /// Counts a call and makes it fail if it is its turn.
  void count(const std::string& what);
  void checkSpace(std::uint64_t more) const;
  static void apply(store::Bytes& content, const Change& change);

  std::map<std::string, std::shared_ptr<Node>> files_;
  std::map<std::string, std::shared_ptr<Node>> removedUnsynced_;
  std::map<std::string, std::string> renamedUnsynced_;  ///< by the new name, the old one
  std::size_t calls_ = 0;
  std::size_t failAt_ = SIZE_MAX;
  std::size_t failEnd_ = SIZE_MAX;
  std::size_t powerOffAt_ = SIZE_MAX;
  std::uint64_t space_ = UINT64_MAX;
  std::int64_t clock_ = 0;
  std::uint64_t lastNumber_ = 0;
};

}  // namespace orv::test
