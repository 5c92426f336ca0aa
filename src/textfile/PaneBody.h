#pragma once

#include "model/GlazingData.h"
#include "textfile/Tokenizer.h"

namespace orv::textfile {

/// Reads the numeric body of a pane file, to the end of the text: units, thickness, conductivity,
/// up to two infrared lines, then a line a wavelength. The record gets the values and its
/// spectrum. Raises the errors of the catalogue, with the place in the file as their source.
void ReadBody(Tokenizer& tokenizer, GlazingData& pane);

}  // namespace orv::textfile
