// Files of a POSIX system.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/File.h"

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

struct flock lockOf(LockKind kind, short type) {
  struct flock lock {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = kLockBase + (kind == LockKind::writer ? 1 : 0);
  lock.l_len = 1;
  return lock;
}

class PosixFile final : public File {
 public:
  PosixFile(int descriptor, std::string path, bool readOnly)
      : descriptor_(descriptor), path_(std::move(path)), readOnly_(readOnly) {}
  ~PosixFile() override { ::close(descriptor_); }

  std::uint64_t size() override { return static_cast<std::uint64_t>(status().st_size); }

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

  FileStamp stamp() override {
    struct stat s = status();
    return {s.st_size, nanoseconds(s.st_mtim)};
  }

  FileStamp touch() override {
    struct timespec now {};
    ::clock_gettime(CLOCK_REALTIME, &now);
    const std::int64_t before = stamp().modifiedNanoseconds;
    const std::int64_t unique = std::max(nanoseconds(now), before + 1);
    struct timespec times[2] = {{0, UTIME_OMIT}, {unique / 1'000'000'000, unique % 1'000'000'000}};
    ::futimens(descriptor_, times);  // Where this fails the system's own time has to do.
    return stamp();
  }

  bool tryLock(LockKind kind, bool exclusive) override {
    struct flock lock = lockOf(kind, exclusive ? F_WRLCK : F_RDLCK);
    if (::fcntl(descriptor_, F_SETLK, &lock) == 0) {
      return true;
    }
    if (errno == EACCES || errno == EAGAIN) {
      return false;
    }
    raiseFailure("Locking", path_, errno);
  }

  void unlock(LockKind kind) override {
    struct flock lock = lockOf(kind, F_UNLCK);
    ::fcntl(descriptor_, F_SETLK, &lock);
  }

  std::string lockHolder(LockKind kind) override {
    struct flock lock = lockOf(kind, readOnly_ ? F_RDLCK : F_WRLCK);
    if (::fcntl(descriptor_, F_GETLK, &lock) != 0 || lock.l_type == F_UNLCK || lock.l_pid <= 0) {
      return "another program";
    }
    std::string name;
    std::getline(std::ifstream("/proc/" + std::to_string(lock.l_pid) + "/comm"), name);
    return (name.empty() ? std::string("another program") : name) + " (process " +
           std::to_string(lock.l_pid) + ")";
  }

 private:
  static std::int64_t nanoseconds(const struct timespec& t) {
    return std::int64_t{t.tv_sec} * 1'000'000'000 + t.tv_nsec;
  }

  struct stat status() const {
    struct stat s {};
    if (::fstat(descriptor_, &s) != 0) {
      raiseFailure("Reading", path_, errno);
    }
    return s;
  }

  int descriptor_;
  std::string path_;
  bool readOnly_;
};

class PosixFileSystem final : public FileSystem {
 public:
  std::unique_ptr<File> open(const std::string& path, Open mode) override {
    int flags = O_RDWR | O_CLOEXEC;
    if (mode != Open::existing) {
      flags |= O_CREAT;
    }
    if (mode == Open::newOnly) {
      flags |= O_EXCL;
    }
    bool readOnly = false;
    int descriptor = ::open(path.c_str(), flags, 0666);
    const int refusal = errno;
    if (descriptor < 0 && mode != Open::newOnly && (refusal == EACCES || refusal == EROFS)) {
      readOnly = true;
      descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
      errno = refusal;
    }
    if (descriptor < 0) {
      raiseFailure(mode == Open::newOnly ? "Creating" : "Opening", path, errno);
    }
    auto file = std::make_unique<PosixFile>(descriptor, path, readOnly);
    struct stat s {};
    if (::fstat(descriptor, &s) == 0 && !S_ISREG(s.st_mode)) {
      throw Error(kStoreFailure, "Opening '" + path + "' failed: it is not a file.");
    }
    return file;
  }

  std::int64_t size(const std::string& path) override {
    struct stat s {};
    return ::stat(path.c_str(), &s) == 0 ? s.st_size : -1;
  }

  void remove(const std::string& path) override {
    if (::unlink(path.c_str()) != 0 && errno != ENOENT) {
      raiseFailure("Removing", path, errno);
    }
  }

  void rename(const std::string& from, const std::string& to) override {
    int result = ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
    if (result != 0 && (errno == EINVAL || errno == ENOSYS) && size(to) < 0) {
      result = ::rename(from.c_str(), to.c_str());  // on file systems that cannot do both at once
    }
    if (result != 0) {
      raiseFailure("Creating", to, errno);
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

  std::string identity(const std::string& path) override {
    struct stat s {};
    if (::stat(path.c_str(), &s) != 0) {
      raiseFailure("Opening", path, errno);
    }
    return std::to_string(s.st_dev) + ":" + std::to_string(s.st_ino);
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
