#include "commands/CopyLosses.h"

#include <algorithm>

#include "model/IntegratedColumns.h"
#include "model/Text.h"

namespace orv::commands {

namespace {

bool isKnown(const std::string& text) {
  return !text.empty() && text != kUnknown && text != kNotApplicable;
}

/// Gathers the names of what is there.
class Losses {
 public:
  void add(const char* name, bool isThere) {
    if (isThere) names_.emplace_back(name);
  }
  void addText(const char* name, const std::string& text) { add(name, isKnown(text)); }
  std::vector<std::string> take() { return std::move(names_); }

 private:
  std::vector<std::string> names_;
};

/// Panes of the IGDB have their type in their description.
bool tellsItsType(const GlazingData& pane) {
  const auto word = nameOf(kGlazingTypeNames, pane.GlazingType());
  return word && equalIgnoringCase(pane.description().substr(0, word->size()), *word);
}

std::string withoutBraces(std::string text) {
  std::ranges::replace(text, '{', '(');
  std::ranges::replace(text, '}', ')');
  return text;
}

}  // namespace

std::vector<std::string> lossesOf(const GlazingData& pane) {
  Losses losses;
  losses.add("appearance", !pane.Appearance().empty() && !pane.description().empty());
  losses.add("type", pane.GlazingType() != kUnknownType && !tellsItsType(pane));
  losses.addText("material", pane.material());
  losses.addText("coating name", pane.CoatingName());
  losses.add("coated side", pane.CoatedSide() != kSideNotSet && pane.CoatedSide() != kUnknownSide);
  losses.addText("coating file", pane.CoatingFilename());
  losses.addText("substrate file", pane.SubstrateFilename());
  losses.addText("film file", pane.FilmFilename());
  losses.add("layers", pane.StructureCount() > 0);
  losses.add("NFRC id", pane.NFRC_id() > 0);
  losses.add("IGDB checksum", pane.IGDBChecksum() != 0);
  losses.add("sources of the emissivities",
             pane.ef_source() != kUnknownSource && pane.ef_source() != kTextFileSource);
  losses.add("uses", pane.UsesCount() > 0);
  losses.add("availability", pane.AvailabilityCount() > 0);
  return losses.take();
}

std::vector<std::string> lossesOf(const FrameDataClass& frame) {
  Losses losses;
  losses.addText("product name", frame.productname());
  return losses.take();
}

std::vector<std::string> lossesOf(const ShadingDataClass& shading) {
  Losses losses;
  losses.addText("material", shading.material());
  losses.add("coated side",
             shading.CoatedSide() != kSideNotSet && shading.CoatedSide() != kUnknownSide);
  losses.addText("position", shading.position());
  return losses.take();
}

std::vector<std::string> exportLossesOf(GlazingData& pane) {
  Losses losses;
  losses.add("integrated values", hasIntegratedData(pane) && !lacksIntegratedValues(pane));
  losses.add("curve of the substrate",
             pane.HasSubstrate() && pane.SubstrateReference()->SpectralData());
  losses.add("laminate", !pane.LaminateFilename().empty() || !pane.LaminateMaterial().empty());
  losses.add("date of the IGDB checksum", pane.IGDBChecksumDate().has_value());
  losses.add("group", isKnown(pane.group()));
  losses.add("braces of the description", withoutBraces(pane.description()) != pane.description());
  pane.description(withoutBraces(pane.description()));
  return losses.take();
}

}  // namespace orv::commands
