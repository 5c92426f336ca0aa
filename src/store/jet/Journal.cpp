#include "store/jet/Journal.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "errors/Error.h"

namespace orv::store::jet {
namespace {

constexpr std::array<std::uint8_t, 8> kMagic = {'O', 'R', 'V', 'J', 'R', 'N', 'L', '1'};
constexpr std::size_t kChecksumOffset = 24;
constexpr std::size_t kHeaderSize = 32;
constexpr std::array<std::uint8_t, kHeaderSize> kVoidHeader{};
constexpr std::uint64_t kLargestKept = 1 << 20;  // a longer journal is cut when it is voided

/// FNV-1a over 64-bit words: quick, and any torn or missing write changes it.
std::uint64_t checksum(const std::vector<std::uint8_t>& bytes) {
  std::uint64_t sum = 0xcbf29ce484222325;
  auto add = [&](std::size_t from, std::size_t to) {
    for (std::size_t i = from; i + 4 <= to; i += 4) {
      sum = (sum ^ load32(&bytes[i])) * 0x100000001b3;
    }
  };
  add(0, kChecksumOffset);
  add(kHeaderSize, bytes.size());
  return sum;
}

}  // namespace

Journal::Journal(const std::string& databasePath, std::size_t pageSize)
    : path_(pathFor(databasePath)), pageSize_(pageSize) {}

void Journal::removeVoidFile() {
  if (file_ != nullptr && !isPresent()) {
    FileSystem::current().remove(path_);
  }
}

File& Journal::file() {
  // Another process may have removed the file that is open here, and made a new one.
  FileSystem& files = FileSystem::current();
  if (file_ == nullptr || files.size(path_) < 0 || files.identity(path_) != identity_) {
    file_ = files.open(path_, FileSystem::Open::existingOrNew);
    files.syncFolder(path_);
    identity_ = files.identity(path_);
  }
  return *file_;
}

void Journal::write(PageNumber pageCount, const std::vector<Record>& records) {
  std::vector<std::uint8_t> bytes(kHeaderSize);
  bytes.reserve(kHeaderSize + records.size() * (pageSize_ + 4));
  std::copy(kMagic.begin(), kMagic.end(), bytes.begin());
  store32(&bytes[8], static_cast<std::uint32_t>(pageSize_));
  store32(&bytes[12], pageCount);
  store32(&bytes[16], static_cast<std::uint32_t>(records.size()));
  for (const Record& record : records) {
    std::array<std::uint8_t, 4> number{};
    store32(number.data(), record.page);
    bytes.insert(bytes.end(), number.begin(), number.end());
    bytes.insert(bytes.end(), record.bytes, record.bytes + pageSize_);
  }
  store64(&bytes[kChecksumOffset], checksum(bytes));
  file().write(0, bytes.data(), bytes.size());
  file().sync();
}

void Journal::clear() {
  File& journal = file();
  const std::uint64_t size = journal.size();
  if (size > kLargestKept) {
    journal.truncate(0);
  } else if (size > 0) {
    journal.write(0, kVoidHeader.data(), kVoidHeader.size());
  }
  journal.sync();
}

bool Journal::isPresent() {
  if (FileSystem::current().size(path_) <= 0) {
    return false;
  }
  File& journal = file();
  std::array<std::uint8_t, kHeaderSize> header{};
  journal.read(0, header.data(), std::min<std::uint64_t>(journal.size(), header.size()));
  return header != kVoidHeader;
}

void Journal::rollBack(File& database) {
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(file().size()));
  if (!bytes.empty()) {
    file().read(0, bytes.data(), bytes.size());
  }
  const bool hasHeader =
      bytes.size() >= kHeaderSize && std::equal(kMagic.begin(), kMagic.end(), bytes.begin());
  if (hasHeader && load32(&bytes[8]) == pageSize_) {
    const std::size_t recordSize = pageSize_ + 4;
    const std::size_t count = load32(&bytes[16]);
    if (bytes.size() >= kHeaderSize && (bytes.size() - kHeaderSize) / recordSize >= count) {
      bytes.resize(kHeaderSize + count * recordSize);
      if (checksum(bytes) == load64(&bytes[kChecksumOffset])) {
        for (std::size_t i = 0; i < count; ++i) {
          const std::uint8_t* record = &bytes[kHeaderSize + i * recordSize];
          database.write(std::uint64_t{load32(record)} * pageSize_, record + 4, pageSize_);
        }
        database.truncate(std::uint64_t{load32(&bytes[12])} * pageSize_);
        database.sync();
      }
    }
  }
  clear();
}

}  // namespace orv::store::jet
