#include "app/docks/compare/DifferencesTree.h"

#include <QHeaderView>
#include <QSignalBlocker>
#include <algorithm>

#include "app/Cells.h"
#include "app/Text.h"
#include "commands/CellText.h"

namespace orv::app {

using commands::compare::ComparedPair;
using commands::compare::Difference;
using commands::compare::State;

namespace {

constexpr int kPairRole = Qt::UserRole;
constexpr int kDifferenceRole = Qt::UserRole + 1;  ///< position; of a record that of its first

/// The state by a sign, and by a colour that is legible on the background.
struct Mark {
  QString sign;
  QColor onLight;
  QColor onDark;
};

Mark markOf(State state) {
  switch (state) {
    case State::added:
      return {QStringLiteral("+"), QColor(0x1a, 0x7f, 0x37), QColor(0x6f, 0xd8, 0x8f)};
    case State::removed:
      return {QStringLiteral("−"), QColor(0xb3, 0x26, 0x1e), QColor(0xff, 0x8a, 0x80)};
    default:
      return {QStringLiteral("≠"), QColor(0x85, 0x56, 0x00), QColor(0xf2, 0xb8, 0x66)};
  }
}

QString stateText(State state) {
  switch (state) {
    case State::added:
      return DifferencesTree::tr("added");
    case State::removed:
      return DifferencesTree::tr("removed");
    default:
      return DifferencesTree::tr("changed");
  }
}

QString meaningOf(State state) {
  switch (state) {
    case State::added:
      return DifferencesTree::tr("Only on the right");
    case State::removed:
      return DifferencesTree::tr("Only on the left");
    default:
      return DifferencesTree::tr("On both sides, and not the same");
  }
}

/// Of the tree, in which fields stand below their record.
QStringList columnTitles() {
  return {DifferencesTree::tr("Record, field"), DifferencesTree::tr("Left"),
          DifferencesTree::tr("Right"),         DifferencesTree::tr("Angle"),
          DifferencesTree::tr("Set"),           DifferencesTree::tr("Left ID"),
          DifferencesTree::tr("Right ID")};
}

QString joined(const std::vector<std::string>& identifiers) {
  QStringList texts;
  for (const std::string& each : identifiers) texts << qt(each);
  return texts.join(QStringLiteral(", "));
}

QString valueText(const store::Value& value) {
  return qt(commands::cellText(value, commands::kAllDigits));
}

}  // namespace

DifferencesTree::DifferencesTree(QWidget* parent)
    : ListTree(
          "DifferencesTree", tr("Differences"),
          tr("<p>What differs: records only on the right (+), only on the left (−), and those "
             "that are not the same (≠), with their fields. A click selects the record, and "
             "shows both curves and their difference.</p><p>Records whose boxes are ticked can "
             "be copied to the right.</p>"),
          columnTitles(), parent) {
  header()->setStretchLastSection(false);
  connect(this, &ListTree::lineChosen, this, &DifferencesTree::choose);
  connect(this, &QTreeWidget::itemChanged, this, &DifferencesTree::follow);
}

/// The colours are those of the theme.
void DifferencesTree::changeEvent(QEvent* event) {
  QTreeWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) fill();
}

void DifferencesTree::choose(const QTreeWidgetItem* item) {
  emit chosen(comparison_->differences[item->data(0, kDifferenceRole).toULongLong()]);
}

void DifferencesTree::follow(const QTreeWidgetItem* item) {
  const std::size_t pair = item->data(0, kPairRole).toULongLong();
  if (!copyable_.contains(pair) || item->parent() != nullptr) return;
  if (item->checkState(0) == Qt::Checked) {
    ticked_.insert(pair);
  } else {
    ticked_.erase(pair);
  }
  emit tickedChanged();
}

void DifferencesTree::show(std::shared_ptr<const Comparison> comparison,
                           const std::vector<std::size_t>& copyable) {
  comparison_ = std::move(comparison);
  copyable_ = {copyable.begin(), copyable.end()};
  ticked_.clear();
  fill();
  constexpr int kMostCharacters = 45;
  fitColumns(kMostCharacters);
  emit tickedChanged();
}

void DifferencesTree::filter(const DifferencesFilter& filter) {
  filter_ = filter;
  fill();
}

QStringList DifferencesTree::fields() const {
  QStringList fields;
  if (!comparison_) return fields;
  QSet<QString> known;
  for (const Difference& each : comparison_->differences) {
    const QString field = qt(each.field);
    if (field.isEmpty() || known.contains(field)) continue;
    known.insert(field);
    fields << field;
  }
  return fields;
}

void DifferencesTree::tickShown(bool isTicked) {
  QSignalBlocker quiet(this);
  for (int i = 0; i < topLevelItemCount(); ++i) {
    QTreeWidgetItem* const item = topLevelItem(i);
    const std::size_t pair = item->data(0, kPairRole).toULongLong();
    if (!copyable_.contains(pair)) continue;
    item->setCheckState(0, isTicked ? Qt::Checked : Qt::Unchecked);
    if (isTicked) {
      ticked_.insert(pair);
    } else {
      ticked_.erase(pair);
    }
  }
  quiet.unblock();
  emit tickedChanged();
}

/// The differences of a record follow each other.
void DifferencesTree::fill() {
  const QSignalBlocker quiet(this);
  clear();
  if (!comparison_) return;
  const auto& all = comparison_->differences;
  for (std::size_t first = 0; first < all.size();) {
    std::size_t end = first + 1;
    while (end < all.size() && all[end].pair == all[first].pair) ++end;
    add(first, end);
    first = end;
  }
  expandAll();
}

/// Those of a record, as far as they are shown.
void DifferencesTree::add(std::size_t first, std::size_t end) {
  const std::size_t pair = comparison_->differences[first].pair;
  if (filter_.state && comparison_->pairs[pair].state != *filter_.state) return;
  QTreeWidgetItem* record = nullptr;
  for (std::size_t i = first; i < end; ++i) {
    const Difference& difference = comparison_->differences[i];
    const QStringList cells = cellsOf(difference);
    if (!isShown(difference, cells)) continue;
    if (record == nullptr) {
      record = recordItem(pair);
      record->setData(0, kDifferenceRole, static_cast<qulonglong>(i));
    }
    if (difference.field.empty()) continue;
    auto* item = new QTreeWidgetItem(record);
    item->setData(0, kPairRole, static_cast<qulonglong>(pair));
    item->setData(0, kDifferenceRole, static_cast<qulonglong>(i));
    constexpr int kLastOfField = 4;  // the angle
    for (int column = 0; column < kLastOfField; ++column) {
      setCell(*item, column, cells[column + 1]);
    }
  }
}

QTreeWidgetItem* DifferencesTree::recordItem(std::size_t pair) {
  const ComparedPair& compared = comparison_->pairs[pair];
  const Mark mark = markOf(compared.state);
  const bool isDark = palette().color(QPalette::Base).lightness() < 128;
  auto* item = new QTreeWidgetItem(this);
  item->setData(0, kPairRole, static_cast<qulonglong>(pair));
  item->setText(0, QStringLiteral("%1 %2").arg(mark.sign, shownText(compared.name)));
  item->setForeground(0, isDark ? mark.onDark : mark.onLight);
  item->setToolTip(
      0, toolTipText(QStringLiteral("%1: %2").arg(meaningOf(compared.state), qt(compared.name))));
  constexpr int kSet = 4;
  item->setText(kSet, qt(commands::setName(compared.kind)));
  item->setText(kSet + 1, joined(compared.a));
  item->setText(kSet + 2, joined(compared.b));
  if (copyable_.contains(pair)) {
    item->setCheckState(0, ticked_.contains(pair) ? Qt::Checked : Qt::Unchecked);
  }
  return item;
}

QStringList DifferencesTree::cellsOf(const Difference& difference) const {
  const ComparedPair& pair = comparison_->pairs[difference.pair];
  return {qt(pair.name),
          qt(difference.field),
          valueText(difference.a),
          valueText(difference.b),
          difference.angle ? QString::number(*difference.angle) : QString(),
          qt(commands::setName(pair.kind)),
          joined(pair.a),
          joined(pair.b)};
}

bool DifferencesTree::isShown(const Difference& difference, const QStringList& cells) const {
  if (!filter_.field.isEmpty() && qt(difference.field) != filter_.field) return false;
  return filter_.text.isEmpty() || std::ranges::any_of(cells, [&](const QString& cell) {
           return cell.contains(filter_.text, Qt::CaseInsensitive);
         });
}

/// With the state and the record of each field.
QStringList DifferencesTree::headings() const {
  return QStringList{tr("State"), tr("Record"), tr("Field")} + columnTitles().mid(1);
}

QStringList DifferencesTree::rowOf(const QTreeWidgetItem& line) const {
  const auto& difference = comparison_->differences[line.data(0, kDifferenceRole).toULongLong()];
  return QStringList{stateText(comparison_->pairs[difference.pair].state)} + cellsOf(difference);
}

}  // namespace orv::app

#include "moc_DifferencesTree.cpp"
