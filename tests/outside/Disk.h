// What a disk may hold of a folder after the power went, worked out from a recording of the calls
// that changed its files.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
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

  void apply(const Call& call);
  /// The files that the disk may hold then, by their names.
  std::map<std::string, std::string> left(Luck luck, std::uint32_t seed) const;
  /// Writes them into a folder.
  void leaveIn(const std::filesystem::path& folder, Luck luck, std::uint32_t seed) const;

 private:
  struct Write {
    std::uint64_t offset;
    std::string data;
    bool isResize = false;  ///< to `offset`
  };
  struct File {
    std::string certain;
    std::vector<Write> pending = {};
  };
  using Names = std::map<std::string, std::size_t>;  ///< which of `files_` has it
  struct NameChange {
    std::string removed;  ///< a name that goes; none when empty
    std::string added;    ///< a name that the file gets; none when empty
    std::size_t file;
  };

  static void perform(std::string& content, const Write& write);
  static void perform(Names& names, const NameChange& change);
  /// Adds a file that has this number in the file system; gives its place in `files_`.
  std::size_t add(std::uint64_t number, std::string content);

  std::vector<File> files_;
  std::map<std::uint64_t, std::size_t> places_;  ///< by the numbers of the files
  Names certainNames_;
  std::vector<NameChange> pendingNames_;
};

}  // namespace orv::test
