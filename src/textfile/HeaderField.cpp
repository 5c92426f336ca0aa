#include "textfile/HeaderField.h"

#include <fmt/format.h>

#include "errors/Error.h"

namespace orv::textfile {

std::string headerField(std::string_view label, std::string_view value) {
  if (value.find_first_of("{}") != std::string_view::npos) {
    throw Error(kInvalidCall,
                fmt::format("'{}' cannot hold a brace in a text file: '{}'. Remove the brace",
                            label, value));
  }
  return fmt::format("{{ {}: {} }}\r\n", label, value);
}

}  // namespace orv::textfile
