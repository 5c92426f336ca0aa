#include "app/docks/list/ListDock.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

#include "app/Help.h"
#include "app/Text.h"
#include "app/docks/list/FrontDock.h"
#include "app/docks/list/ListTree.h"
#include "app/theme/Icons.h"
#include "commands/CsvText.h"

namespace orv::app {

ListDock::ListDock(const Manner& manner, ListTree* list, QWidget* parent)
    : QDockWidget(manner.title, parent),
      name_(QLatin1String(manner.name)),
      list_(list),
      summary_(new QLabel) {
  setObjectName(name_ + QStringLiteral("Dock"));
  setAccessibleName(manner.title);
  setWhatsThis(manner.help);
  summary_->setObjectName(QStringLiteral("lbl") + name_);
  summary_->setTextFormat(Qt::PlainText);
  summary_->setWordWrap(true);
  summary_->setMargin(2);
  auto* content = new QWidget(this);
  auto* layout = new QVBoxLayout(content);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(list_, 1);
  layout->addWidget(summary_);
  setWidget(content);
  makeOpener(manner);
  hide();
}

void ListDock::makeOpener(const Manner& manner) {
  QAction* opener = toggleViewAction();
  opener->setObjectName(QStringLiteral("mnuView") + name_);
  opener->setText(manner.menuText);
  opener->setIcon(icon(manner.iconName));
  explain(opener, manner.openHelp);
  new FrontDock(*this);
}

QToolBar* ListDock::addBar(const QString& name, const QString& help) {
  auto* bar = new QToolBar;
  bar->setIconSize({16, 16});
  bar->setAccessibleName(name);
  bar->setWhatsThis(help);
  auto* layout = static_cast<QVBoxLayout*>(widget()->layout());
  layout->insertWidget(layout->indexOf(list_), bar);
  return bar;
}

QLineEdit* ListDock::addFilter(QToolBar& bar, const char* name, const QString& hint,
                               const QString& help) {
  auto* filter = new QLineEdit;
  filter->setObjectName(QLatin1String(name));
  filter->setPlaceholderText(hint);
  filter->setClearButtonEnabled(true);
  filter->setAccessibleName(tr("Filter"));
  explain(filter, help);
  bar.addWidget(filter);
  constexpr int kRest = 150;  // ms
  auto* rest = new QTimer(this);
  rest->setSingleShot(true);
  rest->setInterval(kRest);
  connect(filter, &QLineEdit::textChanged, rest, qOverload<>(&QTimer::start));
  connect(rest, &QTimer::timeout, this, &ListDock::followFilter);
  return filter;
}

QComboBox* ListDock::addChoice(QToolBar& bar, const char* name, const QString& title,
                               const QString& help) {
  auto* choice = new QComboBox;
  choice->setObjectName(QLatin1String(name));
  choice->setAccessibleName(title);
  explain(choice, help);
  bar.addWidget(choice);
  connect(choice, &QComboBox::currentIndexChanged, this, &ListDock::followFilter);
  return choice;
}

/// Keys act in the list alone.
QAction* ListDock::addCommand(QToolBar* bar, const char* name, const char* iconName,
                              const QString& text, const QString& help, const QKeySequence& keys) {
  auto* command = new QAction(icon(iconName), text, this);
  command->setObjectName(QLatin1String(name));
  command->setShortcut(keys);
  command->setShortcutContext(Qt::WidgetShortcut);
  explain(command, help);
  if (bar != nullptr) bar->addAction(command);
  list_->addAction(command);
  return command;
}

void ListDock::addExport(QToolBar& bar, const QString& what) {
  const QString prefix = QStringLiteral("mnu") + name_;
  const QAction* copy = addCommand(
      &bar, qPrintable(prefix + "Copy"), "copy", tr("&Copy"),
      tr("Copy the selected %1, or all that are shown, as a table").arg(what), QKeySequence::Copy);
  const QAction* save =
      addCommand(&bar, qPrintable(prefix + "Save"), "save", tr("&Save as CSV..."),
                 tr("Save the %1 that are shown as a table for other programs").arg(what));
  connect(copy, &QAction::triggered, this, &ListDock::copy);
  connect(save, &QAction::triggered, this,
          [this, what] { saveAsCsv(list_->shownRows(), what, this); });
}

void ListDock::tell(const QString& summary) {
  summary_->setText(summary);
}

void ListDock::open() {
  show();
  raise();
}

void ListDock::copy() const {
  TableRows rows = list_->selectedRows();
  if (rows.size() == 1) rows = list_->shownRows();
  QStringList lines;
  for (QStringList& row : rows) {
    for (QString& cell : row) cell = qt(commands::separatedCell(cell.toStdString(), '\t'));
    lines << row.join(u'\t');
  }
  QApplication::clipboard()->setText(lines.join(u'\n'));
}

}  // namespace orv::app

#include "moc_ListDock.cpp"
