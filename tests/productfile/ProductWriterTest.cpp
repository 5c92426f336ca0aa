// Reading a product that was written gives back the record.
#include <gtest/gtest.h>

#include "productfile/ProductFile.h"
#include "productfile/ProductWriter.h"

namespace orv::test {
namespace {

std::string whole(const GlazingData& pane);

std::string listOf(const SpectralData& spectrum) {
  std::string text = fmt::format("unit {}", spectrum.WavelengthUnit());
  for (std::int32_t i = 0; i < spectrum.count(); ++i) {
    text += fmt::format("; {} {} {} {} {}", spectrum.wl(i), spectrum.Tf(i), spectrum.Tb(i),
                        spectrum.Rf(i), spectrum.Rb(i));
  }
  return text;
}

std::string dateText(const OptionalDate& date) {
  return date ? std::to_string(date->time_since_epoch().count()) : "none";
}

/// Every property, a line each.
std::string whole(const GlazingData& p) {
  std::string text = fmt::format(
      "{}\n{}\n{}\n{}\n{}\n{}\n{}\n{}\n{}\n{}\n{}\n{}\n{}\n", p.filename(), dateText(p.FileDate()),
      p.NFRC_id(), p.productname(), p.supplier(), p.group(), p.description(), p.Appearance(),
      p.Acceptance(), p.IGDBChecksum(), dateText(p.IGDBChecksumDate()), p.Hidden(), p.id());
  text += fmt::format("{}\n{}\n{}\n{}\n{}\n{}\n{}\n{}\n{}\n{}\n", p.unit(), p.WavelengthUnit(),
                      p.Thickness(), p.Conductivity(), p.TfIR(), p.TbiR(), p.ef(), p.ef_source(),
                      p.eb(), p.eb_source());
  text += fmt::format("{}\n{}\n{}\n{}\n{}\n{}\n{}\n{}\n{}\n{}\n", p.GlazingType(), p.material(),
                      p.CoatingName(), p.CoatingID(), p.CoatedSide(), p.CoatingFilename(),
                      p.SubstrateFilename(), p.LaminateFilename(), p.FilmFilename(),
                      p.LaminateMaterial());
  for (std::int32_t i = 1; i <= p.UsesCount(); ++i) text += p.uses(i) + "\n";
  for (std::int32_t i = 1; i <= p.AvailabilityCount(); ++i) {
    const auto& entry = *p.Availability(i);
    text += entry.Region() + " " + entry.AlternateProductName() + "\n";
  }
  for (std::int32_t i = 0; i < p.StructureCount(); ++i) {
    const auto& layer = *p.structure(i);
    text += fmt::format("{} {} {}\n", layer.filename(), layer.Thickness(), layer.Flipped());
  }
  text += fmt::format(
      "{}\n{}\n{} {} {} {}\n{} {} {} {}\n{} {} {}\n{} {} {}\n{} {} {}\n{} {} {} {} {} {}\n",
      p.Precalc_StandardName(), dateText(p.Precalc_Time()), p.Precalc_Tfsol(), p.Precalc_Tbsol(),
      p.Precalc_Rfsol(), p.Precalc_RbSol(), p.Precalc_Tfvis(), p.Precalc_Tbvis(), p.Precalc_Rfvis(),
      p.Precalc_Rbvis(), p.Precalc_TfIR(), p.Precalc_ef(), p.Precalc_eb(), p.Precalc_TCIEX(),
      p.Precalc_TCIEY(), p.Precalc_TCIEZ(), p.Precalc_RfCIEX(), p.Precalc_RfCIEY(),
      p.Precalc_RfCIEZ(), p.Precalc_Tdw(), p.Precalc_Tfuv(), p.Precalc_Tbuv(), p.Precalc_Rfuv(),
      p.Precalc_Rbuv(), p.Precalc_TSPF());
  text +=
      fmt::format("{}\n{}\n{}\n{}\n{}\n{}{}{}{}{}{}{}\n", p.ORV_Emissivity_back(),
                  p.ORV_Emissivity_front(), p.ORV_CoatingClass(), p.ORV_Angle(), p.ORV_Direction(),
                  p.ORV_Frozen(), p.with_and_without_film(), p.film_outdoor_side(),
                  p.single_layer(), p.spectral_pane(), p.Use_0_30_60(), p.use_estimation());
  if (p.SpectralData()) text += listOf(*p.SpectralData());
  if (p.HasSubstrate()) text += "\nsubstrate:\n" + whole(*p.SubstrateReference());
  return text;
}

std::shared_ptr<SpectralData> spectrum(float first) {
  auto spectrum = std::make_shared<SpectralData>();
  spectrum->Allocate(1);
  for (std::int32_t i = 0; i < 2; ++i) {
    const auto shift = static_cast<float>(i) / 3;
    spectrum->wl(i, first + shift);
    spectrum->Tf(i, 0.1F + shift);
    spectrum->Tb(i, 0.2F + shift);
    spectrum->Rf(i, 0.3F + shift);
    spectrum->Rb(i, 1e-8F + shift);
  }
  return spectrum;
}

/// Another value in every field that has more than two.
std::shared_ptr<GlazingData> fullPane() {
  auto pane = std::make_shared<GlazingData>();
  GlazingData& p = *pane;
  const auto date = [](int days) { return Date(std::chrono::hours(24 * days + 1)); };
  float f = 0.0625F;
  const auto next = [&] { return f += 0.013F; };
  p.filename("file \"ä\".dat"), p.FileDate(date(-9000)), p.NFRC_id(11), p.productname("product");
  p.supplier("maker"), p.group("group"), p.description("{text}\nof two"), p.Appearance("grey");
  p.Acceptance("#"), p.IGDBChecksum(-12), p.IGDBChecksumDate(date(20000)), p.Hidden(true);
  p.id(13), p.unit(kIP), p.WavelengthUnit(kNanometers), p.Thickness(next());
  p.Conductivity(next()), p.TfIR(next()), p.TbiR(next()), p.ef(next()), p.eb(next());
  p.ef_source(kSpectralDataSource), p.eb_source(kMaterialSource), p.GlazingType(kAppliedFilm);
  p.material("material"), p.CoatingName("coating"), p.CoatingID(14), p.CoatedSide(kBothSides);
  p.CoatingFilename("c.txt"), p.SubstrateFilename("s.txt"), p.LaminateFilename("l.txt");
  p.FilmFilename("f.txt"), p.LaminateMaterial("PVB"), p.AddUse("one"), p.AddUse("two");
  const auto availability = std::make_shared<Availability>();
  availability->Region("region"), availability->AlternateProductName("other");
  p.AddAvailability(availability);
  const auto layer = std::make_shared<GlazingStructure>();
  layer->filename("layer.txt"), layer->Thickness(next()), layer->Flipped(true);
  p.AddStructure(layer);
  p.Precalc_StandardName("standard"), p.Precalc_Time(date(15000)), p.Precalc_Tfsol(next());
  p.Precalc_Tbsol(next()), p.Precalc_Rfsol(next()), p.Precalc_RbSol(next());
  p.Precalc_Tfvis(next()), p.Precalc_Tbvis(next()), p.Precalc_Rfvis(next());
  p.Precalc_Rbvis(next()), p.Precalc_TfIR(next()), p.Precalc_ef(next()), p.Precalc_eb(next());
  p.Precalc_TCIEX(next()), p.Precalc_TCIEY(next()), p.Precalc_TCIEZ(next());
  p.Precalc_RfCIEX(next()), p.Precalc_RfCIEY(next()), p.Precalc_RfCIEZ(next());
  p.Precalc_Tdw(next()), p.Precalc_Tfuv(next()), p.Precalc_Tbuv(next()), p.Precalc_Rfuv(next());
  p.Precalc_Rbuv(next()), p.Precalc_TSPF(next()), p.ORV_Emissivity_back(0.123456789012345);
  p.ORV_Emissivity_front(0.9876543210987), p.ORV_CoatingClass("AB"), p.ORV_Angle(37);
  p.ORV_Direction(5), p.ORV_Frozen(true), p.with_and_without_film(true);
  p.film_outdoor_side(true), p.single_layer(true), p.Use_0_30_60(true), p.use_estimation(false);
  p.spectral_pane(true);
  p.SpectralData(spectrum(302.5F));
  const auto substrate = std::make_shared<GlazingData>();
  substrate->WavelengthUnit(kNanometers);
  substrate->SpectralData(spectrum(400));
  p.SubstrateReference(substrate);
  return pane;
}

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

  // What a database gives: the emissivities in its own fields, 0 for what it does not have.
  GlazingData fromDatabase;
  fromDatabase.filename("name");
  fromDatabase.id(3);
  fromDatabase.ORV_Emissivity_front(0.8399999737739563);
  fromDatabase.ORV_Emissivity_back(0.1);
  fromDatabase.Precalc_Tfsol(0.5F);
  fromDatabase.spectral_pane(true);
  fromDatabase.SpectralData(spectrum(0.3F));
  const std::vector products = {productfile::productOf(fromDatabase),
                                productfile::productOf(GlazingData())};
  EXPECT_EQ(whole(*readBack(products, "/0")), whole(fromDatabase));
  // Without anything, a spectrum among it.
  EXPECT_EQ(whole(*readBack(products, "/1")), whole(GlazingData()));
}

/// Databases have all kinds of numbers, and -1 for values that are not there.
TEST(ProductWriterTest, IntegratedValuesThatAreNoFractionsReadBack) {
  const auto pane = fullPane();
  pane->Precalc_Rfsol(-1);
  pane->Precalc_Tfvis(83.4F);
  EXPECT_EQ(whole(*readBack({productfile::productOf(*pane)})), whole(*pane));
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
