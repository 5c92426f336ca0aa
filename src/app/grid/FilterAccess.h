// The filters of the grid for screen readers.
#pragma once

namespace orv::app {

/// Has screen readers and other aids find the filter fields, as a group of the data pane: the
/// toolkit shows them no header of a table, and nothing that is in one.
void offerFiltersToReaders();

}  // namespace orv::app
