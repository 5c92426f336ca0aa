#include "app/docks/audit/FindingsTree.h"

#include <QHeaderView>
#include <algorithm>

#include "app/Cells.h"
#include "app/Text.h"
#include "app/theme/Icons.h"
#include "commands/audit/Rule.h"

namespace orv::app {

using commands::audit::Finding;
using commands::audit::Severity;

namespace {

constexpr int kPositionRole = Qt::UserRole;  ///< of a finding among all
constexpr int kRuleRole = Qt::UserRole + 1;
constexpr int kTitleRole = Qt::UserRole + 2;  ///< of a rule, without the number of its findings

const char* iconOf(Severity severity) {
  switch (severity) {
    case Severity::error:
      return "box-critical";
    case Severity::warning:
      return "box-warning";
    case Severity::note:
      break;
  }
  return "box-information";
}

QString severityText(Severity severity) {
  switch (severity) {
    case Severity::error:
      return FindingsTree::tr("error");
    case Severity::warning:
      return FindingsTree::tr("warning");
    case Severity::note:
      break;
  }
  return FindingsTree::tr("note");
}

QStringList columnTitles() {
  return {FindingsTree::tr("Name"),  FindingsTree::tr("What is found"), FindingsTree::tr("Field"),
          FindingsTree::tr("Value"), FindingsTree::tr("Expected"),      FindingsTree::tr("Angle"),
          FindingsTree::tr("Record")};
}

QStringList cellsOf(const Finding& finding) {
  const auto& fault = finding.fault;
  const QString record = QStringLiteral("%1 %2").arg(qt(finding.set), qt(finding.identifier));
  return {finding.name.empty() ? record : qt(finding.name),
          qt(fault.message),
          qt(fault.field),
          qt(fault.value),
          qt(fault.expected),
          fault.angle ? QString::number(*fault.angle) : QString(),
          record};
}

}  // namespace

FindingsTree::FindingsTree(QWidget* parent)
    : ListTree("FindingsTree", tr("Findings"),
               tr("What the audit has found, by rules. A click shows the record, and the place on "
                  "its curve; a right click leaves a rule out."),
               columnTitles(), parent) {
  header()->setStretchLastSection(false);
  connect(this, &ListTree::lineChosen, this, &FindingsTree::choose);
}

void FindingsTree::choose(const QTreeWidgetItem* item) {
  if (const Finding* const finding = findingOf(item)) emit chosen(*finding);
}

void FindingsTree::show(Findings findings) {
  findings_ = std::move(findings);
  std::ranges::stable_sort(findings_, std::ranges::greater(), &Finding::severity);
  fill();
  constexpr int kMostCharacters = 60;
  fitColumns(kMostCharacters);
}

/// The lines stay: to make them anew for each letter would take long where there are thousands.
void FindingsTree::filter(const FindingsFilter& filter) {
  filter_ = filter;
  shown_ = 0;
  for (int i = 0; i < topLevelItemCount(); ++i) {
    QTreeWidgetItem* const rule = topLevelItem(i);
    int shown = 0;
    for (int k = 0; k < rule->childCount(); ++k) {
      const bool passes = isShown(*rule->child(k));
      rule->child(k)->setHidden(!passes);
      if (passes) ++shown;
    }
    rule->setHidden(shown == 0);
    rule->setText(0,
                  QStringLiteral("%1 (%L2)").arg(rule->data(0, kTitleRole).toString()).arg(shown));
    shown_ += shown;
  }
}

void FindingsTree::fill() {
  const QSignalBlocker quiet(this);
  clear();
  for (std::size_t i = 0; i < findings_.size(); ++i) {
    const QStringList cells = cellsOf(findings_[i]);
    auto* item = new QTreeWidgetItem(ruleItem(findings_[i].rule));
    for (int column = 0; column < cells.size(); ++column) setCell(*item, column, cells[column]);
    item->setData(0, kPositionRole, static_cast<qulonglong>(i));
  }
  for (int i = 0; i < topLevelItemCount(); ++i) topLevelItem(i)->setFirstColumnSpanned(true);
  expandAll();
  filter(filter_);
}

/// The findings of a rule follow each other only within their severity, but a rule has one.
QTreeWidgetItem* FindingsTree::ruleItem(std::string_view rule) {
  const QString name = qt(std::string(rule));
  for (int i = topLevelItemCount() - 1; i >= 0; --i) {
    if (topLevelItem(i)->data(0, kRuleRole) == name) return topLevelItem(i);
  }
  const auto& known = commands::audit::ruleNamed(rule);
  auto* item = new QTreeWidgetItem(this);
  item->setData(0, kRuleRole, name);
  item->setIcon(0, icon(iconOf(known.severity)));
  item->setData(0, kTitleRole, QStringLiteral("%1: %2").arg(severityText(known.severity), name));
  item->setToolTip(
      0, toolTipText(
             tr("Finds: %1.\n%2").arg(qt(std::string(known.finds)), qt(std::string(known.why)))));
  return item;
}

bool FindingsTree::isShown(const QTreeWidgetItem& item) const {
  const QString rule = item.parent()->data(0, kRuleRole).toString();
  const bool isLeftOut = filter_.leftOut.contains(rule);
  if (isLeftOut || findingOf(&item)->severity < filter_.least) return false;
  if (filter_.text.isEmpty() || rule.contains(filter_.text, Qt::CaseInsensitive)) return true;
  for (int column = 0; column < columnCount(); ++column) {
    if (item.text(column).contains(filter_.text, Qt::CaseInsensitive)) return true;
  }
  return false;
}

const Finding* FindingsTree::findingOf(const QTreeWidgetItem* item) const {
  if (item == nullptr || !item->data(0, kPositionRole).isValid()) return nullptr;
  return &findings_[item->data(0, kPositionRole).toULongLong()];
}

QStringList FindingsTree::headings() const {
  return QStringList{tr("Severity"), tr("Rule")} + columnTitles();
}

/// With the severity and the rule.
QStringList FindingsTree::rowOf(const QTreeWidgetItem& line) const {
  const Finding& finding = *findingOf(&line);
  return QStringList{severityText(finding.severity), qt(std::string(finding.rule))} +
         cellsOf(finding);
}

QString FindingsTree::currentRule() const {
  const QTreeWidgetItem* item = currentItem();
  if (item != nullptr && item->parent() != nullptr) item = item->parent();
  return item == nullptr ? QString() : item->data(0, kRuleRole).toString();
}

}  // namespace orv::app

#include "moc_FindingsTree.cpp"
