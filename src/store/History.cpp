#include "store/History.h"

#include <fmt/format.h>

#include <algorithm>
#include <ctime>
#include <set>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/catalog/Database.h"
#include "store/jet/file/Bytes.h"
#include "store/jet/history/HistoryRecorder.h"
#include "store/jet/history/RowReversal.h"

namespace orv::store {
namespace {

using jet::HistoryEntry;
using jet::HistoryRecord;
using jet::RowReversal;

/// A work with its commits.
struct KeptWork {
  HistoryWork work;
  std::vector<HistoryEntry> commits;
};

/// What the records of a history come to: works that are done, and such that were taken back after
/// the last of these.
struct HistoryState {
  std::vector<KeptWork> done;
  std::vector<KeptWork> undone;

  explicit HistoryState(const std::vector<HistoryEntry>& entries) {
    for (const HistoryEntry& entry : entries) take(entry);
  }

 private:
  void take(const HistoryEntry& entry) {
    switch (entry.head.kind) {
      case HistoryRecord::Kind::changes:
        undone.clear();
        workOf(entry).commits.push_back(entry);
        break;
      case HistoryRecord::Kind::lost:
        undone.clear();
        workOf(entry).work.isLost = true;
        break;
      case HistoryRecord::Kind::ended:
        finish(entry.head.work);
        break;
      case HistoryRecord::Kind::undone:
        move(entry.head.work, done, undone);
        break;
      case HistoryRecord::Kind::redone:
        move(entry.head.work, undone, done);
        break;
    }
  }

  /// Those of several programs stand among each other.
  KeptWork& workOf(const HistoryEntry& entry) {
    const std::uint64_t id = entry.head.work;
    if (!unfinished_.insert(id).second) {
      const auto known = std::find_if(done.rbegin(), done.rend(),
                                      [&](const KeptWork& kept) { return kept.work.id == id; });
      if (known != done.rend()) {
        std::rotate(known.base() - 1, known.base(), done.end());
        ++done.back().work.commits;
        return done.back();
      }
    }
    HistoryWork work{.id = id, .time = entry.head.time, .title = entry.head.title, .commits = 1};
    done.push_back({std::move(work), {}});
    return done.back();
  }

  void finish(std::uint64_t work) {
    unfinished_.erase(work);
    const auto kept = std::find_if(done.rbegin(), done.rend(),
                                   [&](const KeptWork& each) { return each.work.id == work; });
    if (kept != done.rend()) kept->work.isFinished = true;
  }

  static void move(std::uint64_t work, std::vector<KeptWork>& from, std::vector<KeptWork>& to) {
    if (from.empty() || from.back().work.id != work) return;
    to.push_back(std::move(from.back()));
    to.back().work.isUndone = !to.back().work.isUndone;
    from.pop_back();
  }

  std::set<std::uint64_t> unfinished_;
};

/// Of a damaged history what could be read.
HistoryState stateOf(jet::HistoryFile& file) {
  using Found = jet::HistoryFile::Found;
  const auto found = file.look();
  const bool isOurs = found == Found::sound || found == Found::damaged;
  return HistoryState(isOurs ? file.entries() : std::vector<HistoryEntry>());
}

std::string textOf(jet::HistoryFile::Found found, const std::string& path) {
  switch (found) {
    case jet::HistoryFile::Found::foreign:
      return "\"" + path + "\" is no history of this database.";
    case jet::HistoryFile::Found::damaged:
      return "\"" + path +
             "\" is damaged, and what it has of the last changes cannot be read. Move that file "
             "away; the database does not need it.";
    default:
      return {};
  }
}

/// What stands before the damage is not what was done last.
void refuseDamaged(jet::HistoryFile& file) {
  const auto found = file.look();
  if (found == jet::HistoryFile::Found::damaged) {
    throw Error(kCorruptFile, textOf(found, file.path()));
  }
}

bool areDeletions(const std::vector<jet::RowChange>& changes) {
  return std::ranges::all_of(changes, [](const auto& change) { return change.after.empty(); });
}

/// Takes a work back, the last commit first. Rows that commits in a row have deleted come back in
/// their order: some tables have no other.
void takeBack(const KeptWork& kept, jet::HistoryFile& file, RowReversal& reversal) {
  const auto changesOf = [&](std::size_t commit) {
    return jet::readRowChanges(file.changes(kept.commits[commit]));
  };
  for (std::size_t end = kept.commits.size(); end > 0;) {
    std::size_t begin = end - 1;
    const auto last = changesOf(begin);
    if (!areDeletions(last)) {
      reversal.takeBack(last);
    } else {
      while (begin > 0 && areDeletions(changesOf(begin - 1))) --begin;
      for (std::size_t i = begin; i < end; ++i) reversal.takeBack(changesOf(i));
    }
    end = begin;
  }
}

/// Takes a work back, or makes it again.
void reverseWork(const KeptWork& kept, jet::HistoryFile& file, RowReversal& reversal, bool back) {
  if (back) return takeBack(kept, file, reversal);
  for (const HistoryEntry& commit : kept.commits) {
    reversal.makeAgain(jet::readRowChanges(file.changes(commit)));
  }
}

HistoryRecord::Kind kindOf(bool back) {
  return back ? HistoryRecord::Kind::undone : HistoryRecord::Kind::redone;
}

/// Whether a work could be taken back, or made again.
bool canBeReversed(const KeptWork& kept, jet::Database& database, jet::HistoryRecorder& recorder,
                   bool back, jet::Likeness likeness) {
  jet::Transaction tried(database.pager());
  RowReversal reversal(database, likeness);
  recorder.nextIs(kindOf(back), {});  // so that what is tried is no work itself
  reverseWork(kept, recorder.file(), reversal, back);
  reversal.finish();
  return reversal.conflicts().empty();
}

/// Of a work that has no end the last commit may not have been made: it is left out where the
/// database is as it was before it.
void leaveOutWhatWasNotMade(KeptWork& kept, jet::Database& database,
                            jet::HistoryRecorder& recorder) {
  if (kept.work.isFinished || kept.commits.empty()) return;
  const KeptWork last{kept.work, {kept.commits.back()}};
  if (canBeReversed(last, database, recorder, true, jet::Likeness::row)) return;
  if (canBeReversed(last, database, recorder, false, jet::Likeness::key)) kept.commits.pop_back();
}

/// The last works that can be taken back or made again, the last one first.
std::vector<KeptWork> lastWorks(const HistoryState& state, std::size_t count, bool back) {
  const std::vector<KeptWork>& works = back ? state.done : state.undone;
  const char* what = back ? "taken back" : "made again";
  if (works.size() < count) {
    const std::string there = works.empty() ? "is no change"
                              : works.size() == 1
                                  ? "is only 1 change"
                                  : fmt::format("are only {} changes", works.size());
    throw Error(kInvalidCall, fmt::format("There {} that can be {}.", there, what));
  }
  std::vector<KeptWork> last(works.rbegin(), works.rbegin() + static_cast<std::ptrdiff_t>(count));
  for (const KeptWork& kept : last) {
    if (!kept.work.isLost) continue;
    throw Error(kInvalidCall, "\"" + kept.work.title +
                                  "\" was too large for the history, or something of it could not "
                                  "be read, and cannot be " +
                                  what + ".");
  }
  return last;
}

}  // namespace

History::History(Connection& database)
    : database_(database), recorder_(jet::HistoryRecorder::of(database.database())) {}

void History::keep(std::uint64_t largest) {
  recorder_->keep(largest);
  if (largest > 0) noteLosses();
}

/// The log of the database tells how long the history was for the last commit that is there.
void History::noteLosses() {
  jet::Pager& pager = database_.database().pager();
  const std::uint64_t wanted = pager.takeRecoveredCompanion();
  if (wanted == 0) return;
  try {
    const jet::Pager::WriteLock lock(pager);
    jet::HistoryFile& file = recorder_->file();
    if (file.look() != jet::HistoryFile::Found::sound || file.length() >= wanted) return;
    const HistoryState state = stateOf(file);
    HistoryRecord lost{.kind = HistoryRecord::Kind::lost,
                       .work = wanted,
                       .time = std::time(nullptr),
                       .title = "A change that a loss of power has ended"};
    const bool isOfLast = !state.done.empty() && !state.done.back().work.isFinished;
    if (isOfLast) {
      lost.work = state.done.back().work.id;
      lost.title = state.done.back().work.title;
    }
    file.append(lost, true);
  } catch (const Error&) {
    // What cannot be noted is found as what was changed since, when it is taken back.
  }
}

bool History::isKept(Connection& database) {
  return jet::HistoryRecorder::keeping(database.database()) != nullptr;
}

bool History::isSecret(Connection& database) {
  const jet::Database& file = database.database();
  const Bytes& header = file.pager().header();
  return !file.storedPassword().empty() ||
         jet::load32(&header[file.format().header.encodingKey]) != 0;
}

std::string History::takeFailure() {
  return recorder_->takeFailure();
}

const std::string& History::path() const {
  return recorder_->file().path();
}

std::string History::takeNameOfUnusable() {
  return recorder_->takeNameOfUnusable();
}

std::string History::whyUnusable() {
  const jet::Pager::ReadLock lock(database_.database().pager());
  return textOf(recorder_->file().look(), path());
}

std::vector<HistoryWork> History::works() {
  const jet::Pager::ReadLock lock(database_.database().pager());
  const HistoryState state = stateOf(recorder_->file());
  std::vector<HistoryWork> works;
  for (const KeptWork& kept : state.done) works.push_back(kept.work);
  std::for_each(state.undone.rbegin(), state.undone.rend(),
                [&](const KeptWork& kept) { works.push_back(kept.work); });
  return works;
}

std::vector<HistoryChange> History::changes(const HistoryWork& work) {
  jet::Database& database = database_.database();
  const jet::Pager::ReadLock lock(database.pager());
  std::vector<HistoryChange> all;
  static_cast<void>(stateOf(recorder_->file()));
  for (const HistoryEntry& entry : recorder_->file().entries()) {
    if (entry.head.work != work.id || entry.head.kind != HistoryRecord::Kind::changes) continue;
    for (jet::RowChange& change : jet::readRowChanges(recorder_->file().changes(entry))) {
      HistoryChange& told = all.emplace_back();
      if (database.find(change.table, jet::CatalogEntry::Kind::table)) {
        for (const jet::Column& column : database.table(change.table)->definition().columns) {
          told.columns.push_back(column.name);
        }
      }
      told.table = std::move(change.table);
      told.before = std::move(change.before);
      told.after = std::move(change.after);
    }
  }
  return all;
}

UndoResult History::undo(std::size_t count, References references, Wanted wanted) {
  return reverse(count, true, references, wanted);
}

UndoResult History::redo(std::size_t count, References references, Wanted wanted) {
  return reverse(count, false, references, wanted);
}

UndoResult History::reverse(std::size_t count, bool back, References references, Wanted wanted) {
  std::vector<HistoryWork> known;
  while (known.size() < count) {
    // What is known is noted in the history, unless all of this is a trial.
    const std::size_t passed = wanted == Wanted::done ? 0 : known.size();
    UndoResult result = tryToReverse(passed, count - known.size(), back, references, wanted);
    const auto already =
        result.conflicts.empty() ? std::nullopt : reversedAlready(passed, back, wanted);
    if (!already) {
      result.already = known.size();
      result.works.insert(result.works.begin(), known.begin(), known.end());
      return result;
    }
    known.push_back(*already);
  }
  return {.works = std::move(known), .already = count};
}

/// All but the first `passed` of the last works.
UndoResult History::tryToReverse(std::size_t passed, std::size_t count, bool back,
                                 References references, Wanted wanted) {
  jet::Database& database = database_.database();
  UndoResult result;
  const jet::Pager::WriteLock lock(database.pager());
  refuseDamaged(recorder_->file());
  auto last = lastWorks(stateOf(recorder_->file()), passed + count, back);
  last.erase(last.begin(), last.begin() + static_cast<std::ptrdiff_t>(passed));
  if (back) leaveOutWhatWasNotMade(last.front(), database, *recorder_);
  jet::Transaction transaction(database.pager());
  RowReversal reversal(database, jet::Likeness::row, references);
  recorder_->nextIs(kindOf(back), {});  // so that the reversal is no work itself
  std::vector<std::uint64_t> works;
  for (const KeptWork& kept : last) {
    reverseWork(kept, recorder_->file(), reversal, back);
    works.push_back(kept.work.id);
    result.works.push_back(kept.work);
  }
  reversal.finish();
  result.conflicts = reversal.conflicts();
  if (!result.conflicts.empty() || wanted == Wanted::tried) return result;
  recorder_->nextIs(kindOf(back), std::move(works));
  transaction.commit();
  return result;
}

/// Where the database is as it was before the last work, a program has taken it back and ended
/// before it could say so, or the file is one of before. That is noted, unless it is a trial. Where
/// rows could also have been changed since by another, it is not believed.
std::optional<HistoryWork> History::reversedAlready(std::size_t passed, bool back, Wanted wanted) {
  jet::Database& database = database_.database();
  const jet::Pager::WriteLock lock(database.pager());
  const KeptWork last = lastWorks(stateOf(recorder_->file()), passed + 1, back).back();
  if (!canBeReversed(last, database, *recorder_, !back, jet::Likeness::key)) return std::nullopt;
  if (wanted == Wanted::done) {
    recorder_->file().append({.kind = kindOf(back),
                              .work = last.work.id,
                              .time = std::time(nullptr),
                              .title = last.work.title},
                             true);
  }
  return last.work;
}

History::Scope::Scope(Connection& database, const std::string& title)
    : database_(database), recorder_(jet::HistoryRecorder::keeping(database.database())) {
  if (recorder_) recorder_->beginWork(title);
}

History::Scope::~Scope() {
  if (!recorder_) return;
  std::optional<jet::Pager::WriteLock> lock;
  try {
    if (recorder_->hasToEnd() && database_.isOpen()) lock.emplace(database_.database().pager());
  } catch (const Error&) {
    // The work stays without an end, then.
  }
  recorder_->endWork(lock.has_value());
}

}  // namespace orv::store
