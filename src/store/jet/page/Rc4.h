// RC4, with which the format hides its header and, in encoded files, its pages.
#pragma once

#include <cstdint>
#include <span>

namespace orv::store::jet {

/// Encodes (or decodes: it is the same) `bytes` in place with the four bytes of `key`, the
/// lowest first.
void applyRc4(std::uint32_t key, std::span<std::uint8_t> bytes);

/// The key of the header's hidden part.
inline constexpr std::uint32_t kHeaderKey = 0x6b39dac7;

}  // namespace orv::store::jet
