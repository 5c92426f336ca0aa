#include "store/jet/repair/DamagedDatabase.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/catalog/EmptyDatabase.h"
#include "store/jet/catalog/Password.h"
#include "store/jet/compact/CopySource.h"
#include "store/jet/file/LogRecovery.h"
#include "store/jet/page/Rc4.h"
#include "store/jet/page/Text.h"
#include "store/jet/repair/MendedFile.h"

namespace orv::store::jet {
namespace {

constexpr std::size_t kPageSize = 4096;  // of Jet 4

constexpr std::string_view kRemedyOfJet3 =
    "A sound one can be converted (orv compact FILE NEW --jet4). Of a damaged one take a copy from "
    "before the damage, or what can still be read of each table (orv sql FILE TABLE).";

/// The first pages of a file, as they are; with zeros where it is shorter.
Bytes readBeginning(File& file) {
  constexpr std::size_t kPages = 3;
  Bytes bytes(kPages * kPageSize);
  file.read(0, bytes.data(), std::min<std::size_t>(bytes.size(), file.size()));
  return bytes;
}

/// Whether the pages after the header are those of a Jet 4 file whose pages are not encoded: the
/// map of free pages, and the definition of the catalogue.
bool looksLikeJet4(const Bytes& beginning) {
  const auto begins = [&](std::size_t page, PageType type) {
    return beginning[page * kPageSize] == static_cast<std::uint8_t>(type) &&
           beginning[page * kPageSize + 1] == 1;
  };
  return begins(1, PageType::data) && begins(2, PageType::tableDefinition);
}

/// The part of a header page that is masked, readable.
Bytes unmasked(Bytes header) {
  header.resize(kPageSize);
  applyRc4(kHeaderKey, std::span(header).subspan(kJet4.header.masked, kJet4.header.maskedSize));
  return header;
}

/// Whether a password is one that people can type, with nothing behind it.
bool isPossible(const std::string& password, std::span<const std::uint8_t> field) {
  const bool isTyped = std::ranges::none_of(
      password, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; });
  const std::size_t end = utf16Bytes(password).size();
  return isTyped && std::ranges::all_of(field.subspan(std::min(end, field.size())),
                                        [](std::uint8_t byte) { return byte == 0; });
}

struct Header {
  Bytes page;
  bool isOwn = true;        ///< it is the file's, as it is
  bool keepsHidden = true;  ///< the masked part, with the password, is the file's
};

/// The header page of a file whose pages say that it is of Jet 4: its own as far as that can be
/// right.
Header mendHeader(const Bytes& beginning) {
  Header header{Bytes(beginning.begin(), beginning.begin() + kPageSize)};
  int engineVersion = 0;
  const bool isNamed = detectFormat({header.page, 0}, engineVersion) == &kJet4 &&
                       header.page[0] == static_cast<std::uint8_t>(PageType::header);
  const Bytes plain = unmasked(header.page);
  const std::string password = passwordIn(kJet4, plain);
  header.keepsHidden = load32(&plain[kJet4.header.encodingKey]) == 0 &&
                       isPossible(password, passwordField(kJet4, plain));
  header.isOwn = isNamed && header.keepsHidden;
  if (header.isOwn) {
    return header;
  }
  Bytes empty = emptyDatabase();
  empty.resize(kPageSize);
  if (header.keepsHidden) {
    std::copy_n(header.page.begin() + kJet4.header.masked, kJet4.header.maskedSize,
                empty.begin() + kJet4.header.masked);
  }
  header.page = std::move(empty);
  return header;
}

/// A log is only brought into a file that is opened by its own header.
void tellLog(File& file, const std::string& path, CompactReport& report) {
  Log log(path, kPageSize);
  if (log.look() != Log::Found::sound) return;
  std::size_t commits = 0;
  log.forEachRecord([&](const auto&, const auto&) { ++commits; });
  const std::string last =
      commits == 1 ? "the last change" : fmt::format("the last {} changes", commits);
  switch (LogRecovery(log, file, kPageSize).compare()) {
    case LogRecovery::Outcome::complete:
      break;
    case LogRecovery::Outcome::missing:
      report.lost.push_back(fmt::format(
          "parts of {}, which only '{}' has. To have them, put the first {} bytes of a copy from "
          "before the damage in place of those of the damaged file, with that log beside it, and "
          "open it (orv info)",
          last, log.path(), kPageSize));
      break;
    case LogRecovery::Outcome::foreign:
      report.lost.push_back(fmt::format(
          "what only '{}' has of {}: it does not fit the file as it is now", log.path(), last));
      break;
  }
}

/// Of an encoded page nothing can be read unless it is whole.
void tellPartOfPage(std::uint64_t size, bool isReadable, CompactReport& report) {
  const std::string part =
      fmt::format("page {}, of which {} bytes are there", size / kPageSize, size % kPageSize);
  if (isReadable) {
    report.notes.push_back("the file ends within " + part);
  } else {
    report.lost.push_back(part + ": the file ends there, and its pages are encoded as wholes");
  }
}

}  // namespace

DamagedDatabase::DamagedDatabase(const std::string& path, const std::string& password,
                                 CompactReport& report) {
  auto file = FileSystem::current().open(path, FileSystem::Open::existing);
  size_ = file->size();
  const Bytes beginning = readBeginning(*file);
  int engineVersion = 0;
  const Format* format = detectFormat({beginning, 0}, engineVersion);
  std::optional<Header> header;
  if (looksLikeJet4(beginning) && (format == nullptr || engineVersion <= 1)) {
    header = mendHeader(beginning);
  } else if (format == nullptr || size_ < kPageSize) {
    throw Error(kStoreFailure,
                fmt::format("'{}' cannot be repaired: neither its header page nor the pages after "
                            "it are those of an Access database of format Jet 4. Take a copy from "
                            "before the damage.",
                            path));
  }
  if (!header || header->isOwn) {
    opened_ = openToCopy(path, password, "repaired", kRemedyOfJet3);
    database_ = opened_;
    size_ = opened_->pager().fileSize();
  } else if (header->keepsHidden) {
    report.notes.emplace_back("the header page is damaged; its name and version were made anew");
  } else {
    hasNewHeader_ = true;
    report.lost.emplace_back("what the header page says; it was made anew, without a password");
  }
  const bool endsWithinPage = size_ % kPageSize != 0;
  if (header && !header->isOwn) tellLog(*file, path, report);
  if (endsWithinPage) tellPartOfPage(size_, header.has_value(), report);
  if (!header || (header->isOwn && !endsWithinPage)) return;
  database_ = Database::over(Pager::overFile(
      std::make_unique<MendedFile>(std::move(file), std::move(header->page)), path));
  database_->checkPassword(password);
}

}  // namespace orv::store::jet
