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
#include <cstring>
#include <string>
#include <vector>

#include "outside/FileCall.h"

namespace {

using namespace orv::test;

/// The C library's function of this name.
template <class Function>
Function* real(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

int realOpen(const char* path, int flags, mode_t mode = 0) {
  static auto* const function = real<int(const char*, int, ...)>("open64");
  return function(path, flags, mode);
}

ssize_t realPwrite(int descriptor, const void* bytes, std::size_t length, off64_t offset) {
  static auto* const function = real<ssize_t(int, const void*, std::size_t, off64_t)>("pwrite64");
  return function(descriptor, bytes, length, offset);
}

ssize_t realWrite(int descriptor, const void* bytes, std::size_t length) {
  static auto* const function = real<ssize_t(int, const void*, std::size_t)>("write");
  return function(descriptor, bytes, length);
}

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
  /// How many of the calls that are to fail were before this one; -1 when this is not to fail.
  std::int64_t position(std::uint64_t number) const {
    return number >= first_ && number - first_ < count_ ? static_cast<std::int64_t>(number - first_)
                                                        : -1;
  }

  /// The name that a path has in the folder; empty for the folder itself; null elsewhere.
  const char* nameOf(const std::string& path) const {
    if (folder_.empty() || path.compare(0, folder_.size(), folder_) != 0) return nullptr;
    if (path.size() == folder_.size()) return "";
    return path[folder_.size()] == '/' ? path.c_str() + folder_.size() + 1 : nullptr;
  }

  void record(CallHeader header, const std::string& name, const std::string& other,
              const std::string& data) const {
    if (recording_ < 0) return;
    header.nameLength = static_cast<std::uint32_t>(name.size());
    header.otherLength = static_cast<std::uint32_t>(other.size());
    header.dataLength = static_cast<std::uint32_t>(data.size());
    std::string bytes(reinterpret_cast<const char*>(&header), sizeof header);
    bytes += name + other + data;
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
  std::string path = name;
  if (path.empty()) return pathOf(folder);
  if (path[0] != '/') {
    path = (folder == AT_FDCWD ? std::string(".") : pathOf(folder)) + "/" + path;
  }
  const std::size_t slash = path.rfind('/');
  char parent[PATH_MAX];
  const std::string before = slash == 0 ? "/" : path.substr(0, slash);
  return realpath(before.c_str(), parent) != nullptr ? parent + path.substr(slash) : path;
}

bool exists(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0;
}

std::uint64_t fileAt(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 ? status.st_ino : 0;
}

std::uint64_t fileOf(int descriptor) {
  struct stat status {};
  return fstat(descriptor, &status) == 0 ? status.st_ino : 0;
}

[[noreturn]] void die() {
  kill(getpid(), SIGKILL);
  abort();
}

/// One call that is counted: what happens before it, and after it.
class Counted {
 public:
  Counted(CallKind kind, const char* name) : kind_(kind), name_(name) {
    auto& instructions = Instructions::get();
    number_ = instructions.count();
    if (instructions.plans(kKillBefore, number_)) die();
  }

  /// The error with which the call is to fail; 0 when it is to be made.
  int error() const {
    auto& instructions = Instructions::get();
    if (instructions.plans(kInputOutputError, number_)) return EIO;
    const bool needsSpace = kind_ != CallKind::remove && kind_ != CallKind::syncFolder;
    if (instructions.plans(kNoSpace, number_) && needsSpace) return ENOSPC;
    const bool isWrittenInPart = kind_ == CallKind::write && instructions.position(number_) == 0;
    return instructions.plans(kShortWrite, number_) && needsSpace && !isWrittenInPart ? ENOSPC : 0;
  }

  /// How much of a write of this length is to be made.
  std::size_t length(std::size_t whole) const {
    return Instructions::get().plans(kShortWrite, number_) ? whole / 2 : whole;
  }

  /// To be called when the call was made, with success.
  void done(std::uint64_t file, std::uint64_t offset = 0, const std::string& data = "",
            const char* other = "") const {
    auto& instructions = Instructions::get();
    instructions.record({kind_, 0, 0, 0, file, offset}, name_, other, data);
    if (instructions.plans(kKillAfter, number_)) die();
  }

 private:
  CallKind kind_;
  std::string name_;
  std::uint64_t number_;
};

/// Makes a call that gives 0 or -1, when it concerns the folder counted.
template <class Call>
int counted(CallKind kind, const std::string& path, std::uint64_t file, std::uint64_t offset,
            const Call& call) {
  const char* name = Instructions::get().nameOf(path);
  if (name == nullptr) return call();
  const Counted turn(kind, name);
  if (const int error = turn.error(); error != 0) {
    errno = error;
    return -1;
  }
  const int result = call();
  if (result == 0) turn.done(file, offset);
  return result;
}

template <class Call>
int countedOpen(const std::string& path, int flags, const Call& call) {
  const char* name = Instructions::get().nameOf(path);
  const bool isThere = name != nullptr && exists(path);
  const bool creates = (flags & O_CREAT) != 0 && !isThere;
  const bool cuts = (flags & O_TRUNC) != 0 && isThere;
  if (name == nullptr || (!creates && !cuts)) return call();
  const Counted turn(creates ? CallKind::create : CallKind::resize, name);
  if (const int error = turn.error(); error != 0) {
    errno = error;
    return -1;
  }
  const int descriptor = call();
  if (descriptor >= 0) turn.done(fileOf(descriptor));
  return descriptor;
}

ssize_t countedWrite(int descriptor, const char* bytes, std::size_t length, off64_t offset) {
  const Counted turn(CallKind::write, Instructions::get().nameOf(pathOf(descriptor)));
  if (const int error = turn.error(); error != 0) {
    errno = error;
    return -1;
  }
  const ssize_t written = realPwrite(descriptor, bytes, turn.length(length), offset);
  if (written >= 0) {
    turn.done(fileOf(descriptor), static_cast<std::uint64_t>(offset),
              std::string(bytes, static_cast<std::size_t>(written)));
  }
  return written;
}

bool concerns(int descriptor) {
  return Instructions::get().nameOf(pathOf(descriptor)) != nullptr;
}

/// A write where the file's own position is.
ssize_t writeAtPosition(int descriptor, const char* bytes, std::size_t length) {
  if (descriptor == STDOUT_FILENO || descriptor == STDERR_FILENO) {
    Instructions::get().record({CallKind::report, 0, 0, 0, 0, 0}, "", "",
                               std::string(bytes, length));
  } else if (concerns(descriptor)) {
    const off64_t offset = lseek64(descriptor, 0, SEEK_CUR);
    const ssize_t written = countedWrite(descriptor, bytes, length, offset);
    if (written > 0) lseek64(descriptor, offset + written, SEEK_SET);
    return written;
  }
  return realWrite(descriptor, bytes, length);
}

int countedSync(int descriptor) {
  struct stat status {};
  fstat(descriptor, &status);
  const CallKind kind = S_ISDIR(status.st_mode) ? CallKind::syncFolder : CallKind::sync;
  return counted(kind, pathOf(descriptor), status.st_ino, 0, [] { return 0; });
}

template <class Call>
int countedRename(const std::string& from, const std::string& to, const Call& call) {
  const char* name = Instructions::get().nameOf(from);
  const char* other = Instructions::get().nameOf(to);
  if (other == nullptr) return call();
  const Counted turn(CallKind::rename, name != nullptr ? name : "");
  if (const int error = turn.error(); error != 0) {
    errno = error;
    return -1;
  }
  const int result = call();
  if (result == 0) turn.done(fileAt(to), 0, "", other);
  return result;
}

int countedRemove(const std::string& path, int (*call)(const char*), const char* argument) {
  if (!exists(path)) return call(argument);
  return counted(CallKind::remove, path, fileAt(path), 0, [&] { return call(argument); });
}

}  // namespace

#pragma GCC visibility push(default)
extern "C" {

int open64(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return countedOpen(pathOf(AT_FDCWD, path), flags, [&] { return realOpen(path, flags, mode); });
}

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return open64(path, flags, mode);
}

ssize_t write(int descriptor, const void* bytes, std::size_t length) {
  return writeAtPosition(descriptor, static_cast<const char*>(bytes), length);
}

ssize_t writev(int descriptor, const iovec* parts, int count) {
  std::string bytes;
  for (int i = 0; i < count; ++i) {
    bytes.append(static_cast<const char*>(parts[i].iov_base), parts[i].iov_len);
  }
  return writeAtPosition(descriptor, bytes.data(), bytes.size());
}

ssize_t pwrite64(int descriptor, const void* bytes, std::size_t length, off64_t offset) {
  if (!concerns(descriptor)) return realPwrite(descriptor, bytes, length, offset);
  return countedWrite(descriptor, static_cast<const char*>(bytes), length, offset);
}

ssize_t pwrite(int descriptor, const void* bytes, std::size_t length, off_t offset) {
  return pwrite64(descriptor, bytes, length, offset);
}

int fsync(int descriptor) {
  return countedSync(descriptor);
}

int fdatasync(int descriptor) {
  return countedSync(descriptor);
}

int ftruncate64(int descriptor, off64_t size) noexcept {
  static auto* const function = real<int(int, off64_t)>("ftruncate64");
  return counted(CallKind::resize, pathOf(descriptor), fileOf(descriptor),
                 static_cast<std::uint64_t>(size), [&] { return function(descriptor, size); });
}

int ftruncate(int descriptor, off_t size) noexcept {
  return ftruncate64(descriptor, size);
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
              unsigned int flags) noexcept {
  static auto* const function =
      real<int(int, const char*, int, const char*, unsigned int)>("renameat2");
  return countedRename(pathOf(fromFolder, from), pathOf(toFolder, to),
                       [&] { return function(fromFolder, from, toFolder, to, flags); });
}

int rename(const char* from, const char* to) noexcept {
  return renameat2(AT_FDCWD, from, AT_FDCWD, to, 0);
}

int unlink(const char* path) noexcept {
  static auto* const function = real<int(const char*)>("unlink");
  return countedRemove(pathOf(AT_FDCWD, path), function, path);
}

int remove(const char* path) noexcept {
  static auto* const function = real<int(const char*)>("remove");
  return countedRemove(pathOf(AT_FDCWD, path), function, path);
}

int isatty(int descriptor) noexcept {
  static auto* const function = real<int(int)>("isatty");
  static const bool pretends = std::getenv(kTerminalVariable) != nullptr;
  return descriptor == STDERR_FILENO && pretends ? 1 : function(descriptor);
}

}  // extern "C"
#pragma GCC visibility pop
