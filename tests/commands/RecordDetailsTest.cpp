// Every field of a record in words, each with a value of its own.
#include <gtest/gtest.h>

#include "commands/RecordDetails.h"

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

std::shared_ptr<GlazingData> fullPane() {
  auto pane = std::make_shared<GlazingData>();
  GlazingData& p = *pane;
  p.id(17);
  p.filename("full.txt");
  p.productname("Full ®");
  p.supplier("Maker");
  p.group("Demo");
  p.NFRC_id(102);
  p.description("Described");
  p.Appearance("Grey");
  p.Acceptance("#");
  p.IGDBChecksum(-7);
  p.Hidden(true);
  p.Thickness(5.75F);
  p.Conductivity(1.25F);
  p.TfIR(0.125F);
  p.TbiR(0.25F);
  p.ef(0.84F);
  p.ef_source(kMaterialSource);
  p.eb_source(kSpectralDataSource);
  p.eb(0.5F);
  p.GlazingType(kCoated);
  p.material("Glass");
  p.CoatingName("Ag");
  p.CoatedSide(kBackSide);
  p.CoatingFilename("coat.txt");
  p.SubstrateFilename("sub.txt");
  p.FilmFilename("film.txt");
  for (const char* const layer : {"one.txt", "two.txt"}) {
    p.AddStructure(std::make_shared<GlazingStructure>());
    p.structure(p.StructureCount() - 1)->filename(layer);
  }
  p.structure(0)->Thickness(3.5F);
  p.structure(1)->Flipped(true);
  p.structure(1)->FileGlazingData(std::make_shared<GlazingData>());
  p.structure(1)->FileGlazingData()->productname("Layer");
  p.structure(1)->FileGlazingData()->supplier("Layer's maker");
  p.AddUse("facade");
  p.AddAvailability(std::make_shared<Availability>());
  p.Availability(1)->Region("EU");
  p.Availability(1)->AlternateProductName("Plein");
  p.ORV_Angle(60);
  p.ORV_Direction(2);
  p.ORV_Emissivity_front(0.75);
  p.ORV_Emissivity_back(0.625);
  p.ORV_CoatingClass("AB");
  p.ORV_Frozen(true);
  p.spectral_pane(true);
  p.film_outdoor_side(true);
  p.use_estimation(true);
  p.Precalc_Rfsol(0.11F);
  p.Precalc_RbSol(0.12F);
  p.Precalc_Tfsol(0.13F);
  p.Precalc_Tbsol(0.14F);
  p.Precalc_Rfvis(0.15F);
  p.Precalc_Rbvis(0.16F);
  p.Precalc_Tfvis(0.17F);
  p.Precalc_Tbvis(0.18F);
  p.Precalc_Rfuv(0.19F);
  p.Precalc_Rbuv(0.2F);
  p.Precalc_Tfuv(0.21F);
  p.Precalc_Tbuv(0.22F);
  p.Precalc_TfIR(0.23F);
  p.Precalc_ef(0.24F);
  p.Precalc_eb(0.25F);
  p.Precalc_TCIEX(26);
  p.Precalc_TCIEY(27);
  p.Precalc_TCIEZ(28);
  p.Precalc_RfCIEX(29);
  p.Precalc_RfCIEY(30);
  p.Precalc_RfCIEZ(31);
  p.Precalc_Tdw(0.32F);
  p.Precalc_TSPF(0.33F);
  p.Precalc_StandardName("EN 410");
  auto spectrum = std::make_shared<SpectralData>();
  spectrum->WavelengthUnit(kMicrons);
  spectrum->Allocate(1);
  spectrum->wl(0, 0.3F);
  spectrum->wl(1, 2.5F);
  p.WavelengthUnit(kMicrons);
  p.SpectralData(spectrum);
  auto substrate = std::make_shared<GlazingData>();
  substrate->filename("sub.txt");
  substrate->productname("Below");
  substrate->supplier("Its maker");
  substrate->GlazingType(kMonolithic);
  substrate->Thickness(4.5F);
  substrate->Conductivity(0.75F);
  p.SubstrateReference(substrate);
  return pane;
}

TEST(RecordDetails, OfAPane) {
  EXPECT_EQ(linesOf(commands::paneDetails(*fullPane())),
            "Pane: id = 17; name = full.txt; product name = Full ®; supplier = Maker; group = "
            "Demo; NFRC id = 102; description = Described; appearance = Grey; acceptance = #; "
            "file date = ; IGDB checksum = -7; IGDB checksum date = ; hidden = yes\n"
            "Thermal values: thickness = 5.75 mm; conductivity = 1.25 W/(m·K); infrared "
            "transmittance front = 0.125; infrared transmittance back = 0.25; emissivity front = "
            "0.84; source of emissivity front = Material; emissivity back = 0.5; source of "
            "emissivity back = Spectral Data\n"
            "Composition: type = Coated; material = Glass; coating name = Ag; coating id = -1; "
            "coated side = Back; coating file = coat.txt; substrate file = sub.txt; laminate file "
            "= ; laminate material = ; film file = film.txt\n"
            "Layers: layer 1 file = one.txt; layer 1 thickness = 3.5 mm; layer 1 flipped = no; "
            "layer 2 file = two.txt; layer 2 thickness = 0 mm; layer 2 flipped = yes; layer 2 "
            "product name = Layer; layer 2 supplier = Layer's maker\n"
            "Substrate: substrate name = sub.txt; substrate product name = Below; substrate "
            "supplier = Its maker; substrate type = Monolithic; substrate thickness = 4.5 mm; "
            "substrate conductivity = 0.75 W/(m·K)\n"
            "Uses and availability: use = facade; availability = EU: Plein\n"
            "ORV database: angle of incidence = 60 °; direction = 2; database emissivity front = "
            "0.75; database emissivity back = 0.625; coating class = AB; frozen = yes; single "
            "layer = no; spectral pane = yes; with and without film = no; film on outdoor side = "
            "yes; data at 0, 30 and 60 degrees = no; use estimation = yes\n"
            "Integrated values: solar reflectance front = 0.11; solar reflectance back = 0.12; "
            "solar transmittance front = 0.13; solar transmittance back = 0.14; visible "
            "reflectance front = 0.15; visible reflectance back = 0.16; visible transmittance "
            "front = 0.17; visible transmittance back = 0.18; ultraviolet reflectance front = "
            "0.19; ultraviolet reflectance back = 0.2; ultraviolet transmittance front = 0.21; "
            "ultraviolet transmittance back = 0.22; calculated infrared transmittance = 0.23; "
            "calculated emissivity front = 0.24; calculated emissivity back = 0.25; CIE X of "
            "transmission = 26; CIE Y of transmission = 27; CIE Z of transmission = 28; CIE X of "
            "front reflection = 29; CIE Y of front reflection = 30; CIE Z of front reflection = "
            "31; damage-weighted transmittance = 0.32; skin protection transmittance = 0.33; "
            "standard = EN 410\n"
            "Spectrum: spectral points = 2; first wavelength = 300 nm; last wavelength = 2500 nm; "
            "spectrum of the substrate = no");
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

TEST(RecordDetails, OfAFrame) {
  FrameDataClass frame;
  frame.id(3);
  frame.name("frame");
  frame.productname("Product");
  frame.supplier("Maker");
  frame.group("Tarven frames");
  frame.frametype("Wood");
  frame.u_value(1.25);
  frame.width(0.07);
  frame.picture({1, 2, 3});
  frame.Info("info");
  EXPECT_EQ(linesOf(commands::frameDetails(frame)),
            "Frame: id = 3; name = frame; product name = Product; supplier = Maker; group = "
            "Tarven frames; frame type = Wood; U-value = 1.25 W/(m²·K); width = 0.07 m; picture = "
            "3 bytes; info = info");
  frame.pictureText("C:\\picture.bmp");
  EXPECT_NE(linesOf(commands::frameDetails(frame)).find("picture = C:\\picture.bmp;"),
            std::string::npos);
}

TEST(RecordDetails, OfAShading) {
  ShadingDataClass shading;
  shading.id(9);
  shading.name("blind");
  shading.group("Demo");
  shading.supplier("Maker");
  shading.typeID(2);
  shading.slat_length(25);
  shading.slat_distance(22);
  shading.conduction(160);
  shading.measured(true);
  shading.Sol_refl_slat_surf_outd_BB(0.625);
  shading.integrated({ShadingIntegratedData{30, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}});
  shading.spectrum({ShadingSpectralPoint{300, 0, 0, 0.01, 0.02, 0, 0, 0.05, 0.06},
                    ShadingSpectralPoint{2600, 0, 0, 0, 0, 0, 0, 0, 0}});
  EXPECT_EQ(linesOf(commands::shadingDetails(shading)),
            "Shading: id = 9; name = blind; group = Demo; type = 2; product name = ; "
            "thickness = 0 mm; appearance = ; conductivity = 160 W/(m·K); emissivity infrared "
            "outdoor = 0; emissivity infrared indoor = 0; transmittance infrared outdoor = 0; "
            "transmittance infrared indoor = 0; measured = yes; single layer = no; spectral = no; "
            "permeability = 0; horizontal = no; vertical = no; homogeneous = no; 3D = no; "
            "supplier = Maker; Supplier data id = 0; Info = ; frozen = no; reference = \n"
            "Slats: window slat distance = 0 mm; slat curvature = 0 mm; slat length = 25 mm; slat "
            "distance = 22 mm; angle = 0 °\n"
            "Surface of the slats: emissivity outdoor = 0; emissivity indoor = 0; transmittance = "
            "0; solar reflectance outdoor = 0; solar reflectance indoor = 0; solar transmittance "
            "= 0; visible reflectance outdoor = 0; visible reflectance indoor = 0; visible "
            "transmittance = 0; ultraviolet reflectance outdoor = 0; ultraviolet reflectance "
            "indoor = 0; ultraviolet transmittance = 0\n"
            "Surface of the slats, beam: solar reflectance outdoor = 0.625; solar reflectance "
            "indoor = 0; solar transmittance = 0; visible reflectance outdoor = 0; visible "
            "reflectance indoor = 0; visible transmittance = 0; ultraviolet reflectance outdoor = "
            "0; ultraviolet reflectance indoor = 0; ultraviolet transmittance = 0\n"
            "Integrated values: reflection_solar_outdoor at 30° = 1; reflection_solar_indoor at "
            "30° = 2; transmission_solar_outdoor at 30° = 3; transmission_solar_indoor at 30° = "
            "4; reflection_visual_outdoor at 30° = 5; reflection_visual_indoor at 30° = 6; "
            "transmission_visual_outdoor at 30° = 7; transmission_visual_indoor at 30° = 8; "
            "reflection_UV_outdoor at 30° = 9; reflection_UV_indoor at 30° = 10; "
            "transmission_UV_outdoor at 30° = 11; transmission_UV_indoor at 30° = 12\n"
            "Spectrum: spectral points = 2");
}

}  // namespace
}  // namespace orv::test
