#include "bench/GlazingFile.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace orv::bench {

using namespace store;

float sampleAt(int pane, int place, int which) {
  const double wave = std::sin(0.01 * place + pane + which);
  return static_cast<float>(0.3 + 0.25 * wave);
}

GlazingFile::GlazingFile(const std::string& path) {
  std::filesystem::remove(path);
  connection_ = Connection::create(path);
  connection_->createTable(
      {.name = "GlazingProperties",
       .columns = {{.name = "GlazingID", .type = ColumnType::longInteger},
                   {.name = "FileName", .type = ColumnType::text, .size = 100},
                   {.name = "ProductName", .type = ColumnType::text, .size = 100},
                   {.name = "Thickness", .type = ColumnType::single}},
       .indexes = {
           {.name = "PrimaryKey", .columns = {{"GlazingID"}}, .primary = true, .unique = true},
           {.name = "FileName", .columns = {{"FileName"}}}}});
  connection_->createTable({.name = "SpectralData",
                            .columns = {{.name = "GlazingID", .type = ColumnType::longInteger},
                                        {.name = "Wavelength", .type = ColumnType::single},
                                        {.name = "T", .type = ColumnType::single},
                                        {.name = "Rf", .type = ColumnType::single},
                                        {.name = "Rb", .type = ColumnType::single}},
                            .indexes = {{.name = "PrimaryKey",
                                         .columns = {{"GlazingID"}, {"Wavelength"}},
                                         .primary = true,
                                         .unique = true}}});
}

void GlazingFile::addPane() {
  const std::int32_t pane = ++panes_;
  connection_->inOneCommit([&] {
    const std::string number = std::to_string(pane);
    auto panes =
        connection_->openRecordset("GlazingProperties", CursorType::static_, LockType::optimistic);
    panes->addNew();
    panes->setValue(0, pane);
    panes->setValue(1, "PANE" + number + ".DAT");
    panes->setValue(2, "Pane " + number);
    panes->setValue(3, 4.0f);
    panes->update();
    auto curve =
        connection_->openRecordset("SpectralData", CursorType::static_, LockType::batchOptimistic);
    for (int place = 0; place < kWavelengths; ++place) {
      curve->addNew();
      curve->setValue(0, pane);
      curve->setValue(1, wavelengthAt(place));
      for (int which = 0; which < 3; ++which) {
        curve->setValue(static_cast<std::size_t>(2 + which), sampleAt(pane, place, which));
      }
    }
    curve->updateBatch();
  });
}

void GlazingFile::addPanes(int count) {
  constexpr int kPanesInACommit = 50;
  for (int done = 0; done < count;) {
    connection_->inOneCommit([&] {
      for (const int end = std::min(count, done + kPanesInACommit); done < end; ++done) {
        addPane();
      }
    });
  }
}

}  // namespace orv::bench
