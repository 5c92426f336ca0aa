// A folder for one test, removed at its end.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <string>

namespace orv::test {

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "orv-test-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  /// A path in the folder.
  std::string operator/(const std::string& name) const { return (path_ / name).string(); }

  /// A writable copy of `file` in the folder.
  std::string copyOf(const std::filesystem::path& file) const {
    const std::filesystem::path copy = path_ / file.filename();
    std::filesystem::copy_file(file, copy, std::filesystem::copy_options::overwrite_existing);
    std::filesystem::permissions(copy, std::filesystem::perms::owner_write,
                                 std::filesystem::perm_options::add);
    return copy.string();
  }

 private:
  std::filesystem::path path_;
};

}  // namespace orv::test
