// The meanings of published integrated values.
#pragma once

#include "productfile/Meaning.h"

namespace orv::productfile {

template <auto front, auto back>
void readBothWays(const Item& item, GlazingData& pane) {
  (pane.*front)(item.fraction());
  (pane.*back)((pane.*front)());
}

template <auto member>
inline constexpr Meaning kFraction{readWith<member, &Item::fraction>, writeSingle<member>};

/// A transmittance of the front, which counts for the back too until that is told.
template <auto front, auto back>
inline constexpr Meaning kBothWays{readBothWays<front, back>, writeSingle<front>};

inline constexpr const Meaning& kSolarTransmittance =
    kBothWays<&GlazingData::Precalc_Tfsol, &GlazingData::Precalc_Tbsol>;
inline constexpr const Meaning& kVisibleTransmittance =
    kBothWays<&GlazingData::Precalc_Tfvis, &GlazingData::Precalc_Tbvis>;
inline constexpr const Meaning& kUltravioletTransmittance =
    kBothWays<&GlazingData::Precalc_Tfuv, &GlazingData::Precalc_Tbuv>;

}  // namespace orv::productfile
