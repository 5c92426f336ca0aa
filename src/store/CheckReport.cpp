#include "store/CheckReport.h"

#include <fmt/format.h>

namespace orv::store {

std::string CheckFinding::toText() const {
  std::string place;
  const auto add = [&place](const std::string& part) {
    place += (place.empty() ? "" : ", ") + part;
  };
  if (!table.empty()) {
    add(fmt::format("table '{}'", table));
  }
  if (!index.empty()) {
    add(fmt::format("index '{}'", index));
  }
  if (page != 0) {
    add(fmt::format("page {}", page));
  }
  if (row >= 0) {
    add(fmt::format("row {}", row));
  }
  std::string text = fmt::format("{}: {}.", place.empty() ? "the file" : place, what);
  text[0] = static_cast<char>(text[0] - 'a' + 'A');
  return advice.empty() ? text : text + " " + advice;
}

}  // namespace orv::store
