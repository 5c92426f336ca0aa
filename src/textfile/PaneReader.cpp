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
}

}  // namespace orv::textfile
