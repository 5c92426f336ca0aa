#pragma once

#include <QDockWidget>
#include <memory>
#include <vector>

#include "app/docks/spectra/SpectrumPlot.h"

class QAction;
class QComboBox;
class QLabel;
class QSplitter;
class QStackedWidget;
class QToolBar;

namespace orv::app {

class IntegratedTable;
class SpectrumLegend;
class SpectrumView;

/// The spectra of the selected panes, with the integrated values that are stored beside them.
class SpectrumDock : public QDockWidget {
  Q_OBJECT

 public:
  explicit SpectrumDock(QWidget* parent = nullptr);
  ~SpectrumDock() override;

  /// Shows panes in place of the former ones; the records of one pane at several angles belong
  /// together. The quantities, the angle and the axis that the user chose stay.
  void showPanes(std::vector<std::shared_ptr<const GlazingData>> panes);
  void clear();
  /// `WavelengthUnitCode` of the axis, the values under the pointer and exported tables.
  void setWavelengthUnit(int unit);

  const SpectrumPlot& plot() const { return plot_; }

 public slots:
  void saveAs();  ///< asks for a file: PNG, SVG or CSV
  void copy();    ///< as a picture and as text
  void print();   ///< asks for a printer

 signals:
  /// What has been done, for the status bar.
  void statusMessage(const QString& text);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void buildToolBar();
  void addQuantityActions();
  void addViewActions();
  void addExportActions();
  QSplitter* buildSide();
  void followPlot();  ///< after a change of what is shown
  void fillAngles();
  void updateActions();
  void setLogarithmic(bool logarithmic);
  void exportTo(const QString& path);

  SpectrumPlot plot_;
  QToolBar* toolBar_;
  QStackedWidget* stack_;
  QLabel* emptyText_;
  SpectrumView* view_;
  SpectrumLegend* legend_;
  IntegratedTable* table_;
  QLabel* noTable_;
  QSplitter* side_;
  QSplitter* splitter_;
  QComboBox* angle_;
  QAction* angleAction_;
  QAction* logarithmic_;
  QAction* zoomIn_;
  QAction* zoomOut_;
  QAction* showAll_;
  QAction* showSide_;
  QAction* save_;
  QAction* copy_;
  QAction* print_;
  std::vector<QAction*> quantities_;
};

}  // namespace orv::app
