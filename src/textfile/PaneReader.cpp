#include "textfile/PaneReader.h"

#include "model/FileBytes.h"
#include "textfile/PaneBody.h"
#include "textfile/PaneHeader.h"
#include "textfile/TextFile.h"
#include "textfile/Tokenizer.h"
#include "textfile/repairs/Repairs.h"

namespace orv::textfile {

void readPane(const std::filesystem::path& path, GlazingData& pane, std::string* repairs) {
  std::string text = readText(path);
  if (repairs) *repairs = repair(text);
  Tokenizer tokenizer(text, pane.filename());
  ReadBody(tokenizer, pane);
  // After the body, so that the sources of the emissivities are the ones that the header names.
  ReadHeaderEntries(tokenizer, pane);
  pane.FileDate(fileDate(path));
}

}  // namespace orv::textfile
