#include "commands/AccessUse.h"

#include <fcntl.h>
#include <fmt/chrono.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <optional>

#include "model/Text.h"

namespace orv::commands {

namespace fs = std::filesystem;

namespace {

/// Access removes the file when the last user closes the database; after a crash it stays.
constexpr auto kFresh = std::chrono::hours(24);

/// Where Access notes the users of a database: `.laccdb` for the later format, else `.ldb`, in
/// whatever case.
std::optional<fs::path> noteBeside(const fs::path& database) {
  std::error_code failure;
  const std::string stem = database.stem().string();
  for (fs::directory_iterator entry(database.parent_path(), failure), end; !failure && entry != end;
       entry.increment(failure)) {
    const std::string name = entry->path().filename().string();
    std::error_code ignored;
    if ((equalIgnoringCase(name, stem + ".ldb") || equalIgnoringCase(name, stem + ".laccdb")) &&
        entry->is_regular_file(ignored)) {
      return entry->path();
    }
  }
  return std::nullopt;
}

/// Whether another program has locked the file or a part of it.
bool isHeld(const fs::path& file) {
  const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) return false;
  struct flock whole {};
  whole.l_type = F_WRLCK;
  whole.l_whence = SEEK_SET;
  const bool partHeld = fcntl(descriptor, F_OFD_GETLK, &whole) == 0 && whole.l_type != F_UNLCK;
  const bool wholeHeld = flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  close(descriptor);
  return partHeld || wholeHeld;
}

}  // namespace

std::string signOfAccess(const std::string& path) {
  std::error_code failure;
  const fs::path real = fs::canonical(path, failure);
  for (const fs::path& database : {fs::absolute(path), failure ? fs::path(path) : real}) {
    const auto note = noteBeside(database);
    if (!note) continue;
    const std::string sign = "Access seems to have \"" + path + "\" open: beside it is \"" +
                             note->filename().string() + "\", which ";
    if (isHeld(*note)) return sign + "another program holds.";
    const auto written = fs::last_write_time(*note, failure);
    if (!failure && fs::file_time_type::clock::now() - written < kFresh) {
      const auto minute = std::chrono::file_clock::to_sys(written);
      return sign + fmt::format("was written on {:%Y-%m-%d at %H:%M}.",
                                fmt::localtime(std::chrono::system_clock::to_time_t(
                                    std::chrono::floor<std::chrono::seconds>(minute))));
    }
  }
  return {};
}

bool canBeChanged(const store::Connection& database, UserInterface& ui) {
  const std::string reason = database.whyReadOnly();
  if (!reason.empty()) ui.message(MessageKind::critical, reason, kProductName);
  return reason.empty();
}

bool mayBeChanged(const store::Connection& database, UserInterface& ui) {
  if (!canBeChanged(database, ui)) return false;
  const std::string sign = signOfAccess(database.path());
  return sign.empty() || ui.acceptRisk(sign + " What is changed now can be lost or damaged there.");
}

}  // namespace orv::commands
