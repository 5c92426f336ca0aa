#pragma once

#include <QDockWidget>
#include <memory>
#include <vector>

#include "app/docks/details/DetailsRecord.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSplitter;
class QStackedWidget;
class QToolButton;

namespace orv::app {

class DetailsTree;
class PictureView;
class SlatDrawing;

/// Every field of one record, with a frame's picture or a shading's slats; or those of several in
/// columns, where they differ with a mark.
class DetailsDock : public QDockWidget {
  Q_OBJECT

 public:
  explicit DetailsDock(QWidget* parent = nullptr);
  ~DetailsDock() override;

  /// Shows a pane by its records at each stored angle, at least one. The angle chosen last is shown
  /// where the pane has it, else the first.
  void showPane(std::vector<std::shared_ptr<const GlazingData>> angles);
  void showFrame(const std::shared_ptr<const FrameDataClass>& frame);
  void showShading(const std::shared_ptr<const ShadingDataClass>& shading);
  /// Shows records of one kind beside each other.
  void showRecords(std::vector<DetailsRecord> records);
  void clear();
  /// Shows a text in place of a record: that several are selected, or why one could not be read.
  void showText(const QString& text);
  /// Shows that the record is not in its source any more, and offers to read that again.
  void showGone();

 signals:
  void refreshWanted();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* buildTextPage();
  QWidget* buildRecordPage();
  void fill(std::vector<DetailsRecord> records);
  void fillAngles();
  void showAngle();
  /// Those of a record at an angle and direction; of one without these at its first.
  std::vector<commands::DetailField> fieldsAt(const DetailsRecord& record,
                                              const QPoint& place) const;
  /// Shows the page of the record, with this drawing below the fields, or with none.
  void showRecord(QWidget* drawing);

  QStackedWidget* pages_;
  QLabel* text_;
  QPushButton* refresh_;
  QLineEdit* filter_;
  QComboBox* angle_;
  QToolButton* differences_;
  QSplitter* splitter_;
  DetailsTree* tree_;
  QStackedWidget* drawings_;
  PictureView* picture_;
  SlatDrawing* slats_;
  std::vector<DetailsRecord> records_;
};

}  // namespace orv::app
