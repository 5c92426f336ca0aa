#include "app/dialogs/ConflictDialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "app/Help.h"

namespace orv::app {

namespace {

constexpr QSize kConflictsInCharacters(96, 16);

}  // namespace

ConflictDialog::ConflictDialog(const QList<QStringList>& lines, QWidget* parent) : QDialog(parent) {
  setObjectName("ConflictDialog");
  setWindowTitle(tr("Changed by Others"));
  auto* heading = new QLabel(
      tr("Nothing is saved yet: these fields have been changed in the database since you edited "
         "them."));
  heading->setWordWrap(true);
  auto* list = new QTreeWidget;
  list->setObjectName("lstConflicts");
  list->setAccessibleName(heading->text());
  list->setWhatsThis(tr("What each field was, what it is now, and what you have typed"));
  list->setHeaderLabels({tr("Record"), tr("Field"), tr("Was"), tr("Is now"), tr("Yours")});
  list->setRootIsDecorated(false);
  for (const QStringList& line : lines) list->addTopLevelItem(new QTreeWidgetItem(line));
  for (int column = 0; column < list->columnCount(); ++column) list->resizeColumnToContents(column);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
  const auto add = [&](const QString& text, Choice choice, const QString& help) {
    auto* button = buttons->addButton(text, QDialogButtonBox::AcceptRole);
    explain(button, help);
    connect(button, &QPushButton::clicked, this, [this, choice] { choice_ = choice; });
  };
  add(tr("Save &Mine"), Choice::keepMine, tr("Save what you have typed over what is there now"));
  add(tr("Keep &Theirs"), Choice::keepTheirs,
      tr("Drop your changes of these fields, and save the others"));
  buttons->button(QDialogButtonBox::Cancel)->setDefault(true);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(heading);
  layout->addWidget(list);
  layout->addWidget(buttons);
  resize(fontMetrics().averageCharWidth() * kConflictsInCharacters.width(),
         fontMetrics().lineSpacing() * kConflictsInCharacters.height());
}

ConflictDialog::Choice ConflictDialog::choose() {
  return exec() == Accepted ? choice_ : Choice::cancel;
}

}  // namespace orv::app

#include "moc_ConflictDialog.cpp"
