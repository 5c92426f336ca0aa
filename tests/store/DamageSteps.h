// Damages as text, for tables of cases.
#pragma once

#include <string>

#include "store/DamagedFile.h"

namespace orv::store::jet {

/// Does a step of a damage to a copy of the sample. Most are "PLACE FIELD = BYTES": bytes of the
/// place from a field on, which has a name or is a number of bytes, from the end of a row also a
/// negative one; "+" adds to a byte. Places are
///
///   header, definition TABLE, column TABLE NUMBER, name TABLE COLUMN (its letters),
///   maps TABLE COLUMN, tree TABLE NUMBER, named TABLE NUMBER (of an index),
///   row ROW, end ROW, entry ROW (in the table of rows), page ROW, field ROW COLUMN,
///   index TABLE/INDEX/PAGE (a page of it: root, or the number of a leaf)
///
/// ROW is TABLE/NUMBER (or last), object/NAME (in the catalogue), moved/NUMBER (in table Moved),
/// content/NUMBER (where such a one is), part/NUMBER (of the picture), or a map of pages: freeMap,
/// owned/TABLE, room/TABLE, pictures, tree/TABLE/INDEX. BYTES are hexadecimal, in the order of the
/// file, `*n` for so many times, and a number of the file: "@TABLE" (the page of its definition),
/// "@ROW" (where it is), "@leaf/NUMBER" (of the index of spectra), "@last" (page), "&ROW" the same
/// in the order of index entries. ~ stands for a blank. Of a page of an index, `insertEntry`,
/// `setEntry`, `copyEntry` and `dropEntry` change the entries; DamageSteps.cpp has those and the
/// other steps.
void inflict(DamagedFile& file, const std::string& step);

}  // namespace orv::store::jet
