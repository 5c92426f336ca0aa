// The kinds of node in the registry of data sources.
#pragma once

#include <cstdint>
#include <string_view>

namespace orv::sources {

/// The code of a node's kind. The values are fixed: they are what nodes are made and told apart by.
/// Codes without a name here (12 to 15 among them, kept for further text files) may be stored in
/// a node too, which then stands for no record set.
using DataTypeCode = std::int32_t;

namespace DataType {
inline constexpr DataTypeCode orvDatabase2 = 2;      ///< ORV database, version "2.0.1"
inline constexpr DataTypeCode orvDatabase3 = 3;      ///< ORV database, version "3.0.0"
inline constexpr DataTypeCode igdb = 4;              ///< International Glazing Database
inline constexpr DataTypeCode optics5User = 5;       ///< user database of Optics5
inline constexpr DataTypeCode orv2Panes = 6;         ///< child of 2
inline constexpr DataTypeCode orv2Frames = 7;        ///< child of 2
inline constexpr DataTypeCode orv3Panes = 8;         ///< child of 3
inline constexpr DataTypeCode orv3Frames = 9;        ///< child of 3
inline constexpr DataTypeCode optics5Panes = 10;     ///< child of 4 or 5
inline constexpr DataTypeCode textFolder = 11;       ///< folder of spectral text files
inline constexpr DataTypeCode orv2Shadings = 16;     ///< child of 2
inline constexpr DataTypeCode orv3Shadings = 17;     ///< child of 3
inline constexpr DataTypeCode paneTextFile = 18;     ///< child of 11
inline constexpr DataTypeCode shadingTextFile = 19;  ///< child of 11
}  // namespace DataType

/// Table or saved query that holds a node's records, and the one that shows them to a user.
struct RecordSetNames {
  std::string_view recordSet;
  std::string_view display;
};

/// The record sets of a kind of node; both empty for a kind without records in a database.
RecordSetNames recordSetNames(DataTypeCode type);

}  // namespace orv::sources
