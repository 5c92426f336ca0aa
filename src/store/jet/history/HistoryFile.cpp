#include "store/jet/history/HistoryFile.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/file/Bytes.h"
#include "store/jet/file/LogFormat.h"

namespace orv::store::jet {
namespace {

// Little-endian. The header: magic, version, identity, bytes that have gone, checksum. The head of
// a record: magic, kind, work, time, size of the record, of the title and of the changes, checksum
// of both, and of the head. Then the title and the changes, each filled up to whole words of 8.
constexpr std::array<std::uint8_t, 8> kMagic = {'O', 'R', 'V', 'H', 'I', 'S', 'T', '1'};
constexpr std::uint32_t kVersion = 1;
constexpr std::size_t kHeaderSize = 64;
constexpr std::size_t kHeadSize = 64;
constexpr std::uint32_t kRecordMagic = 0x43455248;
constexpr std::size_t kSumSize = 8;

std::uint64_t wholeWords(std::uint64_t size) {
  return (size + 7) / 8 * 8;
}

std::array<std::uint8_t, kHeaderSize> encodeHeader(std::uint64_t identity, std::uint64_t gone) {
  std::array<std::uint8_t, kHeaderSize> bytes{};
  std::ranges::copy(kMagic, bytes.begin());
  store32(&bytes[8], kVersion);
  store64(&bytes[16], identity);
  store64(&bytes[24], gone);
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
  gone_ = load64(&header[24]);
  if (header != encodeHeader(identity_, gone_)) return size == 0 ? Found::absent : Found::foreign;
  readEntries();
  return isCutShort() ? Found::sound : Found::damaged;
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

/// Whether nothing stands behind the last record, or what a program or the system wrote of one
/// before it stopped: its beginning, or only room for it.
bool HistoryFile::isCutShort() {
  const std::uint64_t size = file_->size();
  std::uint64_t left = size - end_;
  if (left < kHeadSize) return true;
  Bytes bytes(kHeadSize);
  file_->read(end_, bytes.data(), bytes.size());
  if (const auto head = decodeHead(bytes, UINT64_MAX)) return head->size > left;
  constexpr std::uint64_t kAtOnce = 1 << 16;
  while (left > 0) {
    bytes.resize(static_cast<std::size_t>(std::min(left, kAtOnce)));
    file_->read(size - left, bytes.data(), bytes.size());
    if (std::ranges::any_of(bytes, [](std::uint8_t byte) { return byte != 0; })) return false;
    left -= bytes.size();
  }
  return true;
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
  if (found == Found::foreign || found == Found::damaged) setAside();
  if (found != Found::sound) beginNew();
  if (file_->readOnly()) {
    throw Error(kStoreFailure, "'" + path_ + "' cannot be written: it is read-only for this user.");
  }
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
  files.syncFolder(path_);  // before anybody takes it for a history
  gone_ = 0;
  const auto header = encodeHeader(identity_, gone_);
  file_->write(0, header.data(), header.size());
  end_ = kHeaderSize;
  entries_.clear();
}

/// Gives what is no history of this database a name under which nothing takes it for one.
void HistoryFile::setAside() {
  file_.reset();
  constexpr int kMostNames = 1000;
  for (int number = 1; number < kMostNames; ++number) {
    const std::string name = path_ + "-" + std::to_string(number);
    if (!FileSystem::current().rename(path_, name)) continue;
    setAside_ = name;
    return;
  }
  throw Error(kStoreFailure, "'" + path_ + "' cannot be used, and cannot be renamed either.");
}

/// What is kept where the oldest works go until there is room again; the newest one never does. Of
/// one that goes and has no end no more is kept than that it was there: more of it may come. Where
/// the newest one is larger than all there may be, the same is kept of it, and nothing else.
Bytes HistoryFile::withoutOldest(const HistoryRecord& added) {
  const bool grows =
      added.kind != HistoryRecord::Kind::undone && added.kind != HistoryRecord::Kind::redone;
  std::map<std::uint64_t, std::uint64_t> sizes;
  std::map<std::uint64_t, HistoryRecord> unfinished;
  for (const HistoryEntry& entry : entries_) {
    sizes[entry.head.work] += entry.size;
    if (entry.head.kind == HistoryRecord::Kind::changes) {
      unfinished.try_emplace(entry.head.work, entry.head);
    } else {
      unfinished.erase(entry.head.work);
    }
  }
  const std::uint64_t wanted = largest_ / 4 * 3;
  std::uint64_t left = end_ - kHeaderSize;
  std::set<std::uint64_t> gone;
  for (const HistoryEntry& entry : entries_) {
    const std::uint64_t work = entry.head.work;
    if (left <= wanted) break;
    if ((grows && work == added.work) || !gone.insert(work).second) continue;
    left -= sizes[work];
  }
  if (kHeaderSize + left > largest_) {
    for (const auto& [work, size] : sizes) gone.insert(work);
    unfinished.clear();
    if (grows) unfinished.emplace(added.work, entries_.back().head);
  }
  Bytes kept(kHeaderSize);
  for (auto& [work, head] : unfinished) {
    if (!gone.contains(work)) continue;
    head.kind = HistoryRecord::Kind::lost;
    const Bytes bytes = encodeRecord(head);
    kept.insert(kept.end(), bytes.begin(), bytes.end());
  }
  for (const HistoryEntry& entry : entries_) {
    if (gone.contains(entry.head.work)) continue;
    const std::size_t at = kept.size();
    kept.resize(at + static_cast<std::size_t>(entry.size));
    file_->read(entry.place, kept.data() + at, static_cast<std::size_t>(entry.size));
  }
  std::ranges::copy(encodeHeader(identity_, gone_ + end_ - kept.size()), kept.begin());
  return kept;
}

void HistoryFile::shorten(const HistoryRecord& added) {
  const Bytes kept = withoutOldest(added);
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
