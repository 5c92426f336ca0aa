#include "app/docks/details/PictureView.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QLocale>
#include <QMenu>
#include <QPainter>

#include "app/Text.h"
#include "app/docks/details/PictureDecoding.h"

namespace orv::app {

namespace {

constexpr int kMargin = 6;

}  // namespace

PictureView::PictureView(QWidget* parent) : QWidget(parent) {
  setAccessibleName(tr("Picture of the frame"));
  setWhatsThis(tr("The picture that the database holds of the frame, as large as there is room"));
}

void PictureView::showPicture(std::span<const std::uint8_t> field) {
  const DecodedPicture decoded = decodePicture(field);
  picture_ = QPixmap::fromImage(decoded.image);
  const QString bytes = QLocale().formattedDataSize(static_cast<qint64>(field.size()));
  if (field.empty()) {
    caption_ = tr("No picture");
  } else if (!picture_.isNull()) {
    caption_ = tr("%1, %2 × %3 pixels, %4")
                   .arg(decoded.format)
                   .arg(picture_.width())
                   .arg(picture_.height())
                   .arg(bytes);
  } else if (!decoded.refused.isEmpty()) {
    caption_ = tr("%1 of %2 that claims to have %L3 × %L4 pixels: it is too large to be shown")
                   .arg(decoded.format, bytes)
                   .arg(decoded.refused.width())
                   .arg(decoded.refused.height());
  } else if (decoded.format.isEmpty()) {
    caption_ = tr("Picture of %1: it cannot be shown").arg(bytes);
  } else {
    caption_ = tr("%1 object of %2: it cannot be shown").arg(shownText(decoded.format), bytes);
  }
  setAccessibleDescription(caption_);
  setToolTip(toolTipText(caption_));
  update();
}

void PictureView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  QRect area = rect().adjusted(kMargin, kMargin, -kMargin, -kMargin);
  painter.setPen(palette().color(QPalette::PlaceholderText));
  if (picture_.isNull()) {
    painter.drawText(area, Qt::AlignCenter | Qt::TextWordWrap, caption_);
    return;
  }
  const int line = fontMetrics().lineSpacing();
  painter.drawText(area, Qt::AlignHCenter | Qt::AlignBottom,
                   fontMetrics().elidedText(caption_, Qt::ElideRight, area.width()));
  area.setBottom(area.bottom() - line - kMargin);
  QSize size = picture_.size();
  if (size.width() > area.width() || size.height() > area.height()) {
    size.scale(area.size(), Qt::KeepAspectRatio);
  }
  QRect target(QPoint(0, 0), size);
  target.moveCenter(area.center());
  painter.drawPixmap(target, picture_);
}

void PictureView::contextMenuEvent(QContextMenuEvent* event) {
  if (picture_.isNull()) return;
  QMenu menu(this);
  menu.addAction(tr("&Copy Picture"), this,
                 [this] { QGuiApplication::clipboard()->setPixmap(picture_); });
  menu.exec(event->globalPos());
}

}  // namespace orv::app

#include "moc_PictureView.cpp"
