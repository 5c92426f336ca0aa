// The Edit menu's work on records, their export, and audits.
#pragma once

#include <QObject>

#include "app/dialogs/dlgExport.h"
#include "app/docks/audit/FindingsTree.h"
#include "app/window/WindowUserInterface.h"
#include "commands/IntegrateRecords.h"
#include "commands/PasteRecords.h"
#include "sources/RecordSelection.h"

namespace orv::app {

/// What a work does to the records shown.
enum class WorkEffect { readsRecords, changesRecords, deletesRecords };

/// Holds the pending copy. Long commands tell before they begin and after they end, so that the
/// window can leave the database alone meanwhile and then show it anew.
class EditCommands : public QObject {
  Q_OBJECT

 public:
  using Node = std::shared_ptr<sources::datasource>;

  EditCommands(commands::Session& session, WindowUserInterface& ui, QWidget& window);

  bool hasPendingRecords() const { return pending_.HasRecords(); }
  const sources::RecordSelection& pending() const { return pending_; }

  /// By which standard copies compute integrated values that their source does not have.
  void integrateBy(std::optional<optics::Standard> standard) {
    pasteOptions_.integrateBy = standard;
  }

  void copy(const sources::RecordSelection& selection);
  void paste(const Node& destination);
  /// Copies records at once, as they are dragged to a node. The pending copy stays what it is.
  void transfer(const sources::RecordSelection& records, const Node& destination);
  /// `names` says which records these are.
  void remove(const sources::RecordSelection& selection, const Node& shown, const QString& names);
  /// Asks for the form and the place, and writes the records there.
  void exportRecords(const sources::RecordSelection& selection);
  /// Shows what computing the integrated values of panes would change, and stores them if the user
  /// wants that.
  void computeValues(const sources::RecordSelection& selection, optics::Standard standard);
  /// Finds faults in the data of a source, or of some of its records where there are any.
  void audit(const Node& source, const sources::RecordSelection& selection);
  /// Has the pending copy be of a database that has taken the place of another.
  void follow(const Node& closed, const Node& opened);

 signals:
  /// `source` is the key of what was looked at; the summary names it.
  void audited(const std::string& source, const Findings& findings, const QString& summary);
  void workBegins();
  void workEnded(WorkEffect effect);
  /// What became of the records of a work, and what there is to say of them besides.
  void finished(const QString& summary, const QStringList& report);

 private:
  void exportToFolder(const sources::RecordSelection& selection, commands::ExportForm form);
  void exportToFile(const sources::RecordSelection& selection, commands::ExportForm form);
  /// What was written, and what there is to say of it.
  template <class Result>
  void tellExport(const Result& result, const QString& written);
  void storeValues(const sources::RecordSelection& selection,
                   const commands::IntegrationOptions& options);
  void run(const QString& work, WorkEffect effect, const QString& failureHeading,
           const std::function<void()>& command);

  commands::Session& session_;
  WindowUserInterface& ui_;
  QWidget& window_;
  sources::RecordSelection pending_;
  commands::PasteOptions pasteOptions_;
  dlgExport::Choice exportChoice_;
  QStringList report_;  ///< of the work that is being done, without the failures
};

}  // namespace orv::app
