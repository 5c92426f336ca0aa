// The bytes that a fuzzer has thought of, read as choices.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace orv::fuzz {

/// Choices made from bytes, one after another. Where the bytes have ended every choice is 0.
class Input {
 public:
  Input(const std::uint8_t* bytes, std::size_t size) : bytes_(bytes, size) {}

  bool empty() const { return bytes_.empty(); }

  std::uint8_t byte() {
    if (bytes_.empty()) {
      return 0;
    }
    const std::uint8_t first = bytes_.front();
    bytes_ = bytes_.subspan(1);
    return first;
  }

  /// A little-endian number of `size` bytes.
  std::uint64_t number(std::size_t size) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < size; ++i) {
      value |= std::uint64_t{byte()} << (8 * i);
    }
    return value;
  }

  /// One of 0 to `count` - 1.
  std::size_t below(std::size_t count) { return number(count > 256 ? 4 : 1) % count; }

  /// The next bytes, at most `most` of them.
  std::string text(std::size_t most) {
    const auto taken = bytes_.first(most < bytes_.size() ? most : bytes_.size());
    bytes_ = bytes_.subspan(taken.size());
    return {taken.begin(), taken.end()};
  }

 private:
  std::span<const std::uint8_t> bytes_;
};

}  // namespace orv::fuzz
