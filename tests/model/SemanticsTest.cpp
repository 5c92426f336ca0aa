#include <fmt/format.h>
#include <gtest/gtest.h>

#include "model/GlazingData.h"
#include "model/Raised.h"
#include "support/CaseFile.h"

namespace orv {

namespace {

/// A pane of a kind that breaks no rule but those that its kind and another value of a field bring.
struct Pane : GlazingData {
  Pane(std::int32_t type, const std::string& field, const std::string& value) {
    filename(field == "file" ? value : "pane.txt");
    GlazingType(type);
    ef_source(field == "sources" ? kUnknownSource : kMaterialSource);
    eb_source(ef_source());
    if (field == "coating") CoatingName(value);
    if (field == "side") CoatedSide(std::stoi(value));
    if (field == "film") FilmFilename(value);
    if (field == "substrate") SubstrateFilename(value);
    if (field == "material") material(value);
  }
};

TEST(Semantics, FillsTheMarkersOfAPaneAndRefusesWhatItsKindCannotHave) {
  for (const auto& cells : test::casesOf("model/semantics.tsv", 5)) {
    SCOPED_TRACE(cells[0] + " " + cells[1]);
    Pane pane(std::stoi(cells[0]), cells[1], cells[2]);
    const auto raised = test::raisedBy([&] { pane.EnforceSemantics(); });
    EXPECT_EQ(raised.number, cells[3].empty() ? 0 : kInvalidCall);
    EXPECT_EQ(raised.description, cells[3]);
    EXPECT_EQ(fmt::format("{}, {}, {}, {}, {}, {}", pane.supplier(), pane.CoatingName(),
                          pane.CoatedSide(), pane.FilmFilename(), pane.SubstrateFilename(),
                          pane.material()),
              cells[4]);
  }
}

}  // namespace

}  // namespace orv
