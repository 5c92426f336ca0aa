#pragma once

namespace orv {

/// What the file of a pane holds.
enum class PaneEntries {
  fixed,  ///< the fixed layout: its entries, whether they hold something or not
  all,    ///< also every other entry that the reader knows, and no source of an emissivity that is
          ///< not there
};

}  // namespace orv
