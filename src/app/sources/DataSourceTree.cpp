#include "app/sources/DataSourceTree.h"

#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QStyledItemDelegate>
#include <QTreeWidgetItemIterator>
#include <QUrl>
#include <map>
#include <set>

#include "app/Text.h"
#include "app/grid/RecordModel.h"
#include "app/theme/Icons.h"
#include "commands/NodeContent.h"
#include "commands/RecordKind.h"
#include "productfile/ProductFile.h"
#include "store/Connection.h"

namespace orv::app {

namespace DataType = sources::DataType;

namespace {

constexpr int kKeyRole = Qt::UserRole;
constexpr int kTakesRecordsRole = Qt::UserRole + 1;
constexpr int kIsDatabaseRole = Qt::UserRole + 2;
constexpr int kRemarkRole = Qt::UserRole + 3;

/// Records can be copied into the databases that can be changed, and into their record sets.
bool takesRecords(const sources::datasource& node) {
  return node.DataType() == DataType::orvDatabase3 || node.isInVersion3();
}

const char* iconName(const sources::datasource& node) {
  const sources::DataTypeCode type = node.DataType();
  if (type == DataType::textFolder) return "folder";
  if (type == DataType::paneTextFile || type == DataType::shadingTextFile) return "text-file";
  switch (commands::recordKind(node).value_or(commands::RecordKind::panes)) {
    case commands::RecordKind::frames:
      return "frames";
    case commands::RecordKind::shadings:
      return "shadings";
    default:
      return type <= DataType::optics5User ? "database" : "panes";
  }
}

/// A database that could be changed, but for its file.
bool isWriteProtected(const sources::datasource& node) {
  return node.DataType() == DataType::orvDatabase3 && node.ADOConnection()->readOnly();
}

QString kindText(const sources::datasource& node) {
  switch (node.DataType()) {
    case DataType::orvDatabase2:
      return DataSourceTree::tr("ORV database, version 2.0.1 (read only)");
    case DataType::orvDatabase3:
      return isWriteProtected(node) ? DataSourceTree::tr("ORV database, version 3.0.0 (read only)")
                                    : DataSourceTree::tr("ORV database, version 3.0.0");
    case DataType::igdb:
      return DataSourceTree::tr("International Glazing Database (read only)");
    case DataType::optics5User:
      return DataSourceTree::tr("Optics5 user database (read only)");
    case DataType::textFolder:
      return DataSourceTree::tr("Spectral text files");
    default:
      return {};
  }
}

QString description(const sources::datasource& node) {
  const QString title = qt(commands::nodeTitle(&node));
  const QString kind = kindText(node);
  return kind.isEmpty() ? title : kind + '\n' + title;
}

/// What there is to say behind the name of a node: "(14 files)".
QString remarkOn(const sources::datasource& node) {
  if (isWriteProtected(node)) return DataSourceTree::tr(" (read only)");
  if (node.DataType() != DataType::textFolder) return {};
  std::set<std::string> files;  // of which a list of products is one
  for (const auto& child : node.DataSources()) {
    files.insert(productfile::ProductName::of(child->filename()).file);
  }
  return QStringLiteral(" (%1)").arg(
      counted(static_cast<qlonglong>(files.size()), DataSourceTree::tr("file")));
}

/// Leaves out the middle of names that are too long, and nothing of the remarks behind them.
class NodeDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    const QString remark = index.data(kRemarkRole).toString();
    if (remark.isEmpty() || option->widget == nullptr) return;
    const QStyle& style = *option->widget->style();
    const int margin = style.pixelMetric(QStyle::PM_FocusFrameHMargin, option, option->widget) + 1;
    const int width =
        style.subElementRect(QStyle::SE_ItemViewItemText, option, option->widget).width() -
        2 * margin - option->fontMetrics.horizontalAdvance(remark);
    const QString name = option->text.chopped(remark.size());
    option->text = option->fontMetrics.elidedText(name, Qt::ElideMiddle, width) + remark;
  }
};

}  // namespace

DataSourceTree::DataSourceTree(QWidget* parent) : QTreeWidget(parent) {
  setObjectName("tvDataSources");
  setAccessibleName(tr("Data sources"));
  setWhatsThis(
      tr("<p>The opened data sources with their record sets or files. The one that is selected is "
         "shown on the right.</p><p>Files and folders that are dropped here are opened; records "
         "that are dropped on an ORV database are copied into it.</p>"));
  setHeaderHidden(true);
  setColumnCount(1);
  setUniformRowHeights(true);
  setTextElideMode(Qt::ElideMiddle);  // of a path both ends tell something
  setItemDelegate(new NodeDelegate(this));
  setExpandsOnDoubleClick(false);
  setSelectionMode(QAbstractItemView::ExtendedSelection);  // two can be compared
  setAcceptDrops(true);
  setContextMenuPolicy(Qt::CustomContextMenu);
  connect(this, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
    if (item != nullptr) emit nodeSelected(item->data(0, kKeyRole).toString().toStdString());
  });
  connect(this, &QTreeWidget::itemDoubleClicked, this, &DataSourceTree::open);
  connect(this, &QWidget::customContextMenuRequested, this, [this](const QPoint& position) {
    emit contextMenuWanted(viewport()->mapToGlobal(position));
  });
}

void DataSourceTree::rebuild(const sources::DataSources& registry) {
  const QSignalBlocker blocker(this);
  std::map<QString, bool> unfolded;
  for (int i = 0; i < topLevelItemCount(); ++i) {
    unfolded[topLevelItem(i)->data(0, kKeyRole).toString()] = topLevelItem(i)->isExpanded();
  }
  clear();
  for (const auto& node : registry) {
    add(*invisibleRootItem(), *node);
    const auto before = unfolded.find(qt(node->key()));
    const bool isFolder = node->DataType() == DataType::textFolder;
    topLevelItem(topLevelItemCount() - 1)
        ->setExpanded(before == unfolded.end() ? !isFolder : before->second);
  }
  embolden(marked_, true);
}

void DataSourceTree::select(const std::string& key) {
  const QSignalBlocker blocker(this);
  QTreeWidgetItem* item = itemOf(key);
  setCurrentItem(item);
  if (item != nullptr) scrollToItem(item);
}

std::vector<std::string> DataSourceTree::selectedKeys() const {
  std::vector<std::string> keys;
  for (const QTreeWidgetItem* item : selectedItems()) {
    const auto place = item == currentItem() ? keys.begin() : keys.end();
    keys.insert(place, item->data(0, kKeyRole).toString().toStdString());
  }
  return keys;
}

void DataSourceTree::mark(const std::string& key) {
  if (key == marked_) return;
  embolden(marked_, false);
  marked_ = key;
  embolden(marked_, true);
}

void DataSourceTree::embolden(const std::string& key, bool bold) {
  QTreeWidgetItem* item = key.empty() ? nullptr : itemOf(key);
  if (item == nullptr) return;
  QFont font = item->font(0);
  font.setBold(bold);
  item->setFont(0, font);
}

/// The first record set of a database; what else has children is folded or unfolded.
void DataSourceTree::open(QTreeWidgetItem* item) {
  if (item == nullptr || item->childCount() == 0) return;
  if (item->data(0, kIsDatabaseRole).toBool()) {
    setCurrentItem(item->child(0));
  } else {
    item->setExpanded(!item->isExpanded());
  }
}

void DataSourceTree::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      open(currentItem());
      break;
    case Qt::Key_F10:
      if (event->modifiers() == Qt::ShiftModifier) {
        emit contextMenuWanted(viewport()->mapToGlobal(visualItemRect(currentItem()).bottomLeft()));
        break;
      }
      [[fallthrough]];
    default:
      QTreeWidget::keyPressEvent(event);
  }
}

/// A dock that opens leaves the node shown in sight.
void DataSourceTree::resizeEvent(QResizeEvent* event) {
  const QTreeWidgetItem* item = currentItem();
  const bool wasSeen =
      item != nullptr && QRect(QPoint(0, 0), event->oldSize()).intersects(visualItemRect(item));
  QTreeWidget::resizeEvent(event);
  if (wasSeen) scrollToItem(item);
}

void DataSourceTree::add(QTreeWidgetItem& parent, const sources::datasource& node) {
  const QString remark = remarkOn(node);
  auto* item = new QTreeWidgetItem(&parent, {shownText(node.text()) + remark});
  item->setData(0, kRemarkRole, remark);
  item->setData(0, kKeyRole, qt(node.key()));
  item->setData(0, kTakesRecordsRole, takesRecords(node));
  item->setData(0, kIsDatabaseRole, node.DataType() <= DataType::optics5User);
  item->setToolTip(0, toolTipText(description(node)));
  item->setIcon(0, icon(iconName(node)));
  for (const auto& child : node.DataSources()) add(*item, *child);
}

QTreeWidgetItem* DataSourceTree::itemOf(const std::string& key) const {
  const QString wanted = qt(key);
  for (QTreeWidgetItemIterator each(const_cast<DataSourceTree*>(this)); *each != nullptr; ++each) {
    if ((*each)->data(0, kKeyRole) == wanted) return *each;
  }
  return nullptr;
}

void DataSourceTree::dragEnterEvent(QDragEnterEvent* event) {
  const QMimeData& data = *event->mimeData();
  if (data.hasFormat(RecordModel::mimeType()) || !localPaths(data).isEmpty()) {
    event->acceptProposedAction();
  }
}

void DataSourceTree::dragMoveEvent(QDragMoveEvent* event) {
  const bool records = event->mimeData()->hasFormat(RecordModel::mimeType());
  const QTreeWidgetItem* item = itemAt(event->position().toPoint());
  const bool taken = item != nullptr && item->data(0, kTakesRecordsRole).toBool();
  event->setAccepted(!records || taken);
}

void DataSourceTree::dropEvent(QDropEvent* event) {
  event->setDropAction(Qt::CopyAction);
  event->accept();
  if (event->mimeData()->hasFormat(RecordModel::mimeType())) {
    if (const QTreeWidgetItem* item = itemAt(event->position().toPoint())) {
      emit recordsDropped(item->data(0, kKeyRole).toString().toStdString());
    }
  } else {
    emit pathsDropped(localPaths(*event->mimeData()));
  }
}

QStringList localPaths(const QMimeData& data) {
  QStringList paths;
  for (const QUrl& url : data.urls()) {
    if (url.isLocalFile()) paths << url.toLocalFile();
  }
  return paths;
}

}  // namespace orv::app

#include "moc_DataSourceTree.cpp"
