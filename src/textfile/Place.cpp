#include "textfile/Place.h"

#include <fmt/format.h>

#include "errors/Error.h"

namespace orv::textfile {

std::string Place::text() const {
  return fmt::format("{}, line {}", file, line);
}

void raiseExplained(std::int32_t number, std::string_view explanation, const Place& place) {
  throw Error(number, fmt::format("{}: {}", place.text(), explanation), std::string(explanation));
}

void raiseAt(const Place& place, std::int32_t number, std::string_view description) {
  throw Error(number, fmt::format("{}: {}", place.text(), description));
}

}  // namespace orv::textfile
