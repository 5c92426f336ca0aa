// What the last changes of a database were, kept so that they can be taken back.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "store/Connection.h"
#include "store/HistoryConflict.h"

namespace orv::store {

namespace jet {
class HistoryRecorder;
}

/// What a user sees as one change: the commits of one command.
struct HistoryWork {
  std::uint64_t id = 0;
  std::int64_t time = 0;  ///< of its first commit, in seconds since 1970
  std::string title;
  int commits = 0;
  bool isUndone = false;    ///< it has been taken back, and can be made again
  bool isLost = false;      ///< it was too large to be kept, and cannot be taken back
  bool isFinished = false;  ///< else its program is at it, or has ended in the middle of it
};

/// One thing that happened to a row: no values `before` where it was added, none `after` where it
/// was deleted.
struct HistoryChange {
  std::string table;
  std::vector<std::string> columns;
  std::vector<Value> before;
  std::vector<Value> after;
};

struct UndoResult {
  std::vector<HistoryWork> works = {};          ///< that were taken back or made again
  std::vector<HistoryConflict> conflicts = {};  ///< when there is any, nothing was changed
  /// So many of the works, the first ones, were so already: the database is as it was before them.
  std::size_t already = 0;
};

/// The history of one database: a file beside it, "NAME.mdb.orv-history", in which each commit
/// leaves the rows that it has changed as they were before and after. The database does not need
/// the file, which may be deleted. It is bounded: the oldest works go first.
///
/// The commits of a work are found by its number, wherever those of another program stand between
/// them; a work is as late as its last commit.
///
/// A commit is written there before it is made; when its work ends, it is on the disk. Whether the
/// last commit of a work without an end was made, is found out when it is taken back. After a loss
/// of power commits of a work without an end may be in the database and not in its history: then it
/// is noted to be lost when the database is opened next by who keeps a history.
/// A row is only taken back that is exactly as the work has left it, whoever has changed it since,
/// and all of a work or nothing: so a history that lacks a commit, or is that of a former state of
/// the database, does no harm. One of another database is given another name and not used.
///
/// Raises what the store raises.
class History {
 public:
  static constexpr std::uint64_t kLargest = std::uint64_t{128} << 20;

  /// `database` outlives it.
  explicit History(Connection& database);

  /// From now on the changes that this process makes to the database, by any connection, are kept
  /// in a history of at most so many bytes.
  void keep(std::uint64_t largest = kLargest);
  /// Whether they are.
  static bool isKept(Connection& database);
  /// Whether the database is encoded or asks for a password. Its history is neither.
  static bool isSecret(Connection& database);
  /// Why the history could not be written since the last call; empty when it could. Changes of the
  /// database do not fail for it.
  std::string takeFailure();

  const std::string& path() const;
  /// The name that the file under the history's name got since the last call, as it was of another
  /// database, or damaged, when something had to be written; empty where none did.
  std::string takeNameOfUnusable();
  /// Why nothing can be taken back by the file that is there; empty where it is none, or sound.
  std::string whyUnusable();
  /// The works that can be taken back, the oldest first, then those that can be made again, the
  /// one that was taken back last first.
  std::vector<HistoryWork> works();
  /// What a work has changed, in order.
  std::vector<HistoryChange> changes(const HistoryWork& work);

  enum class Wanted {
    done,
    tried  ///< everything is left as it is: only the result is wanted
  };
  /// Takes the last works back, in one commit, unless one of the references would not hold any
  /// more. Raises kInvalidCall where there are not as many, or one of them is lost, and
  /// kCorruptFile where the history is damaged.
  UndoResult undo(std::size_t count = 1, std::span<const RowReference> references = {},
                  Wanted wanted = Wanted::done);
  /// Makes the works that were taken back last again, in one commit.
  UndoResult redo(std::size_t count = 1, std::span<const RowReference> references = {},
                  Wanted wanted = Wanted::done);

  /// While one lives, all commits are one work, unless there is one already.
  class Scope {
   public:
    Scope(Connection& database, const std::string& title);
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

   private:
    Connection& database_;
    std::shared_ptr<jet::HistoryRecorder> recorder_;  ///< null where nothing is kept
  };

 private:
  using References = std::span<const RowReference>;
  UndoResult reverse(std::size_t count, bool back, References references, Wanted wanted);
  void noteLosses();
  UndoResult tryToReverse(std::size_t passed, std::size_t count, bool back, References references,
                          Wanted wanted);
  std::optional<HistoryWork> reversedAlready(std::size_t passed, bool back, Wanted wanted);

  Connection& database_;
  std::shared_ptr<jet::HistoryRecorder> recorder_;
};

}  // namespace orv::store
