// A library to be loaded before the C library (LD_PRELOAD) that stands between a program and its
// files: it counts every call that changes a file below a folder, and as it is told kills
// the program at one, lets one fail, or records them all. It never waits for the disk: a program
// that is killed loses nothing that the system has taken.
//
// FileCall.h says how it is told. Calls that it does not know would be missing in a recording;
// Disk.cpp notices that.
#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "outside/FileCall.h"

namespace {

namespace fs = std::filesystem;
using namespace orv::test;

/// The C library's function of this name, which has the type of ours.
template <class Function>
Function* real(Function* /*ours*/, const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

int realOpen(const char* path, int flags, mode_t mode = 0) {
  static auto* const function = real(open64, "open64");
  return function(path, flags, mode);
}

ssize_t realWrite(int descriptor, const void* bytes, std::size_t length) {
  static auto* const function = real(write, "write");
  return function(descriptor, bytes, length);
}

/// A call that changes a file, as it is noted.
struct Change {
  CallKind kind;
  std::uint64_t file = 0;
  std::uint64_t offset = 0;
  std::string data = {};
  std::string other = {};
  bool isCutShort = false;  ///< whether half of the data is to be written
};

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

/// What the environment says, read once.
class Instructions {
 public:
  static Instructions& get() {
    static Instructions instance;
    return instance;
  }

  /// Counts a call and gives its number, from 1 on.
  std::uint64_t count() { return ++*counter_; }

  /// Whether the plan has this word for this call.
  bool plans(const char* word, std::uint64_t number) const {
    return word_ == word && number >= first_ && number - first_ < count_;
  }

  /// The error with which the call is to fail; 0 when it is to be made.
  int error(CallKind kind, std::uint64_t number) const {
    if (plans(kInputOutputError, number)) return EIO;
    const bool needsSpace = kind != CallKind::remove && kind != CallKind::syncFolder;
    const bool isWrittenInPart =
        kind == CallKind::write && word_ == kShortWrite && number == first_;
    const bool isFull = plans(kNoSpace, number) || plans(kShortWrite, number);
    return needsSpace && isFull && !isWrittenInPart ? ENOSPC : 0;
  }

  /// The name that a path has in the folder; empty for the folder itself; null elsewhere.
  const char* nameOf(const std::string& path) const {
    if (folder_.empty() || path.compare(0, folder_.size(), folder_) != 0) return nullptr;
    if (path.size() == folder_.size()) return "";
    return path[folder_.size()] == '/' ? path.c_str() + folder_.size() + 1 : nullptr;
  }

  void record(const Change& change, const std::string& name) const {
    if (recording_ < 0) return;
    const auto length = [](const std::string& text) {
      return static_cast<std::uint32_t>(text.size());
    };
    const CallHeader header{change.kind,         length(name), length(change.other),
                            length(change.data), change.file,  change.offset};
    std::string bytes(reinterpret_cast<const char*>(&header), sizeof header);
    bytes += name + change.other + change.data;
    if (realWrite(recording_, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
      abort();
    }
  }

 private:
  Instructions() : folder_(variable(kFolderVariable)) {
    if (folder_.empty()) return;
    const int file = realOpen(variable(kCounterVariable).c_str(), O_RDWR | O_CLOEXEC);
    void* page = mmap(nullptr, sizeof(std::uint64_t), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (page == MAP_FAILED) abort();
    counter_ = static_cast<std::atomic<std::uint64_t>*>(page);
    const std::string recording = variable(kRecordingVariable);
    if (!recording.empty()) {
      recording_ = realOpen(recording.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    }
    char word[16] = "";
    if (std::sscanf(variable(kPlanVariable).c_str(), "%15s %lu %lu", word, &first_, &count_) == 3) {
      word_ = word;
    }
  }

  std::string folder_;
  std::atomic<std::uint64_t>* counter_ = nullptr;
  int recording_ = -1;
  std::string word_;
  unsigned long first_ = 0;
  unsigned long count_ = 0;
};

std::string pathOf(int descriptor) {
  const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
  char path[PATH_MAX];
  const ssize_t length = readlink(link.c_str(), path, sizeof path);
  return length > 0 ? std::string(path, static_cast<std::size_t>(length)) : "";
}

/// The full path of a name that need not be there.
std::string pathOf(int folder, const char* name) {
  std::error_code error;
  const fs::path start = folder == AT_FDCWD ? fs::current_path(error) : fs::path(pathOf(folder));
  const fs::path path = start / name;
  const fs::path parent = fs::canonical(path.parent_path(), error);
  return error ? path : parent / path.filename();
}

/// The number of the file in the file system; 0 where there is none.
std::uint64_t fileAt(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 ? status.st_ino : 0;
}

struct stat statusOf(int descriptor) {
  struct stat status {};
  fstat(descriptor, &status);
  return status;
}

[[noreturn]] void die() {
  kill(getpid(), SIGKILL);
  abort();
}

/// Makes a call, which gives -1 when it fails: as the plan has it, where it concerns the folder.
template <class Call>
auto counted(Change change, const std::string& path, const Call& call) {
  auto& instructions = Instructions::get();
  const char* name = instructions.nameOf(path);
  if (name == nullptr) return call(change);
  const std::uint64_t number = instructions.count();
  if (instructions.plans(kKillBefore, number)) die();
  if (const int error = instructions.error(change.kind, number); error != 0) {
    errno = error;
    return decltype(call(change)){-1};
  }
  change.isCutShort = instructions.plans(kShortWrite, number);
  const auto result = call(change);
  if (result >= 0) {
    instructions.record(change, name);
    if (instructions.plans(kKillAfter, number)) die();
  }
  return result;
}

int countedRemove(const char* path, int (*call)(const char*)) {
  const std::string whole = pathOf(AT_FDCWD, path);
  const std::uint64_t file = fileAt(whole);
  if (file == 0) return call(path);
  return counted({CallKind::remove, file}, whole, [&](Change&) { return call(path); });
}

}  // namespace

#pragma GCC visibility push(default)
extern "C" {

int open64(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  const std::string whole = pathOf(AT_FDCWD, path);
  const bool isThere = fileAt(whole) != 0;
  if ((flags & (isThere ? O_TRUNC : O_CREAT)) == 0) return realOpen(path, flags, mode);
  return counted({isThere ? CallKind::resize : CallKind::create}, whole, [&](Change& change) {
    const int descriptor = realOpen(path, flags, mode);
    if (descriptor >= 0) change.file = statusOf(descriptor).st_ino;
    return descriptor;
  });
}

int open(const char* path, int flags, ...) __attribute__((alias("open64")));

ssize_t pwrite64(int descriptor, const void* bytes, std::size_t length, off64_t offset) {
  static auto* const function = real(pwrite64, "pwrite64");
  const auto call = [&](Change& change) {
    const std::size_t part = change.isCutShort ? length / 2 : length;
    const ssize_t written = function(descriptor, bytes, part, offset);
    if (written > 0) change.data.assign(static_cast<const char*>(bytes), written);
    return written;
  };
  return counted({CallKind::write, statusOf(descriptor).st_ino, static_cast<std::uint64_t>(offset)},
                 pathOf(descriptor), call);
}

ssize_t pwrite(int descriptor, const void* bytes, std::size_t length, off_t offset)
    __attribute__((alias("pwrite64")));

/// Writes where the file's own position is.
ssize_t write(int descriptor, const void* bytes, std::size_t length) {
  const auto& instructions = Instructions::get();
  if (descriptor == STDOUT_FILENO || descriptor == STDERR_FILENO) {
    instructions.record({CallKind::report, 0, 0, {static_cast<const char*>(bytes), length}}, "");
  } else if (instructions.nameOf(pathOf(descriptor)) != nullptr) {
    const off64_t offset = lseek64(descriptor, 0, SEEK_CUR);
    const ssize_t written = pwrite64(descriptor, bytes, length, offset);
    if (written > 0) lseek64(descriptor, offset + written, SEEK_SET);
    return written;
  }
  return realWrite(descriptor, bytes, length);
}

ssize_t writev(int descriptor, const iovec* parts, int count) {
  std::string bytes;
  for (int i = 0; i < count; ++i) {
    bytes.append(static_cast<const char*>(parts[i].iov_base), parts[i].iov_len);
  }
  return write(descriptor, bytes.data(), bytes.size());
}

int fsync(int descriptor) {
  const struct stat status = statusOf(descriptor);
  const CallKind kind = S_ISDIR(status.st_mode) ? CallKind::syncFolder : CallKind::sync;
  return counted({kind, status.st_ino}, pathOf(descriptor), [](Change&) { return 0; });
}

int fdatasync(int descriptor) __attribute__((alias("fsync")));

int ftruncate64(int descriptor, off64_t size) noexcept {
  static auto* const function = real(ftruncate64, "ftruncate64");
  return counted({CallKind::resize, statusOf(descriptor).st_ino, static_cast<std::uint64_t>(size)},
                 pathOf(descriptor), [&](Change&) { return function(descriptor, size); });
}

int ftruncate(int descriptor, off_t size) noexcept __attribute__((alias("ftruncate64")));

int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
              unsigned int flags) noexcept {
  static auto* const function = real(renameat2, "renameat2");
  const std::string path = pathOf(fromFolder, from);
  const std::string target = pathOf(toFolder, to);
  const char* name = Instructions::get().nameOf(target);
  return counted({CallKind::rename, fileAt(path), 0, "", name != nullptr ? name : ""}, path,
                 [&](Change&) { return function(fromFolder, from, toFolder, to, flags); });
}

int rename(const char* from, const char* to) noexcept {
  return renameat2(AT_FDCWD, from, AT_FDCWD, to, 0);
}

int unlink(const char* path) noexcept {
  return countedRemove(path, real(unlink, "unlink"));
}

int remove(const char* path) noexcept {
  return countedRemove(path, real(remove, "remove"));
}

int isatty(int descriptor) noexcept {
  static auto* const function = real(isatty, "isatty");
  static const bool pretends = std::getenv(kTerminalVariable) != nullptr;
  return descriptor == STDERR_FILENO && pretends ? 1 : function(descriptor);
}

}  // extern "C"
#pragma GCC visibility pop
