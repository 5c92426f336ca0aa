#include "store/TextKey.h"

#include "errors/Error.h"
#include "store/jet/index/TextKey.h"

namespace orv::store {

std::string textKey(std::string_view text) {
  // Keys cover the beginning only: what is longer is not taken for the same by that.
  if (text.size() > jet::kMaxIndexedText) return std::string(text);
  try {
    Bytes key;
    jet::appendTextKey(key, text, jet::SortOrder{}, true);
    return {key.begin(), key.end()};
  } catch (const Error&) {
    return std::string(text);
  }
}

}  // namespace orv::store
