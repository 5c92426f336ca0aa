#pragma once

#include <QTableWidget>

#include "app/docks/spectra/SpectrumPlot.h"

namespace orv::app {

/// The integrated values that the records hold, a column a data set. Cells can be selected and
/// copied as text.
class IntegratedTable : public QTableWidget {
  Q_OBJECT

 public:
  explicit IntegratedTable(QWidget* parent = nullptr);

  void showDataSets(const std::vector<SpectrumDataSet>& dataSets);

  QSize sizeHint() const override { return {250, 180}; }
  QSize minimumSizeHint() const override { return {100, 60}; }

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void copySelection() const;
  /// All of it, the headings first.
  QList<QStringList> wholeTable() const;
};

}  // namespace orv::app
