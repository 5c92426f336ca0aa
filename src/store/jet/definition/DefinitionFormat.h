// Values of the fields of a table definition. Where the fields are is in Format.h.
#pragma once

#include <cstddef>
#include <cstdint>

namespace orv::store::jet {

/// Stands in a definition's header, in each column and in each named index.
inline constexpr std::uint32_t kDefinitionMagic = 1625;
/// Stands at the start of each index tree's block.
inline constexpr std::uint32_t kRealIndexMagic = 1923;

inline constexpr std::uint8_t kUserTableType = 0x4e;    // 'N'
inline constexpr std::uint8_t kSystemTableType = 0x53;  // 'S'

// Flags of a column.
inline constexpr std::uint8_t kFixedFlag = 0x01;
inline constexpr std::uint8_t kUpdatableFlag = 0x02;  ///< of every column
inline constexpr std::uint8_t kAutoNumberFlag = 0x04;
inline constexpr std::uint8_t kSystemColumnFlag = 0x10;
inline constexpr std::uint8_t kSecurityIdFlag = 0x20;
inline constexpr std::uint8_t kAutoGuidFlag = 0x40;
inline constexpr std::uint8_t kHyperlinkFlag = 0x80;
inline constexpr std::uint8_t kCompressibleFlag = 0x01;  ///< of the extra flags
inline constexpr std::uint8_t kCalculatedFlags = 0xc0;   ///< of the extra flags, since Access 2010

// Flags of an index tree.
inline constexpr std::uint8_t kUniqueFlag = 0x01;
inline constexpr std::uint8_t kIgnoreNullsFlag = 0x02;
inline constexpr std::uint8_t kRequiredFlag = 0x08;
inline constexpr std::uint8_t kJet4IndexFlag = 0x80;  ///< of every tree that Jet 4 makes

/// Stands for both cascades of a named index that belongs to no relation.
inline constexpr std::uint8_t kNoCascade = 0x04;

inline constexpr std::uint8_t kAscending = 0x01;
/// A column's block of long-value maps: its number and two pointers.
inline constexpr std::size_t kLongValueMapsSize = 10;

}  // namespace orv::store::jet
