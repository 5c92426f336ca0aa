#include "store/jet/catalog/SecurityIds.h"

#include "store/jet/catalog/Database.h"

namespace orv::store::jet {

SecurityIds SecurityIds::of(const Table& objects) {
  const TableDefinition& definition = objects.definition();
  const auto id = definition.findColumn("Id");
  const auto owner = definition.findColumn("Owner");
  for (TableScan scan = objects.scan(); id && owner && scan.next();) {
    if (scan.row().value(definition.columns[*id]) != Value(std::int32_t{kCatalogPage})) {
      continue;
    }
    const Value value = scan.row().value(definition.columns[*owner]);
    const Bytes* bytes = value.getIf<Bytes>();
    if (bytes != nullptr && bytes->size() == kSize) {
      const Bytes unhidden = SecurityIds(0).engine();
      return SecurityIds(
          static_cast<std::uint16_t>(load16(bytes->data()) ^ load16(unhidden.data())));
    }
  }
  raiseDamaged(kCatalogPage, "the catalogue does not say whose the system tables are");
}

Bytes SecurityIds::hidden(std::uint16_t id) const {
  Bytes bytes(kSize);
  store16(bytes.data(), static_cast<std::uint32_t>(id ^ mask_));
  return bytes;
}

}  // namespace orv::store::jet
