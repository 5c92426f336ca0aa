#include <gtest/gtest.h>

#include "support/FullRecords.h"
#include "textfile/Folder.h"
#include "textfile/ORV_TextFileInterface.h"

namespace orv {

namespace {

class PaneReader : public ::testing::Test {
 protected:
  std::shared_ptr<GlazingData> parse(const std::string& text) {
    folder_.write("pane.txt", text);
    return ORV_TextFileInterface().ParseSpectralFile(folder_.path(), "pane.txt");
  }

  test::Folder folder_;
};

TEST_F(PaneReader, ReadsUnits) {
  struct Case {
    const char* words;
    std::int32_t unit;
    std::int32_t wavelengthUnit;
  };
  const Case cases[] = {{"SI Micron", kSI, kMicrons},
                        {"IP Nanometer", kIP, kNanometers},
                        {"SI nanometers", kSI, kNanometers}};
  for (const Case& c : cases) {
    const auto pane = parse(std::string(c.words) + " 3 1\n300 0.8 0.1 0.1\n");
    EXPECT_EQ(pane->unit(), c.unit) << c.words;
    EXPECT_TRUE(pane->use_estimation() && !pane->single_layer());
    EXPECT_EQ(pane->SpectralData()->WavelengthUnit(), c.wavelengthUnit) << c.words;
  }
}

TEST_F(PaneReader, ReadsTheAcceptanceOfTheNfrc) {
  EXPECT_EQ(parse("NFRC accepted 2001\n#\nSI Microns 3 1\n0.3 0.8\n")->Acceptance(), "#");
}

TEST_F(PaneReader, CarriesValuesOverFromTheLineBefore) {
  const auto pane = parse(
      "SI Microns 3 1\n"
      "0.30 * 0.07 0.09\n"       // nothing before the first line: 0
      "0.31 0.8 * *\n"           // both reflectances carried over
      "0.32 0.7 0.06\n"          // back as front
      "0.33 0.6\n"               // front carried over, back as front
      "0.34 +0.5 0.1 0.2 9 x\n"  // further columns passed over
      "3.5E-01 0.4 0.1 0.2\n");
  const SpectralData& s = *pane->SpectralData();
  ASSERT_EQ(s.count(), 6);
  const float expected[][4] = {{0.30F, 0, 0.07F, 0.09F},    {0.31F, 0.8F, 0.07F, 0.09F},
                               {0.32F, 0.7F, 0.06F, 0.06F}, {0.33F, 0.6F, 0.06F, 0.06F},
                               {0.34F, 0.5F, 0.1F, 0.2F},   {0.35F, 0.4F, 0.1F, 0.2F}};
  for (std::int32_t i = 0; i < s.count(); ++i) {
    EXPECT_EQ(s.wl(i), expected[i][0]) << i;
    EXPECT_EQ(s.Tf(i), expected[i][1]) << i;
    EXPECT_EQ(s.Rf(i), expected[i][2]) << i;
    EXPECT_EQ(s.Rb(i), expected[i][3]) << i;
  }
}

TEST_F(PaneReader, ReadsInfraredLinesInEitherOrder) {
  struct Case {
    const char* lines;
    float tir, ef, eb;
  };
  const Case cases[] = {
      {"", 0, -1, -1},
      {"TIR=0.2\nEmis= 0.84 0.1\n", 0.2F, 0.84F, 0.1F},
      {"Emis= 0.84 , 4.657817E-02\ntir = 0.2\n", 0.2F, 0.84F, 4.657817E-02F},
      {"Emissivity=0.84\n", 0, 0.84F, 0.84F},
      {"TIR=0.1 Emis= 0.8 {front} 0.7\n", 0.1F, 0.8F, 0.7F},
  };
  for (const Case& c : cases) {
    const auto pane = parse("SI Microns 3 1\n" + std::string(c.lines) + "3E-01 0.8 0.1 0.1\n");
    EXPECT_EQ(pane->TfIR(), c.tir) << c.lines;
    EXPECT_EQ(pane->ef(), c.ef) << c.lines;
    EXPECT_EQ(pane->eb(), c.eb) << c.lines;
    EXPECT_EQ(pane->SpectralData()->count(), 1) << c.lines;
    if (c.ef >= 0) {
      EXPECT_EQ(pane->ef_source(), kTextFileSource);
      EXPECT_EQ(static_cast<float>(pane->ORV_Emissivity_front()), c.ef);
      EXPECT_EQ(static_cast<float>(pane->ORV_Emissivity_back()), c.eb);
    }
  }
}

TEST_F(PaneReader, ReadsTheSameRecordWhateverTheLineEndsAndBlankLines) {
  const std::string lines =
      "{ first }\nSI Microns\n\n{ Thickness } 3\n1\nEmis= 0.84\n{ Product Name: Café }\n"
      "0.3 0.8 0.1\n\n{ between }\n0.4 0.7 0.2 0.3";
  for (const char* const lineEnd : {"\n", "\r\n", "\r"}) {
    for (const std::string last : {"", "\n", "\n \t\n{ end }"}) {
      std::string text;
      for (const char c : lines + last) text += c == '\n' ? lineEnd : std::string(1, c);
      const auto pane = parse(text);
      EXPECT_EQ(pane->productname(), "Café");
      EXPECT_EQ(pane->eb(), 0.84F);
      ASSERT_EQ(pane->SpectralData()->count(), 2);
      EXPECT_EQ(pane->SpectralData()->Rb(0), 0.1F);
      EXPECT_EQ(pane->SpectralData()->Rb(1), 0.3F);
    }
  }
}

TEST_F(PaneReader, ReadsHeaderEntriesWithoutRegardToCase) {
  const auto pane = parse(
      "{ Ef_Source: Material }{ EB_SOURCE: spectral data }{ see: elsewhere }\n"
      "SI Microns 3 1\nEmis= 0.84 0.1\n"
      "{ product name: Low-E: the second }\n{ supplier:  Acme }\n{NFRC ID:}\n"
      "{ IGDB_Checksum: -1717699038 }\n{ Type: APPLIED film }\n{ Material: Glass }\n"
      "{ Coating Name: Ag }\n{ Coated Side: back }\n{ Coating Filename: c.txt }\n"
      "{ Substrate Filename: s.txt }\n{ Film Filename: f.txt }\n{ Description: Two\nlines }\n"
      "{ Appearance: Grey }\n{ Acceptance: # }\n{ Angle of Incidence: 60.5 }\n"
      "{ Coating class: b }\n"
      "{ Structure: a.txt;4;False\n + b.txt;0.76;true\n+ c.txt;6;FALSE }\n"
      "0.3 0.8 0.1 0.1\n");
  GlazingData p;
  p.filename("pane.txt"), p.FileDate(pane->FileDate()), p.productname("Low-E: the second");
  p.supplier("Acme"), p.NFRC_id(-1), p.IGDBChecksum(-1717699038), p.GlazingType(kAppliedFilm);
  p.Thickness(3), p.Conductivity(1), p.ef(0.84F), p.ef_source(kMaterialSource), p.eb(0.1F);
  p.eb_source(kSpectralDataSource), p.ORV_Emissivity_front(0.84F), p.ORV_Emissivity_back(0.1F);
  p.material("Glass"), p.CoatingName("Ag"), p.CoatedSide(kBackSide), p.CoatingFilename("c.txt");
  p.SubstrateFilename("s.txt"), p.FilmFilename("f.txt"), p.description("Two\nlines");
  p.Appearance("Grey"), p.Acceptance("#"), p.ORV_CoatingClass("b");
  p.ORV_Angle(60);  // halves to the even degree
  p.spectral_pane(true), p.use_estimation(true), p.SpectralData(pane->SpectralData());
  ORV_TextFileInterface().ParseStructure("a.txt;4;False+b.txt;0.76;True+c.txt;6;False", p);
  EXPECT_EQ(test::whole(*pane), test::whole(p));
  const auto glass = parse("{ Type: Monolithic }{ Material: Glass }\nSI Microns 3 1\n0.3 0.8\n");
  EXPECT_TRUE(glass->single_layer() && !glass->use_estimation());
  const auto odd = parse(
      "{Type: Film}{ Availability: Asia }{ Angle of Incidence: -32767.4 }"
      "{ single_layer: TRUE }{ freeze: true }{freeze:False}{ Use_: x }{ transmission_IR_indoor: 0 }"
      "SI Microns 3 1\n0.3 0.8\n");
  EXPECT_EQ(odd->Availability(1)->Region(), "Asia");
  EXPECT_EQ(odd->Availability(1)->AlternateProductName(), "");
  EXPECT_EQ(odd->ORV_Angle(), -32767);
  EXPECT_TRUE(odd->single_layer() && odd->use_estimation() && !odd->ORV_Frozen());
  EXPECT_EQ(odd->UsesCount(), 0);
}

}  // namespace

}  // namespace orv
