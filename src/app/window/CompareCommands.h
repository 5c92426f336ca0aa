// Tools > Compare, and copying what differs.
#pragma once

#include <QObject>
#include <QStringList>
#include <functional>

#include "app/dialogs/CompareDialog.h"
#include "app/window/WindowUserInterface.h"
#include "commands/PasteRecords.h"
#include "commands/Session.h"
#include "commands/compare/Compare.h"

namespace orv::app {

/// Holds the last comparison. Long commands tell before they begin and after they end, so that the
/// window can leave the databases alone meanwhile and then show them anew.
class CompareCommands : public QObject {
  Q_OBJECT

 public:
  using Node = std::shared_ptr<sources::datasource>;
  using Comparison = commands::compare::Comparison;

  CompareCommands(commands::Session& session, WindowUserInterface& ui, QWidget& window);

  /// By which standard copies compute integrated values that their source does not have.
  void integrateBy(std::optional<optics::Standard> standard) { integrateBy_ = standard; }

  /// Asks which two are to be compared, proposing these, of which the second may be empty.
  void compare(const std::string& left, const std::string& right);
  void compareAgain();
  /// Copies the records of these pairs to the right, and compares again: before, too, so that nothing
  /// is replaced that nobody has seen.
  void copy(const std::vector<std::size_t>& pairs);

  /// Where a record of the last comparison is.
  struct Place {
    Node node;
    std::vector<std::string> identifiers;
  };
  /// Both sides of a difference; a side without the record has no identifiers. Nothing where a
  /// source is not open any more.
  std::optional<std::pair<Place, Place>> placesOf(
      const commands::compare::Difference& difference) const;

 signals:
  void workBegins();
  void workEnded(bool changedRecords);
  /// What became of the records of a copy, and what there is to say of them besides.
  void finished(const QString& summary, const QStringList& report);
  void compared(const std::shared_ptr<const orv::commands::compare::Comparison>& comparison,
                const std::vector<std::size_t>& copyable, const QString& heading);
  void statusMessage(const QString& text);

 private:
  struct Sides {
    Node left;
    Node right;
  };

  /// Nothing, and that is told, where one is not open any more.
  std::optional<Sides> sides();
  bool run(const Sides& sides);
  QString headingOf(const Sides& sides) const;

  commands::Session& session_;
  WindowUserInterface& ui_;
  QWidget& window_;
  std::optional<optics::Standard> integrateBy_ = optics::kUsualStandard;
  std::string left_;   ///< key
  std::string right_;  ///< key
  commands::compare::CompareOptions options_;
  std::shared_ptr<const Comparison> comparison_;
};

}  // namespace orv::app
