#include "app/docks/compare/CompareDock.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include "app/Help.h"
#include "app/Text.h"
#include "app/theme/Icons.h"
#include "commands/CsvText.h"

namespace orv::app {

using commands::compare::State;

CompareDock::CompareDock(QWidget* parent) : QDockWidget(tr("Differences"), parent) {
  setObjectName(QStringLiteral("CompareDock"));
  setAccessibleName(tr("Differences"));
  setWhatsThis(tr("What differs between the two sources that were compared last."));
  auto* content = new QWidget(this);
  tree_ = new DifferencesTree(content);
  summary_ = new QLabel(content);
  summary_->setObjectName(QStringLiteral("lblCompare"));
  summary_->setMargin(2);
  summary_->setWordWrap(true);
  auto* layout = new QVBoxLayout(content);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  // Two bars: the dock is narrow.
  auto* filters = makeBar(tr("Filters"), tr("Which differences are shown."));
  addFilters(*filters);
  auto* tools = makeBar(tr("Tools for differences"),
                        tr("Copies records to the right, and the list to other programs."));
  addActions(*tools);
  layout->addWidget(filters);
  layout->addWidget(tools);
  layout->addWidget(tree_, 1);
  layout->addWidget(summary_);
  setWidget(content);
  connect(tree_, &DifferencesTree::chosen, this, &CompareDock::chosen);
  connect(tree_, &DifferencesTree::tickedChanged, this, &CompareDock::followTicks);
  toggleViewAction()->setObjectName(QStringLiteral("mnuViewCompare"));
  toggleViewAction()->setText(tr("Differe&nces"));
  toggleViewAction()->setIcon(icon("compare"));
  explain(toggleViewAction(), tr("Show what differs between the sources that were compared last"));
  hide();
}

QToolBar* CompareDock::makeBar(const QString& name, const QString& help) {
  auto* bar = new QToolBar(this);
  bar->setIconSize({16, 16});
  bar->setAccessibleName(name);
  bar->setWhatsThis(help);
  return bar;
}

void CompareDock::addFilters(QToolBar& bar) {
  state_ = new QComboBox(&bar);
  state_->setObjectName(QStringLiteral("cboState"));
  state_->setAccessibleName(tr("State"));
  state_->addItem(tr("All"));
  state_->addItem(tr("− Only left"), static_cast<int>(State::removed));
  state_->addItem(tr("+ Only right"), static_cast<int>(State::added));
  state_->addItem(tr("≠ Changed"), static_cast<int>(State::changed));
  explain(state_, tr("Which records are shown"));
  field_ = new QComboBox(&bar);
  field_->setObjectName(QStringLiteral("cboField"));
  field_->setAccessibleName(tr("Field"));
  explain(field_, tr("The field whose differences are shown"));
  search_ = new QLineEdit(&bar);
  search_->setObjectName(QStringLiteral("txtDifferences"));
  search_->setPlaceholderText(tr("Record or value"));
  search_->setClearButtonEnabled(true);
  search_->setAccessibleName(tr("Filter"));
  explain(search_, tr("Show only differences with this text"));
  bar.addWidget(state_);
  bar.addWidget(field_);
  bar.addWidget(search_);
  connect(state_, &QComboBox::currentIndexChanged, this, &CompareDock::followFilter);
  connect(field_, &QComboBox::currentIndexChanged, this, &CompareDock::followFilter);
  // The tree is filled when the typing rests.
  constexpr int kRest = 150;  // ms
  auto* rest = new QTimer(this);
  rest->setSingleShot(true);
  rest->setInterval(kRest);
  connect(search_, &QLineEdit::textChanged, rest, qOverload<>(&QTimer::start));
  connect(rest, &QTimer::timeout, this, &CompareDock::followFilter);
}

void CompareDock::addActions(QToolBar& bar) {
  tickAll_ =
      bar.addAction(tr("Tick All"), this, [this] { tree_->tickShown(tree_->ticked().empty()); });
  tickAll_->setObjectName(QStringLiteral("mnuCompareTickAll"));
  explain(tickAll_, tr("Tick all records that are shown and can be copied, or none of them"));
  copyRight_ = bar.addAction(icon("copy-right"), tr("Copy to the Right"), this,
                             [this] { emit copyWanted(tree_->ticked()); });
  copyRight_->setObjectName(QStringLiteral("mnuCompareCopyRight"));
  explain(copyRight_, tr("Copy the ticked records into the database on the right. Those that are "
                         "there are replaced as a whole, and keep their keys"));
  auto* button = static_cast<QToolButton*>(bar.widgetForAction(copyRight_));
  button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  refresh_ = bar.addAction(icon("refresh"), tr("Compare Again"), this, &CompareDock::refreshWanted);
  refresh_->setObjectName(QStringLiteral("mnuCompareRefresh"));
  explain(refresh_, tr("Compare the two sources as they are now"));
  auto* copy = bar.addAction(icon("copy"), tr("Copy"), this, &CompareDock::copy);
  copy->setObjectName(QStringLiteral("mnuCompareCopy"));
  explain(copy, tr("Copy the selected differences, or all that are shown, as a table"));
  auto* save = bar.addAction(icon("save"), tr("Save as CSV..."), this,
                             [this] { saveAsCsv(tree_->shownRows(), tr("differences"), this); });
  save->setObjectName(QStringLiteral("mnuCompareSave"));
  explain(save, tr("Save the differences that are shown as a table for other programs"));
  for (QAction* action : {tickAll_, copyRight_, refresh_}) action->setEnabled(false);
}

void CompareDock::show(std::shared_ptr<const Comparison> comparison,
                       const std::vector<std::size_t>& copyable, const QString& heading) {
  summaryText_ = tr("%1: %2").arg(heading, qt(comparison->summary()));
  QStringList more;
  for (const std::string& line : comparison->failures) more << shownText(line);
  for (const std::string& line : comparison->remarks) more << shownText(line);
  summary_->setToolTip(toolTipText(more.join(u'\n')));
  if (!comparison->failures.empty()) {
    summaryText_ += tr(" %L1 could not be read.").arg(comparison->failures.size());
  }
  if (!more.isEmpty()) summaryText_ += tr(" (…)");
  tree_->show(std::move(comparison), copyable);
  tickAll_->setEnabled(!copyable.empty());
  refresh_->setEnabled(true);
  fillFields();
  followFilter();
  setVisible(true);
  raise();
}

/// The one that was chosen stays, where it still differs.
void CompareDock::fillFields() {
  const QSignalBlocker quiet(field_);
  const QString chosen = field_->currentData().toString();
  field_->clear();
  field_->addItem(tr("All fields"));
  for (const QString& field : tree_->fields()) field_->addItem(field, field);
  field_->setCurrentIndex(std::max(field_->findData(chosen), 0));
}

void CompareDock::followFilter() {
  DifferencesFilter filter;
  if (const QVariant state = state_->currentData(); state.isValid()) {
    filter.state = static_cast<State>(state.toInt());
  }
  filter.field = field_->currentData().toString();
  filter.text = search_->text().trimmed();
  tree_->filter(filter);
  summary_->setText(summaryText_ + tr(" %L1 shown.").arg(tree_->shownCount()));
}

void CompareDock::followTicks() {
  const std::size_t count = tree_->ticked().size();
  copyRight_->setEnabled(count > 0);
  copyRight_->setText(count > 0 ? tr("Copy %L1 to the Right").arg(count) : tr("Copy to the Right"));
}

void CompareDock::copy() const {
  TableRows rows = tree_->selectedRows();
  if (rows.size() == 1) rows = tree_->shownRows();
  QStringList lines;
  for (QStringList& row : rows) {
    for (QString& cell : row) cell = qt(commands::separatedCell(cell.toStdString(), '\t'));
    lines << row.join(u'\t');
  }
  QApplication::clipboard()->setText(lines.join(u'\n'));
}

}  // namespace orv::app
