#include "store/sql/run/Collations.h"

#include <string_view>

#include "store/sql/translate/Catalog.h"

namespace orv::store::sql {
namespace {

std::string_view bytes(int length, const void* text) {
  return {static_cast<const char*>(text), static_cast<std::size_t>(length)};
}

int compareText(void* order, int aLength, const void* a, int bLength, const void* b) {
  return static_cast<const TextOrder*>(order)->compare(bytes(aLength, a), bytes(bLength, b));
}

int compareDecimalText(void*, int aLength, const void* a, int bLength, const void* b) {
  return compareDecimals(bytes(aLength, a), bytes(bLength, b));
}

}  // namespace

void registerCollations(sqlite3* db, const TextOrder& order) {
  // SQLite hands the pointer back unchanged.
  void* context = const_cast<TextOrder*>(&order);
  sqlite3_create_collation(db, kTextCollation, SQLITE_UTF8, context, compareText);
  sqlite3_create_collation(db, kDecimalCollation, SQLITE_UTF8, nullptr, compareDecimalText);
}

}  // namespace orv::store::sql
