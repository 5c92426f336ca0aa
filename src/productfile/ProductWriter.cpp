#include "productfile/ProductWriter.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>

#include "errors/Error.h"
#include "model/Text.h"
#include "productfile/Form.h"
#include "productfile/ProductReader.h"
#include "productfile/RecordKeys.h"

namespace orv::productfile {

namespace {

constexpr int kNoIndent = -1;

std::string textOf(const OrderedJson& value, int indent) {
  return value.dump(indent, ' ', false, OrderedJson::error_handler_t::replace);
}

void put(OrderedJson& object, std::string_view pointer, OrderedJson value) {
  object[OrderedJson::json_pointer(std::string(pointer))] = std::move(value);
}

/// The form has the numbers of lists as texts.
OrderedJson quoted(const OrderedJson& number) {
  return number.dump();
}

bool isPublished(const Key& key) {
  return key.pointer.starts_with("/solar") || key.pointer.starts_with("/photopic") ||
         key.pointer.starts_with("/tuv/transmittance_front");
}

/// Numbers that no product has as 0: records hold it where they do not know better.
bool isUnknownAtZero(const Key& key) {
  constexpr std::array<std::string_view, 4> kPointers = {"/nfrc_id", "/igdb_checksum",
                                                         "/physical_properties/thickness",
                                                         "/physical_properties/conductivity"};
  return std::ranges::find(kPointers, key.pointer) != kPointers.end();
}

/// Whether reading takes the value; where not, it stands in our own object.
bool isTaken(const Key& key, const OrderedJson& number) {
  const Json value = number.get<double>();
  GlazingData unused;
  try {
    key.meaning.read(Item(value, "", ""), unused);
    return true;
  } catch (const Error&) {
    return false;
  }
}

/// Empty where the record has no values. 0 stands for none in those that few sources have.
OrderedJson summariesOf(const GlazingData& pane) {
  OrderedJson entry;
  bool hasAny = !pane.Precalc_StandardName().empty();
  put(entry, kNewerForm.standard,
      pane.Precalc_StandardName().empty() ? OrderedJson()
                                          : OrderedJson(pane.Precalc_StandardName()));
  for (const Key& key : kNewerForm.integrated) {
    const OrderedJson value = key.meaning.write(pane);
    if (!isTaken(key, value)) continue;
    const bool isZero = value == 0;
    hasAny = hasAny || !isZero;
    if (!isZero || isPublished(key)) put(entry, key.pointer, quoted(value));
  }
  return hasAny ? OrderedJson::array({entry}) : OrderedJson::array();
}

/// A wavelength in microns; as it stands where the unit is none that is known.
std::string wavelengthText(const SpectralData& spectrum, std::int32_t point) {
  constexpr double kMicronsInNanometer = 0.001;
  const float wavelength = spectrum.wl(point);
  if (spectrum.WavelengthUnit() != kNanometers) return quoted(numberOf(wavelength));
  constexpr int kDigits = 12;  // without the noise of the multiplication
  return fmt::format("{:.{}g}", numberOf(wavelength).get<double>() * kMicronsInNanometer, kDigits);
}

OrderedJson rowsOf(const GlazingData& pane) {
  OrderedJson rows = OrderedJson::array();
  if (!pane.SpectralData()) return rows;
  const SpectralData& spectrum = *pane.SpectralData();
  const RowKeys& keys = kNewerForm.rows;
  for (std::int32_t i = 0; i < spectrum.count(); ++i) {
    OrderedJson row;
    put(row, keys.wavelength, wavelengthText(spectrum, i));
    put(row, keys.frontTransmittance, quoted(numberOf(spectrum.Tf(i))));
    put(row, keys.backTransmittance, quoted(numberOf(spectrum.Tb(i))));
    put(row, keys.frontReflectance, quoted(numberOf(spectrum.Rf(i))));
    put(row, keys.backReflectance, quoted(numberOf(spectrum.Rb(i))));
    rows.push_back(std::move(row));
  }
  return rows;
}

OrderedJson inForm(const GlazingData& pane) {
  OrderedJson product;
  for (const Key& key : kNewerForm.keys) {
    // Both keys of the type, and of the name, have one meaning.
    if (key.pointer == "/id" || key.pointer == "/product_name") continue;
    OrderedJson value = key.meaning.write(pane);
    if (value == "" || (value == 0 && isUnknownAtZero(key))) value = nullptr;
    put(product, key.pointer, std::move(value));
  }
  product["type"] = "GLAZING";
  put(product, kNewerForm.summaries, summariesOf(pane));
  const OrderedJson rows = rowsOf(pane);
  OrderedJson block;
  put(block, kBlockAngle, pane.ORV_Angle());
  block["num_wavelengths"] = rows.size();
  put(block, kBlockRows, rows);
  auto& optics = product["physical_properties"]["optical_properties"];
  optics["optical_data_type"] = "DISCRETE";
  optics["incidence_angular_resolution_type"] = "DIRECT";
  optics["outgoing_angular_resolution_type"] = "DIRECT";
  put(product, kNewerForm.data, OrderedJson::array({block}));
  optics["optical_data"]["number_incidence_angles"] = 1;
  return product;
}

/// What reading the product gives back otherwise than it was; an object, which may be empty.
OrderedJson differences(const GlazingData& pane, const GlazingData& readBack) {
  OrderedJson record = OrderedJson::object();
  for (const Key& key : recordKeys()) {
    OrderedJson value = key.meaning.write(pane);
    if (value != key.meaning.write(readBack)) put(record, key.pointer, std::move(value));
  }
  if (pane.HasSubstrate()) put(record, kSubstrateKey, productOf(*pane.SubstrateReference()));
  return record;
}

/// The record that the form's own keys give back. Nothing is read without a spectrum unless our own
/// keys tell whether databases call the pane spectral, so that this has to be among them.
std::shared_ptr<GlazingData> readBack(OrderedJson product, const GlazingData& pane) {
  const bool isWithout = !pane.SpectralData();
  if (isWithout) {
    put(product, std::string(kRecordObject) + std::string(kSpectralPaneKey), !pane.spectral_pane());
  }
  const Json read = Json::parse(textOf(product, kNoIndent));
  const std::string name = pane.filename();  // for what is wrong with a value
  return readProduct(Item(read, name, "")).pane;
}

}  // namespace

OrderedJson productOf(const GlazingData& pane) {
  OrderedJson product = inForm(pane);
  put(product, kRecordObject, differences(pane, *readBack(product, pane)));
  return product;
}

std::string formatProducts(const std::vector<OrderedJson>& products) {
  constexpr int kIndent = 1;
  return textOf(products.size() == 1 ? products.front() : OrderedJson(products), kIndent) + "\n";
}

}  // namespace orv::productfile
