// Where something stands in a text file, for the messages of its readers.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orv::textfile {

struct Place {
  std::string file;
  std::int32_t line = 1;
  std::int32_t column = 1;  ///< in characters; 0 means the whole line

  /// "CLEAR_3.DAT, line 12, column 5"
  std::string text() const;

  /// What an error says of this place: "CLEAR_3.DAT, line 12, column 5: 'nm'. Write Nanometers."
  /// Either may be empty.
  std::string told(std::string_view found, std::string_view remedy = {}) const;
};

/// Raises an error whose source is the explanation, in fixed words, and that tells this of a place.
[[noreturn]] void raiseExplained(std::int32_t number, std::string_view explanation,
                                 const std::string& told);

/// Raises an error that describes what is wrong at this place, and what to do.
[[noreturn]] void raiseAt(const Place& place, std::int32_t number, std::string_view description,
                          std::string_view remedy = {});

}  // namespace orv::textfile
