#include "textfile/Place.h"

#include <fmt/format.h>

#include "errors/Error.h"

namespace orv::textfile {

std::string Place::text() const {
  const std::string inLine = column > 0 ? fmt::format(", column {}", column) : std::string();
  return fmt::format("{}, line {}{}", file, line, inLine);
}

std::string Place::told(std::string_view found, std::string_view remedy) const {
  std::string result = text();
  if (!found.empty()) result += fmt::format(": '{}'", found);
  if (!remedy.empty()) result += fmt::format(". {}", remedy);
  return result;
}

void raiseExplained(std::int32_t number, std::string_view explanation, const std::string& told) {
  throw Error(number, "", std::string(explanation), told);
}

void raiseAt(const Place& place, std::int32_t number, std::string_view description,
             std::string_view remedy) {
  throw Error(number, std::string(description), "", place.told({}, remedy));
}

}  // namespace orv::textfile
