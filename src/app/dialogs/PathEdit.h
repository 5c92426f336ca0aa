// A place for the path of a file.
#pragma once

#include <QWidget>

class QLineEdit;

namespace orv::app {

/// A line for the path, and a button that asks for it in the file dialog.
class PathEdit : public QWidget {
  Q_OBJECT

 public:
  enum class File { existing, made };  ///< one that is made never replaces another

  /// `name` is the object name of the line, `help` explains it; `title` is that of the file dialog.
  PathEdit(const QString& name, File file, const QString& title, const QString& help);

  QLineEdit& line() { return *line_; }
  QString path() const;
  void path(const QString& value);

 signals:
  void changed();

 private:
  void browse();

  File file_;
  QString title_;
  QLineEdit* line_;
};

}  // namespace orv::app
