#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "model/GlazingData.h"
#include "model/ShadingDataClass.h"
#include "textfile/PaneEntries.h"

namespace orv {

/// The one class through which the system reads and writes spectral text files: those of panes
/// and those of shadings. docs/text-files.md describes both formats. It keeps no state.
///
/// Files are read in UTF-8 or Windows-1252 with any kind of line ends, and written in UTF-8 with
/// CR LF. A file that is read is found without regard to the case of its name.
///
/// Errors say what is wrong in the description, or in fixed words in the source ("Comment has no
/// closing brace!"), and in their place where that is, what was found, and what to do.
/// A file that is not there raises error 53, one that cannot be read or written 57 or 70.
class ORV_TextFileInterface {
 public:
  /// Reads a pane file. Files that it refers to (substrate, layers) are named in the record, not
  /// read. With `repairs` it is read tolerantly: what differs from the format in ways that have one
  /// meaning is mended first, in memory, and `repairs` says what was ("percent").
  std::shared_ptr<GlazingData> ParseSpectralFile(const std::filesystem::path& folder,
                                                 const std::string& filename,
                                                 std::string* repairs = nullptr) const;

  /// Replaces the record's layers by those of an expression such as
  /// "clear6.txt;6;False + lowe4.txt;4;True".
  void ParseStructure(std::string_view expression, GlazingData& pane) const;

  /// Reads the files that the record refers to, looked for in the folder of the record's own
  /// file, and links them to it, with all that they refer to in turn. A file that leads back to
  /// itself is refused. The reference that fails is cleared before the error is raised.
  void FillFileReferences(const std::filesystem::path& folder,
                          const std::shared_ptr<GlazingData>& pane) const;

  /// The text of the pane file that `WriteSpectralFile` writes under this name.
  std::string SpectralText(const std::string& filename, GlazingData& pane,
                           PaneEntries entries = PaneEntries::fixed) const;

  /// Writes a pane file over any of that name. The path is folder and name put together as they
  /// are, so the folder ends in a separator. The record is completed first
  /// (`GlazingData::EnforceSemantics`); what cannot be written right raises before any file is
  /// touched.
  void WriteSpectralFile(const std::string& folder, const std::string& filename, GlazingData& pane,
                         PaneEntries entries = PaneEntries::fixed) const;

  /// Reads a shading file into a record that is named after the file, without the extension.
  std::shared_ptr<ShadingDataClass> ParseSpectralFileShading(const std::filesystem::path& folder,
                                                             const std::string& filename) const;

  /// Writes a shading file over any of that name; the path is made as for panes. A name that is
  /// not the file's own gets an entry.
  void WriteSpectralFileShading(const std::string& folder, const std::string& filename,
                                const ShadingDataClass& shading) const;
};

}  // namespace orv
