// Structure expressions, which list the layers of a pane that is made of other panes:
//
//     clear6.txt;6;False + lowe4.txt;4;True
//
// Layers are joined by "+". Each is the file of a component pane, its thickness, and whether it is
// turned round.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "model/GlazingData.h"
#include "textfile/Place.h"

namespace orv::textfile {

/// Replaces the layers of the record by those of the expression. Raises error 5 with the source
/// "Mal-formed structure" or "Bad 3rd argument in layer", 13 for a thickness that is no number
/// and 5 for a negative one; the layers before the faulty one stay in the list. `place` is where
/// the expression stands, when it comes from a file.
void parseStructure(std::string_view expression, const std::optional<Place>& place,
                    GlazingData& pane);

/// The expression of the record's layers. Raises error 5 for a file name with a character that
/// means something else in an expression.
std::string formatStructure(const GlazingData& pane);

}  // namespace orv::textfile
