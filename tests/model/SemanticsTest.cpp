#include <gtest/gtest.h>

#include "model/GlazingData.h"
#include "model/Raised.h"

namespace orv {

namespace {

/// A pane of a kind that breaks no rule but those that its kind brings.
struct Pane : GlazingData {
  explicit Pane(std::int32_t type) {
    filename("pane.txt");
    GlazingType(type);
    ef_source(kMaterialSource);
    eb_source(kMaterialSource);
  }
};

std::string brokenRules(GlazingData& pane) {
  const auto raised = test::raisedBy([&] { pane.EnforceSemantics(); });
  EXPECT_EQ(raised.number, raised.description.empty() ? 0 : kInvalidCall);
  return raised.description;
}

TEST(Semantics, FillsTheMarkersOfEachKindOfPane) {
  struct Case {
    std::int32_t type;
    const char* coatingName;
    std::int32_t side;
    const char* film;
    const char* substrate;
    const char* material;
  };
  const Case cases[] = {
      {kUnknownType, "Unknown", kUnknownSide, "N/A", "N/A", "N/A"},
      {kMonolithic, "N/A", kNeitherSide, "N/A", "N/A", "Unknown"},
      {kFilm, "Unknown", kUnknownSide, "N/A", "N/A", "N/A"},
      {kCoated, "Unknown", kUnknownSide, "N/A", "Unknown", "N/A"},
      {kAppliedFilm, "Unknown", kUnknownSide, "Unknown", "Unknown", "N/A"},
      {kLaminate, "Unknown", kUnknownSide, "N/A", "N/A", "N/A"},
  };
  for (const Case& c : cases) {
    Pane pane(c.type);
    EXPECT_EQ(brokenRules(pane), "") << c.type;
    EXPECT_EQ(pane.supplier(), "Unknown") << c.type;
    EXPECT_EQ(pane.CoatingName(), c.coatingName) << c.type;
    EXPECT_EQ(pane.CoatedSide(), c.side) << c.type;
    EXPECT_EQ(pane.FilmFilename(), c.film) << c.type;
    EXPECT_EQ(pane.SubstrateFilename(), c.substrate) << c.type;
    EXPECT_EQ(pane.material(), c.material) << c.type;
  }
}

TEST(Semantics, RefusesWhatAKindOfPaneCannotHave) {
  struct Case {
    std::int32_t type;
    void (*spoil)(GlazingData&);
    const char* rules;
  };
  const std::string neither =
      "Coated, Filmed and Applied Filmed glazings may not have a neither entry for coated "
      "side!\r\nCoatedSide can't be neither for a coated, film, or applied film glazing";
  const Case cases[] = {
      {kMonolithic, [](GlazingData& p) { p.filename(""); }, "Filename must not be empty"},
      {kCoated, [](GlazingData& p) { p.CoatingName("N/A"); },
       "Coated glazing's CoatingName can't be N/A"},
      {kLaminate, [](GlazingData& p) { p.CoatingName("N/A"); }, "Coating name can't be N/A"},
      {kMonolithic, [](GlazingData& p) { p.CoatingName("Unknown"); },
       "Monolithic glazing or non-coated glazing can't have an unknown coatingname"},
      {kCoated, [](GlazingData& p) { p.CoatedSide(kNeitherSide); }, neither.c_str()},
      {kFilm, [](GlazingData& p) { p.CoatedSide(kNeitherSide); }, neither.c_str()},
      {kAppliedFilm, [](GlazingData& p) { p.CoatedSide(kNeitherSide); }, neither.c_str()},
      {kLaminate, [](GlazingData& p) { p.CoatedSide(kNeitherSide); }, ""},
      {kMonolithic, [](GlazingData& p) { p.CoatedSide(kUnknownSide); },
       "Monolithic glazing can't have an unknown Coatedside"},
      {kAppliedFilm, [](GlazingData& p) { p.FilmFilename("N/A"); },
       "Applied Film can't have FilmFilename set to N/A"},
      {kCoated, [](GlazingData& p) { p.SubstrateFilename("N/A"); },
       "Coated and Applied Film glazings can't have N/A SubstrateFilename"},
      {kMonolithic, [](GlazingData& p) { p.material("n/a"); },
       "Monolithic glazing can't have N/A material"},
      {kLaminate, [](GlazingData& p) { p.material("N/A"); }, ""},
      {kLaminate,
       [](GlazingData& p) {
         p.ef_source(kUnknownSource);
         p.eb_source(kUnknownSource);
       },
       "ef_source can't have an unknown source\r\neb_source can't have an unknown source"},
  };
  for (const Case& c : cases) {
    Pane pane(c.type);
    c.spoil(pane);
    EXPECT_EQ(brokenRules(pane), c.rules);
    EXPECT_EQ(pane.supplier(), "Unknown") << "filled even when a rule is broken";
  }
}

}  // namespace

}  // namespace orv
