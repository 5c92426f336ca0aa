#include "commands/FileNames.h"

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

}  // namespace

std::string FileNames::nameFor(const std::string& record, std::optional<std::int16_t> angle) {
  const std::filesystem::path path(portable(record));
  const std::string extension = path.has_extension() ? path.extension().string() : ".txt";
  std::string stem = path.stem().string();
  if (angle) stem += "_" + std::to_string(*angle) + "deg";
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
