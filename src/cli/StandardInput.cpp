#include "cli/StandardInput.h"

#include <fmt/format.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <system_error>

#include "cli/Failure.h"
#include "cli/Interrupts.h"
#include "commands/SourceOpener.h"
#include "model/Text.h"
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

[[noreturn]] void raiseNotKept(const std::string& reason) {
  throw Failure(kCannotOpen, fmt::format("The standard input cannot be kept as a file: {}. TMPDIR "
                                         "names the folder for that; /tmp unless it is set.",
                                         reason));
}

std::string reasonNow() {
  return std::generic_category().message(errno);
}

std::string newFolder() {
  std::error_code failure;
  const fs::path folder = fs::temp_directory_path(failure);
  if (failure) raiseNotKept(failure.message());
  std::string pattern = (folder / "orv-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) raiseNotKept(reasonNow());
  return fs::absolute(pattern).lexically_normal();
}

constexpr std::string_view kProducts = ".json";

/// Raises Failure for what no file of records can be called.
void checkName(const std::string& name) {
  constexpr std::size_t kLongest = NAME_MAX - kProducts.size();
  if (name != fs::path(name).filename() || name == "." || name == "..") {
    throw wrongUse("The standard input gets the name of a file, not a path: \"" + name + "\".");
  }
  if (name.size() > kLongest) {
    throw wrongUse(
        fmt::format("The standard input gets a name of at most {} bytes; this one has "
                    "{}.",
                    kLongest, name.size()));
  }
  const std::string extension = lowerCase(fs::path(name).extension().string());
  if (extension == ".mdb" || extension == ".accdb") {
    throw wrongUse(
        fmt::format("A file \"{}\" would be a database, which cannot come from the "
                    "standard input. Give it the name of a text or a product.",
                    name));
  }
}

/// What comes is written on as it comes, so that it takes no memory.
void copyInput(const fs::path& path) {
  std::ofstream file(path, std::ios::binary);
  if (!file) raiseNotKept(reasonNow());
  std::array<char, 65536> part{};
  std::uintmax_t size = 0;
  while (file && (std::cin.read(part.data(), part.size()), std::cin.gcount() > 0)) {
    file.write(part.data(), std::cin.gcount());
    size += static_cast<std::uintmax_t>(std::cin.gcount());
    if (size > productfile::kLargestFile) {
      throw Failure(kCannotOpen, "The standard input is too long for a file of records.");
    }
  }
  if (std::cin.bad()) {
    throw Failure(kCannotOpen, "The standard input cannot be read: " + reasonNow() + ".");
  }
  std::cin.clear();  // a terminal may still answer questions
  if (!file.flush()) raiseNotKept(reasonNow());
  if (size == 0) throw Failure(kCannotOpen, "Nothing came from the standard input.");
}

/// A list, or an object with a key. What begins with a brace may be a comment of a text, too.
bool looksLikeProducts(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  char mark[3] = {};
  if (!file.read(mark, sizeof mark) || std::string_view(mark, sizeof mark) != "\xEF\xBB\xBF") {
    file.clear();
    file.seekg(0);
  }
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
  checkName(name);
  keptFolder = folder_ = newFolder();
  const fs::path path = fs::path(folder_) / (name.empty() ? "stdin.txt" : name);
  keptFile = path;
  beforeSignalsEnd(removeKept);
  copyInput(path);
  if (commands::isDatabaseFile(path)) refuseStandardStream(kStandardStream);
  if (productfile::isProduct(path) || !looksLikeProducts(path)) return path;
  const fs::path products =
      fs::path(folder_) / ((name.empty() ? "stdin" : name) + kProducts.data());
  fs::rename(path, products);
  keptFile = products;
  return products;
}

}  // namespace orv::cli
