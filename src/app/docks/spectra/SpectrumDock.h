#pragma once

#include <QDockWidget>
#include <memory>
#include <vector>

#include "app/docks/spectra/SpectrumPlot.h"
#include "optics/Standard.h"

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

/// The spectra of the selected panes, with their integrated values: those that are stored beside
/// them, and those that a standard computes from them.
class SpectrumDock : public QDockWidget {
  Q_OBJECT

 public:
  explicit SpectrumDock(QWidget* parent = nullptr);
  ~SpectrumDock() override;

  /// Shows panes in place of the former ones; the records of one pane at several angles belong
  /// together. The quantities, the angle and the axis that the user chose stay.
  /// More than `kMostCurves` are a band with their mean, but for those that are pinned.
  void showPanes(const std::vector<SpectrumRecord>& panes);
  void clear();
  /// Offers commands for the panes shown, in the tool bar and by a right click on the plot.
  void offer(const QList<QAction*>& actions);
  /// Shows the difference of the two panes, of their curves at this angle where one is given.
  void showDifference(std::optional<int> angle);
  /// Says something of the panes that are shown, or of what was done with them, until others are.
  void note(const QString& text);
  /// Points at a wavelength of the curves, in microns, where there are any; on the curve of an
  /// angle, in degrees, where it is given.
  void pointAt(double microns, std::optional<int> angle = {});
  /// Where the cross hair is, in microns; none while it is not shown.
  std::optional<double> pointedWavelength() const;
  /// `WavelengthUnitCode` of the axis, the values under the pointer and exported tables.
  void setWavelengthUnit(int unit);
  /// By which standard values are computed.
  void setStandard(optics::Standard standard);
  optics::Standard standard() const;

  const SpectrumPlot& plot() const { return plot_; }

 public slots:
  void saveAs();  ///< asks for a file: PNG, SVG or CSV
  void copy();    ///< as a picture and as text
  void print();   ///< asks for a printer

 signals:
  /// The user has chosen another standard.
  void standardChosen(optics::Standard standard);
  /// A data set is to be pinned, or not any more.
  void pinWanted(std::size_t dataSet);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void buildToolBar();
  void addQuantityActions();
  void addViewActions();
  void addExtraActions();
  /// One that sets a choice of the plot.
  QAction* addChoice(const char* iconName, const QString& text, const QString& help,
                     bool SpectrumPlot::*choice);
  void addExportActions();
  QSplitter* buildSide();
  QWidget* buildValues();
  void buildStandards();
  void showValues();
  void followStandard();
  void followPlot();  ///< after a change of what is shown
  void fillAngles();
  void updateActions();
  void setLogarithmic(bool logarithmic);
  void exportTo(const QString& path);

  SpectrumPlot plot_;
  QToolBar* toolBar_;
  QStackedWidget* stack_;
  QLabel* emptyText_;
  QLabel* note_;
  SpectrumView* view_;
  SpectrumLegend* legend_;
  QWidget* standards_;  ///< the choice with its label
  QComboBox* standard_;
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
  QAction* weighting_;
  QAction* difference_;
  QAction* mean_;
  QAction* showSide_;
  QAction* save_;
  QAction* copy_;
  QAction* print_;
  std::vector<QAction*> quantities_;
};

}  // namespace orv::app
