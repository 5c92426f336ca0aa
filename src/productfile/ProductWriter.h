#pragma once

#include <vector>

#include "model/GlazingData.h"
#include "productfile/Meaning.h"

namespace orv::productfile {

/// A pane at its angle as a product in the newer form. What the form has no place for stands in an
/// object of its own (RecordKeys.h), so that reading gives back the record, field by field, but
/// for the records that layers and laminate refer to. Raises error 5, with the name of the record,
/// for a spectrum that reading would refuse.
OrderedJson productOf(const GlazingData& pane);

/// The text of a file: one product by itself, several as a list.
std::string formatProducts(const std::vector<OrderedJson>& products);

}  // namespace orv::productfile
