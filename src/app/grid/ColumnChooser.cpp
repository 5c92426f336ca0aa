#include "app/grid/ColumnChooser.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/Help.h"
#include "app/grid/FilterHeader.h"
#include "app/grid/RecordGrid.h"

namespace orv::app {

ColumnChooser::ColumnChooser(RecordGrid& grid, QWidget* parent)
    : QDialog(parent), grid_(grid), search_(new QLineEdit), list_(new QListWidget) {
  setObjectName("ColumnChooser");
  setWindowTitle(tr("Columns"));
  search_->setObjectName("txtColumnSearch");
  search_->setPlaceholderText(tr("Search columns"));
  search_->setAccessibleName(tr("Search columns"));
  explain(search_, tr("Lists only the columns whose titles contain this text"));
  search_->setClearButtonEnabled(true);
  list_->setObjectName("lstColumns");
  list_->setAccessibleName(tr("Columns of the grid"));
  list_->setWhatsThis(tr("The columns of the grid; those with a tick are shown."));
  list_->setMinimumHeight(fontMetrics().lineSpacing() * 14);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  auto* all = buttons->addButton(tr("Show &All"), QDialogButtonBox::ActionRole);
  auto* none = buttons->addButton(tr("&Hide All"), QDialogButtonBox::ActionRole);
  all->setAutoDefault(false);
  none->setAutoDefault(false);
  explain(all, tr("Show all columns of the list"));
  explain(none, tr("Hide all columns of the list but the first, which identifies the records"));
  connect(all, &QPushButton::clicked, this, [this] { showAll(true); });
  connect(none, &QPushButton::clicked, this, [this] { showAll(false); });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(search_);
  layout->addWidget(list_);
  layout->addWidget(buttons);

  fill();
  connect(search_, &QLineEdit::textChanged, this, &ColumnChooser::search);
  connect(list_, &QListWidget::itemChanged, this, &ColumnChooser::apply);
}

void ColumnChooser::fill() {
  const RecordModel& model = grid_.records();
  const FilterHeader& header = grid_.filterHeader();
  for (int i = 0; i < model.columnCount(); ++i) {
    auto* item =
        new QListWidgetItem(model.headerData(i, Qt::Horizontal, Qt::DisplayRole).toString(), list_);
    item->setToolTip(model.headerData(i, Qt::Horizontal, Qt::ToolTipRole).toString());
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    item->setCheckState(header.isSectionHidden(i) ? Qt::Unchecked : Qt::Checked);
  }
}

void ColumnChooser::search(const QString& text) {
  for (int i = 0; i < list_->count(); ++i) {
    list_->item(i)->setHidden(!list_->item(i)->text().contains(text, Qt::CaseInsensitive));
  }
}

/// Those that the search has left.
void ColumnChooser::showAll(bool shown) {
  for (int i = 0; i < list_->count(); ++i) {
    if (list_->item(i)->isHidden()) continue;
    list_->item(i)->setCheckState(shown || i == 0 ? Qt::Checked : Qt::Unchecked);
  }
}

void ColumnChooser::apply() {
  bool anyShown = false;
  for (int i = 0; i < list_->count(); ++i) {
    anyShown = anyShown || list_->item(i)->checkState() == Qt::Checked;
  }
  for (int i = 0; i < list_->count(); ++i) {
    const bool shown = list_->item(i)->checkState() == Qt::Checked || (!anyShown && i == 0);
    grid_.filterHeader().setSectionHidden(i, !shown);
  }
  grid_.filterHeader().placeEditors();
}

}  // namespace orv::app

#include "moc_ColumnChooser.cpp"
