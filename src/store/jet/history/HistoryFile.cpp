#include "store/jet/history/HistoryFile.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/file/Bytes.h"
#include "store/jet/file/LogFormat.h"

namespace orv::store::jet {
namespace {

// Little-endian. The header: magic, version, identity, checksum. The head of a record: magic, kind,
// work, time, size of the record, of the title and of the changes, checksum of both, and of the
// head. Then the title and the changes, each filled up to whole words of 8.
constexpr std::array<std::uint8_t, 8> kMagic = {'O', 'R', 'V', 'H', 'I', 'S', 'T', '1'};
constexpr std::uint32_t kVersion = 1;
constexpr std::size_t kHeaderSize = 64;
constexpr std::size_t kHeadSize = 64;
constexpr std::uint32_t kRecordMagic = 0x43455248;
constexpr std::size_t kSumSize = 8;

std::uint64_t wholeWords(std::uint64_t size) {
  return (size + 7) / 8 * 8;
}

std::array<std::uint8_t, kHeaderSize> encodeHeader(std::uint64_t identity) {
  std::array<std::uint8_t, kHeaderSize> bytes{};
  std::ranges::copy(kMagic, bytes.begin());
  store32(&bytes[8], kVersion);
  store64(&bytes[16], identity);
  store64(&bytes[kHeaderSize - kSumSize],
          checksumOf(std::span(bytes).first(kHeaderSize - kSumSize)));
  return bytes;
}

Bytes encodeRecord(const HistoryRecord& record) {
  const std::uint64_t titleSize = wholeWords(record.title.size());
  Bytes bytes(kHeadSize + titleSize + wholeWords(record.changes.size()));
  store32(&bytes[0], kRecordMagic);
  store32(&bytes[4], static_cast<std::uint32_t>(record.kind));
  store64(&bytes[8], record.work);
  store64(&bytes[16], static_cast<std::uint64_t>(record.time));
  store64(&bytes[24], bytes.size());
  store64(&bytes[32], record.title.size());
  store64(&bytes[40], record.changes.size());
  std::ranges::copy(record.title, bytes.begin() + kHeadSize);
  std::copy(record.changes.begin(), record.changes.end(),
            bytes.begin() + static_cast<std::ptrdiff_t>(kHeadSize + titleSize));
  store64(&bytes[48], checksumOf(std::span(bytes).subspan(kHeadSize)));
  store64(&bytes[56], checksumOf(std::span(bytes).first(kHeadSize - kSumSize)));
  return bytes;
}

/// The head of a record of at most `room` bytes, without its title; none where these bytes are no
/// head.
std::optional<HistoryEntry> decodeHead(std::span<const std::uint8_t> bytes, std::uint64_t room) {
  HistoryEntry entry;
  const std::uint32_t kind = load32(&bytes[4]);
  entry.size = load64(&bytes[24]);
  const bool isHead = load32(bytes.data()) == kRecordMagic && kind >= 1 && kind <= 5 &&
                      entry.size >= kHeadSize && entry.size <= room &&
                      load64(&bytes[56]) == checksumOf(bytes.first(kHeadSize - kSumSize));
  if (!isHead) return std::nullopt;
  entry.head.kind = static_cast<HistoryRecord::Kind>(kind);
  entry.head.work = load64(&bytes[8]);
  entry.head.time = static_cast<std::int64_t>(load64(&bytes[16]));
  return entry;
}

}  // namespace

HistoryFile::HistoryFile(const std::string& databasePath, std::uint64_t identity)
    : databasePath_(databasePath), path_(databasePath + ".orv-history"), identity_(identity) {}

// Reading -----------------------------------------------------------------------------------

/// Opens the file if there is one. False when the one that is open is still the same.
bool HistoryFile::open() {
  if (file_ != nullptr) {
    const auto there = FileSystem::current().status(path_);
    if (there && there->isSameFile(file_->status())) return false;
  }
  file_ = FileSystem::current().openCompanion(path_);
  end_ = 0;
  entries_.clear();
  return true;
}

HistoryFile::Found HistoryFile::look() {
  const bool isSame = !open();
  if (file_ == nullptr) return Found::absent;
  const std::uint64_t size = file_->size();
  if (isSame && end_ > 0 && size == end_) return Found::sound;
  std::array<std::uint8_t, kHeaderSize> header{};
  if (size >= kHeaderSize) file_->read(0, header.data(), header.size());
  end_ = 0;
  entries_.clear();
  if (header != encodeHeader(identity_)) return size == 0 ? Found::absent : Found::foreign;
  readEntries();
  return Found::sound;
}

void HistoryFile::readEntries() {
  const std::uint64_t size = file_->size();
  end_ = kHeaderSize;
  std::array<std::uint8_t, kHeadSize> head{};
  while (end_ + kHeadSize <= size) {
    file_->read(end_, head.data(), head.size());
    auto entry = decodeHead(head, size - end_);
    if (!entry) return;
    entry->place = end_;
    const std::uint64_t titleSize = load64(&head[32]);
    if (titleSize > entry->size - kHeadSize) return;
    entry->head.title.resize(titleSize);
    file_->read(end_ + kHeadSize, reinterpret_cast<std::uint8_t*>(entry->head.title.data()),
                titleSize);
    end_ += entry->size;
    entries_.push_back(std::move(*entry));
  }
}

Bytes HistoryFile::changes(const HistoryEntry& entry) {
  Bytes bytes(static_cast<std::size_t>(entry.size));
  file_->read(entry.place, bytes.data(), bytes.size());
  const std::uint64_t begin = kHeadSize + wholeWords(load64(&bytes[32]));
  const std::uint64_t size = load64(&bytes[40]);
  if (load64(&bytes[48]) != checksumOf(std::span(bytes).subspan(kHeadSize)) ||
      begin > bytes.size() || size > bytes.size() - begin) {
    throw Error(kCorruptFile, "'" + path_ +
                                  "' is damaged: what was kept of a change cannot be read. Move "
                                  "that file away; the database does not need it.");
  }
  return {bytes.begin() + static_cast<std::ptrdiff_t>(begin),
          bytes.begin() + static_cast<std::ptrdiff_t>(begin + size)};
}

// Writing -----------------------------------------------------------------------------------

bool HistoryFile::append(const HistoryRecord& record, bool waits) {
  const Found found = look();
  if (found == Found::foreign) setAside();
  if (found != Found::sound) beginNew();
  const Bytes bytes = encodeRecord(record);
  if (file_->size() > end_) file_->truncate(end_);
  try {
    file_->write(end_, bytes.data(), bytes.size());
    if (waits) file_->sync();
  } catch (const Error&) {
    const std::uint64_t end = std::exchange(end_, 0);  // look again before it is used
    file_->truncate(end);
    throw;
  }
  isWaitedFor_ = waits;
  HistoryRecord head = record;
  head.changes.clear();
  entries_.push_back({std::move(head), end_, bytes.size()});
  end_ += bytes.size();
  if (end_ <= largest_) return true;
  shorten(record);
  return std::ranges::none_of(entries_, [&](const HistoryEntry& entry) {
    return entry.head.work == record.work && entry.head.kind == HistoryRecord::Kind::lost;
  });
}

void HistoryFile::withdraw() {
  if (look() != Found::sound || entries_.empty()) return;
  end_ = entries_.back().place;
  entries_.pop_back();
  file_->truncate(end_);
}

void HistoryFile::sync() {
  if (isWaitedFor_ || file_ == nullptr) return;
  file_->sync();
  isWaitedFor_ = true;
}

void HistoryFile::beginNew() {
  FileSystem& files = FileSystem::current();
  if (file_ == nullptr) file_ = files.createCompanion(path_, databasePath_);
  const auto header = encodeHeader(identity_);
  file_->write(0, header.data(), header.size());
  files.syncFolder(path_);
  end_ = kHeaderSize;
  entries_.clear();
}

/// Gives what is no history of this database a name under which nothing takes it for one.
void HistoryFile::setAside() {
  file_.reset();
  constexpr int kMostNames = 1000;
  for (int number = 1; number < kMostNames; ++number) {
    if (FileSystem::current().rename(path_, path_ + "-" + std::to_string(number))) return;
  }
  throw Error(kStoreFailure, "'" + path_ + "' is of another database, and cannot be renamed.");
}

/// Drops the oldest works until there is room again, and `work`, the newest one, never: only where
/// it is larger than all there may be, no more is kept than that it was there.
void HistoryFile::shorten(const HistoryRecord& added) {
  const std::uint64_t wanted = largest_ / 4 * 3;
  const bool grows =
      added.kind != HistoryRecord::Kind::undone && added.kind != HistoryRecord::Kind::redone;
  auto first = entries_.begin();
  std::uint64_t left = end_ - kHeaderSize;
  while (first != entries_.end() && !(grows && first->head.work == added.work) && left > wanted) {
    const std::uint64_t dropped = first->head.work;
    for (; first != entries_.end() && first->head.work == dropped; ++first) left -= first->size;
  }
  if (kHeaderSize + left > largest_) first = entries_.end();
  Bytes kept(kHeaderSize + (first == entries_.end() ? 0 : left));
  std::ranges::copy(encodeHeader(identity_), kept.begin());
  if (first != entries_.end()) {
    file_->read(first->place, kept.data() + kHeaderSize, static_cast<std::size_t>(left));
  } else if (grows) {
    HistoryRecord lost = entries_.back().head;
    lost.kind = HistoryRecord::Kind::lost;
    lost.work = added.work;
    const Bytes bytes = encodeRecord(lost);
    kept.insert(kept.end(), bytes.begin(), bytes.end());
  }
  FileSystem& files = FileSystem::current();
  const std::string written = path_ + "-new";
  files.remove(written);
  {
    const auto file = files.createCompanion(written, databasePath_);
    file->write(0, kept.data(), kept.size());
    file->sync();
  }
  files.replace(written, path_);
  files.syncFolder(path_);
  isWaitedFor_ = true;
  look();
}

}  // namespace orv::store::jet
