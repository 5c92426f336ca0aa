// What the rules of the forms make of rows, angles, lists and integrated values.
#include <gmock/gmock.h>

#include <set>

#include "productfile/ProductFile.h"
#include "support/CaseFile.h"
#include "support/FullRecords.h"
#include "support/ReadFile.h"

namespace orv::test {
namespace {

using productfile::Product;
using productfile::ProductFile;
using ::testing::ElementsAre;

TEST(ProductFormsTest, RowsWithoutAValueAreSkippedAndRowsPutInOrder) {
  const ProductFile file(R"({"name": "a", "spectral_data": {"spectral_data": [
      {"wavelength": 0.5, "T": 0.11, "Tb": 0.12, "Rf": 0.13, "Rb": 0.14},
      {"wavelength": 0.4, "T": null, "Rf": 0.1, "Rb": 0.1},
      {"wavelength": 0.3, "T": "0.21", "Rf": 0.23, "Rb": 0.24},
      {"wavelength": 0.6, "T": 0.1, "Rf": 0.1}]},
    "measured_data": {"thickness": 4, "conductivity": 1}})",
                         "a.json");
  const auto product = file.product("");
  EXPECT_EQ(listOf(*product.pane->SpectralData()),
            "unit 0; 0.3 0.21 0.21 0.23 0.24; 0.5 0.11 0.12 0.13 0.14");
  EXPECT_THAT(product.notes, ElementsAre("the rows of the spectrum were put in order",
                                         "2 rows without a value skipped"));
}

TEST(ProductFormsTest, BlocksAreAngles) {
  const ProductFile file(
      R"({"measured_data": {"spectral_data": {"unit": "Nanometers", "angle_block": [
        {"wavelength_data": [{"w": 380, "tf": 0.5, "rf": 0.1, "rb": 0.2}]},
        {"incidence_angle": 60, "wavelength_data": [{"w": 380, "tf": 0.4, "rf": 0.3, "rb": 0.2}]}
      ]}}})",
      "a.json");
  EXPECT_THAT(file.angles(""), ElementsAre(0, 60));
  const auto pane = file.product("", 60).pane;
  EXPECT_EQ(pane->ORV_Angle(), 60);
  EXPECT_EQ(pane->SpectralData()->Tf(0), 0.4F);
  EXPECT_EQ(file.product("").pane->SpectralData()->Tf(0), 0.5F);
}

/// What both of these forms have a key for.
void fillCommon(GlazingData& p) {
  p.filename("F"), p.productname("P"), p.supplier("M"), p.NFRC_id(2147483647), p.Acceptance("#");
  p.Appearance("grey"), p.CoatingName("C"), p.Thickness(4.5F), p.Conductivity(1.25F);
  p.TfIR(0.01F), p.TbiR(0.02F), p.ef(0.83F), p.eb(0.04F), p.ORV_Emissivity_front(0.83F);
  p.ORV_Emissivity_back(0.04F), p.ef_source(kTextFileSource), p.eb_source(kTextFileSource);
  p.spectral_pane(true), p.use_estimation(true), p.WavelengthUnit(kMicrons);
  p.SpectralData(spectrumOf({{0.5F, 0.11F, 0.12F, 0.13F, 0.14F}}));
}

/// The product of a file beside this one.
Product productOfFile(const std::string& file) {
  return ProductFile(readFile(ORV_SOURCE_DIR "/tests/productfile/" + file), "a.json").product("");
}

TEST(ProductFormsTest, EachKeyFillsItsFieldOfTheRecord) {
  GlazingData flat;
  fillCommon(flat);
  flat.id(7), flat.description("D"), flat.GlazingType(kCoated), flat.CoatedSide(kBackSide);
  flat.IGDBChecksum(-2147483647 - 1), flat.Precalc_StandardName("S"), flat.Precalc_Tfsol(0.21F);
  flat.Precalc_Tbsol(0.22F), flat.Precalc_Rfsol(2), flat.Precalc_RbSol(0.24F);
  flat.Precalc_Tfvis(0.31F), flat.Precalc_Tbvis(0.32F), flat.Precalc_Rfvis(0.33F);
  flat.Precalc_Rbvis(0.34F), flat.Precalc_Tfuv(0.41F), flat.Precalc_Tbuv(0.41F);
  flat.Precalc_Tdw(0.42F), flat.Precalc_TSPF(10.5F), flat.Precalc_TCIEX(51), flat.Precalc_TCIEY(52);
  flat.Precalc_TCIEZ(53), flat.Precalc_RfCIEX(54), flat.Precalc_RfCIEY(55);
  flat.Precalc_RfCIEZ(56);
  const auto ofFlat = productOfFile("flat.json");
  EXPECT_EQ(whole(*ofFlat.pane), whole(flat));
  const std::set<std::string> neverGiven = {"freeze", "film_outdoor_side", "0_30_60"};
  EXPECT_EQ(ofFlat.notGiven, neverGiven);

  GlazingData checked;
  fillCommon(checked);
  checked.unit(kIP), checked.GlazingType(kLaminate), checked.CoatedSide(kBothSides);
  const auto ofChecker = productOfFile("checked.json");
  EXPECT_EQ(whole(*ofChecker.pane), whole(checked));
  EXPECT_EQ(ofChecker.notGiven, neverGiven);
}

/// A product of the flat form with these keys.
Product flatProduct(const std::string& keys) {
  return ProductFile("{" + keys + R"("spectral_data": {"spectral_data": [
      {"wavelength": 1, "T": 0, "Rf": 0, "Rb": 0}]}})",
                     "a.json")
      .product("");
}

TEST(ProductFormsTest, TellsWhatIsNotGiven) {
  const auto product = flatProduct(R"("measured_data": {"tir_back": 0, "emissivity_back": 0},)");
  const auto missing = [](const Product& of) {
    return fmt::format("{}", fmt::join(of.notGiven, " "));
  };
  EXPECT_EQ(missing(product),
            "0_30_60 conduction emission_IR_outdoor film_outdoor_side freeze product_name "
            "single_layer supplierID thickness transmission_IR_outdoor use_estimation");
  EXPECT_THAT(product.notes, ElementsAre("no thickness is given, 0 is taken",
                                         "no conductivity is given, 0 is taken"));
  EXPECT_EQ(missing(flatProduct("")),
            "0_30_60 conduction emission_IR_indoor emission_IR_outdoor film_outdoor_side freeze "
            "product_name single_layer supplierID thickness transmission_IR_indoor "
            "transmission_IR_outdoor use_estimation");
}

TEST(ProductFormsTest, KnowsTheWordsOfTheForms) {
  for (const auto& [keys, told] : examplesOf("productfile/words.txt", 15)) {
    const auto pane = flatProduct(keys + ",").pane;
    EXPECT_EQ(fmt::format("type {}, side {}{}{}", pane->GlazingType(), pane->CoatedSide(),
                          pane->single_layer() ? ", single layer" : "",
                          pane->use_estimation() ? ", estimated" : ""),
              told)
        << keys;
  }
  for (const char* word : {"microns", "Micron", "micrometers", "um", "\u00B5m", "\u03BCm",
                           "nanometers", "NANOMETER", "nm"}) {
    const int factor = std::string(word).starts_with('n') || word[0] == 'N' ? 1000 : 1;
    const auto file = ProductFile(
        fmt::format(R"({{"measured_data": {{"spectral_data": {{"unit": "{}", "angle_block": [
          {{"wavelength_data": [{{"w": {}, "tf": 1, "rf": 0, "rb": 0}},
                                {{"w": {}, "tf": 1, "rf": 0, "rb": 0}}]}}]}}}}}})",
                    word, 0.1 * factor, 200 * factor),
        "a.json");
    const auto spectrum = file.product("").pane->SpectralData();
    EXPECT_EQ(spectrum->ConvertedWl(0, kMicrons), 0.1F) << word;
    EXPECT_EQ(spectrum->ConvertedWl(1, kNanometers), 200'000) << word;
    EXPECT_EQ(spectrum->WavelengthUnit(), factor == 1 ? kMicrons : kNanometers) << word;
  }
}

TEST(ProductFormsTest, TheFirstStandardWithValuesCounts) {
  const auto product = flatProduct(R"("measured_data": {"thickness": 4, "conductivity": 1},
    "composition": [{"child_product": {}}],
    "integrated_results_summary": [
      {"calculation_standard_name": "EMPTY", "tfsol": null},
      {"calculation_standard_name": "NFRC", "tfsol": 0.7, "tbsol": 0.6, "tfvis": 0.5},
      {"tfsol": 0.8}],)");
  EXPECT_EQ(product.pane->Precalc_Tfsol(), 0.7F);
  EXPECT_EQ(product.pane->Precalc_Tbsol(), 0.6F);
  EXPECT_EQ(product.pane->Precalc_Tbvis(), 0.5F);
  EXPECT_EQ(product.pane->Precalc_StandardName(), "NFRC");
  EXPECT_THAT(product.notes,
              ElementsAre("the products that it is made of are left out",
                          "integrated values of the product, by NFRC",
                          "integrated values by a standard without a name are left out"));
}

TEST(ProductFormsTest, PublishedValuesAreOfNormalIncidenceOrOfTheOnlyAngle) {
  const auto fileOf = [](const std::string& blocks) {
    return ProductFile(R"({"name": "a", "physical_properties": {"thickness": 4, "conductivity": 1,
      "optical_properties": {"optical_data": {"angle_blocks": [)" +
                           blocks + R"(]}}}, "integrated_spectral_averages_summaries": [
      {"calculation_standard": "NFRC",
       "solar": {"transmittance_front": {"direct_direct": "0.7"}}}]})",
                       "a.json");
  };
  const std::string rows = R"("wavelength_data": [
      {"w": 0.3, "specular": {"tf": 0.2, "rf": 0.1, "rb": 0.1}},
      {"w": 0.4, "specular": {"tf": 0.2}, "diffuse": {"tf": 0.2}}]})";
  const ProductFile two =
      fileOf(R"({"incidence_angle": 60, )" + rows + R"(, {"incidence_angle": 0, )" + rows);
  EXPECT_EQ(two.product("", 0).pane->Precalc_Tfsol(), 0.7F);
  const auto oblique = two.product("", 60);
  EXPECT_EQ(oblique.pane->Precalc_Tfsol(), 0);
  EXPECT_EQ(oblique.pane->Precalc_StandardName(), "");
  EXPECT_THAT(oblique.notes, ::testing::Contains("the integrated values of the product, of normal "
                                                 "incidence, are left out at 60 degrees"));
  const auto one = fileOf(R"({"incidence_angle": 60, )" + rows).product("");
  EXPECT_EQ(one.pane->Precalc_Tbsol(), 0.7F);
  EXPECT_THAT(one.notes, ElementsAre("1 row without a value skipped",
                                     "the scattered part of the spectrum is left out",
                                     "integrated values of the product, by NFRC"));
}

TEST(ProductFormsTest, AListHasAnIdentifierAProduct) {
  const std::string flat = R"({"name": "NAME", "measured_data": {"thickness": 4, "conductivity": 1},
    "spectral_data": {"spectral_data": [{"wavelength": 1, "T": 0, "Rf": 0, "Rb": 0}]}})";
  const ProductFile file("\xEF\xBB\xBF[" + flat + ", 5, " + flat + "]", "list.json");
  EXPECT_THAT(file.pointers(), ElementsAre("/0", "/1", "/2"));
  EXPECT_THAT(file.product("/2").notes, ::testing::IsEmpty());
  EXPECT_EQ(file.product("/2").pane->filename(), "NAME");

  const auto name = productfile::ProductName::of("a#/b.json#/12");
  EXPECT_EQ(name.file, "a#/b.json");
  EXPECT_EQ(name.pointer, "/12");
  EXPECT_EQ(name.identifier(), "a#/b.json#/12");
  EXPECT_TRUE(productfile::isProduct("LIST.JSON#/0"));
  EXPECT_FALSE(productfile::isProduct("clear.txt"));
  EXPECT_FALSE(productfile::isProduct(".json"));
  EXPECT_THAT(ProductFile(flat, "").pointers(), ElementsAre(""));
  EXPECT_THAT(ProductFile("[]", "").pointers(), ElementsAre(""));
  EXPECT_FALSE(file.isShading("/0"));
  EXPECT_TRUE(ProductFile(R"({"type": "shading"})", "").isShading(""));
  EXPECT_EQ(ProductFile(R"([{"a": "ä"}])", "").text("/0"), "{\n  \"a\": \"ä\"\n}");
}

}  // namespace
}  // namespace orv::test
