// A folder of files for one test.
#pragma once

#include <gtest/gtest.h>

#include <string_view>

#include "support/ReadFile.h"
#include "support/TemporaryFolder.h"

namespace orv::test {

class Folder : public TemporaryFolder {
 public:
  std::string withSeparator() const { return path().string() + "/"; }

  void write(const std::string& name, std::string_view text) const {
    std::ofstream(path() / name, std::ios::binary) << text;
  }

  /// A text with "FOLDER" where it names the folder.
  std::string hiddenIn(std::string text) const {
    for (std::size_t at = 0; (at = text.find(path().string(), at)) != std::string::npos;) {
      text.replace(at, path().string().size(), "FOLDER");
    }
    return text;
  }

  std::string read(const std::string& name) const { return readFile(path() / name); }
};

}  // namespace orv::test
