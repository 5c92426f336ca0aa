// In which form records are to be exported.
#pragma once

#include <QDialog>
#include <optional>

#include "commands/ExportRecords.h"

class QCheckBox;
class QRadioButton;

namespace orv::app {

class dlgExport : public QDialog {
  Q_OBJECT

 public:
  struct Choice {
    commands::ExportForm form = commands::ExportForm::text;
    bool isJoined = false;  ///< all records in one file
  };

  /// `preset` is chosen at first.
  explicit dlgExport(const Choice& preset, QWidget* parent = nullptr);

  /// Shows the dialog; none where it is cancelled.
  std::optional<Choice> choose();

 private:
  commands::ExportForm form() const;
  void updateJoined();

  QRadioButton* text_;
  QRadioButton* json_;
  QRadioButton* csv_;
  QCheckBox* joined_;
};

}  // namespace orv::app
