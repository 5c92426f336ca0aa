// The reading of pane files that differ from the format in ways that have one meaning.
#pragma once

#include <set>
#include <string>
#include <vector>

namespace orv::commands {

/// Where files are read so, and what was mended in them.
class TolerantReading {
 public:
  void allowEverywhere() { everywhere_ = true; }
  void allowIn(const std::string& folder) { folders_.insert(folder); }
  bool isAllowedIn(const std::string& folder) const {
    return everywhere_ || folders_.contains(folder);
  }

  /// Tells of what was mended in a file, once for each file.
  void told(const std::string& folder, const std::string& file, const std::string& repairs);
  /// "lab.txt is read tolerantly: percent", a line a file, in the order of reading; each once.
  std::vector<std::string> takeLines();

 private:
  bool everywhere_ = false;
  std::set<std::string> folders_;
  std::set<std::string> files_;
  std::vector<std::string> lines_;
};

}  // namespace orv::commands
