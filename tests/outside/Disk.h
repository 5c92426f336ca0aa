// What a disk may hold of a folder after the power went, worked out from a recording of the calls
// that changed its files.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "outside/FileCall.h"

namespace orv::test {

struct Call {
  CallKind kind;
  std::string name;
  std::string other;
  std::string data;
  std::uint64_t file;
  std::uint64_t offset;
};

/// The calls of a recording, in their order.
std::vector<Call> readRecording(const std::filesystem::path& recording);

/// A folder on a disk that keeps what was synced for certain, and of the rest what it likes: each
/// piece of 512 bytes that was written, each new size, each change of a name may be there or not.
class Disk {
 public:
  enum class Luck {
    bad,    ///< nothing is there that was not synced
    good,   ///< everything is
    mixed,  ///< some of it is
  };

  /// Holds what the folder holds now; it is watched from now on.
  explicit Disk(const std::filesystem::path& folder);
  /// Has files of its own.
  Disk(const Disk& other);
  Disk& operator=(const Disk&) = delete;

  void apply(const Call& call);
  /// Writes what the disk may hold into a folder.
  void leaveIn(const std::filesystem::path& folder, Luck luck, std::uint32_t seed) const;

 private:
  struct Write {
    std::uint64_t offset;
    std::string data;
    bool isResize;  ///< to `offset`
  };
  struct File {
    std::string certain;
    std::vector<Write> pending;
  };
  using FilePointer = std::shared_ptr<File>;
  struct NameChange {
    std::string removed;  ///< a name that goes; none when empty
    std::string added;    ///< a name that the file gets; none when empty
    FilePointer file;
  };

  class Outcome;

  static void perform(std::string& content, const Write& write);
  static void perform(std::map<std::string, FilePointer>& names, const NameChange& change);
  const FilePointer& fileOf(const Call& call);

  std::map<std::uint64_t, FilePointer> files_;
  std::map<std::string, FilePointer> certainNames_;
  std::vector<NameChange> pendingNames_;
};

}  // namespace orv::test
