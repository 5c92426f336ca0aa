#include "app/dialogs/frmSplash.h"

#include <QApplication>
#include <QLabel>
#include <QScreen>
#include <QVBoxLayout>

#include "app/Text.h"
#include "app/dialogs/Version.h"
#include "app/theme/Icons.h"
#include "commands/UserInterface.h"

namespace orv::app {

namespace {

constexpr int kSplashIcon = 96;
constexpr int kMargin = 32;

}  // namespace

frmSplash::frmSplash() : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint) {
  setObjectName("frmSplash");
  auto* picture = new QLabel;
  picture->setPixmap(
      applicationIcon().pixmap(QSize(kSplashIcon, kSplashIcon), devicePixelRatioF()));
  auto* name = new QLabel(qt(commands::kProductName));
  name->setObjectName("lblProductName");
  QFont font = name->font();
  font.setPointSizeF(font.pointSizeF() * 1.8);
  font.setBold(true);
  name->setFont(font);
  auto* version = new QLabel(versionText());
  version->setObjectName("lblVersion");

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->addWidget(picture, 0, Qt::AlignHCenter);
  layout->addWidget(name, 0, Qt::AlignHCenter);
  layout->addWidget(version, 0, Qt::AlignHCenter);
}

void frmSplash::open() {
  adjustSize();
  QRect place = rect();
  place.moveCenter(QGuiApplication::primaryScreen()->availableGeometry().center());
  move(place.topLeft());
  show();
  repaint();
  QApplication::processEvents();
}

}  // namespace orv::app

#include "moc_frmSplash.cpp"
