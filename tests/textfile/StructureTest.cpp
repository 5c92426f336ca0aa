#include <fmt/format.h>
#include <gtest/gtest.h>

#include "model/Raised.h"
#include "support/CaseFile.h"
#include "textfile/ORV_TextFileInterface.h"

namespace orv {

namespace {

/// The layers of a pane and, of a layer that is malformed, the error, which keeps those before.
TEST(Structure, IsOfLayersThatTakeThePlaceOfTheOldOnes) {
  const ORV_TextFileInterface files;
  for (const auto& [expression, expected] : test::examplesOf("textfile/structures.txt", 11)) {
    GlazingData pane;
    files.ParseStructure("old.txt;1;True", pane);
    const auto raised = test::raisedBy([&] { files.ParseStructure(expression, pane); });
    std::string told =
        raised.number == 0 ? "" : fmt::format("{} ({})", raised.source, raised.number);
    for (std::int16_t i = 0; i < pane.StructureCount(); ++i) {
      const GlazingStructure& layer = *pane.structure(i);
      told += fmt::format("[{}, {}, {}]", layer.filename(), layer.Thickness(), layer.Flipped());
    }
    EXPECT_EQ(told, expected) << expression;
  }
}

}  // namespace

}  // namespace orv
