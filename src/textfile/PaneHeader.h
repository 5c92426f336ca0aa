#pragma once

#include "model/GlazingData.h"
#include "textfile/Tokenizer.h"

namespace orv::textfile {

/// Fills the record from the "{ Key: value }" entries among the comments that the tokenizer has
/// passed, and gives it the flags that databases have for such a pane. Entries with other keys are
/// left alone. Raises error 5 for a type, a coated side or a
/// structure that is not understood, and 13 for a number that is none.
void ReadHeaderEntries(const Tokenizer& tokenizer, GlazingData& pane);

}  // namespace orv::textfile
