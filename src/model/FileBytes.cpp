#include "model/FileBytes.h"

#include <fmt/format.h>

#include <cerrno>
#include <ctime>
#include <fstream>

#include "errors/Error.h"

namespace orv {

namespace fs = std::filesystem;

void raiseFileError(const fs::path& path, std::string_view action, int reason) {
  const bool denied = reason == EACCES || reason == EPERM || reason == EROFS;
  throw Error(denied ? kPermissionDenied : kDeviceIo,
              fmt::format("The file '{}' cannot be {}: {}", path.string(), action,
                          std::generic_category().message(reason == 0 ? EIO : reason)));
}

std::optional<std::string> fileBytes(const fs::path& path, std::uintmax_t most) {
  std::error_code failure;
  const auto size = fs::file_size(path, failure);
  if (failure) raiseFileError(path, "read", failure.value());
  if (size > most) return std::nullopt;
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  std::string bytes(size, '\0');
  file.read(bytes.data(), static_cast<std::streamsize>(size));
  if (!file) raiseFileError(path, "read", errno);
  return bytes;
}

OptionalDate fileDate(const fs::path& path) {
  std::error_code failure;
  const auto changed = fs::last_write_time(path, failure);
  if (failure) return std::nullopt;
  const std::time_t seconds =
      std::chrono::floor<std::chrono::seconds>(std::chrono::file_clock::to_sys(changed))
          .time_since_epoch()
          .count();
  std::tm local{};
  if (localtime_r(&seconds, &local) == nullptr) return std::nullopt;
  return Date(std::chrono::seconds(seconds + local.tm_gmtoff));
}

}  // namespace orv
