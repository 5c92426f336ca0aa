// Where something is to be saved.
#pragma once

#include <QString>
#include <QStringList>

class QWidget;

namespace orv::app {

struct SaveQuestion {
  QString title;
  QString name;         ///< that is proposed, without its suffix
  QStringList filters;  ///< "Tables (*.csv)"; the first is chosen at first
};

struct SaveChoice {
  QString path;  ///< empty when the user has chosen none
  int filter = 0;
};

/// Asks for the path of a new file, and for its kind. A name without a suffix
/// gets that of the chosen filter, and a file that is there is replaced only after a question. A
/// title is a kind of dialog, which remembers its folder.
SaveChoice askWhereToSave(const SaveQuestion& question, QWidget* window);

}  // namespace orv::app
