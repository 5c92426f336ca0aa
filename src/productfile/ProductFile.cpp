#include "productfile/ProductFile.h"

#include <fmt/format.h>

#include <charconv>
#include <system_error>

#include "errors/Error.h"
#include "model/FileBytes.h"
#include "model/Text.h"
#include "productfile/RecordKeys.h"

namespace orv::productfile {

namespace fs = std::filesystem;

namespace {

std::string bytesOf(const fs::path& path) {
  if (auto bytes = fileBytes(path, kLargestFile)) return std::move(*bytes);
  throw Error(kInvalidCall, fmt::format("The file '{}' has {} bytes, and {} are the most that "
                                        "are read of a file of products",
                                        path.string(), fs::file_size(path), kLargestFile));
}

}  // namespace

ProductName ProductName::of(const std::string& identifier) {
  const auto mark = identifier.rfind("#/");  // no name of a file has a "/"
  if (mark == std::string::npos) return {identifier, ""};
  return {identifier.substr(0, mark), identifier.substr(mark + 1)};
}

bool isProduct(const std::string& identifier) {
  constexpr std::string_view kExtension = ".json";
  const std::string file = ProductName::of(identifier).file;
  return file.size() > kExtension.size() &&
         equalIgnoringCase(file.substr(file.size() - kExtension.size()), kExtension);
}

ProductFile ProductFile::read(const fs::path& path) {
  return {bytesOf(path), path.filename().string(), fileDate(path)};
}

ProductFile::ProductFile(std::string_view text, std::string name, OptionalDate date)
    : name_(std::move(name)), date_(date), json_(parseJson(text, name_)) {}

std::vector<std::string> ProductFile::pointers() const {
  if (!json_.is_array() || json_.empty()) return {""};
  std::vector<std::string> pointers;
  for (std::size_t i = 0; i < json_.size(); ++i) pointers.push_back(fmt::format("/{}", i));
  return pointers;
}

std::vector<std::int16_t> ProductFile::angles(const std::string& pointer) const {
  return anglesOf(itemAt(pointer));
}

Product ProductFile::product(const std::string& pointer, std::optional<std::int16_t> angle) const {
  const Item item = itemAt(pointer);
  Product product = readProduct(item, angle);
  const bool tellsAll = item.find(kRecordObject).has_value();
  if (!tellsAll && !product.pane->FileDate()) product.pane->FileDate(date_);
  return product;
}

bool ProductFile::isShading(const std::string& pointer) const {
  return productfile::isShading(itemAt(pointer));
}

std::string ProductFile::text(const std::string& pointer) const {
  constexpr int kIndent = 2;
  return itemAt(pointer).value().dump(kIndent, ' ', false, Json::error_handler_t::replace);
}

Item ProductFile::itemAt(const std::string& pointer) const {
  if (pointer.empty()) {
    const Item whole(json_, name_, "");
    if (whole.isList()) {
      whole.refuse(kInvalidCall, json_.empty()
                                     ? "This file holds an empty list"
                                     : "This file holds a list of products, and none is chosen");
    }
    return whole;
  }
  std::size_t index = 0;
  const char* end = pointer.data() + pointer.size();
  const auto [last, error] = std::from_chars(pointer.data() + 1, end, index);
  if (error != std::errc() || last != end || !json_.is_array() || index >= json_.size()) {
    throw Error(kInvalidCall, "There is no such product in this file", "",
                fmt::format("{}, {}", name_, pointer));
  }
  return Item(json_[index], name_, pointer);
}

const ProductFile& ProductFiles::at(const fs::path& path) const {
  std::error_code failure;
  const Stamp stamp{path, fs::last_write_time(path, failure), fs::file_size(path, failure)};
  if (!last_ || failure || stamp != stamp_) {
    last_.reset();
    last_.emplace(ProductFile::read(path));
    stamp_ = stamp;
  }
  return *last_;
}

}  // namespace orv::productfile
