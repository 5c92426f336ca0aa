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
  const auto b = parse(kBlind);
  EXPECT_EQ(
      fmt::format("{} {}|{}|{}|{}|{}|{}|{}|{}|{}|{} {} {}", b->name(), b->id(), b->productname(),
                  b->supplier(), b->material(), b->CoatedSide(), b->Info(), b->appearance(),
                  b->reference(), b->typeID(), b->position(), b->horizontal(), b->vertical()),
      "Blind 25 -1|Blind®|Acme|Aluminium|2|lacquered|white|lab 7|2|outdoor true false");
  EXPECT_EQ(fmt::format("{} {} {} {} {} {} {} {} {} {}", b->thickness(), b->slat_length(),
                        b->slat_curvature(), b->angle(), b->slat_distance(), b->conduction(),
                        b->emission_IR_outdoor(), b->emission_IR_indoor(),
                        b->transmission_IR_outdoor(), b->permeability()),
            "0.2 25 1.9 45 22 160 0.9 0.8 0.05 0.1");
  ASSERT_EQ(b->spectrum().size(), 2U);
  EXPECT_EQ(b->spectrum()[0], (ShadingSpectralPoint{300, 0, 0, 0.01, 0.02, 0, 0, 0.05, 0.06}));
  EXPECT_EQ(b->spectrum()[1].wavelength, 2600);
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

TEST_F(ShadingFile, ReadsBackWhatIsWritten) {
  ShadingDataClass shading = test::fullShading();
  for (const int ways : {0, 1, 2, 3}) {
    shading.horizontal((ways & 1) != 0);
    shading.vertical((ways & 2) != 0);
    shading.typeID(1 + ways);
    text_.WriteSpectralFileShading(folder_.withSeparator(), "full.txt", shading);
    const auto read = text_.ParseSpectralFileShading(folder_.path(), "FULL.TXT");
    EXPECT_EQ(read->group(), "") << "which a file does not have";
    read->group(shading.group());
    EXPECT_EQ(test::whole(*read), test::whole(shading));
  }
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
  ShadingDataClass ofNoType, ofNoSide;
  ofNoType.typeID(5);
  ofNoSide.CoatedSide(9);
  for (const auto& [shading, description] :
       {std::pair{&ofNoType, "Product Type (5) not recognized"},
        std::pair{&ofNoSide, "Unknown coated_side type"}}) {
    const auto raised = test::raisedBy(
        [&] { text_.WriteSpectralFileShading(folder_.withSeparator(), "a.txt", *shading); });
    EXPECT_EQ(raised.number, kInvalidCall);
    EXPECT_EQ(raised.description, description);
    EXPECT_FALSE(std::filesystem::exists(folder_.path() / "a.txt"));
  }
}

}  // namespace

}  // namespace orv
