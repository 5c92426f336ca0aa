#include "textfile/ShadingWriter.h"

#include <fmt/format.h>

#include <algorithm>

#include "errors/Error.h"
#include "model/IntegratedColumns.h"
#include "textfile/HeaderField.h"
#include "textfile/Number.h"
#include "textfile/PaneKeys.h"
#include "textfile/ShadingKeys.h"

namespace orv::textfile {

namespace {

/// The members that the columns name, in one line.
template <class Row, class Columns>
std::string joined(const Row& row, const Columns& columns, std::string_view separator) {
  std::vector<std::string> values;
  for (const auto& column : columns) {
    values.push_back(formatNumber(row.*column.member));
  }
  return fmt::format("{}", fmt::join(values, separator));
}

/// Nothing for a shading of no known type, which the key cannot say.
std::string productTypeLine(const ShadingDataClass& shading) {
  const std::int32_t type = shading.typeID();
  if (type == 0) {
    return "";
  }
  if (type < kFirstProductType || type > kLastProductType) {
    throw Error(kInvalidCall, fmt::format("Product Type ({}) not recognized", type));
  }
  return headerField(kProductTypeKey, fmt::format("{}", type));
}

std::string coatedSideLine(const ShadingDataClass& shading) {
  if (shading.CoatedSide() == kSideNotSet) {
    return "";
  }
  const auto side = nameOf(kCoatedSideNames, shading.CoatedSide());
  if (!side) {
    throw Error(kInvalidCall, "Unknown coated_side type");
  }
  return headerField(kCoatedSideKey, *side);
}

std::string orientationLine(const ShadingDataClass& shading) {
  const auto* const orientation =
      std::ranges::find_if(kShadingOrientations, [&shading](const ShadingOrientation& known) {
        return known.horizontal == shading.horizontal() && known.vertical == shading.vertical();
      });
  return headerField(kOrientationKey, orientation->text);
}

template <class Keys>
std::string numberLines(const ShadingDataClass& shading, const Keys& keys) {
  std::string text;
  for (const ShadingNumberKey& number : keys) {
    text += headerField(number.key, formatNumber((shading.*number.property)()));
  }
  return text;
}

std::string textLines(const ShadingDataClass& shading) {
  std::string text;
  for (const ShadingTextKey& key : kShadingTextKeys) {
    text += headerField(key.key, (shading.*key.property)());
  }
  return text;
}

std::string flagLines(const ShadingDataClass& shading) {
  std::string text;
  for (const ShadingFlagKey& flag : kShadingFlagKeys) {
    text += headerField(flag.key, (shading.*flag.property)() ? "True" : "False");
  }
  return text;
}

std::string integratedLines(const ShadingDataClass& shading) {
  std::string text;
  for (const ShadingIntegratedData& row : shading.integrated()) {
    text += headerField(kIntegratedKey, joined(row, kShadingIntegratedColumns, " "));
  }
  return text;
}

std::string dataLines(const ShadingDataClass& shading) {
  std::vector<std::string_view> names;
  for (const ShadingSpectralColumn& column : kShadingSpectralColumns) {
    names.push_back(column.name);
  }
  std::string text = fmt::format("{{ {} }}\r\n", fmt::join(names, " "));
  for (const ShadingSpectralPoint& point : shading.spectrum()) {
    text += joined(point, kShadingSpectralColumns, "    ") + "\r\n";
  }
  return text;
}

}  // namespace

std::string formatShading(const ShadingDataClass& shading, std::string_view filename) {
  std::string text = headerField(kUnitsKey, "Nanometers");
  if (shading.name() != shadingName(filename)) {
    text += headerField(kRecordNameKey, shading.name());
  }
  text += textLines(shading);
  text += productTypeLine(shading);
  text += coatedSideLine(shading);
  text += orientationLine(shading);
  text += numberLines(shading, kShadingMeasureKeys);
  text += numberLines(shading, kShadingDerivedKeys);
  text += flagLines(shading);
  text += headerField(kSupplierDataKey, fmt::format("{}", shading.Supplier_dataID()));
  text += integratedLines(shading);
  text += dataLines(shading);
  return text;
}

}  // namespace orv::textfile
