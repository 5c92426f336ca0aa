#include "textfile/ORV_TextFileInterface.h"

#include "textfile/FileReferences.h"
#include "textfile/PaneReader.h"
#include "textfile/PaneWriter.h"
#include "textfile/ShadingReader.h"
#include "textfile/ShadingWriter.h"
#include "textfile/Structure.h"
#include "textfile/TextFile.h"

namespace orv {

std::shared_ptr<GlazingData> ORV_TextFileInterface::ParseSpectralFile(
    const std::filesystem::path& folder, const std::string& filename, std::string* repairs) const {
  auto pane = std::make_shared<GlazingData>();
  pane->filename(filename);
  textfile::readPane(textfile::requireFile(folder, filename), *pane, repairs);
  return pane;
}

void ORV_TextFileInterface::ParseStructure(std::string_view expression, GlazingData& pane) const {
  textfile::parseStructure(expression, std::nullopt, pane);
}

void ORV_TextFileInterface::FillFileReferences(const std::filesystem::path& folder,
                                               const std::shared_ptr<GlazingData>& pane) const {
  textfile::fillFileReferences(folder, pane);
}

std::string ORV_TextFileInterface::SpectralText(const std::string& filename, GlazingData& pane,
                                                PaneEntries entries) const {
  pane.EnforceSemantics();
  return textfile::FormatSpectralText(pane, entries, filename) + "\r\n";
}

void ORV_TextFileInterface::WriteSpectralFile(const std::string& folder,
                                              const std::string& filename, GlazingData& pane,
                                              PaneEntries entries) const {
  textfile::writeText(folder + filename, SpectralText(filename, pane, entries));
}

std::shared_ptr<ShadingDataClass> ORV_TextFileInterface::ParseSpectralFileShading(
    const std::filesystem::path& folder, const std::string& filename) const {
  return textfile::readShading(textfile::requireFile(folder, filename), filename);
}

void ORV_TextFileInterface::WriteSpectralFileShading(const std::string& folder,
                                                     const std::string& filename,
                                                     const ShadingDataClass& shading) const {
  textfile::writeText(folder + filename, textfile::formatShading(shading, filename));
}

}  // namespace orv
