// Where a database is to be compacted or repaired to.
#pragma once

#include <QDialog>
#include <optional>

#include "app/dialogs/PathEdit.h"
#include "commands/CompactDatabase.h"

class QCheckBox;
class QPushButton;
class QRadioButton;
class QVBoxLayout;

namespace orv::app {

/// Of a compaction: in place of the file, or into a new one. Of a repair: the damaged file, and the
/// new one.
class dlgCompact : public QDialog {
  Q_OBJECT

 public:
  using Work = commands::CompactRequest::Work;

  /// `path` is the database; of a repair the one that is proposed, which may be empty.
  dlgCompact(Work work, const QString& path, QWidget* parent = nullptr);

  /// Shows the dialog; none where it is cancelled.
  std::optional<commands::CompactRequest> choose();

 private:
  void addCompaction(QVBoxLayout& layout);
  void addRepair(QVBoxLayout& layout);
  void proposeTarget();
  void update();

  Work work_;
  QString path_;
  QString proposed_;  ///< the new file that this has put in
  QRadioButton* inPlace_ = nullptr;
  QCheckBox* keepOld_ = nullptr;
  PathEdit* damaged_ = nullptr;
  PathEdit* target_;
  QPushButton* start_;
};

}  // namespace orv::app
