#include "productfile/ProductReader.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>

#include "errors/Error.h"
#include "model/Text.h"
#include "productfile/Form.h"
#include "productfile/RecordKeys.h"
#include "productfile/Spectrum.h"

namespace orv::productfile {

namespace {

std::string textAt(const Item& item, std::string_view pointer) {
  const auto found = item.find(pointer);
  return found ? found->text() : std::string();
}

void refuseShading(const Item& product) {
  if (!isShading(product)) return;
  const std::string name = textAt(product, "/name");
  const std::string kind = lowerCase(textAt(product, "/subtype"));
  product.refuse(kInvalidCall,
                 fmt::format("\"{}\" is a shading{}, and only panes are read from files of "
                             "products",
                             name, kind.empty() ? "" : " (" + kind + ")"));
}

bool has(const Item& product, std::string_view pointer) {
  try {
    return product.find(pointer).has_value();
  } catch (const Error&) {
    return false;  // another form has something else there
  }
}

const Form& formOf(const Item& product) {
  product.requireObject();
  refuseShading(product);
  for (const Form* form : kForms) {
    if (has(product, form->data)) return *form;
  }
  std::string keys;
  for (const Form* form : kForms) {
    keys += (keys.empty() ? "" : form == kForms.back() ? " nor " : ", ");
    keys += form->data;
  }
  product.refuse(kInvalidCall, "This is no product of a known form: there is neither " + keys);
}

std::int16_t angleOf(const Item& block) {
  const auto item = block.find(kBlockAngle);
  if (!item) return 0;
  const std::int32_t angle = item->whole();
  if (angle < 0 || angle > std::numeric_limits<std::int16_t>::max()) {
    item->refuse(kInvalidCall, "No angle of incidence");
  }
  return static_cast<std::int16_t>(angle);
}

/// The angles of the blocks; 0 where there are only rows.
std::vector<std::int16_t> anglesIn(const Form& form, const Item& data) {
  if (!form.hasBlocks) return {0};
  std::vector<std::int16_t> angles;
  for (std::size_t i = 0; i < data.count(); ++i) {
    const Item block = data.at(i);
    const std::int16_t angle = angleOf(block);
    if (std::ranges::find(angles, angle) != angles.end()) {
      block.refuse(kInvalidCall, fmt::format("A second block for {} degrees", angle));
    }
    angles.push_back(angle);
  }
  if (angles.empty()) data.refuse(kInvalidCall, "There is no block of data");
  return angles;
}

class ProductReader {
 public:
  ProductReader(const Item& product, std::optional<std::int16_t> angle)
      : item_(product), form_(formOf(product)), record_(product.find(kRecordObject)) {
    product_.pane = std::make_shared<GlazingData>();
    setDefaults();
    readKeys(form_.keys, item_, pane());
    namePane();
    noteMissing();
    readData(angle);
    readIntegrated();
    record_ ? readRecord() : findMissing();
  }

  Product take() { return std::move(product_); }

 private:
  GlazingData& pane() { return *product_.pane; }
  void note(std::string text) { product_.notes.push_back(std::move(text)); }

  /// What databases say of a pane with a spectrum of which nothing else is known.
  void setDefaults() {
    pane().spectral_pane(true);
    pane().single_layer(false);
    pane().use_estimation(true);
    const auto unit = record_ ? record_->find(kWavelengthUnitKey) : std::nullopt;
    pane().WavelengthUnit(unit ? unit->whole() : wavelengthUnitOf(form_, item_));
  }

  void namePane() {
    if (pane().filename().empty()) pane().filename(pane().productname());
  }

  void noteMissing() {
    if (pane().Thickness() == 0) note("no thickness is given, 0 is taken");
    if (pane().Conductivity() == 0) note("no conductivity is given, 0 is taken");
    const auto layers = item_.find("/composition");
    if (layers && layers->isList() && layers->count() > 0) {
      note("the products that it is made of are left out");
    }
  }

  bool gives(const Meaning& meaning) const {
    return std::ranges::any_of(form_.keys, [&](const Key& key) {
      return &key.meaning == &meaning && item_.find(key.pointer).has_value();
    });
  }

  /// No product but one of our own tells the flags of databases. A glazing is never that thin, nor
  /// has it no name: these stand for what is not known.
  void findMissing() {
    auto& missing = product_.notGiven;
    missing = {"freeze", "film_outdoor_side", "0_30_60"};
    const auto add = [&](bool isMissing, std::initializer_list<const char*> columns) {
      if (isMissing) missing.insert(columns.begin(), columns.end());
    };
    add(pane().productname().empty(), {"product_name"});
    add(pane().supplier().empty(), {"supplierID"});
    add(pane().Thickness() == 0, {"thickness"});
    add(pane().Conductivity() == 0, {"conduction"});
    add(pane().ef() < 0, {"emission_IR_outdoor"});
    add(pane().eb() < 0, {"emission_IR_indoor"});
    add(!gives(kInfrared), {"transmission_IR_outdoor"});
    add(!gives(kInfrared) && !gives(kBackInfrared), {"transmission_IR_indoor"});
    add(!gives(kType), {"single_layer", "use_estimation"});
  }

  /// The first standard that has values counts. Forms tell no angle of these values: they are of
  /// normal incidence, or of the only one that there is.
  void readIntegrated() {
    if (form_.summaries.empty()) return;
    const auto list = item_.find(form_.summaries);
    if (!list) return;
    bool isFirst = true;
    for (std::size_t i = 0; i < list->count(); ++i) {
      const Item entry = list->at(i);
      entry.requireObject();
      const bool hasValues = std::ranges::any_of(
          form_.integrated, [&](const Key& key) { return entry.find(key.pointer).has_value(); });
      if (!hasValues) continue;
      if (!hasOwnValues_) {
        return note(
            fmt::format("the integrated values of the product, of normal incidence, are "
                        "left out at {} degrees",
                        pane().ORV_Angle()));
      }
      const std::string standard = textAt(entry, form_.standard);
      const std::string by = standard.empty() ? "a standard without a name" : standard;
      if (isFirst) {
        readKeys(form_.integrated, entry, pane());
        pane().Precalc_StandardName(standard);
        note("integrated values of the product, by " + by);
      } else {
        note("integrated values by " + by + " are left out");
      }
      isFirst = false;
    }
  }

  void readData(std::optional<std::int16_t> angle) {
    const Item data = item_.require(form_.data);
    if (!form_.hasBlocks) return readRows(data);
    const auto angles = anglesIn(form_, data);
    const auto found = angle ? std::ranges::find(angles, *angle) : angles.begin();
    if (found == angles.end()) {
      data.refuse(kInvalidCall, fmt::format("There are no data at {} degrees", *angle));
    }
    const Item block = data.at(static_cast<std::size_t>(found - angles.begin()));
    pane().ORV_Angle(*found);
    hasOwnValues_ = *found == 0 || angles.size() == 1;
    readRows(block.require(kBlockRows));
  }

  /// Only a record of our own may be without, where it tells whether databases call it spectral.
  void readRows(const Item& rows) {
    const auto spectrum = readSpectrum(rows, form_.rows, wavelengthUnitOf(form_, item_),
                                       pane().WavelengthUnit(), product_.notes);
    if (!spectrum) {
      if (!record_ || !record_->find(kSpectralPaneKey)) {
        rows.refuse(kInvalidCall, "The product has no spectral data");
      }
      return;
    }
    pane().SpectralData(spectrum);
  }

  void readRecord() {
    readKeys(recordKeys(), *record_, pane());
    if (const auto substrate = record_->find(kSubstrateKey)) {
      pane().SubstrateReference(readProduct(*substrate).pane);
    }
  }

  const Item& item_;
  const Form& form_;
  std::optional<Item> record_;
  Product product_;
  bool hasOwnValues_ = true;  ///< whether the integrated values are of the angle that is read
};

}  // namespace

bool isShading(const Item& product) {
  return equalIgnoringCase(textAt(product, "/type"), "shading");
}

std::vector<std::int16_t> anglesOf(const Item& product) {
  const Form& form = formOf(product);
  return anglesIn(form, product.require(form.data));
}

Product readProduct(const Item& product, std::optional<std::int16_t> angle) {
  return ProductReader(product, angle).take();
}

}  // namespace orv::productfile
