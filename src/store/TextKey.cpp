#include "store/TextKey.h"

#include <algorithm>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/catalog/Database.h"
#include "store/jet/index/TextKey.h"
#include "store/jet/page/Text.h"

namespace orv::store {
namespace {

std::string keyIn(const jet::SortOrder& order, std::string_view text) {
  Bytes key;
  jet::appendTextKey(key, text, order, true);
  return {key.begin(), key.end()};
}

}  // namespace

std::string textKey(std::string_view text) {
  // Keys cover the beginning only: what is longer is not taken for the same by that.
  if (text.size() > jet::kMaxIndexedText) return std::string(text);
  try {
    return keyIn(jet::SortOrder{}, text);
  } catch (const Error&) {
    return std::string(text);
  }
}

std::string textKey(Connection& database, const std::string& table, const std::string& column,
                    const std::string& text) {
  const auto definition = database.database().table(table)->sharedDefinition();
  const auto found = std::ranges::find_if(definition->columns, [&](const jet::Column& each) {
    return jet::sameName(each.name, column);
  });
  if (found == definition->columns.end()) {
    throw Error(kItemNotFound, "There is no column " + column + " in " + table + ".");
  }
  return keyIn(found->sortOrder, text);
}

}  // namespace orv::store
