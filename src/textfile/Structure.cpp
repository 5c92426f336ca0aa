#include "textfile/Structure.h"

#include <fmt/format.h>

#include "errors/Error.h"
#include "model/Text.h"
#include "textfile/Number.h"

namespace orv::textfile {

namespace {

constexpr char kLayerSeparator = '+';
constexpr char kFieldSeparator = ';';

/// What is told of a part of the expression: its place in the file, when there is one, the part,
/// and what it should be.
std::string told(const std::optional<Place>& place, std::string_view found,
                 std::string_view remedy) {
  return place ? place->told(found, remedy) : fmt::format("'{}'. {}", found, remedy);
}

/// Whether the text is three fields parted by ";", each with at least one character.
bool hasThreeFields(std::string_view layer) {
  const auto first = layer.find(kFieldSeparator, 1);
  const auto last = layer.empty() ? std::string_view::npos
                                  : layer.substr(0, layer.size() - 1).rfind(kFieldSeparator);
  return first != std::string_view::npos && last != std::string_view::npos && last >= first + 2;
}

float thicknessOf(std::string_view field, const std::optional<Place>& place) {
  const auto thickness = parseSingle(trimmed(field));
  if (!thickness) {
    throw Error(kTypeMismatch, fmt::format("Layer thickness '{}' is not a number", field), "",
                place ? place->text() : std::string());
  }
  return *thickness;
}

bool flippedOf(std::string_view field, const std::optional<Place>& place) {
  const std::string word = lowerCase(field);
  if (word.find("true") != std::string::npos) {
    return true;
  }
  if (word.find("false") != std::string::npos) {
    return false;
  }
  raiseExplained(kInvalidCall, "Bad 3rd argument in layer",
                 told(place, trimmed(field), "It is True for a layer turned round, else False."));
}

std::shared_ptr<GlazingStructure> parseLayer(std::string_view layer,
                                             const std::optional<Place>& place) {
  if (!hasThreeFields(layer)) {
    raiseExplained(kInvalidCall, "Mal-formed structure",
                   told(place, layer, "A layer is file;thickness;True or False."));
  }
  const auto first = layer.find(kFieldSeparator);
  const auto last = layer.rfind(kFieldSeparator);
  auto structure = std::make_shared<GlazingStructure>();
  structure->filename(std::string(trimmed(layer.substr(0, first))));
  structure->Thickness(thicknessOf(layer.substr(first + 1, last - first - 1), place));
  structure->Flipped(flippedOf(layer.substr(last + 1), place));
  return structure;
}

}  // namespace

void parseStructure(std::string_view expression, const std::optional<Place>& place,
                    GlazingData& pane) {
  pane.ClearStructures();
  while (!expression.empty()) {
    const auto end = expression.find(kLayerSeparator);
    pane.AddStructure(parseLayer(trimmed(expression.substr(0, end)), place));
    expression = end == std::string_view::npos ? std::string_view() : expression.substr(end + 1);
  }
}

std::string formatStructure(const GlazingData& pane) {
  std::string expression;
  for (std::int32_t i = 0; i < pane.StructureCount(); ++i) {
    const GlazingStructure& layer = *pane.structure(i);
    if (layer.filename().find_first_of("+;") != std::string::npos) {
      throw Error(kInvalidCall,
                  fmt::format("A layer's file name cannot hold '+' or ';': '{}'. Rename the file",
                              layer.filename()));
    }
    expression += fmt::format("{}{};{};{}", i == 0 ? "" : "+", layer.filename(),
                              formatNumber(layer.Thickness()), layer.Flipped() ? "True" : "False");
  }
  return expression;
}

}  // namespace orv::textfile
