// Keys of pane files that only writing with all entries uses.
#pragma once

#include <array>
#include <string_view>

#include "model/GlazingData.h"

namespace orv::textfile {

/// The name of a record whose file is called otherwise. Shading files know it, too.
inline constexpr std::string_view kRecordNameKey = "Record Name";
/// One use; there may be several.
inline constexpr std::string_view kUseKey = "Use";
/// "Region; name of the product there"; there may be several.
inline constexpr std::string_view kAvailabilityKey = "Availability";

// What databases hold, under the names of their columns.

inline constexpr std::string_view kBackTransmittanceKey = "transmission_IR_indoor";

struct PaneFlagKey {
  std::string_view key;
  Property<bool> GlazingData::*property;
};

inline constexpr std::array kPaneFlagKeys{
    PaneFlagKey{"single_layer", &GlazingData::single_layer},
    PaneFlagKey{"use_estimation", &GlazingData::use_estimation},
    PaneFlagKey{"0_30_60", &GlazingData::Use_0_30_60},
    PaneFlagKey{"film_outdoor_side", &GlazingData::film_outdoor_side},
    PaneFlagKey{"freeze", &GlazingData::ORV_Frozen},
};

}  // namespace orv::textfile
