#include "commands/FileNames.h"

#include <algorithm>
#include <cctype>

#include "model/Text.h"

namespace orv::commands {

namespace {

/// Without characters that a file system somewhere refuses, and no hidden file.
std::string portable(std::string name) {
  for (char& c : name) {
    const bool refused = static_cast<unsigned char>(c) < 0x20 ||
                         std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos;
    if (refused) c = '_';
  }
  const bool hidden = name.empty() || name.front() == '.';
  return hidden ? "_" + name : name;
}

/// ".txt", ".DAT"; empty for what is no extension: the end of "Type 1.5 mm".
std::string extensionOf(const std::string& name) {
  constexpr std::size_t kLongest = 4;
  const std::size_t dot = name.rfind('.');
  if (dot == std::string::npos) return {};
  const std::string extension = name.substr(dot);
  const bool isOne = extension.size() > 1 && extension.size() <= 1 + kLongest &&
                     std::isalpha(static_cast<unsigned char>(extension[1])) != 0 &&
                     std::all_of(extension.begin() + 1, extension.end(),
                                 [](unsigned char c) { return std::isalnum(c) != 0; });
  return isOne ? extension : std::string();
}

}  // namespace

std::string FileNames::nameForPane(const std::string& pane, std::optional<std::int16_t> angle,
                                   const std::string& extension) {
  const std::string name = portable(pane);
  const std::string own = extensionOf(name);
  std::string stem = name.substr(0, name.size() - own.size());
  if (angle) stem += "_" + std::to_string(*angle) + "deg";
  return freeName(stem, !extension.empty() ? extension : own.empty() ? ".txt" : own);
}

std::string FileNames::nameForShading(const std::string& shading) {
  return freeName(portable(shading), ".txt");
}

std::string FileNames::freeName(const std::string& stem, const std::string& extension) {
  std::string name = stem + extension;
  for (int number = 2; !isFree(name); ++number) {
    name = stem + "_" + std::to_string(number) + extension;
  }
  given_.insert(lowerCase(name));
  return name;
}

bool FileNames::isFree(const std::string& name) const {
  if (given_.contains(lowerCase(name))) return false;
  return overwrite_ || !std::filesystem::exists(folder_ / name);
}

}  // namespace orv::commands
