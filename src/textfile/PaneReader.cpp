#include "textfile/PaneReader.h"

#include "textfile/PaneBody.h"
#include "textfile/PaneHeader.h"
#include "textfile/TextFile.h"
#include "textfile/Tokenizer.h"

namespace orv::textfile {

void readPane(const std::filesystem::path& path, GlazingData& pane) {
  const std::string text = readText(path);
  Tokenizer tokenizer(text, pane.filename());
  ReadBody(tokenizer, pane);
  // After the body, so that the sources of the emissivities are the ones that the header names.
  ReadHeaderEntries(tokenizer, pane);
  pane.FileDate(fileDate(path));
  // What databases say of such a pane: it has a spectrum; and where it is not of one material,
  // its values at other angles can only be estimated.
  pane.spectral_pane(true);
  pane.single_layer(pane.GlazingType() == kMonolithic);
  pane.use_estimation(!pane.single_layer());
}

}  // namespace orv::textfile
