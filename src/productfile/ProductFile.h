// Files of products on disk.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "model/Date.h"
#include "productfile/ProductReader.h"

namespace orv::productfile {

/// A file that is larger is refused before it is read.
inline constexpr std::uintmax_t kLargestFile = std::uintmax_t{256} << 20;

/// What identifies a product in a folder: its file; and where that is a list, behind "#", the place
/// in it as a JSON pointer: "catalogue.json#/12".
struct ProductName {
  std::string file;
  std::string pointer;  ///< empty for the file as a whole

  static ProductName of(const std::string& identifier);
  std::string identifier() const { return pointer.empty() ? file : file + "#" + pointer; }
};

/// Whether this identifies a product, or a file of products: "clear.json".
bool isProduct(const std::string& identifier);

/// A file of one product or of a list of them, read whole.
class ProductFile {
 public:
  /// Raises 57 and 70 for a file that cannot be read, 5 for one that is too large, and what
  /// `parseJson` raises.
  static ProductFile read(const std::filesystem::path& path);

  /// From its text. `name` is what errors call it.
  ProductFile(std::string_view text, std::string name, OptionalDate date = std::nullopt);

  /// The pointers of its products: one a product of a list; else one, which is empty.
  std::vector<std::string> pointers() const;

  /// As `productfile::anglesOf` and `readProduct`; raise error 5 for a pointer at which there is
  /// none. The record gets the date of the file unless it has one, or was written by us without.
  std::vector<std::int16_t> angles(const std::string& pointer) const;
  Product product(const std::string& pointer,
                  std::optional<std::int16_t> angle = std::nullopt) const;
  bool isShading(const std::string& pointer) const;
  /// The JSON of one product, for people to read.
  std::string text(const std::string& pointer) const;

 private:
  Item itemAt(const std::string& pointer) const;

  std::string name_;
  OptionalDate date_;
  Json json_;
};

/// Files of products, of which the one that was used last stays in memory while it does not change
/// on disk: the products of a list are asked for one after another.
class ProductFiles {
 public:
  /// As `ProductFile::read`. Holds until the next call.
  const ProductFile& at(const std::filesystem::path& path) const;

 private:
  struct Stamp {
    std::filesystem::path path;
    std::filesystem::file_time_type changed;
    std::uintmax_t size = 0;
    bool operator==(const Stamp&) const = default;
  };

  mutable Stamp stamp_;
  mutable std::optional<ProductFile> last_;
};

}  // namespace orv::productfile
