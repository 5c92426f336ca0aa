// Tables of cases that lie beside the tests as files.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace orv::test {

/// The lines of a file of `tests`, without those that begin with "# ": cells that are parted by
/// tabs, of which \n, \r and \xNN stand for what they do in C++. A line has at least `columns`.
inline std::vector<std::vector<std::string>> casesOf(const std::string& file, std::size_t columns) {
  std::vector<std::vector<std::string>> cases;
  std::ifstream in(ORV_SOURCE_DIR "/tests/" + file);
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with("# ")) continue;
    std::vector<std::string>& cells = cases.emplace_back();
    std::istringstream tabbed(line);
    for (std::string cell; std::getline(tabbed, cell, '\t'); cells.push_back(cell)) {
      for (std::size_t at = 0; (at = cell.find('\\', at)) != std::string::npos; ++at) {
        const char what = cell[at + 1];
        if (what == 'n' || what == 'r') cell.replace(at, 2, what == 'n' ? "\n" : "\r");
        if (what != 'x') continue;
        cell.replace(at, 4, 1, static_cast<char>(std::stoi(cell.substr(at + 2, 2), nullptr, 16)));
      }
    }
    cells.resize(std::max(columns, cells.size()));
  }
  EXPECT_GT(cases.size(), 10U) << file;
  return cases;
}

/// The lines "left -> right" of a file of `tests`, of which there are more than `count`; $ stands
/// for an empty text on the right.
inline std::vector<std::pair<std::string, std::string>> examplesOf(const std::string& file,
                                                                   std::size_t count = 50) {
  std::vector<std::pair<std::string, std::string>> examples;
  std::ifstream in(ORV_SOURCE_DIR "/tests/" + file);
  for (std::string line; std::getline(in, line);) {
    const std::size_t arrow = line.rfind(" -> ");
    if (arrow == std::string::npos || line.starts_with("# ")) continue;
    const std::string right = line.substr(arrow + 4);
    examples.emplace_back(line.substr(0, arrow), right == "$" ? "" : right);
  }
  EXPECT_GT(examples.size(), count) << file;
  return examples;
}

/// A text of blocks that are parted by empty lines, each what is given and, indented, what comes of
/// it: the same text with what `comes` of the lines that are given now, to be compared with it.
inline std::string retold(
    const std::string& text,
    const std::function<std::vector<std::string>(const std::vector<std::string>&)>& comes) {
  std::string told;
  std::vector<std::string> given;
  const auto endBlock = [&] {
    if (given.empty()) return;
    for (const std::string& line : comes(std::exchange(given, {}))) told += "  " + line + "\n";
  };
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("  ")) continue;
    if (line.empty()) endBlock();
    if (!line.empty() && !line.starts_with("# ")) given.push_back(line);
    told += line + "\n";
  }
  endBlock();
  return told;
}

}  // namespace orv::test
