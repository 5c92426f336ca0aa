#pragma once

#include <QTableWidget>

#include "app/docks/spectra/IntegratedValues.h"

namespace orv::app {

/// The integrated values of data sets, two columns each: as the records hold them, and as the
/// spectra have them by a standard. What differs is marked by a colour and a sign. Cells can be
/// selected and copied as text.
class IntegratedTable : public QTableWidget {
  Q_OBJECT

 public:
  explicit IntegratedTable(QWidget* parent = nullptr);

  void showDataSets(const std::vector<SpectrumDataSet>& dataSets, optics::Standard standard);

  QSize sizeHint() const override { return {340, 180}; }
  QSize minimumSizeHint() const override { return {100, 60}; }

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void fillHeader(const std::vector<SpectrumDataSet>& dataSets);
  void fillRow(int row, const IntegratedRow& values);
  void fillCell(int row, int column, const IntegratedCell& value);
  void copySelection() const;
  /// All of it, the headings first.
  QList<QStringList> wholeTable() const;

  std::vector<IntegratedRow> rows_;
};

}  // namespace orv::app
