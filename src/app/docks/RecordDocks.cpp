#include "app/docks/RecordDocks.h"

#include <QAction>
#include <QMainWindow>

#include "app/Help.h"
#include "app/Text.h"
#include "app/docks/DockShares.h"
#include "app/docks/details/DetailsDock.h"
#include "app/docks/spectra/SpectrumDock.h"
#include "app/theme/Icons.h"
#include "commands/ErrorText.h"
#include "commands/RecordKind.h"
#include "store/Waiting.h"

namespace orv::app {

using commands::RecordKind;
using Panes = std::vector<std::shared_ptr<const GlazingData>>;

namespace {

constexpr int kMillisecondsOfRest = 120;
/// More curves than these can not be told apart.
constexpr std::size_t kMostPanes = 8;
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

Panes panesOf(const commands::RecordReader& reader, const std::string& identifier) {
  Panes panes;
  for (const auto& pane : reader.dataSets(identifier)) {
    reader.tellGroup(identifier, *pane);
    panes.push_back(pane);
  }
  return panes;
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
  connect(&rest_, &QTimer::timeout, this, &RecordDocks::readRecords);
  connect(details_, &DetailsDock::refreshWanted, this, &RecordDocks::refreshWanted);
  connect(spectrum_, &SpectrumDock::standardChosen, this, &RecordDocks::standardChosen);
  for (const QDockWidget* dock :
       {static_cast<QDockWidget*>(spectrum_), static_cast<QDockWidget*>(details_)}) {
    connect(dock, &QDockWidget::visibilityChanged, this, [this](bool visible) {
      if (visible && node_) rest_.start();
    });
  }
}

void RecordDocks::show(const Node& node, std::vector<std::string> identifiers) {
  place_.reset();
  sides_.clear();
  node_ = identifiers.empty() ? nullptr : node;
  identifiers_ = std::move(identifiers);
  rest_.start();
  if (node_) return;
  rest_.stop();
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

void RecordDocks::readRecords() {
  if (!node_) return;
  if (store::Waiting::isUnderWay()) return rest_.start();
  try {
    if (!sides_.empty()) return readSides();
    const commands::RecordReader reader(session_, node_);
    // A pane that is gone has data at no angle, and a frame cannot be read: this says it of both.
    if (identifiers_.size() == 1 && !reader.isThere(identifiers_.front())) {
      spectrum_->clear();
      details_->showGone();
    } else if (commands::recordKind(*node_) == RecordKind::panes) {
      readPanes(reader);
    } else {
      readOther(reader);
    }
  } catch (const std::exception& error) {
    spectrum_->clear();
    details_->showText(shownText(commands::describe(error)));
  }
}

void RecordDocks::readPanes(const commands::RecordReader& reader) {
  if (!spectrum_->isVisible() && !details_->isVisible()) return;
  const std::size_t count = std::min(identifiers_.size(), kMostPanes);
  Panes panes;
  for (std::size_t i = 0; i < count; ++i) {
    const Panes angles = panesOf(reader, identifiers_[i]);
    panes.insert(panes.end(), angles.begin(), angles.end());
  }
  if (identifiers_.size() > 1) {
    details_->showText(tr("%L1 records are selected.").arg(identifiers_.size()));
  } else if (panes.empty()) {
    details_->showText(tr("This pane has data at no angle."));
  } else {
    details_->showPane(panes);
  }
  spectrum_->showPanes(std::move(panes));
  if (identifiers_.size() > kMostPanes) {
    spectrum_->note(tr("The spectra of the first %1 panes are shown.").arg(kMostPanes));
  }
  if (const auto place = std::exchange(place_, std::nullopt)) {
    spectrum_->pointAt(place->microns, place->angle);
  }
}

/// The names tell the sides apart.
void RecordDocks::readSides() {
  details_->showText(tr("Two records are compared."));
  Panes all;
  const char* side = QT_TR_NOOP("left: %1");
  for (const Side& each : sides_) {
    const commands::RecordReader reader(session_, each.node);
    for (const std::string& identifier : each.identifiers) {
      if (commands::recordKind(*each.node) != RecordKind::panes) break;
      for (const auto& pane : reader.dataSets(identifier)) {
        pane->filename(tr(side).arg(qt(pane->filename())).toStdString());
        all.push_back(pane);
      }
    }
    side = QT_TR_NOOP("right: %1");
  }
  spectrum_->showPanes(std::move(all));
  spectrum_->showDifference(angle_);
  if (const auto place = std::exchange(place_, std::nullopt)) {
    spectrum_->pointAt(place->microns, place->angle);
  }
}

void RecordDocks::readOther(const commands::RecordReader& reader) {
  spectrum_->clear();
  if (!details_->isVisible()) return;
  const std::string& identifier = identifiers_.front();
  if (identifiers_.size() > 1) {
    details_->showText(tr("%L1 records are selected.").arg(identifiers_.size()));
  } else if (commands::recordKind(*node_) == RecordKind::frames) {
    const auto frame = reader.frame(identifier);
    reader.tellGroup(identifier, *frame);
    details_->showFrame(frame);
  } else {
    const auto shading = reader.shading(identifier);
    reader.tellGroup(identifier, *shading);
    details_->showShading(shading);
  }
}

}  // namespace orv::app
