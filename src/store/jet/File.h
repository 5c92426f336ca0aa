// The operating system's files: the one place of the store that knows the platform.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace orv::store::jet {

/// Tells whether a file has been changed since the stamp was taken.
struct FileStamp {
  std::int64_t size = -1;
  std::int64_t modifiedNanoseconds = 0;
  bool operator==(const FileStamp&) const = default;
};

/// Which part of the locking protocol a lock is for.
enum class LockKind {
  readers,  ///< shared while reading; exclusive while the file is overwritten
  writer,   ///< exclusive from the first change to the commit
};

/// An open file. Failures raise kStoreFailure and name the file and the system's reason.
class File {
 public:
  virtual ~File() = default;

  virtual std::uint64_t size() = 0;
  /// Reads exactly `length` bytes.
  virtual void read(std::uint64_t offset, std::uint8_t* bytes, std::size_t length) = 0;
  virtual void write(std::uint64_t offset, const std::uint8_t* bytes, std::size_t length) = 0;
  virtual void truncate(std::uint64_t size) = 0;
  /// Returns when all that was written is on the disk.
  virtual void sync() = 0;
  virtual bool readOnly() const = 0;
  virtual FileStamp stamp() = 0;
  /// Gives the file a time of modification that no earlier change of it had, and returns the
  /// stamp with it: the system's own times are too coarse to tell quick changes apart.
  virtual FileStamp touch() = 0;

  /// Takes a lock without waiting; false when another process holds it in the way.
  virtual bool tryLock(LockKind kind, bool exclusive) = 0;
  virtual void unlock(LockKind kind) = 0;
  /// Who holds the lock that tryLock() was refused, for a message: "orv (process 123)".
  virtual std::string lockHolder(LockKind kind) = 0;
};

/// Opens and removes files. Tests put one in its place that fails or loses power.
class FileSystem {
 public:
  virtual ~FileSystem() = default;
  enum class Open { existing, existingOrNew, newOnly };
  /// Opens for reading and writing, or, an existing file, for reading only where writing is not
  /// allowed.
  virtual std::unique_ptr<File> open(const std::string& path, Open mode) = 0;
  /// Size in bytes; -1 when there is no such file.
  virtual std::int64_t size(const std::string& path) = 0;
  virtual void remove(const std::string& path) = 0;
  /// Gives a file another name in its folder, which no file may have.
  virtual void rename(const std::string& from, const std::string& to) = 0;
  /// Makes creations, removals and new names in the folder of `path` durable.
  virtual void syncFolder(const std::string& path) = 0;
  /// The same text for every name of one file. Raises kStoreFailure when there is none.
  virtual std::string identity(const std::string& path) = 0;

  /// The one in use: the operating system's, unless a test has set another.
  static FileSystem& current();
  /// Puts another in use, or with null the operating system's again.
  static void setCurrent(FileSystem* fileSystem);
  static FileSystem& system();
};

}  // namespace orv::store::jet
