#include <gtest/gtest.h>

#include "model/Raised.h"
#include "support/FullRecords.h"
#include "textfile/Folder.h"
#include "textfile/ORV_TextFileInterface.h"

namespace orv {

namespace {

/// A coated pane with every value that a file holds.
std::shared_ptr<GlazingData> coatedPane() {
  auto pane = std::make_shared<GlazingData>();
  pane->filename("coated.txt");
  pane->WavelengthUnit(kNanometers);
  pane->Thickness(5.7F);
  pane->Conductivity(1);
  pane->ef(0.84F);
  pane->ef_source(kMaterialSource);
  pane->eb(4.657817E-02F);
  pane->eb_source(kSpectralDataSource);
  pane->IGDBChecksum(-7);
  pane->productname("Sun® 70");
  pane->NFRC_id(102);
  pane->GlazingType(kCoated);
  pane->CoatingName("Ag");
  pane->CoatedSide(kBackSide);
  pane->SubstrateFilename("clear.txt");
  for (const char* const layer : {"clear.txt", "foil.txt"}) {
    pane->AddStructure(std::make_shared<GlazingStructure>());
    pane->structure(pane->StructureCount() - 1)->filename(layer);
  }
  pane->structure(0)->Thickness(3.048F);
  pane->structure(1)->Flipped(true);
  auto spectrum = std::make_shared<SpectralData>();
  spectrum->Allocate(1);
  spectrum->wl(0, 300);
  spectrum->Tf(0, 0.12346F);
  spectrum->Tb(0, 0.12346F);  // the only transmittance of a file
  spectrum->Rf(0, 0.07F);
  spectrum->Rb(0, 1);
  spectrum->wl(1, 2500.5F);
  pane->SpectralData(spectrum);
  return pane;
}

class PaneWriter : public ::testing::Test {
 protected:
  std::string written(GlazingData& pane, PaneEntries entries = PaneEntries::fixed) {
    ORV_TextFileInterface().WriteSpectralFile(folder_.withSeparator(), "pane.txt", pane, entries);
    return folder_.read("pane.txt");
  }

  static std::string fileOf(const std::string& name) {
    return test::readFile(ORV_SOURCE_DIR "/tests/textfile/" + name);
  }

  test::Folder folder_;
};

TEST_F(PaneWriter, WritesTheExactLayout) {
  EXPECT_EQ(written(*coatedPane()), fileOf("written-pane.txt"));
}

TEST_F(PaneWriter, WithAllEntriesAddsWhatTheLayoutLeavesOutAndReadsBack) {
  const auto pane = coatedPane();
  GlazingData& p = *pane;
  p.filename("pane.txt");
  p.FilmFilename("N/A");
  p.use_estimation(true);  // as of everything that is not monolithic
  std::string expected = written(p);
  expected.replace(expected.find("0.1235"), 6, "0.12346");
  expected.insert(expected.find("300.000"), "{ Film Filename: N/A }\r\n");
  EXPECT_EQ(written(p, PaneEntries::all), expected);

  p.filename("other.txt"), p.unit(kIP), p.TfIR(0.125F), p.TbiR(0.25F), p.ORV_Angle(-30);
  p.description("of two\nlines"), p.ORV_CoatingClass("B"), p.CoatingFilename("c.txt");
  p.FilmFilename("f.txt"), p.single_layer(true), p.use_estimation(false), p.Use_0_30_60(true);
  p.film_outdoor_side(true), p.ORV_Frozen(true), p.AddUse("facade"), p.AddUse("roof");
  for (const char* const region : {"EU", "US"}) {
    p.AddAvailability(std::make_shared<Availability>());
    p.Availability(p.AvailabilityCount())->Region(region);
  }
  p.Availability(1)->AlternateProductName("Sonne");
  EXPECT_EQ(written(p, PaneEntries::all), fileOf("written-all-entries.txt"));
  const auto read = ORV_TextFileInterface().ParseSpectralFile(folder_.path(), "pane.txt");
  p.FileDate(read->FileDate()), p.spectral_pane(true);
  p.ORV_Emissivity_front(p.ef()), p.ORV_Emissivity_back(p.eb());
  EXPECT_EQ(test::whole(*read), test::whole(p));

  p.ResetEf(), p.ResetEb(), p.ef_source(kMaterialSource), p.eb_source(kTextFileSource);
  EXPECT_EQ(written(p, PaneEntries::all).find("_Source"), std::string::npos);
  p.filename("pane.txt"), p.ORV_Angle(0), p.TbiR(0);
  const std::string less = written(p, PaneEntries::all);
  for (const char* const key : {"Record Name", "Angle of Incidence", "transmission_IR_indoor"}) {
    EXPECT_EQ(less.find(key), std::string::npos);
  }
}

TEST_F(PaneWriter, WritesNothingForARecordThatIsWrong) {
  struct Case {
    void (*spoil)(GlazingData&);
    std::int32_t number;
    const char* description;
  };
  const Case cases[] = {
      {[](GlazingData& p) { p.filename(""); }, 5, "Filename must not be empty"},
      {[](GlazingData& p) { p.ef.reset(); }, 1022, "Emissivities not set"},
      {[](GlazingData& p) { p.ef_source(9); }, 5, "Unknown Emittance Source"},
      {[](GlazingData& p) { p.GlazingType(9); }, 5, "Unknown glazing type"},
      {[](GlazingData& p) { p.CoatedSide(9); }, 5, "Unknown coated_side type"},
      {[](GlazingData& p) { p.productname("a}b"); }, 5,
       "'Product Name' cannot hold a brace in a text file: 'a}b'. Remove the brace"},
      {[](GlazingData& p) { p.structure(0)->filename("a+b.txt"); }, 5,
       "A layer's file name cannot hold '+' or ';': 'a+b.txt'. Rename the file"},
      {[](GlazingData& p) { p.SpectralData(nullptr); }, 5,
       "The pane has no spectral data, and a pane file cannot be without"},
  };
  for (const Case& c : cases) {
    const auto pane = coatedPane();
    c.spoil(*pane);
    const auto raised = test::raisedBy([&] { written(*pane); });
    EXPECT_EQ(raised.number, c.number);
    EXPECT_EQ(raised.description, c.description);
    EXPECT_FALSE(std::filesystem::exists(folder_.path() / "pane.txt"));
  }
}

}  // namespace

}  // namespace orv
