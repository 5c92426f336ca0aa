// The pages that a table definition lies on.
#pragma once

#include <string>
#include <vector>

#include "store/Value.h"
#include "store/jet/page/Pager.h"

namespace orv::store::jet {

/// A definition's bytes: the first page from its start, of the others what follows their header.
struct DefinitionPages {
  Bytes bytes;
  std::vector<PageNumber> more;  ///< the pages after the first, in order
};

/// Reads the definition of `table` that begins on `first`. The bytes run to the end of the last
/// page. Raises kCorruptFile.
DefinitionPages readDefinitionPages(Pager& pager, PageNumber first, const std::string& table);

/// The same of a damaged file: what there is before the first damage; empty for nothing.
DefinitionPages readDefinitionPagesAsFarAsPossible(Pager& pager, PageNumber first);

/// Writes a definition (exactly its bytes) to the page `first` and those in `more`, to which new
/// ones are added as they are needed. Sets the fields that depend on it: length, free space and
/// the chain. Needs a transaction.
void writeDefinitionPages(Pager& pager, PageNumber first, DefinitionPages& definition);

}  // namespace orv::store::jet
