#include "textfile/FileReferences.h"

#include <fmt/format.h>

#include "errors/Error.h"
#include "model/Text.h"
#include "textfile/PaneReader.h"
#include "textfile/TextFile.h"

namespace orv::textfile {

namespace fs = std::filesystem;

namespace {

/// Files that name many others, each of which names many again, must end somewhere.
constexpr int kMostFiles = 1000;

/// The name of a file, rather than one of the markers that stand in its place.
bool isFileName(const std::string& name) {
  return !name.empty() && !equalIgnoringCase(name, kNotApplicable) &&
         !equalIgnoringCase(name, kUnknown);
}

/// "a.txt, c.txt, b.txt, a.txt": from the first file of the circle to its second mention.
std::string circleOf(const GlazingData& last) {
  std::string names = last.filename();
  for (auto pane = last.Parent(); pane; pane = pane->Parent()) {
    names = pane->filename() + ", " + names;
    if (equalIgnoringCase(pane->filename(), last.filename())) {
      break;
    }
  }
  return names;
}

class ReferenceFiller {
 public:
  void fill(const fs::path& folder, const std::shared_ptr<GlazingData>& pane) {
    if (isFileName(pane->SubstrateFilename()) &&
        !equalIgnoringCase(pane->SubstrateFilename(), pane->filename())) {
      fillReference(folder, pane, pane->SubstrateFilename(), pane->SubstrateReference);
    }
    for (std::int32_t i = 0; i < pane->StructureCount(); ++i) {
      GlazingStructure& layer = *pane->structure(i);
      fillReference(folder, pane, layer.filename(), layer.FileGlazingData);
    }
  }

 private:
  void fillReference(const fs::path& folder, const std::shared_ptr<GlazingData>& parent,
                     const std::string& name, Property<std::shared_ptr<GlazingData>>& reference) {
    auto component = std::make_shared<GlazingData>();
    reference(component);
    component->Parent(parent);
    component->filename(name);
    try {
      read(folder, component);
    } catch (...) {
      reference(nullptr);
      throw;
    }
  }

  void read(const fs::path& folder, const std::shared_ptr<GlazingData>& component) {
    if (!component->EnsureNoAncestorLoops()) {
      throw Error(kInvalidCall, fmt::format("These files refer to each other in a circle: {}",
                                            circleOf(*component)));
    }
    if (++files_ > kMostFiles) {
      throw Error(kInvalidCall,
                  fmt::format("A pane cannot refer to more than {} files", kMostFiles));
    }
    const auto path = findFile(folder, component->filename());
    if (!path) {
      throw Error(kFileNotFound,
                  fmt::format("There is no file '{}' in the folder '{}'. The file '{}' names it",
                              component->filename(), folder.empty() ? "." : folder.string(),
                              component->Parent()->filename()));
    }
    readPane(*path, *component);
    fill(path->parent_path(), component);
  }

  int files_ = 0;
};

}  // namespace

void fillFileReferences(const fs::path& folder, const std::shared_ptr<GlazingData>& pane) {
  ReferenceFiller().fill(folder, pane);
}

}  // namespace orv::textfile
