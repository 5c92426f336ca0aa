#pragma once

#include <QTreeWidget>
#include <optional>

#include "app/docks/spectra/SpectrumPlot.h"

namespace orv::app {

/// The list of a plot's data sets with their colours. A tick shows or hides the curves of one; a
/// click on the pin beside it, or P, keeps its pane in the plot; the one under the pointer is to be
/// emphasized.
class SpectrumLegend : public QTreeWidget {
  Q_OBJECT

 public:
  explicit SpectrumLegend(SpectrumPlot& plot, QWidget* parent = nullptr);

  /// Follows a change of the plot.
  void refresh();

  QSize sizeHint() const override { return {250, 120}; }
  QSize minimumSizeHint() const override { return {100, 60}; }

 signals:
  void visibilityChanged();
  /// The data set under the pointer or with the focus, or none.
  void pointed(std::optional<std::size_t> dataSet);
  /// A data set is to be pinned, or not any more.
  void pinWanted(std::size_t dataSet);

 protected:
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  QIcon pin(bool isPinned) const;
  QIcon swatch(const SpectrumDataSet& set) const;
  void itemWasTicked(const QTreeWidgetItem& item);
  /// Hides all data sets but one; all of them are shown when there is no such one.
  void showOnly(std::optional<std::size_t> dataSet);

  SpectrumPlot& plot_;
};

}  // namespace orv::app
