// What the rules of the forms make of rows, angles, lists and integrated values.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "productfile/ProductFile.h"

namespace orv::test {
namespace {

using productfile::ProductFile;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ProductFormsTest, RowsWithoutAValueAreSkippedAndRowsPutInOrder) {
  const ProductFile file(R"({"name": "a", "spectral_data": {"spectral_data": [
      {"wavelength": 0.5, "T": 0.11, "Tb": 0.12, "Rf": 0.13, "Rb": 0.14},
      {"wavelength": 0.4, "T": null, "Rf": 0.1, "Rb": 0.1},
      {"wavelength": 0.3, "T": "0.21", "Rf": 0.23, "Rb": 0.24},
      {"wavelength": 0.6, "T": 0.1, "Rf": 0.1}]},
    "measured_data": {"thickness": 4, "conductivity": 1}})",
                         "a.json");
  const auto product = file.product("");
  const SpectralData& spectrum = *product.pane->SpectralData();
  ASSERT_EQ(spectrum.count(), 2);
  EXPECT_THAT(
      (std::vector{spectrum.wl(0), spectrum.Tf(0), spectrum.Tb(0), spectrum.Rf(0), spectrum.Rb(0)}),
      ElementsAre(0.3F, 0.21F, 0.21F, 0.23F, 0.24F));
  EXPECT_THAT(
      (std::vector{spectrum.wl(1), spectrum.Tf(1), spectrum.Tb(1), spectrum.Rf(1), spectrum.Rb(1)}),
      ElementsAre(0.5F, 0.11F, 0.12F, 0.13F, 0.14F));
  EXPECT_THAT(product.notes, ElementsAre("the rows of the spectrum were put in order",
                                         "2 rows without a value skipped"));
}

TEST(ProductFormsTest, BlocksAreAnglesAndTheCheckerNamesItsUnits) {
  const ProductFile file(R"({"product_name": "a", "unit_system": "IP", "measured_data": {
      "thickness": 0.25, "bulk_properties_override": {"thermal_conductivity": 0.5},
      "spectral_data": {"unit": "Nanometers", "angle_block": [
        {"incidence_angle": 0, "wavelength_data": [{"w": 380, "tf": 0.5, "rf": 0.1, "rb": 0.2}]},
        {"incidence_angle": 60, "wavelength_data": [{"w": 380, "tf": 0.4, "rf": 0.3, "rb": 0.2}]}
      ]}}})",
                         "a.json");
  EXPECT_THAT(file.angles(""), ElementsAre(0, 60));
  const auto pane = file.product("", 60).pane;
  EXPECT_EQ(pane->ORV_Angle(), 60);
  EXPECT_EQ(pane->SpectralData()->Tf(0), 0.4F);
  EXPECT_EQ(pane->SpectralData()->ConvertedWl(0, kNanometers), 380);
  EXPECT_EQ(pane->ConvertedThickness(kSI), 6.35F);
}

TEST(ProductFormsTest, TheFirstStandardWithValuesCounts) {
  const ProductFile file(R"({"name": "a",
    "spectral_data": {"spectral_data": [{"wavelength": 1, "T": 0, "Rf": 0, "Rb": 0}]},
    "measured_data": {"thickness": 4, "conductivity": 1},
    "composition": [{"child_product": {}}],
    "integrated_results_summary": [
      {"calculation_standard_name": "EMPTY", "tfsol": null},
      {"calculation_standard_name": "NFRC", "tfsol": 0.7, "tbsol": 0.6, "tfvis": 0.5},
      {"calculation_standard_name": "CEN", "tfsol": 0.8}]})",
                         "a.json");
  const auto product = file.product("");
  EXPECT_EQ(product.pane->Precalc_Tfsol(), 0.7F);
  EXPECT_EQ(product.pane->Precalc_Tbsol(), 0.6F);
  EXPECT_EQ(product.pane->Precalc_Tbvis(), 0.5F);
  EXPECT_EQ(product.pane->Precalc_StandardName(), "NFRC");
  EXPECT_THAT(product.notes, ElementsAre("the products that it is made of are left out",
                                         "integrated values of the product, by NFRC",
                                         "integrated values by CEN are left out"));
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
      {"w": 0.3, "specular": {"tf": 0.2, "rf": 0.1, "rb": 0.1}}]})";
  const ProductFile two =
      fileOf(R"({"incidence_angle": 60, )" + rows + R"(, {"incidence_angle": 0, )" + rows);
  EXPECT_EQ(two.product("", 0).pane->Precalc_Tfsol(), 0.7F);
  const auto oblique = two.product("", 60);
  EXPECT_EQ(oblique.pane->Precalc_Tfsol(), 0);
  EXPECT_EQ(oblique.pane->Precalc_StandardName(), "");
  EXPECT_THAT(oblique.notes, ElementsAre("the integrated values of the product, of normal "
                                         "incidence, are left out at 60 degrees"));
  const ProductFile one = fileOf(R"({"incidence_angle": 60, )" + rows);
  EXPECT_EQ(one.product("").pane->Precalc_Tbsol(), 0.7F);
}

TEST(ProductFormsTest, AListHasAnIdentifierAProduct) {
  const std::string flat = R"({"name": "NAME", "measured_data": {"thickness": 4, "conductivity": 1},
    "spectral_data": {"spectral_data": [{"wavelength": 1, "T": 0, "Rf": 0, "Rb": 0}]}})";
  const ProductFile file("\xEF\xBB\xBF[" + flat + ", 5, " + flat + "]", "list.json");
  EXPECT_THAT(file.pointers(), ElementsAre("/0", "/1", "/2"));
  EXPECT_THAT(file.product("/2").notes, IsEmpty());
  EXPECT_EQ(file.product("/2").pane->filename(), "NAME");

  const auto name = productfile::ProductName::of("a#/b.json#/12");
  EXPECT_EQ(name.file, "a#/b.json");
  EXPECT_EQ(name.pointer, "/12");
  EXPECT_EQ(name.identifier(), "a#/b.json#/12");
  EXPECT_TRUE(productfile::isProduct("LIST.JSON#/0"));
  EXPECT_FALSE(productfile::isProduct("clear.txt"));
  EXPECT_FALSE(productfile::isProduct(".json"));
}

}  // namespace
}  // namespace orv::test
