// Files of a POSIX system.

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <vector>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/file/Bytes.h"
#include "store/jet/file/File.h"

namespace orv::store::jet {
namespace {

[[noreturn]] void raiseFailure(const std::string& doing, const std::string& path, int reason) {
  std::string text = doing + " '" + path + "' failed: " + std::strerror(reason) + ".";
  if (reason == ENOSPC || reason == EDQUOT) {
    text += " Free some space and try again; nothing that was saved before is lost.";
  }
  throw Error(kStoreFailure, text);
}

/// Locks are taken on bytes that no database reaches, so that they never stand in the way of
/// reading or writing.
constexpr off_t kLockBase = off_t{1} << 40;

/// Locks belong to an opening of the file, not to the process: closing another descriptor of the
/// file does not drop them, and two openings within a process hold each other off.
struct flock lockOf(LockKind kind, short type) {
  struct flock lock {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = kLockBase + static_cast<off_t>(kind);
  lock.l_len = 1;
  return lock;
}

FileStatus statusOf(const struct stat& s) {
  return {s.st_dev, s.st_ino, s.st_nlink, static_cast<std::uint64_t>(s.st_size),
          std::int64_t{s.st_mtim.tv_sec} * 1'000'000'000 + s.st_mtim.tv_nsec};
}

/// The name of the process that `folder` of /proc describes, when it holds the lock; else empty.
std::string holderIn(const std::filesystem::path& folder, const std::string& file, off_t place) {
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator(folder / "fdinfo", ignored)) {
    std::ifstream info(entry.path());
    for (std::string line; std::getline(info, line);) {
      // lock: 1: OFDLCK ADVISORY  WRITE -1 fe:00:1234 1099511627777 1099511627777
      const std::string range = " " + std::to_string(place) + " " + std::to_string(place);
      if (line.starts_with("lock:") && line.find(file) != std::string::npos &&
          line.ends_with(range)) {
        std::string name;
        std::getline(std::ifstream(folder / "comm"), name);
        return name + " (process " + folder.filename().string() + ")";
      }
    }
  }
  return {};
}

/// The extended attribute that holds the access control list.
constexpr const char* kAccessList = "system.posix_acl_access";

/// What `call(buffer, size)` gives: it tells the size when it is asked for none.
template <class Call>
std::string sized(Call call) {
  const ssize_t size = call(nullptr, 0);
  std::string bytes(static_cast<std::size_t>(std::max<ssize_t>(size, 0)), 0);
  const ssize_t got = bytes.empty() ? 0 : call(bytes.data(), bytes.size());
  bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
  return bytes;
}

/// The names of the extended attributes that a user may see; none where there are no such things.
std::vector<std::string> attributesOf(const std::string& path) {
  const std::string list =
      sized([&](char* bytes, std::size_t size) { return ::listxattr(path.c_str(), bytes, size); });
  std::vector<std::string> names;
  for (std::size_t at = 0; at < list.size(); at += names.back().size() + 1) {
    names.emplace_back(list.c_str() + at);
  }
  return names;
}

std::string attributeOf(const std::string& path, const std::string& name) {
  return sized([&](char* bytes, std::size_t size) {
    return ::getxattr(path.c_str(), name.c_str(), bytes, size);
  });
}

/// The mode of a file with no more rights of its group than an access control list gives that
/// group itself; where there is a list, the mode has what its entries may have at most.
mode_t withRightsOfGroup(mode_t mode, const std::string& accessList) {
  constexpr std::size_t kVersionSize = 4;
  constexpr std::size_t kEntrySize = 8;  // tag, rights, who
  constexpr std::uint16_t kOwningGroup = 4;
  for (std::size_t at = kVersionSize; at + kEntrySize <= accessList.size(); at += kEntrySize) {
    const auto* entry = reinterpret_cast<const std::uint8_t*>(&accessList[at]);
    if (load16(entry) != kOwningGroup) continue;
    return mode & ~(S_IRWXG & ~(mode_t{load16(entry + 2)} << 3));
  }
  return mode;
}

/// Whether a file may be there to be read: without permission, on a disk that is read-only, or one
/// that its owner has made unchangeable.
bool isWritingRefused(int error) {
  return error == EACCES || error == EROFS || error == EPERM;
}

class PosixFile final : public File {
 public:
  PosixFile(int descriptor, std::string path, bool readOnly)
      : descriptor_(descriptor), path_(std::move(path)), readOnly_(readOnly) {}
  ~PosixFile() override { ::close(descriptor_); }

  FileStatus status() override { return statusOf(systemStatus()); }

  void read(std::uint64_t offset, std::uint8_t* bytes, std::size_t length) override {
    while (length > 0) {
      ssize_t n = ::pread(descriptor_, bytes, length, static_cast<off_t>(offset));
      if (n < 0 && errno == EINTR) {
        continue;
      }
      if (n < 0) {
        raiseFailure("Reading", path_, errno);
      }
      if (n == 0) {
        throw Error(kStoreFailure, "Reading '" + path_ + "' failed: the file ends too early.");
      }
      bytes += n;
      offset += static_cast<std::uint64_t>(n);
      length -= static_cast<std::size_t>(n);
    }
  }

  void write(std::uint64_t offset, const std::uint8_t* bytes, std::size_t length) override {
    while (length > 0) {
      ssize_t n = ::pwrite(descriptor_, bytes, length, static_cast<off_t>(offset));
      if (n < 0 && errno == EINTR) {
        continue;
      }
      if (n < 0) {
        raiseFailure("Writing", path_, errno);
      }
      bytes += n;
      offset += static_cast<std::uint64_t>(n);
      length -= static_cast<std::size_t>(n);
    }
  }

  void truncate(std::uint64_t size) override {
    if (::ftruncate(descriptor_, static_cast<off_t>(size)) != 0) {
      raiseFailure("Writing", path_, errno);
    }
  }

  void sync() override {
    if (::fdatasync(descriptor_) != 0) {
      raiseFailure("Writing", path_, errno);
    }
  }

  bool readOnly() const override { return readOnly_; }

  void letOwnerWrite() override { setMode(systemStatus().st_mode | S_IWUSR); }

  bool tryLock(LockKind kind, bool exclusive) override {
    struct flock lock = lockOf(kind, exclusive ? F_WRLCK : F_RDLCK);
    if (::fcntl(descriptor_, F_OFD_SETLK, &lock) == 0) {
      return true;
    }
    if (errno == EACCES || errno == EAGAIN) {
      return false;
    }
    throw Error(kStoreFailure,
                "Locking '" + path_ + "' failed: " + std::strerror(errno) +
                    ". Its file system does not grant locks on ranges of an open file (fcntl, "
                    "F_OFD_SETLK), without which two programs could damage it. Copy the file to "
                    "another disk and work there.");
  }

  void unlock(LockKind kind) override {
    struct flock lock = lockOf(kind, F_UNLCK);
    ::fcntl(descriptor_, F_OFD_SETLK, &lock);
  }

  bool isFree(LockKind kind) override {
    struct flock lock = lockOf(kind, F_WRLCK);
    return ::fcntl(descriptor_, F_OFD_GETLK, &lock) == 0 && lock.l_type == F_UNLCK;
  }

  std::string lockHolder(LockKind kind) override {
    const std::string file = ":" + std::to_string(systemStatus().st_ino) + " ";
    const std::string self = std::to_string(::getpid());
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator("/proc", ignored)) {
      const std::string name = entry.path().filename().string();
      if (name.find_first_not_of("0123456789") != std::string::npos || name == self) {
        continue;
      }
      std::string holder = holderIn(entry.path(), file, lockOf(kind, 0).l_start);
      if (!holder.empty()) {
        return holder;
      }
    }
    return "another program";
  }

  struct stat systemStatus() const {
    struct stat s {};
    if (::fstat(descriptor_, &s) != 0) {
      raiseFailure("Reading", path_, errno);
    }
    return s;
  }

  /// Gives the file the owner, group, permissions and attributes of another, as far as this user
  /// may. An access control list decides what the bits for the group mean: none is inherited from
  /// the folder, and that of the other comes last. Without it these bits are what the group itself
  /// may.
  void belongTogetherWith(const struct stat& other, const std::string& path) {
    ::fremovexattr(descriptor_, kAccessList);
    if (::fchown(descriptor_, other.st_uid, other.st_gid) != 0 &&
        ::fchown(descriptor_, static_cast<uid_t>(-1), other.st_gid) != 0) {
      // Its own group has to do.
    }
    setMode(other.st_mode);
    for (const std::string& name : attributesOf(path)) {
      const std::string value = attributeOf(path, name);
      const int result = ::fsetxattr(descriptor_, name.c_str(), value.data(), value.size(), 0);
      if (result != 0 && name == kAccessList) setMode(withRightsOfGroup(other.st_mode, value));
    }
  }

 private:
  void setMode(mode_t mode) {
    if (::fchmod(descriptor_, mode & 0666) != 0) raiseFailure("Creating", path_, errno);
  }

  int descriptor_;
  std::string path_;
  bool readOnly_;
};

class PosixFileSystem final : public FileSystem {
 public:
  std::unique_ptr<File> open(const std::string& path, Open mode) override {
    const bool isNew = mode == Open::newOnly;
    bool readOnly = false;
    int descriptor =
        ::open(path.c_str(), O_RDWR | O_CLOEXEC | (isNew ? O_CREAT | O_EXCL : O_NONBLOCK), 0666);
    const int refusal = errno;
    if (descriptor < 0 && !isNew && isWritingRefused(refusal)) {
      readOnly = true;
      descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
      errno = refusal;
    }
    if (descriptor < 0) {
      raiseFailure(isNew ? "Creating" : "Opening", path, errno);
    }
    auto file = std::make_unique<PosixFile>(descriptor, path, readOnly);
    if (!S_ISREG(file->systemStatus().st_mode)) {
      throw Error(kStoreFailure, "Opening '" + path + "' failed: it is not a file.");
    }
    return file;
  }

  std::optional<FileStatus> status(const std::string& path) override {
    struct stat s {};
    return ::stat(path.c_str(), &s) == 0 ? std::optional(statusOf(s)) : std::nullopt;
  }

  std::unique_ptr<File> openCompanion(const std::string& path) override {
    constexpr int kFlags = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    bool readOnly = false;
    int descriptor = ::open(path.c_str(), O_RDWR | kFlags);
    if (descriptor < 0 && isWritingRefused(errno)) {
      readOnly = true;
      descriptor = ::open(path.c_str(), O_RDONLY | kFlags);
    }
    if (descriptor < 0 && errno == ENOENT) {
      return nullptr;
    }
    if (descriptor < 0 && (errno == ELOOP || errno == EISDIR)) {
      refuseCompanion(path, errno == ELOOP ? "a symbolic link" : "a folder");
    }
    if (descriptor < 0) {
      raiseFailure("Opening", path, errno);
    }
    auto file = std::make_unique<PosixFile>(descriptor, path, readOnly);
    const struct stat s = file->systemStatus();
    if (!S_ISREG(s.st_mode)) {
      refuseCompanion(path, "not a file");
    }
    if (s.st_nlink > 1) {
      refuseCompanion(path, "a file with a second name (a hard link)");
    }
    return file;
  }

  std::unique_ptr<File> createCompanion(const std::string& path,
                                        const std::string& database) override {
    struct stat s {};
    if (::stat(database.c_str(), &s) != 0) {
      raiseFailure("Reading", database, errno);
    }
    int descriptor = ::open(path.c_str(), O_RDWR | O_CLOEXEC | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
    if (descriptor < 0) {
      raiseFailure("Creating", path, errno);
    }
    auto file = std::make_unique<PosixFile>(descriptor, path, false);
    file->belongTogetherWith(s, database);
    return file;
  }

  std::vector<std::string> attributesLacking(const std::string& path,
                                             const std::string& former) override {
    std::vector<std::string> names = attributesOf(former);
    std::erase_if(names, [&](const std::string& name) {
      return attributeOf(path, name) == attributeOf(former, name);
    });
    struct stat now {};
    struct stat before {};
    if (::stat(path.c_str(), &now) == 0 && ::stat(former.c_str(), &before) == 0) {
      if (now.st_uid != before.st_uid) names.emplace_back("owner");
      if (now.st_gid != before.st_gid) names.emplace_back("group");
      if (((now.st_mode ^ before.st_mode) & 0666) != 0) names.emplace_back("rights of the group");
    }
    return names;
  }

  void remove(const std::string& path) override {
    if (::unlink(path.c_str()) != 0 && errno != ENOENT) {
      raiseFailure("Removing", path, errno);
    }
  }

  bool rename(const std::string& from, const std::string& to) override {
    int result = ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
    if (result != 0 && (errno == EINVAL || errno == ENOSYS)) {
      result = renameInTwoSteps(from, to);
    }
    if (result != 0 && errno != EEXIST) {
      raiseFailure("Renaming '" + from + "' to", to, errno);
    }
    return result == 0;
  }

  void replace(const std::string& from, const std::string& to) override {
    if (::rename(from.c_str(), to.c_str()) != 0) {
      raiseFailure("Renaming '" + from + "' to", to, errno);
    }
  }

  void syncFolder(const std::string& path) override {
    std::string folder = std::filesystem::path(path).parent_path().string();
    int descriptor = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor >= 0) {
      ::fsync(descriptor);
      ::close(descriptor);
    }
  }

 private:
  /// On file systems that cannot refuse to replace: takes the name for an empty file first.
  static int renameInTwoSteps(const std::string& from, const std::string& to) {
    const int taken = ::open(to.c_str(), O_WRONLY | O_CLOEXEC | O_CREAT | O_EXCL, 0600);
    if (taken < 0) {
      return -1;
    }
    ::close(taken);
    const int result = ::rename(from.c_str(), to.c_str());
    if (result != 0) {
      const int reason = errno;
      ::unlink(to.c_str());
      errno = reason;
    }
    return result;
  }

  [[noreturn]] static void refuseCompanion(const std::string& path, const std::string& what) {
    throw Error(kStoreFailure, "'" + path + "' is " + what +
                                   ", and no file that this program has made beside a database; it "
                                   "is left as it is. Move it away, then open the database again.");
  }
};

FileSystem* replacement = nullptr;

}  // namespace

FileSystem& FileSystem::system() {
  static PosixFileSystem instance;
  return instance;
}

FileSystem& FileSystem::current() {
  return replacement != nullptr ? *replacement : system();
}

void FileSystem::setCurrent(FileSystem* fileSystem) {
  replacement = fileSystem;
}

}  // namespace orv::store::jet
