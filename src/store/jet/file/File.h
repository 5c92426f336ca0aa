// The operating system's files: the one place of the store that knows the platform.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orv::store::jet {

/// What the system says of a file.
struct FileStatus {
  std::uint64_t device = 0;  ///< with `inode`, which file it is, whatever its name
  std::uint64_t inode = 0;
  std::uint64_t links = 0;  ///< how many names it has; 0 when it was deleted
  std::uint64_t size = 0;
  std::int64_t modified = 0;  ///< nanoseconds; the system's clock may be as coarse as seconds

  bool isSameFile(const FileStatus& other) const {
    return device == other.device && inode == other.inode;
  }
};

/// The parts of the locking protocol, see FileLocks.
enum class LockKind { readers, queue, writer, turn, presence };

/// An open file. Failures raise kStoreFailure and name the file and the system's reason.
class File {
 public:
  virtual ~File() = default;

  virtual FileStatus status() = 0;
  std::uint64_t size() { return status().size; }
  /// Reads exactly `length` bytes.
  virtual void read(std::uint64_t offset, std::uint8_t* bytes, std::size_t length) = 0;
  virtual void write(std::uint64_t offset, const std::uint8_t* bytes, std::size_t length) = 0;
  virtual void truncate(std::uint64_t size) = 0;
  /// Returns when all that was written is on the disk.
  virtual void sync() = 0;
  virtual bool readOnly() const = 0;
  /// Lets the owner of the file write to it, where there are permissions.
  virtual void letOwnerWrite() {}

  /// Takes a lock without waiting, or changes one that is held; false when another opening of the
  /// file holds it in the way. Raises kStoreFailure where the file system has no locks.
  virtual bool tryLock(LockKind kind, bool exclusive) = 0;
  virtual void unlock(LockKind kind) = 0;
  /// Whether no other opening of the file holds the lock, shared or exclusive.
  virtual bool isFree(LockKind kind) = 0;
  /// Who holds the lock that tryLock() was refused, for a message: "orv (process 123)".
  virtual std::string lockHolder(LockKind kind) = 0;
};

/// Opens and removes files. Tests put one in its place that fails or loses power.
class FileSystem {
 public:
  virtual ~FileSystem() = default;
  enum class Open { existing, newOnly };
  /// Opens for reading and writing, or, an existing file, for reading only where writing is not
  /// allowed. A new file is made under a name that nothing has, not even a link.
  virtual std::unique_ptr<File> open(const std::string& path, Open mode) = 0;
  /// Of the file that the path leads to; none when there is none.
  virtual std::optional<FileStatus> status(const std::string& path) = 0;

  /// Opens a file that the store keeps beside a database; null when there is none. Raises
  /// kStoreFailure for whatever is no plain file with this one name: a link would lead writing
  /// to a file of somebody else.
  virtual std::unique_ptr<File> openCompanion(const std::string& path) = 0;
  /// Makes such a file, with the owner, the group, the permissions, the access control list and the
  /// extended attributes of `database`, as far as the user may give these.
  virtual std::unique_ptr<File> createCompanion(const std::string& path,
                                                const std::string& database) = 0;

  /// The names of the extended attributes of `former`, its access control list among them, that
  /// `path` has not or with another value.
  virtual std::vector<std::string> attributesLacking(const std::string& path,
                                                     const std::string& former) = 0;

  /// Removes the name, if there is one.
  virtual void remove(const std::string& path) = 0;
  /// Gives a file another name in its folder; false when something has that name.
  virtual bool rename(const std::string& from, const std::string& to) = 0;
  /// Gives a file the name of another in its folder, which loses it in the same moment.
  virtual void replace(const std::string& from, const std::string& to) = 0;
  /// Makes creations, removals and new names in the folder of `path` durable.
  virtual void syncFolder(const std::string& path) = 0;

  /// The one in use: the operating system's, unless a test has set another.
  static FileSystem& current();
  /// Puts another in use, or with null the operating system's again.
  static void setCurrent(FileSystem* fileSystem);
  static FileSystem& system();
};

}  // namespace orv::store::jet
