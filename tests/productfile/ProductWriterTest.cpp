// Reading a product that was written gives back the record.
#include <gtest/gtest.h>

#include "productfile/ProductFile.h"
#include "productfile/ProductWriter.h"
#include "support/FullRecords.h"
#include "support/ReadFile.h"

namespace orv::test {
namespace {

std::shared_ptr<GlazingData> readBack(const std::vector<productfile::OrderedJson>& products,
                                      const std::string& pointer = "") {
  const Date changed(std::chrono::hours(1));  // of the file, which is not that of a record
  return productfile::ProductFile(productfile::formatProducts(products), "back.json", changed)
      .product(pointer)
      .pane;
}

TEST(ProductWriterTest, EveryFieldReadsBack) {
  const auto pane = fullPane();
  EXPECT_EQ(whole(*readBack({productfile::productOf(*pane)})), whole(*pane));
  // Databases have all kinds of numbers, and -1 for values that are not there.
  pane->Precalc_Rfsol(-1), pane->Precalc_Tfvis(83.4F);
  EXPECT_EQ(whole(*readBack({productfile::productOf(*pane)})), whole(*pane));

  // What a database gives: the emissivities in its own fields, 0 for what it does not have.
  GlazingData fromDatabase;
  fromDatabase.filename("name");
  fromDatabase.id(3);
  fromDatabase.ORV_Emissivity_front(0.8399999737739563);
  fromDatabase.ORV_Emissivity_back(0.1);
  fromDatabase.Precalc_Tfsol(0.5F);
  fromDatabase.spectral_pane(true);
  fromDatabase.SpectralData(spectrumOfTwo(0.3F));
  const std::vector products = {productfile::productOf(fromDatabase),
                                productfile::productOf(GlazingData())};
  EXPECT_EQ(whole(*readBack(products, "/0")), whole(fromDatabase));
  // Without anything, a spectrum among it.
  EXPECT_EQ(whole(*readBack(products, "/1")), whole(GlazingData()));
}

/// What is not known is null, 0 where published values are; without our own keys the emissivities
/// come from the field of databases, if it has any.
TEST(ProductWriterTest, WritesTheExactText) {
  GlazingData pane;
  pane.filename("Fä");
  pane.spectral_pane(true);
  pane.ORV_Emissivity_front(0.125);
  pane.Precalc_Tfvis(0.25F);
  pane.SpectralData(spectrumOf({{0.5F, 0.1F, 0.2F, 0.3F, 0.4F}}));
  const auto product = productfile::productOf(pane);
  std::string expected = readFile(ORV_SOURCE_DIR "/tests/productfile/written.json");
  std::erase(expected, '\n');
  EXPECT_EQ(product.dump(), expected);
  const std::string text = productfile::formatProducts({product});
  EXPECT_TRUE(text.starts_with("{\n \"type\"") && text.ends_with("\n}\n")) << text;
  EXPECT_NE(text.find("Fä"), std::string::npos);
  const auto nothing = productfile::productOf(GlazingData());
  EXPECT_EQ(nothing["integrated_spectral_averages_summaries"].dump(), "[]");
}

/// Other programs read the form's own keys only.
TEST(ProductWriterTest, WhatTheFormHasAPlaceForStandsThere) {
  const auto pane = fullPane();
  pane->SubstrateReference(nullptr);
  auto product = productfile::productOf(*pane);
  product.erase("orv_record");
  const auto back = readBack({product});
  EXPECT_EQ(back->filename(), pane->filename());
  EXPECT_EQ(back->supplier(), "maker");
  EXPECT_EQ(back->Thickness(), pane->ConvertedThickness(kSI));
  EXPECT_EQ(back->eb(), pane->eb());
  EXPECT_EQ(back->GlazingType(), kAppliedFilm);
  EXPECT_EQ(back->CoatedSide(), kBothSides);
  EXPECT_EQ(back->ORV_Angle(), 37);
  EXPECT_EQ(back->Precalc_Tbvis(), pane->Precalc_Tbvis());
  EXPECT_EQ(back->Precalc_eb(), pane->Precalc_eb());
  EXPECT_EQ(back->Precalc_StandardName(), "standard");
  EXPECT_EQ(back->SpectralData()->wl(0), 0.3025F);
  EXPECT_EQ(product["physical_properties"]["optical_properties"]["optical_data"]["angle_blocks"][0]
                   ["wavelength_data"][0]["w"],
            "0.3025");
}

}  // namespace
}  // namespace orv::test
