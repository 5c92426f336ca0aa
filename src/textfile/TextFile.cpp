#include "textfile/TextFile.h"

#include <fmt/format.h>
#include <unicode/ucnv.h>
#include <unicode/ustring.h>

#include "errors/Error.h"
#include "model/FileBytes.h"
#include "model/Text.h"
#include "textfile/WholeFile.h"

namespace orv::textfile {

namespace fs = std::filesystem;

namespace {

std::string readBytes(const fs::path& path) {
  if (auto bytes = fileBytes(path, kLargestFile)) return std::move(*bytes);
  throw Error(kInvalidCall,
              fmt::format("The file '{}' is too large for a spectral text file: {} bytes, where {} "
                          "are the most",
                          path.string(), fs::file_size(path), kLargestFile));
}

bool isUtf8(std::string_view bytes) {
  UErrorCode status = U_ZERO_ERROR;
  std::int32_t length = 0;
  u_strFromUTF8(nullptr, 0, &length, bytes.data(), static_cast<std::int32_t>(bytes.size()),
                &status);
  return U_SUCCESS(status) || status == U_BUFFER_OVERFLOW_ERROR;
}

/// A text in an encoding that has no more than three bytes of UTF-8 for one of its own.
std::string toUtf8(std::string_view bytes, const char* encoding) {
  constexpr std::size_t kMostPerByte = 3;
  std::string text(bytes.size() * kMostPerByte, '\0');
  UErrorCode status = U_ZERO_ERROR;
  const auto length =
      ucnv_convert("UTF-8", encoding, text.data(), static_cast<std::int32_t>(text.size()),
                   bytes.data(), static_cast<std::int32_t>(bytes.size()), &status);
  text.resize(static_cast<std::size_t>(length));
  return text;
}

}  // namespace

bool hasUtf16Mark(std::string_view bytes) {
  return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
}

std::optional<fs::path> findFile(const fs::path& folder, const std::string& name) {
  const fs::path exact = folder / name;
  std::error_code failure;
  if (fs::is_regular_file(exact, failure)) {
    return exact;
  }
  const std::string wanted = exact.filename().string();
  const fs::path place = exact.parent_path().empty() ? fs::path(".") : exact.parent_path();
  std::optional<fs::path> found;
  for (fs::directory_iterator entry(place, failure), end; !failure && entry != end;
       entry.increment(failure)) {
    std::error_code ignored;
    if (entry->is_regular_file(ignored) &&
        equalIgnoringCase(entry->path().filename().string(), wanted) &&
        (!found || entry->path() < *found)) {
      found = entry->path();
    }
  }
  return found;
}

fs::path requireFile(const fs::path& folder, const std::string& name) {
  if (const auto found = findFile(folder, name)) {
    return *found;
  }
  throw Error(kFileNotFound, fmt::format("There is no file '{}' in the folder '{}'", name,
                                         folder.empty() ? "." : folder.string()));
}

std::string readText(const fs::path& path) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  std::string bytes = readBytes(path);
  if (hasUtf16Mark(bytes)) return toUtf8(bytes, "UTF-16");  // the mark tells the order of bytes
  if (bytes.find('\0') != std::string::npos) {
    throw Error(kInvalidCall, fmt::format("The file '{}' is not a text file in UTF-8, UTF-16 "
                                          "or Windows-1252: it holds zero bytes",
                                          path.string()));
  }
  if (!isUtf8(bytes)) {
    return toUtf8(bytes, "windows-1252");
  }
  if (bytes.starts_with(kByteOrderMark)) {
    bytes.erase(0, kByteOrderMark.size());
  }
  return bytes;
}

void writeText(const std::string& path, std::string_view text) {
  std::error_code failure;
  const fs::path real = fs::canonical(path, failure);  // of a link, the file that it leads to
  const fs::path target = failure ? fs::path(path) : real;
  if (const int reason = writeWhole(target, text)) {
    raiseFileError(path, "written", reason);
  }
}

}  // namespace orv::textfile
