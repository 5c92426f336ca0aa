#include "textfile/WholeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>

namespace orv::textfile {

namespace {

constexpr mode_t kNewFileMode = 0666;  ///< before the user's mask

/// A file under a name that nobody else uses, which is removed again unless it is put in place.
class FileInWork {
 public:
  explicit FileInWork(const std::filesystem::path& folder) {
    constexpr int kMostTries = 1000;  // what programs that were killed have left
    for (int number = 0; number < kMostTries && descriptor_ < 0; ++number) {
      name_ = folder / (".orv-" + std::to_string(getpid()) + "-" + std::to_string(number));
      descriptor_ = open(name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode);
      if (descriptor_ < 0 && errno != EEXIST) return;
    }
    mustGo_ = descriptor_ >= 0;
  }
  ~FileInWork() {
    if (descriptor_ >= 0) close(descriptor_);
    if (mustGo_) unlink(name_.c_str());
  }
  FileInWork(const FileInWork&) = delete;
  FileInWork& operator=(const FileInWork&) = delete;

  bool isOpen() const { return descriptor_ >= 0; }

  bool takeMode(mode_t mode) { return fchmod(descriptor_, mode & 07777) == 0; }

  bool write(std::string_view bytes) {
    while (!bytes.empty()) {
      const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
      if (written < 0 && errno == EINTR) continue;
      if (written <= 0) return false;
      bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
  }

  bool place(const std::filesystem::path& path) {
    const int descriptor = descriptor_;
    if (fdatasync(descriptor) != 0) return false;
    descriptor_ = -1;
    mustGo_ = close(descriptor) != 0 || std::rename(name_.c_str(), path.c_str()) != 0;
    return !mustGo_;
  }

 private:
  std::filesystem::path name_;
  int descriptor_ = -1;
  bool mustGo_ = false;  ///< it was made and is not in place
};

/// Number of the last failure of the system.
int failure() {
  return errno != 0 ? errno : EIO;
}

}  // namespace

int writeWhole(const std::filesystem::path& path, std::string_view bytes) {
  struct stat former {};
  const bool replaces = stat(path.c_str(), &former) == 0;
  // Replacing asks only for the folder's permission; the file's own counts too.
  if (replaces && access(path.c_str(), W_OK) != 0) return failure();
  FileInWork file(path.has_parent_path() ? path.parent_path() : ".");
  const bool done = file.isOpen() && (!replaces || file.takeMode(former.st_mode)) &&
                    file.write(bytes) && file.place(path);
  return done ? 0 : failure();
}

}  // namespace orv::textfile
