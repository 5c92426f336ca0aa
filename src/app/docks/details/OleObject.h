#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace orv::app {

/// What an OLE object field of an Access database holds: a header of Access's own, then an object
/// in the stream form of OLE 1.0 (Microsoft, [MS-OLEDS]), whose data the program of its class
/// understands.
struct OleObject {
  std::string className;               ///< "PBrush", "Paint.Picture", "Package", "DIB", ...
  std::span<const std::uint8_t> data;  ///< into the field
};

/// Takes an OLE object out of a field. None when the field holds something else or is cut short.
std::optional<OleObject> readOleObject(std::span<const std::uint8_t> field);

}  // namespace orv::app
