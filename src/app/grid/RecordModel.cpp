#include "app/grid/RecordModel.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMimeData>
#include <algorithm>
#include <set>
#include <unordered_set>

#include "app/Text.h"
#include "app/grid/RecordEdits.h"
#include "commands/CellText.h"
#include "commands/ErrorText.h"
#include "commands/RecordReader.h"
#include "store/Waiting.h"

namespace orv::app {

namespace {

constexpr int kRowsAtOnce = 2000;
constexpr int kRowsAhead = 300000;
constexpr int kMillisecondsAtOnce = 12;
constexpr int kMillisecondsOfRest = 100;
/// Longest text in a tool tip; memo fields can hold books.
constexpr int kLongestToolTip = 2000;

QString headerText(const commands::RecordColumn& column) {
  const QString title = qt(column.title);
  return column.unit.empty() ? title : QStringLiteral("%1 (%2)").arg(title, qt(column.unit));
}

QFont boldFont() {
  QFont font = QApplication::font("QTableView");
  font.setBold(true);
  return font;
}

/// A cell holds one line.
QString oneLine(QString text) {
  return text.replace('\n', ' ').remove('\r');
}

}  // namespace

RecordModel::RecordModel(QObject* parent) : QAbstractTableModel(parent) {
  idle_.setInterval(0);
  connect(&idle_, &QTimer::timeout, this, &RecordModel::readAhead);
  filling_.setSingleShot(true);
  connect(&filling_, &QTimer::timeout, this, &RecordModel::fillOn);
}

void RecordModel::show(std::unique_ptr<commands::RecordView> view) {
  idle_.stop();
  filling_.stop();
  failed_ = false;
  known_.clear();
  beginResetModel();
  view_ = std::move(view);
  shown_ = 0;
  endResetModel();
  try {
    restart();
  } catch (...) {
    beginResetModel();
    view_.reset();
    shown_ = 0;
    endResetModel();
    throw;
  }
}

void RecordModel::reload(std::unique_ptr<commands::RecordView> view) {
  std::unordered_set<std::string> known;
  if (view_ && isComplete()) {
    for (std::string& each : view_->identifiersRead()) known.insert(std::move(each));
  }
  show(std::move(view));
  known_ = std::move(known);
}

const std::vector<commands::RecordColumn>& RecordModel::recordColumns() const {
  static const std::vector<commands::RecordColumn> none;
  return view_ ? view_->columns() : none;
}

std::string RecordModel::identifier(int row) const {
  return commands::cellText(view_->value(row, 0), commands::kAllDigits);
}

std::vector<int> RecordModel::rowsOf(const std::vector<std::string>& identifiers, int first) {
  std::vector<int> rows;
  reading([&] {
    rows = followingRows(identifiers, first);
    if (!rows.empty()) return;
    const std::unordered_set<std::string> wanted(identifiers.begin(), identifiers.end());
    for (int row = 0; rows.size() < wanted.size(); ++row) {
      while (row == shown_ && !isComplete()) advance(kRowsAtOnce);
      if (row == shown_) return;
      if (wanted.contains(identifier(row))) rows.push_back(row);
    }
  });
  return rows;
}

std::vector<int> RecordModel::followingRows(const std::vector<std::string>& identifiers,
                                            int first) const {
  std::vector<int> rows;
  int row = first;
  for (const std::string& each : identifiers) {
    if (row < 0 || row >= shown_ || identifier(row) != each) return {};
    rows.push_back(row++);
  }
  return rows;
}

QList<QStringList> RecordModel::cells(int firstRow, int lastRow, const QList<int>& columns,
                                      bool asShown) const {
  const int digits = asShown && view_ ? view_->digits() : commands::kAllDigits;
  QList<QStringList> rows;
  for (int row = firstRow; row <= lastRow; ++row) {
    QStringList cells;
    for (const int column : columns) {
      cells << qt(commands::cellText(recordColumns()[column], value(row, column), digits));
    }
    rows << cells;
  }
  return rows;
}

QStringList RecordModel::headings(const QList<int>& columns) const {
  QStringList headings;
  for (const int column : columns) headings << headerText(recordColumns()[column]);
  return headings;
}

void RecordModel::filter(const QStringList& texts) {
  if (!view_) return;
  std::vector<std::string> filters;
  for (const QString& text : texts) filters.push_back(text.toStdString());
  withdrawRows();
  reading([&] {
    view_->filter(filters);
    restart();
  });
}

void RecordModel::sortBy(const std::vector<commands::SortColumn>& columns) {
  if (!view_) return;
  withdrawRows();
  reading([&] {
    view_->sort(columns);
    restart();
  });
}

void RecordModel::digits(int value) {
  if (!view_) return;
  withdrawRows();
  reading([&] {
    view_->digits(value);
    restart();
  });
}

QModelIndex RecordModel::find(const QString& text, const QModelIndex& from, bool forward) {
  if (!view_) return {};
  const std::size_t width = view_->columns().size();
  const std::size_t start = from.isValid() ? from.row() * width + from.column() : 0;
  std::optional<std::size_t> found;
  reading([&] {
    found = view_->find(text.toStdString(), start, forward);
    announce();
  });
  if (!found) return {};
  return index(static_cast<int>(*found / width), static_cast<int>(*found % width));
}

void RecordModel::complete() {
  while (!isComplete()) advance(kRowsAhead);
}

void RecordModel::readOn() {
  reading([this] { complete(); });
}

int RecordModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : shown_;
}

int RecordModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(recordColumns().size());
}

QVariant RecordModel::data(const QModelIndex& index, int role) const {
  const bool isNumber = recordColumns()[index.column()].isShownAsNumber();
  if (role == Qt::TextAlignmentRole) {
    return QVariant((isNumber ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
  }
  if (role == Qt::AccessibleDescriptionRole) return changeText(index);
  if (store::Waiting::isUnderWay()) return {};
  if (role != Qt::DisplayRole && role != Qt::ToolTipRole && role != Qt::FontRole) return {};
  try {
    if (role == Qt::FontRole) {
      const bool isNew = !known_.empty() && !known_.contains(identifier(index.row()));
      return isNew ? boldFont() : QVariant();
    }
    const store::Value* changed = changedValue(index);
    if (changed && role == Qt::ToolTipRole) return toolTipText(changeText(index));
    const QString text =
        qt(changed ? commands::cellText(recordColumns()[index.column()], *changed, view_->digits())
                   : view_->text(index.row(), index.column()));
    if (role == Qt::DisplayRole) return shownText(oneLine(text));
    return isNumber ? QVariant() : QVariant(toolTipText(text.left(kLongestToolTip)));
  } catch (const std::exception&) {
    return {};  // a row that cannot be read is empty; commands on it say why
  }
}

QVariant RecordModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal)
    return QAbstractTableModel::headerData(section, orientation, role);
  const commands::RecordColumn& column = recordColumns()[section];
  switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
      return headerText(column);
    case Qt::ToolTipRole:
      return tr("%1: column %2").arg(headerText(column), qt(column.name));
    case Qt::TextAlignmentRole:
      return QVariant((column.isShownAsNumber() ? Qt::AlignRight : Qt::AlignLeft) |
                      Qt::AlignVCenter);
    default:
      return {};
  }
}

Qt::ItemFlags RecordModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  Qt::ItemFlags flags =
      Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
  flags.setFlag(Qt::ItemIsEditable, editField(index.column()) != nullptr);
  return flags;
}

void RecordModel::editBy(RecordEdits* edits) {
  if (edits_ != nullptr) edits_->disconnect(this);
  edits_ = edits;
  const auto show = [this] {
    if (shown_ > 0) emit dataChanged(index(0, 0), index(shown_ - 1, columnCount() - 1));
  };
  if (edits != nullptr) connect(edits, &RecordEdits::changed, this, show);
  show();
}

const commands::edit::EditField* RecordModel::editField(int column) const {
  return edits_ ? edits_->editor().fieldOfColumn(recordColumns()[column].name) : nullptr;
}

QStringList RecordModel::choices(int column) const {
  QStringList names;
  for (const std::string& name : edits_->editor().choices(*editField(column))) names << qt(name);
  return names;
}

QString RecordModel::editText(const QModelIndex& index) const {
  if (const store::Value* changed = changedValue(index)) {
    return qt(commands::edit::fieldText(*changed));
  }
  const auto* field = editField(index.column());
  try {
    const auto record = commands::recordNumber(identifier(index.row()));
    return qt(commands::edit::fieldText(edits_->editor().value(record, *field)));
  } catch (const std::exception&) {
    return {};  // a record that is gone; typing says so
  }
}

QString RecordModel::fieldText(int row, int column) const {
  return qt(commands::edit::fieldText(value(row, column)));
}

QString RecordModel::recordName(int row) const {
  const auto& columns = recordColumns();
  const auto found = std::ranges::find(columns, "name", &commands::RecordColumn::name);
  const auto column = found == columns.end() ? 0 : static_cast<int>(found - columns.begin());
  return qt(commands::cellText(value(row, column), commands::kAllDigits));
}

const store::Value* RecordModel::changedValue(const QModelIndex& index) const {
  if (!edits_ || edits_->pending().isEmpty()) return nullptr;
  const auto* field = editField(index.column());
  if (!field) return nullptr;
  return edits_->pending().find(commands::recordNumber(identifier(index.row())), field->name);
}

store::Value RecordModel::value(int row, int column) const {
  const store::Value* changed = changedValue(index(row, column));
  return changed ? *changed : view_->value(row, column);
}

/// Empty for a field that is not changed.
QString RecordModel::changeText(const QModelIndex& index) const {
  if (!isChanged(index)) return {};
  return tr("Changed, not saved yet; it was \"%1\".")
      .arg(qt(view_->text(index.row(), index.column())));
}

bool RecordModel::canFetchMore(const QModelIndex& parent) const {
  return !parent.isValid() && !isComplete() && !idle_.isActive() && !failed_;
}

void RecordModel::fetchMore(const QModelIndex& /*parent*/) {
  reading([this] { advance(kRowsAtOnce); });
}

QString RecordModel::mimeType() {
  static const QString type = QStringLiteral("application/x-orv-records; process=%1")
                                  .arg(QCoreApplication::applicationPid());
  return type;
}

QStringList RecordModel::mimeTypes() const {
  return {mimeType(), QStringLiteral("text/plain")};
}

QMimeData* RecordModel::mimeData(const QModelIndexList& indexes) const {
  std::set<int> rows;
  for (const QModelIndex& each : indexes) rows.insert(each.row());
  if (rows.empty()) return nullptr;
  QStringList identifiers;
  for (const int row : rows) identifiers << qt(identifier(row));
  auto* data = new QMimeData;
  data->setData(mimeType(), identifiers.join('\n').toUtf8());
  data->setText(identifiers.join('\n'));
  return data;
}

void RecordModel::readAhead() {
  if (store::Waiting::isUnderWay()) return;
  reading([this] {
    advance(kRowsAtOnce);
    if (!isComplete() && shown_ < kRowsAhead) return;
    idle_.stop();
    emit rowsCounted();
  });
}

void RecordModel::fill() {
  if (view_ && !view_->isFilled()) filling_.start(0);
}

void RecordModel::stopFilling() {
  if (!filling_.isActive()) return;
  filling_.stop();
  emit filled(static_cast<qlonglong>(view_->rowsFilled()), true);
}

/// Nothing is read while a command may be changing the database: it shows its progress or asks.
void RecordModel::fillOn() {
  if (QApplication::activeModalWidget() != nullptr) {
    filling_.start(kMillisecondsOfRest);
    return;
  }
  bool isMore = true;
  QElapsedTimer time;
  time.start();
  reading([&] {
    while (isMore && time.elapsed() < kMillisecondsAtOnce) isMore = view_->fillNext();
  });
  if (shown_ > 0) emit dataChanged(index(0, 0), index(shown_ - 1, columnCount() - 1));
  isMore = isMore && !failed_;
  if (isMore) filling_.start(0);
  emit filled(static_cast<qlonglong>(view_->rowsFilled()), !isMore);
}

void RecordModel::reading(const std::function<void()>& step) {
  try {
    step();
  } catch (const std::exception& error) {
    idle_.stop();
    failed_ = true;
    announce();
    emit readingFailed(qt(commands::describe(error)), commands::isDamage(error));
  }
}

void RecordModel::advance(int rows) {
  view_->advance(rows);
  announce();
}

void RecordModel::announce() {
  const int count = static_cast<int>(view_->count());
  if (count == shown_) return;
  beginInsertRows({}, shown_, count - 1);
  shown_ = count;
  endInsertRows();
  emit rowsCounted();
}

void RecordModel::withdrawRows() {
  idle_.stop();
  failed_ = false;
  if (shown_ == 0) return;
  beginRemoveRows({}, 0, shown_ - 1);
  shown_ = 0;
  endRemoveRows();
}

void RecordModel::restart() {
  if (view_) {
    advance(kRowsAtOnce);
    if (!isComplete()) idle_.start();
  }
  emit rowsCounted();
}

}  // namespace orv::app

#include "moc_RecordModel.cpp"
