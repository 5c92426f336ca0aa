#include "app/dialogs/frmAbout.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/Help.h"
#include "app/Text.h"
#include "app/dialogs/SystemInformation.h"
#include "app/dialogs/Version.h"
#include "app/theme/Icons.h"
#include "commands/UserInterface.h"

namespace orv::app {

namespace {

constexpr int kIconSize = 64;
constexpr int kTextWidthInCharacters = 62;

QLabel* textLabel(const char* name, const QString& text) {
  auto* label = new QLabel(text);
  label->setObjectName(name);
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

QString asText(const QList<SystemFact>& facts) {
  QStringList lines = {qt(commands::kProductName) + ", " + versionText()};
  for (const auto& [name, value] : facts) lines << name + ": " + value;
  return lines.join('\n');
}

class SystemInformationDialog : public QDialog {
 public:
  SystemInformationDialog(const QList<SystemFact>& facts, QWidget* parent) : QDialog(parent) {
    setObjectName("SystemInformation");
    setWindowTitle(frmAbout::tr("System Info"));
    auto* form = new QFormLayout;
    for (const auto& [name, value] : facts) {
      auto* label = new QLabel(value);
      label->setTextInteractionFlags(Qt::TextSelectableByMouse);
      form->addRow(name + ':', label);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    auto* copy = buttons->addButton(frmAbout::tr("&Copy"), QDialogButtonBox::ActionRole);
    explain(copy, frmAbout::tr("Copy these facts as text, for a report"));
    connect(copy, &QPushButton::clicked, this,
            [facts] { QGuiApplication::clipboard()->setText(asText(facts)); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    copy->setAutoDefault(false);
    buttons->button(QDialogButtonBox::Close)->setDefault(true);
    buttons->button(QDialogButtonBox::Close)->setFocus();
    auto* layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addLayout(form);
    layout->addWidget(buttons);
  }
};

}  // namespace

frmAbout::frmAbout(QWidget* parent) : QDialog(parent) {
  setObjectName("frmAbout");
  setWindowTitle(tr("About %1").arg(qt(commands::kProductName)));
  auto* picture = new QLabel;
  picture->setPixmap(applicationIcon().pixmap(QSize(kIconSize, kIconSize), devicePixelRatioF()));
  auto* title = textLabel("lblTitle", qt(commands::kProductName));
  QFont font = title->font();
  font.setPointSizeF(font.pointSizeF() * 1.4);
  font.setBold(true);
  title->setFont(font);
  auto* description = textLabel(
      "lblDescription",
      tr("Keeps the optical and thermal data of glazing products: copies panes, shadings and "
         "frames from glazing databases and spectral text files into ORV databases, checks them on "
         "the way, and shows them."));
  auto* disclaimer = textLabel(
      "lblDisclaimer",
      tr("This program is free software under the GNU General Public License, version 3 or later. "
         "It comes without any warranty. The data of products are their makers'; check them before "
         "you build on them."));
  description->setMinimumWidth(fontMetrics().averageCharWidth() * kTextWidthInCharacters);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok);
  auto* system = buttons->addButton(tr("&System Info..."), QDialogButtonBox::ActionRole);
  system->setObjectName("cmdSysInfo");
  explain(system, tr("Show what the program runs on"));
  connect(system, &QPushButton::clicked, this, &frmAbout::showSystemInformation);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  buttons->button(QDialogButtonBox::Ok)->setDefault(true);

  auto* head = new QVBoxLayout;
  head->addWidget(title);
  head->addWidget(textLabel("lblVersion", versionText()));
  auto* top = new QHBoxLayout;
  top->addWidget(picture);
  top->addSpacing(8);
  top->addLayout(head, 1);
  auto* layout = new QVBoxLayout(this);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  layout->addLayout(top);
  layout->addWidget(description);
  layout->addWidget(disclaimer);
  layout->addWidget(buttons);
}

void frmAbout::showSystemInformation() {
  const QList<SystemFact> facts = systemFacts();
  if (facts.isEmpty()) {
    QMessageBox::information(this, windowTitle(),
                             tr("System Information Is Unavailable At This Time"));
    return;
  }
  SystemInformationDialog(facts, this).exec();
}

}  // namespace orv::app

#include "moc_frmAbout.cpp"
