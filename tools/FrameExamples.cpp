// Makes an ORV database with frames and their pictures, for the pictures of the user guide: frames
// come from databases only, so the examples have none.
//
// usage: frame_examples DATABASE
#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <cstdio>
#include <exception>

#include "database/ORV_DatabaseInterface.h"
#include "database/OrvSchema.h"

namespace {

using namespace orv;

struct Example {
  const char* name;
  const char* product;
  const char* type;
  double conductance;
  double width;  ///< metres
  QColor colour;
  int chambers;
};

const Example kExamples[] = {
    {"pvc_70", "Fjordramme 70", "PVC", 1.3, 0.07, QColor(0xf2, 0xf2, 0xee), 5},
    {"wood_78", "Tamsin Larch 78", "Wood", 1.4, 0.078, QColor(0xd9, 0xb3, 0x82), 1},
    {"alu_65", "Velmara Slim 65", "Aluminium", 2.4, 0.065, QColor(0xb4, 0xbc, 0xc4), 3},
};

class NoQuestions : public database::PaneQuestions {
 public:
  bool confirm(const std::string&, const std::string&) override { return false; }
};

/// A section through the frame: a profile with its chambers below, the pane standing in it.
QImage section(const Example& frame) {
  QImage image(360, 300, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(QColor(0x2e, 0x34, 0x36), 3));
  painter.setBrush(frame.colour);
  painter.drawPolygon(QPolygonF({{40, 280},
                                 {40, 150},
                                 {130, 150},
                                 {130, 190},
                                 {230, 190},
                                 {230, 120},
                                 {260, 120},
                                 {320, 150},
                                 {320, 280}}));
  painter.setBrush(Qt::white);
  const double step = 260.0 / frame.chambers;
  for (int i = 0; frame.chambers > 1 && i < frame.chambers; ++i) {
    painter.drawRect(QRectF(50 + i * step, 205, step - 12, 62));
  }
  painter.setBrush(QColor(0xcf, 0xe8, 0xf7));
  painter.drawRect(QRectF(142, 15, 16, 168));
  painter.drawRect(QRectF(202, 15, 16, 168));
  painter.setBrush(QColor(0x60, 0x66, 0x6a));
  painter.drawRect(QRectF(158, 150, 44, 24));
  return image;
}

std::vector<std::uint8_t> pictureOf(const Example& frame) {
  QByteArray data;
  QBuffer buffer(&data);
  buffer.open(QIODevice::WriteOnly);
  section(frame).save(&buffer, "PNG");
  return {data.begin(), data.end()};
}

void add(const Example& example, database::ORV_DatabaseInterface& database,
         store::Connection& connection) {
  FrameDataClass frame;
  frame.name(example.name);
  frame.productname(example.product);
  frame.group("Examples");
  frame.supplier("Ostrefjord Rammer");
  frame.frametype(example.type);
  frame.u_value(example.conductance);
  frame.width(example.width);
  frame.picture(pictureOf(example));
  frame.Info("Invented, to be looked at");
  database.InsertFrame(frame, connection);
}

}  // namespace

int main(int count, char* arguments[]) {
  QGuiApplication application(count, arguments);
  if (count != 2) {
    std::fputs("usage: frame_examples DATABASE\n", stderr);
    return 2;
  }
  try {
    NoQuestions questions;
    database::ORV_DatabaseInterface database(questions);
    const auto connection = database::CreateEmptyDatabase(arguments[1]);
    for (const Example& example : kExamples) add(example, database, *connection);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "frame_examples: %s\n", error.what());
    return 1;
  }
}
