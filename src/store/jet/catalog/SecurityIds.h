// Who owns and may use the objects of a database.
#pragma once

#include <cstdint>

#include "store/Value.h"
#include "store/jet/table/Table.h"

namespace orv::store::jet {

/// The security ids that every database without a workgroup of its own uses, as its system
/// tables hold them. A file hides them by a mask that goes with its creation date.
class SecurityIds {
 public:
  explicit SecurityIds(std::uint16_t mask) : mask_(mask) {}
  /// Those of files with the creation date that emptyDatabase() gives.
  static SecurityIds ofNewFiles() { return SecurityIds(0x32a5); }
  /// Those of a file, from the row of its catalogue about itself. Raises kCorruptFile when there
  /// is none.
  static SecurityIds of(const Table& objects);

  static constexpr std::size_t kSize = 2;
  /// An id of this file, of kSize bytes, as another file hides it.
  Bytes translate(const Bytes& id, const SecurityIds& other) const {
    return other.hidden(static_cast<std::uint16_t>(load16(id.data()) ^ mask_));
  }

  Bytes users() const { return hidden(0x0102); }    ///< the group of all users
  Bytes engine() const { return hidden(0x0302); }   ///< owns the system tables
  Bytes creator() const { return hidden(0x0402); }  ///< stands for whoever makes an object
  Bytes admin() const { return hidden(0x0103); }    ///< the user of whom no log-on is asked

 private:
  Bytes hidden(std::uint16_t id) const;

  std::uint16_t mask_;
};

/// Bits of a permission ("ACM" in MSysACEs).
namespace rights {
inline constexpr std::int32_t kReadPermissions = 0x20000;
inline constexpr std::int32_t kChangePermissions = 0x40000;
inline constexpr std::int32_t kChangeOwner = 0x80000;
inline constexpr std::int32_t kPermissions = kReadPermissions | kChangePermissions;
inline constexpr std::int32_t kOpenDatabase = 0x0e;  ///< also alone, and to administer it
inline constexpr std::int32_t kCreate = 0x01;        ///< of a container: objects in it
inline constexpr std::int32_t kReadRows = 0x14;
inline constexpr std::int32_t kOwn = 0xf00fe;  ///< what a creator may do with an object
inline constexpr std::int32_t kUse = 0xffeff;  ///< all that concerns tables and queries
inline constexpr std::int32_t kEverything = 0xfffff;
}  // namespace rights

}  // namespace orv::store::jet
