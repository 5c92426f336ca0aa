#include "commands/ExportLosses.h"

#include <algorithm>

#include "model/IntegratedColumns.h"
#include "model/Text.h"

namespace orv::commands {

namespace {

std::string withoutBraces(std::string text) {
  std::ranges::replace(text, '{', '(');
  std::ranges::replace(text, '}', ')');
  return text;
}

}  // namespace

std::vector<std::string> exportLossesOf(GlazingData& pane) {
  std::vector<std::string> losses;
  const auto add = [&](const char* name, bool isThere) {
    if (isThere) losses.emplace_back(name);
  };
  const bool hasGroup =
      !pane.group().empty() && pane.group() != kUnknown && pane.group() != kNotApplicable;
  add("integrated values", !lacksIntegratedValues(pane));
  add("curve of the substrate", pane.HasSubstrate() && pane.SubstrateReference()->SpectralData());
  add("laminate", !pane.LaminateFilename().empty() || !pane.LaminateMaterial().empty());
  add("date of the IGDB checksum", pane.IGDBChecksumDate().has_value());
  add("group", hasGroup);
  add("braces of the description", withoutBraces(pane.description()) != pane.description());
  pane.description(withoutBraces(pane.description()));
  return losses;
}

}  // namespace orv::commands
