// Keeps what each commit changes, so that it can be taken back.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "store/jet/catalog/Database.h"
#include "store/jet/history/HistoryFile.h"
#include "store/jet/history/RowCode.h"
#include "store/jet/page/ChangeObserver.h"

namespace orv::store::jet {

/// One a pager, which owns it. A commit is written into the history before it is written into the
/// database, and taken out again where that fails. Any later record of its work tells that it was
/// made: should the program end between the two, the last commit of a work that has no end may
/// have been made or not, which whoever takes it back finds out. That a history cannot be written
/// fails nothing; it can be asked for.
class HistoryRecorder final : public ChangeObserver {
 public:
  /// That of a database; made, at first without keeping anything, where it has none.
  static std::shared_ptr<HistoryRecorder> of(Database& database);

  /// That which keeps the changes of a database; null where they are not kept.
  static std::shared_ptr<HistoryRecorder> keeping(Database& database);

  /// Keeps all changes from now on, in a file of at most so many bytes.
  void keep(std::uint64_t largest);
  HistoryFile& file() { return file_; }

  /// The commits from here to endWork() belong together. Works within a work join it.
  void beginWork(const std::string& title);
  /// What belongs to the work is on the disk afterwards. That it has ended is only noted where it
  /// has to be, and the caller holds the database's lock for writing.
  void endWork(bool isLocked) noexcept;
  /// Whether the work has to be noted as ended when it ends now.
  bool hasToEnd() const { return depth_ == 1 && hasBegun_ && !isLost_; }
  /// The next commit does not go into the history itself: it takes these works back, or makes them
  /// again.
  void nextIs(HistoryRecord::Kind kind, std::vector<std::uint64_t> works);

  /// Why the history could not be written since the last call; empty when it could.
  std::string takeFailure() { return std::exchange(failure_, {}); }
  std::string takeNameOfUnusable() { return file_.takeNameOfUnusable(); }

  void rowChanged(const std::string& table, std::span<const Value> before,
                  std::span<const Value> after) override;
  void rowNotRead() override { isLost_ = true; }
  std::size_t mark() const override { return changes_.bytes().size(); }
  void forgetSince(std::size_t mark) override;
  void rolledBack() override;
  std::uint64_t committing() noexcept override;
  void committed() noexcept override;

 private:
  explicit HistoryRecorder(HistoryFile file) : file_(std::move(file)) {}

  void keepChanges() noexcept;
  void writeCommit();
  bool append(HistoryRecord::Kind kind, std::uint64_t work, Bytes changes = {});

  HistoryFile file_;
  std::uint64_t largest_ = 0;  ///< 0: nothing is kept
  RowChangeWriter changes_;    ///< of the transaction under way
  bool isLost_ = false;        ///< of it or the work something is missing
  bool isLossTold_ = false;    ///< in the history
  bool isPending_ = false;     ///< the last record is of the commit under way
  bool hasBegun_ = false;      ///< of the work something is in the history
  int depth_ = 0;              ///< of works
  std::uint64_t work_ = 0;
  std::string title_;
  HistoryRecord::Kind next_ = HistoryRecord::Kind::changes;
  std::vector<std::uint64_t> nextWorks_;
  std::string failure_;
};

}  // namespace orv::store::jet
