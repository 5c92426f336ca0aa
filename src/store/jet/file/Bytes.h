// Bounds-checked little-endian access to bytes of the file.
#pragma once

#include <cstdint>
#include <cstring>
#include <span>
#include <string>

#include "errors/Error.h"

namespace orv::store::jet {

/// Number of a page; page 0 is the database's header. Row pointers hold three bytes of it.
using PageNumber = std::uint32_t;

/// The error of a malformed file: its number is kCorruptFile, its description is for people, and
/// the page and what is wrong there are given apart for whoever lists damage.
class DamagedPage : public Error {
 public:
  DamagedPage(PageNumber page, std::string what, const std::string& file);
  PageNumber page() const { return page_; }
  const std::string& fault() const { return fault_; }

 private:
  PageNumber page_;
  std::string fault_;
};

/// Raises DamagedPage of the file that a DamagedFileScope of this thread names.
[[noreturn]] void raiseDamaged(PageNumber page, const std::string& what);

/// While it lives, damage that this thread finds is reported of the file at `path` (which must
/// outlive it). The pager's locks for reading and changes of rows hold one, so that code that knows
/// only bytes can say whose.
class DamagedFileScope {
 public:
  explicit DamagedFileScope(const std::string& path);
  ~DamagedFileScope();
  DamagedFileScope(const DamagedFileScope&) = delete;
  DamagedFileScope& operator=(const DamagedFileScope&) = delete;

 private:
  const std::string* outer_;
};

inline std::uint16_t load16(const std::uint8_t* p) {
  return static_cast<std::uint16_t>(p[0] | p[1] << 8);
}
inline std::uint32_t load24(const std::uint8_t* p) {
  return p[0] | p[1] << 8 | p[2] << 16;
}
inline std::uint32_t load32(const std::uint8_t* p) {
  return load24(p) | static_cast<std::uint32_t>(p[3]) << 24;
}
inline std::uint64_t load64(const std::uint8_t* p) {
  return load32(p) | static_cast<std::uint64_t>(load32(p + 4)) << 32;
}
inline void store16(std::uint8_t* p, std::uint32_t v) {
  p[0] = static_cast<std::uint8_t>(v);
  p[1] = static_cast<std::uint8_t>(v >> 8);
}
inline void store24(std::uint8_t* p, std::uint32_t v) {
  store16(p, v);
  p[2] = static_cast<std::uint8_t>(v >> 16);
}
inline void store32(std::uint8_t* p, std::uint32_t v) {
  store24(p, v);
  p[3] = static_cast<std::uint8_t>(v >> 24);
}
inline void store64(std::uint8_t* p, std::uint64_t v) {
  store32(p, static_cast<std::uint32_t>(v));
  store32(p + 4, static_cast<std::uint32_t>(v >> 32));
}

/// Bytes that came from `page`, read with every offset checked; a read past the end raises
/// kCorruptFile.
class ByteView {
 public:
  ByteView() = default;
  ByteView(std::span<const std::uint8_t> bytes, PageNumber page) : bytes_(bytes), page_(page) {}

  std::size_t size() const { return bytes_.size(); }
  PageNumber page() const { return page_; }
  std::uint8_t u8(std::size_t at) const { return *need(at, 1); }
  std::uint16_t u16(std::size_t at) const { return load16(need(at, 2)); }
  std::uint32_t u32(std::size_t at) const { return load32(need(at, 4)); }
  std::uint64_t u64(std::size_t at) const { return load64(need(at, 8)); }
  std::span<const std::uint8_t> span(std::size_t at, std::size_t length) const {
    return {need(at, length), length};
  }

 private:
  const std::uint8_t* need(std::size_t at, std::size_t length) const {
    if (at > bytes_.size() || length > bytes_.size() - at) {
      raiseDamaged(page_, "a structure runs past its end");
    }
    return bytes_.data() + at;
  }

  std::span<const std::uint8_t> bytes_;
  PageNumber page_ = 0;
};

}  // namespace orv::store::jet
