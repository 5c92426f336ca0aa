// The editing of records in the window, and the way back.
#pragma once

#include <QObject>
#include <map>
#include <set>
#include <memory>
#include <string>

#include "app/grid/RecordEdits.h"
#include "app/window/WindowUserInterface.h"
#include "commands/Session.h"
#include "store/History.h"

namespace orv::app {

class ChangesDock;
class RecordGrid;

/// Holds the changes that are not saved yet, of each record set its own, so that they are there
/// when the user comes back to it. Undo goes through them first, and then through what has been
/// saved, by whatever command.
class RecordEditing : public QObject {
  Q_OBJECT

 public:
  using Node = std::shared_ptr<sources::datasource>;

  /// The session, the user interface and the grid outlive it.
  RecordEditing(commands::Session& session, WindowUserInterface& ui, RecordGrid& grid,
                QWidget& window);
  ~RecordEditing() override;

  ChangesDock& dock() const { return *dock_; }

  /// Has the records of a node be edited, before they are shown; it may be null.
  void follow(const Node& node);
  /// Looks whether the records are still as they were edited.
  void lookAgain();

  bool hasChanges() const;
  /// Whether there can be something to undo.
  bool canUndo() const { return database() != nullptr; }
  /// What undo() and redo() would do; empty when nothing.
  QString undoTitle() const { return titleOf(true); }
  QString redoTitle() const { return titleOf(false); }

  /// False when they are not saved.
  bool save();
  void discard();
  void undo();
  void redo();
  /// Asks what is to become of the changes of a source or record set, of all for null. False when
  /// the user wants to stay with them.
  bool settle(const Node& source);

  /// Offers to take back what has been done to the database since noteHistory().
  void noteHistory();
  void offerUndo();

 signals:
  void told(const QString& text);
  /// What the last work was, which can be taken back; empty when that is offered no more.
  void undoOffered(const QString& title);
  /// There are changes now, or none any more.
  void stateChanged();
  void workBegins();
  /// Records have been changed.
  void workEnded();

 private:
  std::shared_ptr<store::Connection> database() const;
  RecordEdits* editsOf(const Node& node);
  void forgetClosed();
  void tellChanges();
  bool save(RecordEdits& edits);
  bool saveOnce(RecordEdits& edits);
  int ask(const RecordEdits& edits);
  bool resolve(RecordEdits& edits);
  void tellRefusals(const RecordEdits& edits);
  void reverse(bool back);
  bool isMeant(const store::HistoryWork& work) const;
  QString titleOf(bool back) const;

  commands::Session& session_;
  WindowUserInterface& ui_;
  RecordGrid& grid_;
  QWidget& window_;
  ChangesDock* dock_;
  Node node_;                                                ///< that is shown
  RecordEdits* edits_ = nullptr;                             ///< of it
  std::map<std::string, std::unique_ptr<RecordEdits>> all_;  ///< by the keys of record sets
  int takenBack_ = 0;                                        ///< saved works, since the last change
  std::uint64_t noted_ = 0;      ///< the last work when noteHistory() was called
  std::set<std::uint64_t> own_;  ///< works of this window
};

}  // namespace orv::app
