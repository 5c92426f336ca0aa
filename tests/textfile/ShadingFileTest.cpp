#include <gtest/gtest.h>

#include "model/Raised.h"
#include "support/FullRecords.h"
#include "textfile/Folder.h"
#include "textfile/ORV_TextFileInterface.h"

namespace orv {

namespace {

class ShadingFile : public ::testing::Test {
 protected:
  std::shared_ptr<ShadingDataClass> parse(const std::string& text) {
    folder_.write("Blind 25.txt", text);
    return text_.ParseSpectralFileShading(folder_.path(), "Blind 25.txt");
  }

  test::Folder folder_;
  ORV_TextFileInterface text_;
};

const char* const kBlind =
    "{ Product Name: Blind® }\r\n{ supplier: Acme }\r\n{ Material: Aluminium }\r\n"
    "{ Coated Side: Front }\r\n{ Info: lacquered }\r\n{ Appearance: white }\r\n"
    "{ Reference: lab 7 }\r\n{ Product type: 2 }\r\n{ Position: outdoor }\r\n"
    "{ Orientation: Horizontal }\r\n{ Thickness: 0.2 }\r\n{ Width: 25 }\r\n"
    "{ Crown height: 1.9 }\r\n{ Angle: 45 }\r\n{ Pitch: 22 }\r\n{ Conductivity: 160 }\r\n"
    "{ Emissivity front: 0.9 }\r\n{ Emissivity back: 0.8 }\r\n{ IR transmittance: 0.05 }\r\n"
    "{ Permeability: 0.1 }\r\n{ Units: Microns }\r\n\r\n"
    "0.3 0 0 0.01 0.02 0 0 0.05 0.06 further columns\r\n"
    "{ all the rest alike }\r\n"
    "2.6 0 0 0.01 0.02 0 0 0.05 0.06\r\n";

TEST_F(ShadingFile, ReadsItsKeysAndRows) {
  const auto blind = parse(kBlind);
  EXPECT_EQ(blind->name(), "Blind 25");
  EXPECT_EQ(blind->id(), -1);
  EXPECT_EQ(blind->productname(), "Blind®");
  EXPECT_EQ(blind->supplier(), "Acme");
  EXPECT_EQ(blind->material(), "Aluminium");
  EXPECT_EQ(blind->CoatedSide(), kFrontSide);
  EXPECT_EQ(blind->Info(), "lacquered");
  EXPECT_EQ(blind->appearance(), "white");
  EXPECT_EQ(blind->reference(), "lab 7");
  EXPECT_EQ(blind->typeID(), 2);
  EXPECT_EQ(blind->position(), "outdoor");
  EXPECT_TRUE(blind->horizontal());
  EXPECT_FALSE(blind->vertical());
  EXPECT_EQ(blind->thickness(), 0.2);
  EXPECT_EQ(blind->slat_length(), 25);
  EXPECT_EQ(blind->slat_curvature(), 1.9);
  EXPECT_EQ(blind->angle(), 45);
  EXPECT_EQ(blind->slat_distance(), 22);
  EXPECT_EQ(blind->conduction(), 160);
  EXPECT_EQ(blind->emission_IR_outdoor(), 0.9);
  EXPECT_EQ(blind->emission_IR_indoor(), 0.8);
  EXPECT_EQ(blind->transmission_IR_outdoor(), 0.05);
  EXPECT_EQ(blind->permeability(), 0.1);
  ASSERT_EQ(blind->spectrum().size(), 2U);
  EXPECT_EQ(blind->spectrum()[0], (ShadingSpectralPoint{300, 0, 0, 0.01, 0.02, 0, 0, 0.05, 0.06}));
  EXPECT_EQ(blind->spectrum()[1].wavelength, 2600);
}

TEST_F(ShadingFile, SettlesWhatFollowsFromItsKeysUnlessItSaysOtherwise) {
  const auto blind = parse(kBlind);
  EXPECT_EQ(blind->emissivity_slat_surf_outd(), 0.9);
  EXPECT_EQ(blind->emissivity_slat_surf_ind(), 0.8);
  EXPECT_EQ(blind->transmissivity_slat_surf(), 0.05);
  EXPECT_EQ(blind->transmission_IR_indoor(), 0.05);
  EXPECT_TRUE(blind->measured());
  EXPECT_TRUE(blind->spectral());
  EXPECT_FALSE(blind->homogenious());
  EXPECT_NEAR(blind->Sol_refl_slat_surf_ind(), 0.06, 1e-12);
  EXPECT_NEAR(blind->Vis_refl_slat_surf_outd_BB(), 0.01, 1e-12);
  ASSERT_EQ(blind->integrated().size(), 1U);
  EXPECT_NEAR(blind->integrated()[0].reflection_UV_outdoor, 0.06, 1e-12);

  const auto other =
      parse(std::string("{ emissivity_slat_surf_outd: 0.3 }{ Sol_refl_slat_surf_ind: 0.4 }"
                        "{ measured: false }"
                        "{ Integrated data: 30 1 2 3 4 5 6 7 8 9 10 11 12 }"
                        "{ Integrated data: 60 0 0 0 0 0 0 0 0 0 0 0 0 }") +
            kBlind);
  EXPECT_EQ(other->emissivity_slat_surf_outd(), 0.3);
  EXPECT_EQ(other->Sol_refl_slat_surf_ind(), 0.4);
  EXPECT_FALSE(other->measured());
  ASSERT_EQ(other->integrated().size(), 2U);
  EXPECT_EQ(other->integrated()[0],
            (ShadingIntegratedData{30, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));

  // Without slats it is of one piece; one measure of them makes it none.
  const std::string row = "{ Units: Nanometers }\n300 0 0 0.01 0.02 0 0 0.05 0.06\n";
  EXPECT_TRUE(parse("{ Product type: 1 }" + row)->homogenious());
  EXPECT_FALSE(parse("{ Product type: 1 }{ Pitch: 22 }" + row)->homogenious());
  EXPECT_FALSE(parse("{ Product type: 1 }{ Width: 25 }" + row)->homogenious());
}

TEST_F(ShadingFile, RefusesMalformedFiles) {
  struct Case {
    const char* text;
    std::int32_t number;
    const char* description;
  };
  const Case cases[] = {
      {"300 0 0 0 0 0 0 0 0", 5, "Units not recognized"},
      {"{ Units: nm }", 5, "Units not recognized"},
      {"{ Units: Microns }", 9, "The file holds no spectral data"},
      {"{ Units: Nanometers }\n300 0 0 0 0 0 0 0\n", 1012,
       "Spectral Data:  Received non-token when expected a token"},
      {"{ Units: Nanometers }\n300 0 0 0 x 0 0 0 0\n", 1013,
       "Spectral Data:  'x' is not a number.  Expected a number"},
      {"{ Units: Nanometers }\n300 0 0 0 -0.1 0 0 0 0\n", 5,
       "'-0.1' is negative. No value of a shading is below 0"},
      {"{ Units: Nanometers }{ Product type: 5 }\n300 0 0 0 0 0 0 0 0", 5,
       "Product Type (5) not recognized"},
      {"{ Units: Nanometers }{ Product type: }\n300 0 0 0 0 0 0 0 0", 5,
       "Product Type () not recognized"},
      {"{ Units: Nanometers }{ Orientation: askew }\n300 0 0 0 0 0 0 0 0", 5,
       "Orientation (askew) not recognized. It is Horizontal, Vertical or Both"},
      {"{ Units: Nanometers }{ Width: wide }\n300 0 0 0 0 0 0 0 0", 13,
       "Width 'wide' is not a number"},
      {"{ Units: Nanometers }{ freeze: 1 }\n300 0 0 0 0 0 0 0 0", 13,
       "freeze '1' is neither True nor False"},
      {"{ Units: Nanometers }{ Integrated data: 0 1 2 }\n300 0 0 0 0 0 0 0 0", 13,
       "Integrated data needs 13 numbers: '0 1 2'"},
      {"SI Microns\n{ Thickness } 3\n", 1013,
       "Spectral Data:  'SI' is not a number.  Expected a number"},
  };
  for (const Case& c : cases) {
    const auto raised = test::raisedBy([&] { parse(c.text); });
    EXPECT_EQ(raised.number, c.number) << c.text;
    EXPECT_EQ(raised.description, c.description) << c.text;
  }
}

TEST_F(ShadingFile, ReadsBackWhatIsWritten) {
  const ShadingDataClass shading = test::fullShading();
  text_.WriteSpectralFileShading(folder_.withSeparator(), "full.txt", shading);
  const auto read = text_.ParseSpectralFileShading(folder_.path(), "FULL.TXT");
  EXPECT_EQ(read->group(), "") << "which a file does not have";
  read->group(shading.group());
  EXPECT_EQ(test::whole(*read), test::whole(shading));
}

TEST_F(ShadingFile, ReadsBackAShadingWithoutASpectrumAndAType) {
  text_.WriteSpectralFileShading(folder_.withSeparator(), "empty.txt", ShadingDataClass());
  const auto read = text_.ParseSpectralFileShading(folder_.path(), "empty.txt");
  EXPECT_TRUE(read->spectrum().empty());
  EXPECT_TRUE(read->integrated().empty());
  EXPECT_FALSE(read->spectral());
  EXPECT_EQ(read->typeID(), 0);
  EXPECT_EQ(read->CoatedSide(), kSideNotSet);
}

TEST_F(ShadingFile, WritesNoCodeThatItCannotReadBack) {
  ShadingDataClass shading;
  shading.typeID(9);
  const auto raised = test::raisedBy(
      [&] { text_.WriteSpectralFileShading(folder_.withSeparator(), "a.txt", shading); });
  EXPECT_EQ(raised.number, kInvalidCall);
  EXPECT_EQ(raised.description, "Product Type (9) not recognized");
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / "a.txt"));
}

}  // namespace

}  // namespace orv
