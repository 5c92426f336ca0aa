#include "app/docks/details/OleObject.h"

#include <cstddef>

namespace orv::app {

namespace {

constexpr std::uint32_t kAccessSignature = 0x1C15;

enum FormatId : std::uint32_t { kEmbedded = 2, kPresentation = 5 };

/// Reads little-endian numbers and strings in turn. Past the end everything is 0 and `failed`.
class Reader {
 public:
  explicit Reader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  bool failed() const { return failed_; }

  std::uint32_t number(std::size_t size) {
    std::uint32_t value = 0;
    const auto bytes = take(size);
    for (std::size_t i = 0; i < bytes.size(); ++i) value |= std::uint32_t{bytes[i]} << (8 * i);
    return value;
  }

  /// A length and as many characters, the last of them a NUL.
  std::string text() {
    const auto bytes = take(number(4));
    if (bytes.empty()) return {};
    return {bytes.begin(), bytes.end() - 1};
  }

  std::span<const std::uint8_t> take(std::size_t size) {
    if (size > bytes_.size()) {
      failed_ = true;
      return {};
    }
    const auto taken = bytes_.first(size);
    bytes_ = bytes_.subspan(size);
    return taken;
  }

 private:
  std::span<const std::uint8_t> bytes_;
  bool failed_ = false;
};

}  // namespace

std::optional<OleObject> readOleObject(std::span<const std::uint8_t> field) {
  Reader header(field);
  if (header.number(2) != kAccessSignature) return {};
  const std::uint32_t headerSize = header.number(2);
  if (header.failed() || headerSize > field.size()) return {};

  Reader object(field.subspan(headerSize));
  object.number(4);  // version of OLE
  const std::uint32_t format = object.number(4);
  OleObject result;
  result.className = object.text();
  if (format == kEmbedded) {
    object.text();  // topic
    object.text();  // item
  } else if (format == kPresentation) {
    object.number(4);  // width
    object.number(4);  // height
  } else {
    return {};
  }
  result.data = object.take(object.number(4));
  if (object.failed()) return {};
  return result;
}

}  // namespace orv::app
