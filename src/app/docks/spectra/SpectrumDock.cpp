#include "app/docks/spectra/SpectrumDock.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QMimeData>
#include <QPrintDialog>
#include <QPrinter>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "app/Help.h"
#include "app/Text.h"
#include "app/dialogs/SaveDialog.h"
#include "app/docks/spectra/ExtraCurves.h"
#include "app/docks/spectra/IntegratedTable.h"
#include "app/docks/spectra/SpectrumCsv.h"
#include "app/docks/spectra/SpectrumFigure.h"
#include "app/docks/spectra/SpectrumLegend.h"
#include "app/docks/spectra/SpectrumView.h"
#include "app/theme/Icons.h"
#include "commands/UserInterface.h"

namespace orv::app {

namespace {

constexpr double kZoomStep = 1.5;
constexpr int kMostOfSide = 46;  ///< percent of the width for legend and table

const char* iconOf(SpectralQuantity quantity) {
  switch (quantity) {
    case SpectralQuantity::transmittance:
      return "line-solid";
    case SpectralQuantity::frontReflectance:
      return "line-dashed";
    default:
      return "line-dotted";
  }
}

/// In the plot.
QKeySequence keyOf(SpectralQuantity quantity) {
  switch (quantity) {
    case SpectralQuantity::transmittance:
      return QKeySequence(Qt::Key_T);
    case SpectralQuantity::frontReflectance:
      return QKeySequence(Qt::Key_F);
    default:
      return QKeySequence(Qt::Key_B);
  }
}

/// "clear_4" of "clear_4.txt".
QString stemOf(const QString& name) {
  const qsizetype point = name.lastIndexOf('.');
  return point > 0 ? name.left(point) : name;
}

QLabel* hint(QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setAlignment(Qt::AlignCenter);
  label->setWordWrap(true);
  label->setMargin(12);
  label->setForegroundRole(QPalette::PlaceholderText);
  return label;
}

}  // namespace

SpectrumDock::SpectrumDock(QWidget* parent) : QDockWidget(tr("Spectra"), parent) {
  setObjectName(QStringLiteral("SpectrumDock"));
  setAccessibleName(tr("Spectra"));
  setWhatsThis(tr("The spectra of the selected panes, laid over each other."));
  auto* content = new QWidget(this);
  toolBar_ = new QToolBar(content);
  stack_ = new QStackedWidget(content);
  emptyText_ = hint(stack_);
  emptyText_->setObjectName(QStringLiteral("spectrumEmptyText"));
  view_ = new SpectrumView(plot_, stack_);
  stack_->addWidget(emptyText_);
  stack_->addWidget(view_);
  splitter_ = new QSplitter(Qt::Horizontal, content);
  splitter_->addWidget(stack_);
  side_ = buildSide();
  splitter_->addWidget(side_);
  splitter_->setStretchFactor(0, 1);
  splitter_->setStretchFactor(1, 0);
  splitter_->setCollapsible(0, false);
  buildToolBar();
  note_ = new QLabel(content);
  note_->setObjectName(QStringLiteral("lblSpectrumNote"));
  note_->setTextFormat(Qt::PlainText);
  note_->setMargin(2);
  note_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);

  auto* layout = new QVBoxLayout(content);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(toolBar_);
  layout->addWidget(splitter_, 1);
  layout->addWidget(note_);
  setWidget(content);

  connect(view_, &SpectrumView::rangeChanged, this, &SpectrumDock::updateActions);
  connect(legend_, &SpectrumLegend::visibilityChanged, this, &SpectrumDock::followPlot);
  connect(legend_, &SpectrumLegend::pinWanted, this, &SpectrumDock::pinWanted);
  connect(legend_, &SpectrumLegend::pointed, view_, &SpectrumView::emphasize);
  clear();
}

SpectrumDock::~SpectrumDock() = default;

QSplitter* SpectrumDock::buildSide() {
  auto* side = new QSplitter(Qt::Vertical, splitter_);
  legend_ = new SpectrumLegend(plot_, side);
  side->addWidget(legend_);
  side->addWidget(buildValues());
  // In a low window the tables have the height of the plot, and scroll.
  side->setMinimumHeight(view_->minimumSizeHint().height());
  side->setStretchFactor(0, 1);
  side->setStretchFactor(1, 3);
  return side;
}

QWidget* SpectrumDock::buildValues() {
  auto* values = new QWidget;
  buildStandards();
  table_ = new IntegratedTable;
  noTable_ = hint(nullptr);
  noTable_->setMargin(2);
  noTable_->setMinimumHeight(3 * fontMetrics().lineSpacing() + 4);  // in a narrow dock
  auto* layout = new QVBoxLayout(values);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  layout->addWidget(standards_);
  layout->addWidget(table_);
  layout->addWidget(noTable_);
  return values;
}

void SpectrumDock::buildStandards() {
  standards_ = new QWidget;
  standard_ = new QComboBox;
  standard_->setObjectName(QStringLiteral("cboSpectrumStandard"));
  explain(standard_, tr("The standard by which integrated values are computed from the spectra"));
  for (const auto& [standard, word, name] : optics::kStandardNames) {
    standard_->addItem(qt(std::string(name)), static_cast<int>(standard));
  }
  standard_->setCurrentIndex(standard_->findData(static_cast<int>(optics::kUsualStandard)));
  connect(standard_, &QComboBox::activated, this, [this] {
    followStandard();
    emit standardChosen(standard());
  });
  auto* label = new QLabel(tr("Computed by:"));
  label->setBuddy(standard_);
  auto* layout = new QHBoxLayout(standards_);
  layout->setContentsMargins(2, 2, 2, 0);
  layout->addWidget(label);
  layout->addWidget(standard_, 1);
}

// --- Tool bar ------------------------------------------------------------------------------------

void SpectrumDock::buildToolBar() {
  toolBar_->setIconSize({16, 16});
  toolBar_->setAccessibleName(tr("Spectrum tools"));
  toolBar_->setWhatsThis(tr("What the plot shows, and ways to save, copy and print it."));
  addQuantityActions();
  angle_ = new QComboBox(toolBar_);
  explain(angle_, tr("Angle of incidence of the curves that are shown"));
  angle_->setAccessibleName(tr("Angle of incidence"));
  angle_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  angleAction_ = toolBar_->addWidget(angle_);
  connect(angle_, &QComboBox::activated, this, [this] {
    const QVariant chosen = angle_->currentData();
    plot_.angle = chosen.isValid() ? std::optional(chosen.toInt()) : std::nullopt;
    legend_->refresh();
    followPlot();
  });
  toolBar_->addSeparator();
  addViewActions();
  toolBar_->addSeparator();
  addExtraActions();
  toolBar_->addSeparator();
  addExportActions();
}

void SpectrumDock::addQuantityActions() {
  for (const SpectralQuantity quantity : kSpectralQuantities) {
    auto* action = toolBar_->addAction(icon(iconOf(quantity)), symbolOf(quantity));
    action->setCheckable(true);
    action->setChecked(true);
    quantities_.push_back(action);
    action->setShortcut(keyOf(quantity));
    action->setShortcutContext(Qt::WidgetShortcut);
    view_->addAction(action);
    explain(action, tr("%1: show or hide these curves").arg(nameOf(quantity)));
    auto* button = toolBar_->widgetForAction(action);
    static_cast<QToolButton*>(button)->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setAccessibleName(nameOf(quantity));
    connect(action, &QAction::toggled, this, [this, quantity](bool shown) {
      plot_.quantities[static_cast<std::size_t>(quantity)] = shown;
      followPlot();
    });
  }
}

void SpectrumDock::addViewActions() {
  logarithmic_ = toolBar_->addAction(icon("logarithmic"), tr("Logarithmic wavelengths"));
  logarithmic_->setCheckable(true);
  explain(logarithmic_,
          tr("Logarithmic axis of wavelengths, to see visible light and infrared together"));
  connect(logarithmic_, &QAction::toggled, this, &SpectrumDock::setLogarithmic);
  zoomIn_ = toolBar_->addAction(icon("zoom-in"), tr("Zoom in"), view_,
                                [this] { view_->zoom(kZoomStep); });
  zoomOut_ = toolBar_->addAction(icon("zoom-out"), tr("Zoom out"), view_,
                                 [this] { view_->zoom(1 / kZoomStep); });
  showAll_ =
      toolBar_->addAction(icon("zoom-reset"), tr("Show everything"), view_, &SpectrumView::showAll);
  explain(zoomIn_, tr("Show less of the plot, larger"));
  explain(zoomOut_, tr("Show more of the plot, smaller"));
  explain(showAll_, tr("Show all of the curves"));
  showSide_ = toolBar_->addAction(icon("table"), tr("Legend and integrated values"));
  showSide_->setCheckable(true);
  showSide_->setChecked(true);
  explain(showSide_, tr("Show or hide the legend and the integrated values"));
  connect(showSide_, &QAction::toggled, this, &SpectrumDock::updateActions);
}

void SpectrumDock::addExtraActions() {
  weighting_ = addChoice("weighting", tr("Weighting of the standard"),
                         tr("Show behind the curves what the standard weights solar and visible "
                            "values with"),
                         &SpectrumPlot::showsWeighting);
  difference_ = addChoice("difference", tr("Difference"),
                          tr("Show the first less the second of two curves; two panes have to be "
                             "ticked in the legend"),
                          &SpectrumPlot::showsDifference);
  mean_ = addChoice("mean", tr("Mean and band"),
                    tr("Show the mean of several panes, and the band from the least to the "
                       "greatest value"),
                    &SpectrumPlot::showsMean);
}

QAction* SpectrumDock::addChoice(const char* iconName, const QString& text, const QString& help,
                                 bool SpectrumPlot::*choice) {
  auto* action = toolBar_->addAction(icon(iconName), text);
  action->setCheckable(true);
  explain(action, help);
  connect(action, &QAction::toggled, this, [this, choice](bool shown) {
    plot_.*choice = shown;
    followPlot();
  });
  return action;
}

void SpectrumDock::addExportActions() {
  save_ = toolBar_->addAction(icon("save"), tr("Save as…"), this, &SpectrumDock::saveAs);
  explain(save_, tr("Save as a picture (PNG, SVG) or a table (CSV)"));
  copy_ = toolBar_->addAction(icon("copy"), tr("Copy"), this, &SpectrumDock::copy);
  copy_->setShortcut(QKeySequence::Copy);
  copy_->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  addAction(copy_);
  explain(copy_, tr("Copy as a picture and as text"));
  print_ = toolBar_->addAction(icon("print"), tr("Print…"), this, &SpectrumDock::print);
  explain(print_, tr("Print the plot"));
  // The same commands by a right click on the plot.
  view_->addActions(toolBar_->actions().mid(toolBar_->actions().indexOf(logarithmic_)));
  view_->setContextMenuPolicy(Qt::ActionsContextMenu);
}

// --- What is shown -------------------------------------------------------------------------------

void SpectrumDock::showPanes(const std::vector<SpectrumRecord>& panes) {
  note({});
  plot_.setRecords(panes);
  const bool isEmpty = plot_.dataSets.empty();
  emptyText_->setText(isEmpty ? tr("Select one or more records to see their spectra here.")
                              : tr("The selected records have no spectral data."));
  stack_->setCurrentWidget(plot_.hasSpectra() ? static_cast<QWidget*>(view_) : emptyText_);
  fillAngles();
  legend_->refresh();
  showValues();
  view_->showCurves();
  updateActions();
}

void SpectrumDock::offer(const QList<QAction*>& actions) {
  toolBar_->insertActions(weighting_, actions);
  toolBar_->insertSeparator(weighting_);
  view_->insertActions(weighting_, actions);
}

void SpectrumDock::note(const QString& text) {
  note_->setText(text);
  note_->setToolTip(toolTipText(text));
  note_->setVisible(!text.isEmpty());
}

void SpectrumDock::showValues() {
  auto sets = plot_.dataSets;
  std::erase_if(sets, [](const SpectrumDataSet& set) { return set.isInBand; });
  table_->showDataSets(sets, standard());
  const bool hasValues = table_->rowCount() > 0;
  table_->setVisible(hasValues);
  standards_->setVisible(hasValues);
  noTable_->setVisible(!hasValues);
  noTable_->setText(
      plot_.hasBand()
          ? tr("View > Computed Integrated Values shows those of many panes as columns.")
          : tr("No integrated values are stored, and there is no spectrum."));
}

void SpectrumDock::showDifference(std::optional<int> angle) {
  plot_.angle = angle;
  fillAngles();
  legend_->refresh();
  difference_->setChecked(true);
  followPlot();
}

void SpectrumDock::pointAt(double microns, std::optional<int> angle) {
  if (!plot_.hasSpectra()) return;
  const auto wanted = std::ranges::find_if(plot_.dataSets, [&](const SpectrumDataSet& set) {
    return set.hasSpectrum() && set.angle == angle;
  });
  if (wanted == plot_.dataSets.end()) return view_->pointAtWavelength(microns, {});
  if (plot_.angle && plot_.angle != angle) {
    plot_.angle = angle;
    fillAngles();
    legend_->refresh();
    followPlot();
  }
  view_->pointAtWavelength(microns, static_cast<std::size_t>(wanted - plot_.dataSets.begin()));
}

std::optional<double> SpectrumDock::pointedWavelength() const {
  return view_->pointedWavelength();
}

void SpectrumDock::clear() {
  showPanes({});
}

void SpectrumDock::setWavelengthUnit(int unit) {
  plot_.scale.unit = unit;
  view_->showView();
}

void SpectrumDock::setStandard(optics::Standard standard) {
  standard_->setCurrentIndex(standard_->findData(static_cast<int>(standard)));
  followStandard();
}

void SpectrumDock::followStandard() {
  plot_.standard = standard();
  showValues();
  view_->showView();
}

optics::Standard SpectrumDock::standard() const {
  return static_cast<optics::Standard>(standard_->currentData().toInt());
}

void SpectrumDock::setLogarithmic(bool logarithmic) {
  plot_.scale.logarithmic = logarithmic;
  plot_.zoomed = false;
  plot_.fit();
  view_->showCurves();
  updateActions();
}

void SpectrumDock::fillAngles() {
  const auto angles = plot_.angles();
  angle_->clear();
  angle_->addItem(tr("All angles"));
  for (const int angle : angles) {
    angle_->addItem(tr("%1°").arg(angle), angle);
    if (plot_.angle == angle) angle_->setCurrentIndex(angle_->count() - 1);
  }
  angleAction_->setVisible(angles.size() > 1);
}

void SpectrumDock::followPlot() {
  plot_.fit();
  view_->showView();
  updateActions();
}

void SpectrumDock::updateActions() {
  const bool hasPlot = plot_.hasSpectra();
  for (QAction* action : {logarithmic_, zoomIn_, save_, copy_, print_}) action->setEnabled(hasPlot);
  for (QAction* action : quantities_) action->setEnabled(hasPlot);
  const std::size_t shown = shownDataSets(plot_).size();
  weighting_->setEnabled(hasPlot);
  difference_->setEnabled(shown == 2);
  mean_->setEnabled(shown > 1 && !plot_.hasBand());
  const bool isZoomed = hasPlot && plot_.zoomed;
  zoomOut_->setEnabled(isZoomed);
  showAll_->setEnabled(isZoomed);
  side_->setVisible(showSide_->isChecked() && !plot_.dataSets.empty());
}

void SpectrumDock::resizeEvent(QResizeEvent* event) {
  QDockWidget::resizeEvent(event);
  // Legend and table go below the plot of a tall dock, and never take most of a small one.
  const bool isTall = height() > width();
  splitter_->setOrientation(isTall ? Qt::Vertical : Qt::Horizontal);
  side_->setOrientation(isTall ? Qt::Horizontal : Qt::Vertical);
  const int most = width() * kMostOfSide / 100;
  if (!isTall && side_->width() > most) splitter_->setSizes({width() - most, most});
}

// --- Export --------------------------------------------------------------------------------------

void SpectrumDock::saveAs() {
  const QString path =
      askWhereToSave(
          {tr("Save Spectra"),
           plot_.paneCount() == 1 ? stemOf(plot_.dataSets.front().name) : tr("spectra"),
           {tr("Picture (*.png)"), tr("Scalable picture (*.svg)"), tr("Table of values (*.csv)")}},
          this)
          .path;
  if (!path.isEmpty()) exportTo(path);
}

void SpectrumDock::exportTo(const QString& path) {
  const SpectrumFigure figure(plot_);
  const QString suffix = QFileInfo(path).suffix().toLower();
  QString reason = tr("Files can be written as .png, .svg and .csv.");
  bool saved = false;
  if (suffix == u"png") saved = figure.savePng(path, reason);
  if (suffix == u"svg") saved = figure.saveSvg(path, reason);
  if (suffix == u"csv") saved = figure.saveCsv(path, reason);
  if (saved) {
    note(tr("Saved %1").arg(shownText(path)));
  } else {
    QMessageBox::critical(this, QString::fromUtf8(commands::kProductName),
                          tr("%1\n\nThe file \"%2\" could not be written.").arg(reason, path));
  }
}

void SpectrumDock::copy() {
  auto* data = new QMimeData;
  data->setImageData(SpectrumFigure(plot_).image());
  data->setText(spectraAsText(plot_, u'\t'));
  QApplication::clipboard()->setMimeData(data);
  note(tr("Copied the plot"));
}

void SpectrumDock::print() {
  QPrinter printer(QPrinter::HighResolution);
  printer.setPageOrientation(QPageLayout::Landscape);
  printer.setDocName(tr("Spectra"));
  QPrintDialog dialog(&printer, this);
  if (dialog.exec() == QDialog::Accepted) SpectrumFigure(plot_).print(printer);
}

}  // namespace orv::app

#include "moc_SpectrumDock.cpp"
