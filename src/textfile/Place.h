// Where something stands in a text file, for the messages of its readers.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orv::textfile {

struct Place {
  std::string file;
  std::int32_t line = 1;

  /// "CLEAR_3.DAT, line 12"
  std::string text() const;
};

/// Raises an error whose source is the explanation, in fixed words; the description says the same
/// about this place in the file.
[[noreturn]] void raiseExplained(std::int32_t number, std::string_view explanation,
                                 const Place& place);

/// Raises an error that describes what is wrong at this place.
[[noreturn]] void raiseAt(const Place& place, std::int32_t number, std::string_view description);

}  // namespace orv::textfile
