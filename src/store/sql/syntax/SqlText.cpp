#include "store/sql/syntax/SqlText.h"

#include <fmt/format.h>

#include <algorithm>

#include "errors/Error.h"
#include "store/sql/syntax/Text.h"

namespace orv::store::sql {

void SqlText::fail(std::int32_t number, const std::string& message, std::size_t at) const {
  const std::string_view before = std::string_view(text).substr(0, std::min(at, text.size()));
  throw Error(number, fmt::format("{} (at character {} of {})", message,
                                  decodeUtf8(before).size() + 1, title));
}

}  // namespace orv::store::sql
