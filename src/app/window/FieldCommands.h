// Commands that change many fields at once.
#pragma once

#include <QObject>
#include <vector>

#include "app/window/WindowUserInterface.h"
#include "commands/edit/Editor.h"

namespace orv::app {

class RecordGrid;

/// Find and replace, and the pasting of texts into fields. What they change is not saved yet, and
/// is one step of the way back.
class FieldCommands : public QObject {
  Q_OBJECT

 public:
  /// All outlive it.
  FieldCommands(RecordGrid& grid, WindowUserInterface& ui, QWidget& window);

  /// Asks what is to be replaced in a column, and shows what that would change.
  void replace();
  /// Pastes the text on the clipboard. Where a value is refused, shows all and asks; a block that
  /// does not fit is refused with the reason.
  void pasteText();

 signals:
  void told(const QString& text);

 private:
  /// Whether the records shown are edited; says so where they are not.
  bool mayEdit();
  void take(const std::vector<commands::edit::TypedValue>& values, const QString& more = {});

  RecordGrid& grid_;
  WindowUserInterface& ui_;
  QWidget& window_;
};

}  // namespace orv::app
