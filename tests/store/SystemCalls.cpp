#include "store/SystemCalls.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <ctime>

namespace orv::test {
namespace {

SystemCalls* inUse = nullptr;

/// How the next call is to end.
int endOf(const char* call) {
  if (inUse == nullptr || !inUse->ends.contains(call)) return 0;
  const auto found = inUse->ends.find(call);
  const int end = found->second.front();
  found->second.erase(found->second.begin());
  if (found->second.empty()) inUse->ends.erase(found);
  return end;
}

/// The call, or its failure.
template <class... Arguments>
int made(const char* call, long number, Arguments... arguments) {
  const int error = endOf(call);
  errno = error;
  return error != 0 ? -1 : static_cast<int>(syscall(number, arguments...));
}

template <class Made>
ssize_t endedInPart(const char* call, std::size_t length, const Made& made) {
  const int end = endOf(call);
  if (end == SystemCalls::kInPart) return made((length + 1) / 2);
  errno = end;
  return end != 0 ? -1 : made(length);
}

void note(const std::string& what) {
  if (inUse != nullptr) inUse->made.push_back(what);
}

}  // namespace

SystemCalls::SystemCalls() {
  inUse = this;
}
SystemCalls::~SystemCalls() {
  inUse = nullptr;
}

// These stand before those of the C library.
extern "C" {

ssize_t pread(int file, void* bytes, std::size_t length, off_t offset) {
  if (inUse != nullptr && inUse->isBad(file, offset)) {
    errno = EIO;
    return -1;
  }
  return endedInPart("pread", length, [&](std::size_t part) {
    return syscall(SYS_pread64, file, bytes, part, offset);
  });
}
ssize_t pwrite(int file, const void* bytes, std::size_t length, off_t offset) {
  return endedInPart("pwrite", length, [&](std::size_t part) {
    return syscall(SYS_pwrite64, file, bytes, part, offset);
  });
}
int open(const char* path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const auto mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
  va_end(more);
  return made("open", SYS_openat, AT_FDCWD, path, flags, mode);
}
int fcntl(int file, int command, ...) {
  va_list more;
  va_start(more, command);
  void* const argument = va_arg(more, void*);
  va_end(more);
  return made("fcntl", SYS_fcntl, file, command, argument);
}
int fstat(int file, struct stat* status) noexcept {
  return made("fstat", SYS_fstat, file, status);
}
int ftruncate(int file, off_t size) noexcept {
  return made("ftruncate", SYS_ftruncate, file, size);
}
int fdatasync(int file) {
  return made("fdatasync", SYS_fdatasync, file);
}
int renameat2(int from, const char* name, int to, const char* other, unsigned flags) noexcept {
  return made("renameat2", SYS_renameat2, from, name, to, other, flags);
}
int rename(const char* from, const char* to) noexcept {
  return made("rename", SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0);
}
int unlink(const char* path) noexcept {
  return made("unlink", SYS_unlinkat, AT_FDCWD, path, 0);
}
int fchmod(int file, mode_t mode) noexcept {
  note(fmt::format("mode {:o}", mode));
  return made("fchmod", SYS_fchmod, file, mode);
}
int fchown(int file, uid_t owner, gid_t group) noexcept {
  note(fmt::format("owner {} {}", static_cast<int>(owner), static_cast<int>(group)));
  return made("fchown", SYS_fchown, file, owner, group);
}
int fsetxattr(int file, const char* name, const void* value, std::size_t size, int flags) noexcept {
  note(fmt::format("attribute {}", name));
  return made("fsetxattr", SYS_fsetxattr, file, name, value, size, flags);
}
int fremovexattr(int file, const char* name) noexcept {
  note(fmt::format("without {}", name));
  return made("fremovexattr", SYS_fremovexattr, file, name);
}

int clock_gettime(clockid_t clock, timespec* time) noexcept {
  if (inUse == nullptr || clock != CLOCK_MONOTONIC) {
    return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
  }
  *time = {inUse->time.count() / 1'000'000'000, inUse->time.count() % 1'000'000'000};
  return 0;
}
int nanosleep(const timespec* time, timespec* left) {
  if (inUse == nullptr) return static_cast<int>(syscall(SYS_nanosleep, time, left));
  inUse->sleeps.emplace_back(time->tv_sec * 1'000'000'000 + time->tv_nsec);
  inUse->time += inUse->sleeps.back();
  inUse->slept();
  return 0;
}

}  // extern "C"

}  // namespace orv::test
