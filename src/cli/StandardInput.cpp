#include "cli/StandardInput.h"

#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <system_error>

#include "cli/Failure.h"
#include "cli/Interrupts.h"
#include "commands/SourceOpener.h"
#include "productfile/ProductFile.h"

namespace orv::cli {

namespace fs = std::filesystem;

namespace {

// What a signal leaves, and the end of the program.
std::string keptFolder;
std::string keptFile;

void removeKept() {
  unlink(keptFile.c_str());
  rmdir(keptFolder.c_str());
}

std::string newFolder() {
  std::string pattern = (fs::temp_directory_path() / "orv-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) {
    throw Failure(kCannotOpen, "The standard input cannot be kept in \"" + pattern +
                                   "\": " + std::generic_category().message(errno) + ".");
  }
  return fs::absolute(pattern).lexically_normal();
}

/// What comes is written on as it comes, so that it takes no memory.
void copyInput(const fs::path& path) {
  std::ofstream file(path, std::ios::binary);
  std::array<char, 65536> part{};
  std::uintmax_t size = 0;
  while (file && (std::cin.read(part.data(), part.size()), std::cin.gcount() > 0)) {
    file.write(part.data(), std::cin.gcount());
    size += static_cast<std::uintmax_t>(std::cin.gcount());
    if (size > productfile::kLargestFile) {
      throw Failure(kCannotOpen, "The standard input is too long for a file of records.");
    }
  }
  std::cin.clear();  // a terminal may still answer questions
  if (size == 0) throw Failure(kCannotOpen, "Nothing came from the standard input.");
  if (!file.flush()) {
    throw Failure(kCannotOpen, "The standard input cannot be kept in \"" + path.string() + "\".");
  }
}

/// A list, or an object with a key. What begins with a brace may be a comment of a text, too.
bool looksLikeProducts(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  char first = '\0';
  char second = '\0';
  file >> first >> second;
  return first == '[' || (first == '{' && second == '"');
}

}  // namespace

void refuseStandardStream(const std::string& database) {
  if (database != kStandardStream) return;
  throw wrongUse(
      "A database is read and written in places, so that it cannot come from the standard input or "
      "go to the standard output (-). Name a file.");
}

StandardInput::~StandardInput() {
  if (!folder_.empty()) removeKept();
}

std::string StandardInput::read(const std::string& name) {
  if (!folder_.empty()) throw wrongUse("The standard input (-) can be one source only.");
  if (name != fs::path(name).filename()) {
    throw wrongUse("The standard input gets the name of a file, not a path: \"" + name + "\".");
  }
  keptFolder = folder_ = newFolder();
  const fs::path path = fs::path(folder_) / (name.empty() ? "stdin.txt" : name);
  keptFile = path;
  beforeSignalsEnd(removeKept);
  copyInput(path);
  if (commands::isDatabaseFile(path)) refuseStandardStream(kStandardStream);
  if (!name.empty() || !looksLikeProducts(path)) return path;
  const fs::path products = fs::path(path).replace_extension(".json");
  fs::rename(path, products);
  keptFile = products;
  return products;
}

}  // namespace orv::cli
