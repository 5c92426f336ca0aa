// A file that is being made.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "store/jet/file/File.h"

namespace orv::store::jet {

/// Is written under a name beside its own that nobody else uses, so that nobody ever finds a part
/// of it under its own; and is removed again unless it is put in its place.
class NewFile {
 public:
  /// Raises kStoreFailure where a file stands at `path` already.
  explicit NewFile(std::string path);
  /// One that is to take the place of the database at `former`, with its owner and permissions.
  static NewFile inPlaceOf(const std::string& former) { return {former, former, Mode::asFormer}; }
  /// One made of `former`, with its owner and permissions, that is to be at `path`. Raises
  /// kStoreFailure where a file stands there already. Its owner may write to it.
  static NewFile beside(const std::string& former, std::string path);
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  /// What the file that stands in its place has and it has not: see FileSystem.
  std::vector<std::string> attributesLacking() const;

  /// The file, empty; once.
  std::unique_ptr<File> take() { return std::move(file_); }

  /// Gives the file, whose content is on the disk, its name. Raises kStoreFailure where a file
  /// has come to stand there meanwhile.
  void putInPlace();
  /// The same, in place of the file that stands there.
  void replace();

  /// Removes those that are being made. For a handler of signals, after which the program ends.
  static void removeAll() noexcept;

 private:
  enum class Mode { asFormer, writable };

  NewFile(std::string path, const std::string& former, Mode mode);

  void forget() noexcept;

  std::string path_;
  std::string written_;  ///< its name while it is made; empty when it has its own
  std::unique_ptr<File> file_;
  std::size_t slot_;  ///< among those that are being made
};

}  // namespace orv::store::jet
