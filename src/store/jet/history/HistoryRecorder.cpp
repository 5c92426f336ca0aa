#include "store/jet/history/HistoryRecorder.h"

#include <algorithm>
#include <array>
#include <bit>
#include <ctime>
#include <random>
#include <utility>

#include "errors/Error.h"
#include "store/jet/file/LogFormat.h"

namespace orv::store::jet {
namespace {

constexpr const char* kSystemTables = "MSys";
constexpr const char* kTooLarge = "The change is larger than all that the history may hold.";

std::uint64_t newWork() {
  std::random_device device;
  return std::uint64_t{device()} << 32 | device() | 1;
}

/// Tells a database from others: when the oldest of its objects was made, which copying and
/// compacting keep.
std::uint64_t identityOf(Database& database) {
  std::array<std::uint8_t, 16> bytes{};
  const Format& format = database.format();
  if (format.header.creationDate > 0) {
    store64(&bytes[0], load64(&database.pager().header()[format.header.creationDate]));
  }
  const auto objects = database.table("MSysObjects");
  double oldest = 0;
  const Pager::ReadLock lock(database.pager());
  const auto created =
      std::ranges::find(objects->definition().columns, "DateCreate", &Column::name);
  if (created != objects->definition().columns.end()) {
    for (TableScan scan = objects->scan(); scan.next();) {
      const Value value = scan.row().value(*created);
      const auto* date = value.getIf<Date>();
      if (date && (oldest == 0 || date->days < oldest)) oldest = date->days;
    }
  }
  store64(&bytes[8], std::bit_cast<std::uint64_t>(oldest));
  return checksumOf(bytes);
}

}  // namespace

std::shared_ptr<HistoryRecorder> HistoryRecorder::of(Database& database) {
  Pager& pager = database.pager();
  auto recorder = std::dynamic_pointer_cast<HistoryRecorder>(pager.observer());
  if (!recorder) {
    recorder.reset(new HistoryRecorder(HistoryFile(pager.path(), identityOf(database))));
    pager.observe(recorder);
  }
  return recorder;
}

std::shared_ptr<HistoryRecorder> HistoryRecorder::keeping(Database& database) {
  auto recorder = std::dynamic_pointer_cast<HistoryRecorder>(database.pager().observer());
  return recorder && recorder->largest_ > 0 ? recorder : nullptr;
}

void HistoryRecorder::keep(std::uint64_t largest) {
  largest_ = largest;
  file_.setLargest(largest);
}

void HistoryRecorder::beginWork(const std::string& title) {
  if (depth_++ > 0) return;
  work_ = newWork();
  title_ = title;
  isLost_ = isLossTold_ = hasBegun_ = false;
}

void HistoryRecorder::endWork(bool isLocked) noexcept {
  if (--depth_ > 0) return;
  try {
    if (isLocked) append(HistoryRecord::Kind::ended, work_);
    file_.sync();
  } catch (const Error& error) {
    failure_ = error.description();
  }
  title_.clear();
  isLost_ = isLossTold_ = false;
}

void HistoryRecorder::nextIs(HistoryRecord::Kind kind, std::vector<std::uint64_t> works) {
  next_ = kind;
  nextWorks_ = std::move(works);
}

void HistoryRecorder::rowChanged(const std::string& table, std::span<const Value> before,
                                 std::span<const Value> after) {
  const bool isKept = largest_ > 0 && next_ == HistoryRecord::Kind::changes && !isLost_;
  if (!isKept || table.starts_with(kSystemTables)) return;
  changes_.add(table, before, after);
  if (changes_.bytes().size() > largest_) {
    isLost_ = true;
    failure_ = kTooLarge;
    changes_.cut(0);
  }
}

void HistoryRecorder::forgetSince(std::size_t mark) {
  if (mark < changes_.bytes().size()) changes_.cut(mark);
}

void HistoryRecorder::rolledBack() {
  if (depth_ == 0) isLost_ = false;
  if (std::exchange(isPending_, false)) {
    try {
      file_.withdraw();
    } catch (const Error& error) {
      failure_ = error.description();
      isLost_ = depth_ > 0;
    }
  }
  changes_.cut(0);
  next_ = HistoryRecord::Kind::changes;
}

std::uint64_t HistoryRecorder::committing() noexcept {
  const bool isKept = next_ == HistoryRecord::Kind::changes && largest_ > 0;
  if (isKept && depth_ == 0) work_ = newWork();
  if (isKept && !isLost_ && !changes_.bytes().empty()) keepChanges();
  return isPending_ ? file_.length() : 0;
}

void HistoryRecorder::keepChanges() noexcept {
  try {
    isPending_ = append(HistoryRecord::Kind::changes, work_, changes_.bytes());
    hasBegun_ = true;
  } catch (const Error& error) {
    failure_ = error.description();
    isLost_ = true;
  }
}

void HistoryRecorder::committed() noexcept {
  isPending_ = false;
  try {
    writeCommit();
  } catch (const Error& error) {
    failure_ = error.description();
  }
  if (depth_ == 0) isLost_ = isLossTold_ = false;
  changes_.cut(0);
  next_ = HistoryRecord::Kind::changes;
}

void HistoryRecorder::writeCommit() {
  if (next_ != HistoryRecord::Kind::changes) {
    for (const std::uint64_t work : nextWorks_) append(next_, work);
    return;
  }
  if (largest_ == 0) return;
  if (isLost_) {
    if (!std::exchange(isLossTold_, true)) append(HistoryRecord::Kind::lost, work_);
  } else if (depth_ == 0 && !changes_.bytes().empty()) {
    append(HistoryRecord::Kind::ended, work_);
  }
}

/// False when the work is lost for it, which it was not before.
bool HistoryRecorder::append(HistoryRecord::Kind kind, std::uint64_t work, Bytes changes) {
  HistoryRecord record{kind, work, std::time(nullptr), title_, std::move(changes)};
  if (file_.append(record, depth_ == 0) || kind == HistoryRecord::Kind::lost) return true;
  isLost_ = isLossTold_ = true;
  failure_ = kTooLarge;
  return false;
}

}  // namespace orv::store::jet
