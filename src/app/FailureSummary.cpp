#include "app/FailureSummary.h"

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

constexpr QSize kSizeInCharacters(76, 16);

/// The failures with a line of space between them, and none inside.
QString listed(const QStringList& failures) {
  QStringList texts;
  for (const QString& each : failures) texts << each.split('\n', Qt::SkipEmptyParts).join('\n');
  return texts.join("\n\n");
}

}  // namespace

FailureSummary::FailureSummary(const QString& heading, const QStringList& failures, QWidget* parent)
    : QDialog(parent) {
  setObjectName("FailureSummary");
  setWindowTitle(tr("Failed Records"));
  auto* label = new QLabel(heading);
  auto* list = new QPlainTextEdit(listed(failures));
  list->setReadOnly(true);
  list->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  list->setAccessibleName(heading);
  list->setWhatsThis(tr("Each record that failed, with the reason. The text can be copied."));
  label->setBuddy(list);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  auto* copy = buttons->addButton(tr("&Copy"), QDialogButtonBox::ActionRole);
  explain(copy, tr("Copy all failures as text"));
  connect(copy, &QPushButton::clicked, this,
          [list] { QGuiApplication::clipboard()->setText(list->toPlainText()); });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  buttons->button(QDialogButtonBox::Close)->setDefault(true);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(label);
  layout->addWidget(list);
  layout->addWidget(buttons);
  const QFontMetrics metrics = fontMetrics();
  resize(metrics.averageCharWidth() * kSizeInCharacters.width(),
         metrics.lineSpacing() * kSizeInCharacters.height());
}

}  // namespace orv::app
