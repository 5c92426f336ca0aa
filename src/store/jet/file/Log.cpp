#include "store/jet/file/Log.h"

#include <algorithm>
#include <random>

#include "errors/Error.h"
#include "store/StoreError.h"

namespace orv::store::jet {
namespace {

std::uint64_t randomNumber() {
  std::random_device device;
  return std::uint64_t{device()} << 32 | device() | 1;
}

}  // namespace

Log::Log(const std::string& databasePath, std::size_t pageSize)
    : path_(databasePath + "-log"), databasePath_(databasePath), pageSize_(pageSize) {}

/// Opens the file if there is one, and takes its size. One that is open may have been removed, by
/// the last who had the database open before or by somebody at the keyboard.
bool Log::isOpen() {
  if (file_ != nullptr) {
    const FileStatus status = file_->status();
    size_ = status.size;
    if (status.links > 0) {
      return true;
    }
  }
  file_ = FileSystem::current().openCompanion(path_);
  size_ = file_ != nullptr ? file_->size() : 0;
  return file_ != nullptr;
}

Log::Found Log::look() {
  header_ = {};
  state_ = {};
  if (!isOpen()) {
    return Found::absent;
  }
  std::array<std::uint8_t, kLogRecords> bytes{};
  file_->read(0, bytes.data(), std::min<std::uint64_t>(size_, bytes.size()));
  const auto header = LogHeader::decode(bytes);
  if (!header) {
    const bool empty = std::all_of(bytes.begin(), bytes.begin() + kPieceSize,
                                   [](std::uint8_t byte) { return byte == 0; });
    return empty ? Found::unused : Found::foreign;
  }
  if (header->pageSize != pageSize_ || header->origin == 0) {
    return Found::foreign;
  }
  header_ = *header;
  state_ = LogState::decode(std::span(bytes).subspan(kPieceSize));
  if (state_.generation != header_.generation || state_.end < kLogRecords || state_.end > size_) {
    // The program that began it has not come as far as the state: nothing may be believed of it.
    state_ = {.generation = header_.generation,
              .number = header_.number,
              .end = kLogRecords,
              .busy = true};
  }
  return Found::sound;
}

LogCounter Log::counter() const {
  return {header_.origin, state_.number};
}

void Log::begin(const FileStatus& database) {
  const Found found = look();
  if (found == Found::sound) {
    return;
  }
  if (found == Found::foreign) {
    throw Error(kStoreFailure, "'" + path_ + "' is no log that this program has made.");
  }
  FileSystem& files = FileSystem::current();
  const bool isNew = found == Found::absent;
  try {
    if (isNew) {
      file_ = files.createCompanion(path_, databasePath_);
    }
    header_ = {static_cast<std::uint32_t>(pageSize_), randomNumber(), 0, 0};
    growTo(kStep);
    files.syncFolder(path_);  // before anybody takes it for a log
    beginAnew(database);
  } catch (const Error&) {
    if (isNew && file_ != nullptr) {
      file_.reset();
      try {
        files.remove(path_);
      } catch (const Error&) {  // One that was not begun means nothing.
      }
    }
    throw;
  }
}

void Log::beginAnew(const FileStatus& database) {
  LogHeader header = header_;
  header.generation = randomNumber();
  header.number = std::max(header_.number, state_.number) + 1;
  const auto bytes = header.encode();
  file_->write(0, bytes.data(), bytes.size());
  file_->sync();
  header_ = header;
  state_ = {.generation = header.generation,
            .number = header.number,
            .end = kLogRecords,
            .busy = false,
            .databaseSize = database.size,
            .databaseModified = database.modified};
  writeState();
  if (size_ > 2 * kLongest) {
    file_->truncate(kLongest);
    size_ = kLongest;
  }
}

void Log::writeState() {
  const auto bytes = state_.encode();
  file_->write(kPieceSize, bytes.data(), bytes.size());
}

/// The file is filled with zeros ahead of the records, so that waiting for a record is waiting
/// for its content, not for a new size of the file as well.
void Log::growTo(std::uint64_t size) {
  if (size <= size_) {
    return;
  }
  const std::uint64_t end = (size + kStep - 1) / kStep * kStep;
  const Bytes zeros(static_cast<std::size_t>(std::min(end - size_, kStep)));
  try {
    for (std::uint64_t at = size_; at < end; at += zeros.size()) {
      file_->write(at, zeros.data(),
                   static_cast<std::size_t>(std::min<std::uint64_t>(zeros.size(), end - at)));
    }
  } catch (const Error&) {
    file_->truncate(size_);
    throw;
  }
  size_ = end;
}

void Log::append(PageNumber pagesBefore, PageNumber pagesAfter,
                 const std::vector<LoggedPage>& pages, std::uint64_t companion) {
  const Bytes record = LogRecord::encode({.generation = header_.generation,
                                          .number = state_.number + 1,
                                          .pageCountBefore = pagesBefore,
                                          .pageCountAfter = pagesAfter,
                                          .companion = companion},
                                         pages, pageSize_);
  growTo(state_.end + record.size());
  state_.busy = true;
  writeState();
  appended_ = record.size();
  file_->write(state_.end, record.data(), record.size());
  file_->sync();
}

void Log::withdraw() {
  if (!state_.busy) {
    return;
  }
  const std::array<std::uint8_t, kPieceSize> zeros{};
  file_->write(state_.end, zeros.data(), zeros.size());
  file_->sync();
  state_.busy = false;
  writeState();
}

void Log::finish(const FileStatus& database) {
  ++state_.number;
  state_.end += appended_;
  state_.busy = false;
  state_.databaseSize = database.size;
  state_.databaseModified = database.modified;
  writeState();
}

void Log::forEachRecord(
    const std::function<void(const LogRecord::Head&, const std::vector<LogRecord::Page>&)>& take) {
  std::uint64_t at = kLogRecords;
  for (std::uint64_t number = header_.number + 1;; ++number) {
    Bytes record(LogRecord::kHeadSize);
    if (at + record.size() > size_) {
      return;
    }
    file_->read(at, record.data(), record.size());
    const auto head = LogRecord::decodeHead(record, pageSize_);
    if (!head || head->generation != header_.generation || head->number != number ||
        head->size > size_ - at) {
      return;
    }
    record.resize(static_cast<std::size_t>(head->size));
    file_->read(at, record.data(), record.size());
    const auto pages = LogRecord::decode(record, *head, pageSize_);
    if (!pages) {
      return;
    }
    take(*head, *pages);
    if (head->companion > 0) companion_ = head->companion;
    at += head->size;
    state_.number = std::max(state_.number, number);
  }
}

void Log::remove() {
  FileSystem& files = FileSystem::current();
  const auto there = files.status(path_);
  if (file_ != nullptr && there && there->isSameFile(file_->status())) {
    files.remove(path_);
    files.syncFolder(path_);
  }
  file_.reset();
}

std::string Log::setAside() {
  FileSystem& files = FileSystem::current();
  file_.reset();
  for (int number = 1;; ++number) {
    std::string name = path_ + "-" + std::to_string(number);
    if (files.rename(path_, name)) {
      files.syncFolder(path_);
      return name;
    }
  }
}

}  // namespace orv::store::jet
