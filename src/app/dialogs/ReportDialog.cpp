#include "app/dialogs/ReportDialog.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/Help.h"

namespace orv::app {

namespace {

constexpr QSize kReportInCharacters(76, 16);

/// The texts with a line of space between them, and none inside.
QString listed(const QStringList& parts) {
  QStringList texts;
  for (const QString& each : parts) texts << each.split('\n', Qt::SkipEmptyParts).join('\n');
  return texts.join("\n\n");
}

}  // namespace

ReportDialog::ReportDialog(const QString& title, const QString& heading, const QStringList& texts,
                           const QString& help, QWidget* parent)
    : QDialog(parent) {
  setObjectName("ReportDialog");
  setWindowTitle(title);
  auto* label = new QLabel(heading);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  auto* list = new QPlainTextEdit(listed(texts));
  list->setReadOnly(true);
  list->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  list->setAccessibleName(heading);
  list->setWhatsThis(help.isEmpty() ? tr("Each record that failed, with the reason, and what is to "
                                         "be said of the others. The text can be copied.")
                                    : help);
  label->setBuddy(list);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  auto* copy = buttons->addButton(tr("&Copy"), QDialogButtonBox::ActionRole);
  explain(copy, tr("Copy the whole list as text"));
  connect(copy, &QPushButton::clicked, this,
          [list] { QGuiApplication::clipboard()->setText(list->toPlainText()); });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  buttons->button(QDialogButtonBox::Close)->setDefault(true);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(label);
  layout->addWidget(list);
  layout->addWidget(buttons);
  const QFontMetrics metrics = fontMetrics();
  resize(metrics.averageCharWidth() * kReportInCharacters.width(),
         metrics.lineSpacing() * kReportInCharacters.height());
}

}  // namespace orv::app

#include "moc_ReportDialog.cpp"
