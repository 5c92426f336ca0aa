#include "store/jet/compact/TableNumbers.h"

#include <algorithm>
#include <array>
#include <utility>

namespace orv::store::jet {
namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 6> kColumns = {{
    {"MSysObjects", "Id"},
    {"MSysACEs", "ObjectId"},
    {"MSysQueries", "ObjectId"},
    {"MSysNavPaneObjectIDs", "Id"},
    {"MSysNavPaneGroups", "ObjectID"},
    {"MSysNavPaneGroupToObjects", "ObjectID"},
}};

}  // namespace

PageNumber TableNumbers::operator[](PageNumber former) const {
  const auto found = now_.find(former);
  return found == now_.end() ? former : found->second;
}

bool TableNumbers::isIn(std::string_view table, std::string_view column) {
  return std::ranges::find(kColumns, std::pair(table, column)) != kColumns.end();
}

}  // namespace orv::store::jet
