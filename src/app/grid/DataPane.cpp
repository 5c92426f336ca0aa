#include "app/grid/DataPane.h"

#include <QFontDatabase>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStylePainter>
#include <QVBoxLayout>

#include "app/Help.h"
#include "app/Text.h"
#include "app/grid/FilterAccess.h"
#include "app/grid/FilterHeader.h"
#include "app/grid/FindBar.h"
#include "app/grid/RecordGrid.h"
#include "commands/ErrorText.h"
#include "commands/NodeContent.h"
#include "store/Connection.h"

namespace orv::app {

using commands::NodeView;
using Node = std::shared_ptr<sources::datasource>;

namespace {

/// A label that leaves out the middle of its text when there is no room for it.
class TitleLabel : public QLabel {
 public:
  TitleLabel() {
    setObjectName("lblTitle");
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QStylePainter painter(this);
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideMiddle, width());
    painter.drawItemText(rect(), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(), shown,
                         foregroundRole());
  }
};

QPlainTextEdit* makeTextBox() {
  auto* box = new QPlainTextEdit;
  box->setObjectName("DataSourceTextBox");
  box->setAccessibleName(DataPane::tr("Text of the data source"));
  box->setWhatsThis(DataPane::tr("The text of the file that is selected on the left"));
  box->setReadOnly(true);
  box->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  box->setLineWrapMode(QPlainTextEdit::NoWrap);
  box->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  box->setAcceptDrops(false);  // files that are dropped are for the window
  return box;
}

/// What screen readers are told of a part is settled when it is asked for first.
RecordGrid* makeGrid() {
  offerFiltersToReaders();
  return new RecordGrid;
}

}  // namespace

DataPane::DataPane(QWidget* parent)
    : QWidget(parent),
      picTitles_(new QFrame),
      lblTitle_(new TitleLabel),
      records_(new QWidget),
      grid_(makeGrid()),
      findBar_(new FindBar(*grid_)),
      DataSourceTextBox_(makeTextBox()),
      clearFilters_(new QPushButton(tr("No row passes the filters: &Clear Filters"))),
      repair_(new QPushButton(tr("&Repair Database..."))) {
  repair_->setObjectName("cmdRepair");
  explain(repair_, tr("Take what can be read of the database into a new file"));
  connect(repair_, &QPushButton::clicked, this, &DataPane::repairWanted);
  repair_->hide();
  clearFilters_->setObjectName("cmdClearFilters");
  explain(clearFilters_, tr("Show all rows again"));
  connect(clearFilters_, &QPushButton::clicked, this, [this] {
    grid_->filterHeader().clearFilters();
    grid_->setFocus(Qt::OtherFocusReason);
  });
  connect(&grid_->records(), &RecordModel::rowsCounted, this, &DataPane::offerClearing);
  clearFilters_->hide();
  picTitles_->setObjectName("picTitles");
  picTitles_->setFrameShape(QFrame::StyledPanel);
  picTitles_->setBackgroundRole(QPalette::Midlight);
  auto* strip = new QHBoxLayout(picTitles_);
  strip->setContentsMargins(6, 3, 6, 3);
  strip->addWidget(lblTitle_);

  auto* recordsLayout = new QVBoxLayout(records_);
  recordsLayout->setContentsMargins(0, 0, 0, 0);
  recordsLayout->setSpacing(0);
  recordsLayout->addWidget(grid_, 1);
  recordsLayout->addWidget(clearFilters_, 0, Qt::AlignLeft);
  recordsLayout->addWidget(findBar_);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  layout->addWidget(picTitles_);
  layout->addWidget(records_, 1);
  layout->addWidget(DataSourceTextBox_, 1);
  layout->addWidget(repair_, 0, Qt::AlignLeft);
  layout->addStretch(0);
}

void DataPane::offerClearing() {
  const RecordModel& records = grid_->records();
  clearFilters_->setVisible(records.isFiltered() && records.isComplete() &&
                            records.rowCount() == 0);
}

bool DataPane::showsRecords() const {
  return !records_->isHidden();
}

void DataPane::show(const Node& node, int digits) {
  showTitle(node);
  switch (commands::nodeView(node.get())) {
    case NodeView::records:
      showRecords(node, digits, [&](std::unique_ptr<commands::RecordView> view) {
        grid_->show(std::move(view), node->DataType(), node->key());
      });
      break;
    case NodeView::text:
      showText(shownText(commands::nodeText(node.get())));
      break;
    case NodeView::nothing:
      showNothing();
      break;
  }
}

void DataPane::showTitle(const Node& node) {
  QString title = qt(commands::nodeTitle(node.get()));
  const auto connection = node ? node->ADOConnection() : nullptr;
  if (connection && connection->readOnly()) title += tr(" (read only)");
  lblTitle_->setText(shownText(title));
  lblTitle_->setToolTip(toolTipText(title));
}

void DataPane::reload(const Node& node, int digits, GridPlace::Selection selection) {
  if (commands::nodeView(node.get()) != NodeView::records || !showsRecords()) {
    return show(node, digits);
  }
  showRecords(node, digits, [&](std::unique_ptr<commands::RecordView> view) {
    grid_->reload(std::move(view), selection);
  });
}

void DataPane::showRecords(const Node& node, int digits, const ShowView& show) {
  try {
    show(std::make_unique<commands::RecordView>(makeTable_(node), digits));
    grid_->fillColumns();
    records_->show();
    DataSourceTextBox_->hide();
    repair_->hide();
  } catch (const std::exception& error) {
    showText(tr("The records could not be read.\n\n%1").arg(shownText(commands::describe(error))),
             QPlainTextEdit::WidgetWidth);
    repair_->setVisible(commands::isDamage(error));
  }
}

/// What the program says is wrapped; the lines of a file stay as they are.
void DataPane::showText(const QString& text, QPlainTextEdit::LineWrapMode wrap) {
  showNothing();
  DataSourceTextBox_->setLineWrapMode(wrap);
  DataSourceTextBox_->setPlainText(text);
  DataSourceTextBox_->show();
}

void DataPane::showNothing() {
  grid_->clear();
  records_->hide();
  DataSourceTextBox_->hide();
  repair_->hide();
}

}  // namespace orv::app

#include "moc_DataPane.cpp"
