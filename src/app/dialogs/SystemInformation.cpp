#include "app/dialogs/SystemInformation.h"

#include <QCoreApplication>
#include <QFile>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QScreen>
#include <QSysInfo>
#include <QThread>

namespace orv::app {

namespace {

QString tr(const char* text) {
  return QCoreApplication::translate("SystemInformation", text);
}

/// The first value of a key in one of the kernel's files of "key : value" lines.
QString valueOf(const QString& path, const QString& key) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return {};
  const QRegularExpression line('^' + QRegularExpression::escape(key) + "\\s*:\\s*(.+)$",
                                QRegularExpression::MultilineOption);
  return line.match(QString::fromUtf8(file.readAll())).captured(1).trimmed();
}

QString memory() {
  const double kilobytes = valueOf("/proc/meminfo", "MemTotal").section(' ', 0, 0).toDouble();
  return kilobytes > 0 ? tr("%1 GB").arg(kilobytes / (1024 * 1024), 0, 'f', 1) : QString();
}

QString screens() {
  QStringList texts;
  for (const QScreen* screen : QGuiApplication::screens()) {
    const QSize size = screen->size() * screen->devicePixelRatio();
    texts << tr("%1 × %2 at %3 %")
                 .arg(size.width())
                 .arg(size.height())
                 .arg(qRound(screen->devicePixelRatio() * 100));
  }
  return texts.join(", ");
}

}  // namespace

QList<SystemFact> systemFacts() {
  const QString processor = valueOf("/proc/cpuinfo", "model name");
  QList<SystemFact> facts = {
      {tr("Operating system"), QSysInfo::prettyProductName()},
      {tr("Kernel"), QSysInfo::kernelType() + ' ' + QSysInfo::kernelVersion()},
      {tr("Processor"), processor.isEmpty() ? QSysInfo::currentCpuArchitecture() : processor},
      {tr("Processor cores"), QString::number(QThread::idealThreadCount())},
      {tr("Memory"), memory()},
      {tr("Screens"), screens()},
      {tr("Window system"), QGuiApplication::platformName()},
      {tr("Qt"), QString::fromLatin1(qVersion())},
  };
  facts.removeIf([](const SystemFact& fact) { return fact.second.trimmed().isEmpty(); });
  return facts;
}

}  // namespace orv::app
