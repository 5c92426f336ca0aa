#pragma once

#include <QWidget>
#include <memory>

#include "model/ShadingDataClass.h"

namespace orv::app {

/// A section through three slats of a blind beside the pane, to scale, with their dimensions.
class SlatDrawing : public QWidget {
  Q_OBJECT

 public:
  explicit SlatDrawing(QWidget* parent = nullptr);

  void showShading(std::shared_ptr<const ShadingDataClass> shading);

  /// Whether a shading has slats with the dimensions that a drawing takes.
  static bool canDraw(const ShadingDataClass& shading);

  QSize sizeHint() const override { return {240, 190}; }
  QSize minimumSizeHint() const override { return {120, 90}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void drawSlats(QPainter& painter, const QRectF& area) const;
  void drawPitch(QPainter& painter, double x, double upper, double lower) const;
  QString caption() const;

  std::shared_ptr<const ShadingDataClass> shading_;
};

}  // namespace orv::app
