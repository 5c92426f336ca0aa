// Names for the files of an export.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>

namespace orv::commands {

/// Gives each record a file name in one folder that no other record of the run has.
class FileNames {
 public:
  /// `overwrite` allows the names of files that were in the folder before.
  FileNames(std::filesystem::path folder, bool overwrite)
      : folder_(std::move(folder)), overwrite_(overwrite) {}

  /// The name for a pane, with an angle in degrees where it has several: the pane's own, with
  /// ".txt" where that has no extension; or with `extension` in place of its own. Characters that
  /// file systems do not take become "_".
  std::string nameForPane(const std::string& pane, std::optional<std::int16_t> angle,
                          const std::string& extension = {});

  /// The name for a shading, which is called as its file without the extension: always ".txt".
  std::string nameForShading(const std::string& shading);

 private:
  std::string freeName(const std::string& stem, const std::string& extension);
  bool isFree(const std::string& name) const;

  std::filesystem::path folder_;
  bool overwrite_;
  std::set<std::string> given_;  ///< in lower case
};

}  // namespace orv::commands
