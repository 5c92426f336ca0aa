#include "app/docks/RecordDocks.h"

#include <QAction>
#include <QElapsedTimer>
#include <QMainWindow>
#include <algorithm>
#include <filesystem>
#include <utility>

#include "app/Help.h"
#include "app/Text.h"
#include "app/docks/DockShares.h"
#include "app/docks/details/DetailsDock.h"
#include "app/docks/list/FrontDock.h"
#include "app/docks/spectra/SpectrumDock.h"
#include "app/theme/Icons.h"
#include "commands/ErrorText.h"
#include "commands/RecordKind.h"
#include "store/Waiting.h"

namespace orv::app {

using commands::RecordKind;

namespace {

constexpr int kMillisecondsOfRest = 120;
constexpr int kMillisecondsAtOnce = 40;
/// More spectra are not read: of so many the band changes little.
constexpr std::size_t kMostOfBand = 1000;
/// So many records stand side by side.
constexpr std::size_t kMostColumns = 12;
/// One curve is left for a selected record.
constexpr std::size_t kMostPins = kMostCurves - 1;
/// Shares of the window's height and width, in percent.
constexpr int kSpectrumShare = 42;
constexpr int kDetailsShare = 30;

/// Makes the action that opens a dock one of the window's commands.
void dress(QAction* action, const char* name, const char* iconName, const QString& text,
           const QString& shortcut, const QString& help) {
  action->setObjectName(name);
  action->setIcon(icon(iconName));
  action->setText(text);
  action->setShortcut(shortcut);
  explain(action, help);
}

}  // namespace

RecordDocks::RecordDocks(commands::Session& session, QMainWindow& window)
    : QObject(&window),
      session_(session),
      window_(window),
      shares_(new DockShares(window)),
      spectrum_(new SpectrumDock(&window)),
      details_(new DetailsDock(&window)) {
  window.addDockWidget(Qt::BottomDockWidgetArea, spectrum_);
  window.addDockWidget(Qt::RightDockWidgetArea, details_);
  window.setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
  shares_->add(*spectrum_, Qt::Vertical, kSpectrumShare);
  shares_->add(*details_, Qt::Horizontal, kDetailsShare);
  dress(spectrumAction(), "mnuViewSpectrum", "plot", tr("&Spectra"), "F7",
        tr("Plot the spectra of the selected panes"));
  dress(detailsAction(), "mnuViewDetails", "details", tr("&Details"), "F8",
        tr("Show all fields of the selected record"));
  rest_.setSingleShot(true);
  rest_.setInterval(kMillisecondsOfRest);
  connect(&rest_, &QTimer::timeout, this, &RecordDocks::beginReading);
  reading_.setSingleShot(true);
  connect(&reading_, &QTimer::timeout, this, &RecordDocks::readOn);
  makePinActions();
  connect(details_, &DetailsDock::refreshWanted, this, &RecordDocks::refreshWanted);
  connect(spectrum_, &SpectrumDock::standardChosen, this, &RecordDocks::standardChosen);
  for (QDockWidget* dock :
       {static_cast<QDockWidget*>(spectrum_), static_cast<QDockWidget*>(details_)}) {
    new FrontDock(*dock);
    connect(dock, &QDockWidget::visibilityChanged, this, [this](bool visible) {
      if (visible && (node_ || !pins_.empty())) rest_.start();
    });
  }
}

void RecordDocks::makePinActions() {
  pin_ = new QAction(&window_);
  dress(pin_, "mnuViewPin", "pin", tr("&Pin to Plot"), "Ctrl+Shift+P",
        tr("Keep the selected records in the plot and in the details while others are selected, or "
           "no longer"));
  unpin_ = new QAction(&window_);
  dress(unpin_, "mnuViewUnpin", "unpin", tr("&Unpin All"), "",
        tr("Leave nothing in the plot but the selected records"));
  unpin_->setEnabled(false);
  pin_->setEnabled(false);
  connect(pin_, &QAction::triggered, this, &RecordDocks::pinSelected);
  connect(unpin_, &QAction::triggered, this, [this] {
    pins_.clear();
    pinsChanged();
  });
  spectrum_->offer({pin_, unpin_});
  connect(spectrum_, &SpectrumDock::pinWanted, this, &RecordDocks::togglePin);
}

void RecordDocks::show(const Node& node, std::vector<std::string> identifiers) {
  place_.reset();
  sides_.clear();
  node_ = identifiers.empty() ? nullptr : node;
  identifiers_ = std::move(identifiers);
  prunePins();
  const auto kind = node_ ? commands::recordKind(*node_) : std::nullopt;
  pin_->setEnabled(kind && kind != RecordKind::frames);
  reading_.stop();
  rest_.start();
  if (node_) return;
  details_->clear();
  if (pins_.empty()) rest();
}

void RecordDocks::rest() {
  rest_.stop();
  reading_.stop();
  spectrum_->clear();
  details_->clear();
}

void RecordDocks::showDifference(Side left, Side right, std::optional<int> angle) {
  place_.reset();
  node_ = left.identifiers.empty() ? right.node : left.node;
  sides_ = {std::move(left), std::move(right)};
  angle_ = angle;
  rest_.start();
}

// --- Pins ----------------------------------------------------------------------------------------

bool RecordDocks::isPinned(const RecordPlace& place) const {
  return std::ranges::find(pins_, place) != pins_.end();
}

void RecordDocks::togglePin(std::size_t dataSet) {
  if (dataSet >= plotted_.size()) return;
  const RecordPlace place = plotted_[dataSet];
  if (std::erase(pins_, place) == 0) pins_.push_back(place);
  pinsChanged();
}

void RecordDocks::pinSelected() {
  std::vector<RecordPlace> places;
  for (const std::string& identifier : identifiers_) places.push_back({node_, identifier});
  const bool areAllPinned = std::ranges::all_of(places, [&](const auto& p) { return isPinned(p); });
  for (const RecordPlace& place : places) {
    if (areAllPinned) {
      std::erase(pins_, place);
    } else if (!isPinned(place)) {
      pins_.push_back(place);
    }
  }
  pinsChanged();
}

/// The first ones stay.
void RecordDocks::pinsChanged() {
  const bool areTooMany = pins_.size() > kMostPins;
  if (areTooMany) pins_.resize(kMostPins);
  unpin_->setEnabled(!pins_.empty());
  if (!pins_.empty() && !spectrum_->isVisible()) spectrum_->show();
  beginReading();
  if (areTooMany) spectrum_->note(tr("No more than %1 records can be pinned.").arg(kMostPins));
}

void RecordDocks::prunePins() {
  std::erase_if(pins_, [this](const RecordPlace& place) {
    return session_.MainDataSources.findByKey(place.source()->key()) != place.source();
  });
  unpin_->setEnabled(!pins_.empty());
}

/// With its source, where that is not the one of the selected records.
QString RecordDocks::titleOf(const ShownRecord& record) const {
  const auto source = record.place.source();
  if (!node_ || source == RecordPlace{node_, {}}.source()) return record.name();
  const auto file = std::filesystem::path(source->text()).filename();
  return tr("%1 (%2)").arg(record.name(), shownText(file.string()));
}

// --- Reading -------------------------------------------------------------------------------------

void RecordDocks::pointAt(double microns, std::optional<int> angle) {
  place_ = {microns, angle};
  if (node_) rest_.start();
}

void RecordDocks::wavelengthUnit(int unit) {
  spectrum_->setWavelengthUnit(unit);
}

void RecordDocks::standard(optics::Standard standard) {
  spectrum_->setStandard(standard);
}

void RecordDocks::layOverDetails(QDockWidget& dock) {
  window_.addDockWidget(Qt::RightDockWidgetArea, &dock);
  window_.tabifyDockWidget(details_, &dock);
  shares_->add(dock, Qt::Horizontal, kDetailsShare);
}

void RecordDocks::open(bool opened) {
  spectrum_->setVisible(opened);
  details_->setVisible(opened);
}

void RecordDocks::openDetails() {
  details_->show();
  details_->raise();
}

QAction* RecordDocks::spectrumAction() const {
  return spectrum_->toggleViewAction();
}

QAction* RecordDocks::detailsAction() const {
  return details_->toggleViewAction();
}

void RecordDocks::beginReading() {
  rest_.stop();
  if (store::Waiting::isUnderWay()) return rest_.start();
  if (!spectrum_->isVisible() && !details_->isVisible()) return;
  wanted_ = pins_;
  read_.clear();
  for (std::size_t i = 0; i < countToRead(); ++i) {
    const RecordPlace place{node_, identifiers_[i]};
    if (!isPinned(place)) wanted_.push_back(place);
  }
  readOn();
}

/// Of the selected records: those that the plot or the details have room for.
std::size_t RecordDocks::countToRead() const {
  if (!node_) return 0;
  const bool arePlotted =
      spectrum_->isVisible() && commands::recordKind(*node_) != RecordKind::frames;
  if (arePlotted) return std::min(identifiers_.size(), kMostOfBand);
  return identifiers_.size() > kMostColumns ? 0 : identifiers_.size();
}

void RecordDocks::readOn() {
  if (store::Waiting::isUnderWay()) return rest_.start();
  try {
    if (!sides_.empty()) return readSides();
    QElapsedTimer time;
    time.start();
    while (read_.size() < wanted_.size() && time.elapsed() < kMillisecondsAtOnce) {
      const RecordPlace& place = wanted_[read_.size()];
      read_.push_back(readShown(session_, place));
      read_.back().isPinned = isPinned(place);
    }
    if (read_.size() == wanted_.size()) return showRead();
    spectrum_->note(
        tr("Reading: %L1 of %2").arg(read_.size()).arg(counted(wanted_.size(), tr("record"))));
    reading_.start(0);
  } catch (const std::exception& error) {
    spectrum_->clear();
    details_->showText(shownText(commands::describe(error)));
  }
}

void RecordDocks::showRead() {
  std::erase_if(pins_, [this](const RecordPlace& place) {
    return std::ranges::any_of(
        read_, [&](const ShownRecord& each) { return each.place == place && !each.isThere; });
  });
  showSpectra();
  showDetails();
}

void RecordDocks::showSpectra() {
  std::vector<SpectrumRecord> records;
  plotted_.clear();
  for (const ShownRecord& each : read_) {
    for (const auto& pane : each.panes) {
      records.emplace_back(pane, each.isPinned, titleOf(each));
      plotted_.push_back(each.place);
    }
  }
  spectrum_->showPanes(records);
  if (spectrum_->plot().hasBand()) {
    QString note = tr("The band from the least to the greatest value of %1, with their mean.")
                       .arg(counted(wanted_.size() - pins_.size(), tr("record")));
    if (identifiers_.size() > kMostOfBand) {
      note += tr(" They are the first of %L1.").arg(identifiers_.size());
    }
    spectrum_->note(note);
  }
  pointAtPlace();
}

void RecordDocks::pointAtPlace() {
  if (const auto place = std::exchange(place_, std::nullopt)) {
    spectrum_->pointAt(place->microns, place->angle);
  }
}

void RecordDocks::showDetails() {
  if (!node_ || !details_->isVisible()) return;
  if (identifiers_.size() > kMostColumns) {
    return details_->showText(tr("%L1 records are selected.").arg(identifiers_.size()));
  }
  const RecordPlace first{node_, identifiers_.front()};
  const ShownRecord& selected = *std::ranges::find(read_, first, &ShownRecord::place);
  if (identifiers_.size() == 1 && !selected.isThere) return details_->showGone();
  std::vector<DetailsRecord> columns;  // the pinned ones first
  for (const ShownRecord& each : read_) {
    if (each.kind != selected.kind || !each.isThere || columns.size() == kMostColumns) continue;
    columns.push_back(columnOf(each));
  }
  if (columns.size() > 1) return details_->showRecords(std::move(columns));
  if (selected.shading) return details_->showShading(selected.shading);
  if (selected.frame) return details_->showFrame(selected.frame);
  if (!selected.panes.empty()) return details_->showPane(selected.panes);
  details_->showText(tr("This pane has data at no angle."));
}

DetailsRecord RecordDocks::columnOf(const ShownRecord& record) const {
  DetailsRecord column{titleOf(record), {}, {}};
  if (record.shading) {
    column.fields = commands::shadingDetails(*record.shading);
  } else if (record.frame) {
    column.fields = commands::frameDetails(*record.frame);
  } else {
    column.panes = record.panes;
  }
  return column;
}

/// The names tell the sides apart.
void RecordDocks::readSides() {
  std::vector<SpectrumRecord> plotted;
  std::vector<DetailsRecord> columns;
  plotted_.clear();
  const char* side = QT_TR_NOOP("left: %1");
  for (const Side& each : sides_) {
    for (const std::string& identifier : each.identifiers) {
      const ShownRecord record = readShown(session_, {each.node, identifier});
      if (!record.isThere) continue;
      columns.push_back(columnOf(record));
      columns.back().title = tr(side).arg(record.name());
      for (const auto& pane : record.panes) {
        plotted.emplace_back(pane, false, columns.back().title);
        plotted_.push_back(record.place);
      }
    }
    side = QT_TR_NOOP("right: %1");
  }
  details_->showRecords(std::move(columns));
  spectrum_->showPanes(plotted);
  spectrum_->showDifference(angle_);
  pointAtPlace();
}

}  // namespace orv::app

#include "moc_RecordDocks.cpp"
