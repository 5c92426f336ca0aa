#include "app/docks/compare/CompareDock.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QToolBar>
#include <QToolButton>

#include "app/Text.h"

namespace orv::app {

using commands::compare::State;

CompareDock::CompareDock(QWidget* parent) : CompareDock(new DifferencesTree, parent) {}

CompareDock::CompareDock(DifferencesTree* tree, QWidget* parent)
    : ListDock({.name = "Compare",
                .iconName = "compare",
                .title = tr("Differences"),
                .menuText = tr("Differe&nces"),
                .help = tr("What differs between the two sources that were compared last."),
                .openHelp = tr("Show what differs between the sources that were compared last")},
               tree, parent),
      tree_(tree) {
  // Two bars: the dock is narrow.
  addFilters(*addBar(tr("Filters"), tr("Which differences are shown.")));
  addCommands(*addBar(tr("Tools for differences"),
                      tr("Copies records to the right, and the list to other programs.")));
  connect(tree_, &DifferencesTree::chosen, this, &CompareDock::chosen);
  connect(tree_, &DifferencesTree::tickedChanged, this, &CompareDock::followTicks);
}

void CompareDock::addFilters(QToolBar& bar) {
  state_ = addChoice(bar, "cboState", tr("State"), tr("Which records are shown"));
  field_ = addChoice(bar, "cboField", tr("Field"), tr("The field whose differences are shown"));
  search_ = addFilter(bar, "txtDifferences", tr("Record or value"),
                      tr("Show only differences with this text"));
  const QSignalBlocker quiet(state_);
  state_->addItem(tr("All"));
  state_->addItem(tr("− Only left"), static_cast<int>(State::removed));
  state_->addItem(tr("+ Only right"), static_cast<int>(State::added));
  state_->addItem(tr("≠ Changed"), static_cast<int>(State::changed));
}

void CompareDock::addCommands(QToolBar& bar) {
  tickAll_ = addCommand(&bar, "mnuCompareTickAll", "", tr("&Tick All"),
                        tr("Tick all records that are shown and can be copied, or none of them"));
  copyRight_ = addCommand(&bar, "mnuCompareCopyRight", "copy-right", tr("Copy to the &Right"),
                          tr("Copy the ticked records into the database on the right. Those that "
                             "are there are replaced as a whole, and keep their keys"));
  auto* button = static_cast<QToolButton*>(bar.widgetForAction(copyRight_));
  button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  refresh_ = addCommand(&bar, "mnuCompareRefresh", "refresh", tr("Compare &Again"),
                        tr("Compare the two sources as they are now"));
  addExport(bar, tr("differences"));
  for (QAction* action : {tickAll_, copyRight_, refresh_}) action->setEnabled(false);
  connect(tickAll_, &QAction::triggered, this,
          [this] { tree_->tickShown(tree_->ticked().empty()); });
  connect(copyRight_, &QAction::triggered, this, [this] { emit copyWanted(tree_->ticked()); });
  connect(refresh_, &QAction::triggered, this, &CompareDock::refreshWanted);
}

void CompareDock::show(std::shared_ptr<const Comparison> comparison,
                       const std::vector<std::size_t>& copyable, const QString& heading) {
  summaryText_ = tr("%1: %2").arg(heading, qt(comparison->summary()));
  QStringList more;
  for (const std::string& line : comparison->failures) more << shownText(line);
  for (const std::string& line : comparison->remarks) more << shownText(line);
  summary().setToolTip(toolTipText(more.join(u'\n')));
  if (!comparison->failures.empty()) {
    summaryText_ += tr(" %L1 could not be read.").arg(comparison->failures.size());
  }
  if (!more.isEmpty()) summaryText_ += tr(" (…)");
  tree_->show(std::move(comparison), copyable);
  tickAll_->setEnabled(!copyable.empty());
  refresh_->setEnabled(true);
  fillFields();
  followFilter();
  open();
}

void CompareDock::outdate() {
  if (summaryText_.isEmpty()) return;
  tell(tr("Records have changed since: compare again. ") + summaryText_);
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
  tell(summaryText_ + tr(" %L1 shown.").arg(tree_->shownCount()));
}

void CompareDock::followTicks() {
  const std::size_t count = tree_->ticked().size();
  copyRight_->setEnabled(count > 0);
  copyRight_->setText(count > 0 ? tr("Copy %L1 to the &Right").arg(count)
                                : tr("Copy to the &Right"));
}

}  // namespace orv::app

#include "moc_CompareDock.cpp"
