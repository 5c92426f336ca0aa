// The detail rows of a pane of an ORV database, and what differs between the two versions.
#pragma once

#include <string>

#include "model/GlazingData.h"
#include "store/Connection.h"

namespace orv::database {

/// What the retrieval has to know of a schema version.
struct OrvPaneSchema {
  const char* keyColumn;
  /// Version 3.0.0: the pane's row has product name, supplier and acceptance, and spectral rows
  /// are chosen by angle and direction. Version 2.0.1 has none of these.
  bool version3;
};

inline constexpr OrvPaneSchema kPaneSchema30{"PaneID", true};
inline constexpr OrvPaneSchema kPaneSchema20{"Pane_id", false};

/// Sets the integrated values of `data` from the row of its key and angle. `Precalc_Rfsol` is
/// kNoIntegratedData when there is none.
void readIntegratedData(GlazingData& data, store::Connection& dc, const OrvPaneSchema& schema);
inline void ReadIntegratedDataORV_30(GlazingData& data, store::Connection& dc) {
  readIntegratedData(data, dc, kPaneSchema30);
}
inline void ReadIntegratedDataORV_20(GlazingData& data, store::Connection& dc) {
  readIntegratedData(data, dc, kPaneSchema20);
}

/// Sets the spectrum of `data` and, for a pane with film, that of a new substrate record. Of a
/// database of version 3.0.0 the rows of the pane's angle, and of its direction unless that is 0;
/// of version 2.0.1 all rows of the pane. Without rows they stay unset.
void ReadSpectralDataORV_30(GlazingData& data, store::Connection& dc);
void ReadSpectralDataORV_20(GlazingData& data, store::Connection& dc);

}  // namespace orv::database
