// Products as panes.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "model/GlazingData.h"
#include "productfile/Item.h"

namespace orv::productfile {

/// A product that was read, and what there is to say of it besides: rows that were skipped, the
/// standard of the integrated values, parts that are left out.
struct Product {
  std::shared_ptr<GlazingData> pane;
  std::vector<std::string> notes;
  /// The columns of `Pane` in ORV databases for which the product has no value.
  std::set<std::string> notGiven = {};
};

/// Whether a product is a shading, which no pane could hold.
bool isShading(const Item& product);

/// The angles of incidence, in whole degrees, at which a product has data, in its own order.
std::vector<std::int16_t> anglesOf(const Item& product);

/// Reads a product, whatever form it has, at one of its angles, or the first. The record is named
/// for the file that the data of the product were measured into; where it tells none, as the
/// product.
///
/// Raises error 5 for a product of no known form, for a shading, which is named, for an angle that
/// is not there, and what `Item` and `readSpectrum` raise for values that are wrong.
Product readProduct(const Item& product, std::optional<std::int16_t> angle = std::nullopt);

}  // namespace orv::productfile
