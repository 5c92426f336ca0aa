// What a key of a product stands for, whichever form has it, and under whatever name.
#pragma once

#include <nlohmann/json.hpp>
#include <span>
#include <string_view>

#include "model/GlazingData.h"
#include "productfile/Item.h"

namespace orv::productfile {

/// JSON to be written, whose keys stay in the order in which they are given.
using OrderedJson = nlohmann::ordered_json;

/// A property of a pane, to be filled from a value and to be told as one.
struct Meaning {
  void (*read)(const Item& item, GlazingData& pane);
  /// Null where there is nothing to tell.
  OrderedJson (*write)(const GlazingData& pane);
};

/// A key of a form.
struct Key {
  std::string_view pointer;  ///< within the product
  const Meaning& meaning;
};

/// Fills the pane from the keys that are there.
void readKeys(std::span<const Key> keys, const Item& product, GlazingData& pane);

/// The number that is shortest among those that read back as the same.
OrderedJson numberOf(float value);

// Functions rather than lambdas: GCC 12 takes the lambdas of a variable template for one.

template <auto member, auto reading>
void readWith(const Item& item, GlazingData& pane) {
  (pane.*member)((item.*reading)());
}

template <auto member>
OrderedJson write(const GlazingData& pane) {
  return OrderedJson((pane.*member)());
}

template <auto member>
OrderedJson writeSingle(const GlazingData& pane) {
  return numberOf((pane.*member)());
}

template <auto member>
inline constexpr Meaning kText{readWith<member, &Item::text>, write<member>};

/// A number of 32 bits that is never negative.
template <auto member>
inline constexpr Meaning kQuantity{readWith<member, &Item::quantity>, writeSingle<member>};

template <auto member>
inline constexpr Meaning kSingle{readWith<member, &Item::single>, writeSingle<member>};

template <auto member>
inline constexpr Meaning kDouble{readWith<member, &Item::number>, write<member>};

template <auto member>
inline constexpr Meaning kWhole{readWith<member, &Item::whole>, write<member>};

template <auto member>
inline constexpr Meaning kFlag{readWith<member, &Item::flag>, write<member>};

/// The number of the pane in the registry that the product comes from.
extern const Meaning kId;
/// The emissivity of a side, which comes from the file; -1, not set, is written as null.
extern const Meaning kFrontEmissivity;
extern const Meaning kBackEmissivity;
/// Infrared transmittance, of both sides until that of the back is told.
extern const Meaning kInfrared;
extern const Meaning kBackInfrared;
/// The kind of pane, "LAMINATE" or "coated-glass"; the words of all forms are understood. It tells
/// also what databases hold of such a pane: whether it is of one material, and whether its values
/// at other angles have to be estimated.
extern const Meaning kType;
/// "Front", "NA", ...
extern const Meaning kCoatedSide;
/// "SI", or "IP" for inches; of a form that is only read.
extern const Meaning kUnitSystem;

}  // namespace orv::productfile
