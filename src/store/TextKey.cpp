#include "store/TextKey.h"

#include <algorithm>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/catalog/Database.h"
#include "store/jet/index/TextKey.h"
#include "store/jet/page/Text.h"

namespace orv::store {

std::string textKey(Connection& database, const std::string& table, const std::string& column,
                    const std::string& text) {
  const auto definition = database.database().table(table)->sharedDefinition();
  const auto found = std::ranges::find_if(definition->columns, [&](const jet::Column& each) {
    return jet::sameName(each.name, column);
  });
  if (found == definition->columns.end()) {
    throw Error(kItemNotFound, "There is no column " + column + " in " + table + ".");
  }
  Bytes key;
  jet::appendTextKey(key, text, found->sortOrder, true);
  return {key.begin(), key.end()};
}

}  // namespace orv::store
