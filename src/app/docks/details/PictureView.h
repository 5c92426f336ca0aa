#pragma once

#include <QPixmap>
#include <QWidget>
#include <cstdint>
#include <span>

namespace orv::app {

/// Shows the picture of a database field as large as there is room, never larger than it is; a
/// text tells why there is none.
class PictureView : public QWidget {
  Q_OBJECT

 public:
  explicit PictureView(QWidget* parent = nullptr);

  void showPicture(std::span<const std::uint8_t> field);
  const QString& caption() const { return caption_; }

  QSize sizeHint() const override { return {240, 160}; }
  QSize minimumSizeHint() const override { return {80, 60}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  QPixmap picture_;
  QString caption_;
};

}  // namespace orv::app
