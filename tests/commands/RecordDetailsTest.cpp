// Every field of a pane in words, each with a value of its own. Those of frames and shadings are in
// what `orv show` writes.
#include <gtest/gtest.h>

#include "commands/RecordDetails.h"
#include "support/FullRecords.h"

namespace orv::test {
namespace {

/// A line a section, "section: name = value unit; ...".
std::string linesOf(const std::vector<commands::DetailField>& fields) {
  std::string text, section;
  for (const commands::DetailField& field : fields) {
    const bool isNew = field.section != section;
    text += isNew ? (text.empty() ? "" : "\n") + (section = field.section) + ": " : "; ";
    text += field.name + " = " + field.value + (field.unit.empty() ? "" : " " + field.unit);
  }
  return text;
}

TEST(RecordDetails, OfAPaneAndOfAFrameWithATextForAPicture) {
  const auto pane = fullPane();
  const auto layer = std::make_shared<GlazingData>();
  layer->productname("Layer");
  layer->supplier("Layer's maker");
  pane->structure(0)->FileGlazingData(layer);
  const auto substrate = pane->SubstrateReference();
  substrate->filename("sub.txt");
  substrate->productname("Below");
  substrate->supplier("Its maker");
  substrate->GlazingType(kMonolithic);
  substrate->Thickness(4.5F);
  substrate->Conductivity(0.75F);
  EXPECT_EQ(
      linesOf(commands::paneDetails(*pane)),
      "Pane: id = 13; name = file \"ä\".dat; product name = product; supplier = maker; group = "
      "group; NFRC id = 11; description = {text}\n"
      "of two; appearance = grey; acceptance = #; file date = 1945-05-12 01:00:00; IGDB checksum = "
      "-12; IGDB checksum date = 2024-10-04 01:00:00; hidden = yes\n"
      "Thermal values: thickness = 0.0755 in; conductivity = 0.08849999 Btu/(h·ft·°F); infrared "
      "transmittance front = 0.10149999; infrared transmittance back = 0.114499986; emissivity "
      "front = 0.12749998; source of emissivity front = Spectral Data; emissivity back = "
      "0.14049998; source of emissivity back = Material\n"
      "Composition: type = Applied Film; material = material; coating name = coating; coating id = "
      "14; coated side = Both; coating file = c.txt; substrate file = s.txt; laminate file = "
      "l.txt; laminate material = PVB; film file = f.txt\n"
      "Layers: layer 1 file = layer.txt; layer 1 thickness = 0.15349998 in; layer 1 flipped = yes; "
      "layer 1 product name = Layer; layer 1 supplier = Layer's maker\n"
      "Substrate: substrate name = sub.txt; substrate product name = Below; substrate supplier = "
      "Its maker; substrate type = Monolithic; substrate thickness = 4.5 mm; substrate "
      "conductivity = 0.75 W/(m·K)\n"
      "Uses and availability: use = one; use = two; availability = region: other\n"
      "ORV database: angle of incidence = 37 °; direction = 5; database emissivity front = "
      "0.9876543210987; database emissivity back = 0.123456789012345; coating class = AB; frozen = "
      "yes; single layer = yes; spectral pane = yes; with and without film = yes; film on outdoor "
      "side = yes; data at 0, 30 and 60 degrees = yes; use estimation = no\n"
      "Integrated values: solar reflectance front = 0.19249997; solar reflectance back = "
      "0.20549996; solar transmittance front = 0.16649997; solar transmittance back = 0.17949997; "
      "visible reflectance front = 0.24449995; visible reflectance back = 0.25749996; visible "
      "transmittance front = 0.21849996; visible transmittance back = 0.23149996; ultraviolet "
      "reflectance front = 0.4265001; ultraviolet reflectance back = 0.43950012; ultraviolet "
      "transmittance front = 0.4005001; ultraviolet transmittance back = 0.4135001; calculated "
      "infrared transmittance = 0.27049997; calculated emissivity front = 0.2835; calculated "
      "emissivity back = 0.2965; CIE X of transmission = 0.3095; CIE Y of transmission = "
      "0.32250002; CIE Z of transmission = 0.33550003; CIE X of front reflection = 0.34850004; CIE "
      "Y of front reflection = 0.36150005; CIE Z of front reflection = 0.37450007; damage-weighted "
      "transmittance = 0.38750008; skin protection transmittance = 0.45250013; standard = "
      "standard; calculated = 2011-01-26 01:00:00\n"
      "Spectrum: spectral points = 2; first wavelength = 302.5 nm; last wavelength = 302.83334 nm; "
      "spectrum of the substrate = yes");
  FrameDataClass frame;
  frame.pictureText("oak.bmp");
  EXPECT_NE(linesOf(commands::frameDetails(frame)).find("; picture = oak.bmp;"), std::string::npos);
  GlazingData bare;
  bare.unit(kIP);
  bare.Thickness(0.25F);
  bare.GlazingType(kAppliedFilm);
  bare.Precalc_Rfsol(-1);
  const std::string lines = linesOf(commands::paneDetails(bare));
  for (const char* part : {"thickness = 0.25 in;", "type = Applied Film;", "coated side = not set;",
                           "emissivity front = not set;",
                           "integrated values = none at this angle\n", "spectral points = 0"}) {
    EXPECT_NE(lines.find(part), std::string::npos) << part;
  }
}

}  // namespace
}  // namespace orv::test
