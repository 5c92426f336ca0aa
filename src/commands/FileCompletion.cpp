#include "commands/FileCompletion.h"

#include <fmt/format.h>

#include <utility>

#include "model/Codes.h"

namespace orv::commands {

namespace {

using Properties = std::vector<std::pair<std::string, std::string>>;

std::string textOf(std::span<const CodeName> names, std::int32_t code) {
  return std::string(nameOf(names, code).value_or(""));
}

/// The source of an emissivity that is not there is not written.
std::string sourceOf(float emissivity, std::int32_t source) {
  return emissivity < 0 ? std::string() : textOf(kEmittanceSourceNames, source);
}

/// The properties that a completion may change, as texts.
Properties propertiesOf(const GlazingData& pane) {
  return {{"supplier", pane.supplier()},
          {"emissivity front", fmt::format("{}", pane.ef())},
          {"source of emissivity front", sourceOf(pane.ef(), pane.ef_source())},
          {"emissivity back", fmt::format("{}", pane.eb())},
          {"source of emissivity back", sourceOf(pane.eb(), pane.eb_source())},
          {"coating name", pane.CoatingName()},
          {"coated side", textOf(kCoatedSideNames, pane.CoatedSide())},
          {"film file", pane.FilmFilename()},
          {"substrate file", pane.SubstrateFilename()},
          {"material", pane.material()}};
}

/// Databases keep emissivities without telling where they come from; to who reads the file, they
/// come from the file. Where both are 0, as no surface has them, they are not known; the sources
/// are then set for the rules of panes only.
void completeEmissivities(GlazingData& pane) {
  if (pane.ORV_Emissivity_front() != 0 || pane.ORV_Emissivity_back() != 0) {
    if (pane.ef() < 0) pane.ef(static_cast<float>(pane.ORV_Emissivity_front()));
    if (pane.eb() < 0) pane.eb(static_cast<float>(pane.ORV_Emissivity_back()));
  }
  if (pane.ef_source() == kUnknownSource) pane.ef_source(kTextFileSource);
  if (pane.eb_source() == kUnknownSource) pane.eb_source(kTextFileSource);
}

}  // namespace

std::vector<std::string> completeForFile(GlazingData& pane) {
  const Properties before = propertiesOf(pane);
  completeEmissivities(pane);
  pane.EnforceSemantics();
  const Properties after = propertiesOf(pane);
  std::vector<std::string> filled;
  for (std::size_t i = 0; i < before.size(); ++i) {
    if (before[i] != after[i]) filled.push_back(after[i].first + " = " + after[i].second);
  }
  if (pane.GlazingType() == kUnknownType) filled.emplace_back("type = Unknown");
  return filled;
}

}  // namespace orv::commands
