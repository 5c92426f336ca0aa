#include "store/jet/catalog/EmptyDatabase.h"

#include <algorithm>
#include <bit>
#include <memory>
#include <string_view>

#include "store/jet/catalog/FixedObjects.h"
#include "store/jet/definition/TableDesign.h"
#include "store/jet/page/DataPage.h"
#include "store/jet/page/FreePages.h"
#include "store/jet/page/Rc4.h"
#include "store/jet/page/Text.h"
#include "store/jet/page/UsageMap.h"
#include "store/jet/table/TablePlacement.h"

namespace orv::store::jet {
namespace {

// Pages that have their place in every file.
constexpr PageNumber kMapPage = 1;
constexpr PageNumber kFirstFreePage = 6;

/// The date in the header masks the password and goes with the mask of the security ids. How the
/// engine makes that mask from the date is not known; this date belongs to
/// SecurityIds::ofNewFiles().
constexpr double kHeaderDate = std::bit_cast<double>(std::uint64_t{0x40e29ff17d1f72bc});

/// The password under its mask, days of the date; of a file that has none, the mask itself.
void writePassword(std::uint8_t* field, const std::string& password) {
  Bytes text = utf16Bytes(password);
  text.resize(kJet4.header.passwordSize);
  for (std::size_t i = 0; i < text.size(); i += 4) {
    store32(field + i, load32(&text[i]) ^ static_cast<std::uint32_t>(kHeaderDate));
  }
}

/// A field for each of 255 users in which they mark that they write. The first is the engine's.
void writeCommitMarks(std::uint8_t* header) {
  constexpr std::size_t kMarks = 0xe00;
  constexpr std::uint16_t kUnused = 0x0100;
  for (std::size_t at = kMarks; at < kJet4.pageSize; at += 2) {
    store16(header + at, at == kMarks ? kUnused | 1 : kUnused);
  }
}

void writeHeader(std::span<std::uint8_t> page, const FileSettings& settings) {
  constexpr std::string_view kName = "Standard Jet DB";
  constexpr std::string_view kCreatedBy = "4.0";
  constexpr std::size_t kJet4Version = 1;
  constexpr std::uint16_t kWesternCodePage = 1252;
  constexpr std::uint32_t kEngineBuild = 8618;  // of Jet 4.0, service pack 8
  constexpr std::uint32_t kUnknown98 = 0x654;   // in every file of Jet 4
  std::uint8_t* header = page.data();
  header[1] = 1;
  std::copy(kName.begin(), kName.end(), header + 4);
  store32(header + 0x14, kJet4Version);
  store32(header + 0x18, RowId{kMapPage, 0}.toPointer());  // maps of all pages
  store32(header + 0x1c, RowId{kMapPage, 1}.toPointer());
  store32(header + 0x20, kCatalogPage);
  store32(header + 0x24, kPermissionsPage);
  store32(header + 0x28, kQueriesPage);
  store32(header + 0x2c, kRelationshipsPage);
  store16(header + kJet4.header.codePage, kWesternCodePage);
  store32(header + kJet4.header.encodingKey, settings.encodingKey);
  writePassword(header + kJet4.header.password, settings.password);
  store32(header + 0x6a, kEngineBuild);
  store16(header + kJet4.header.sortOrder, SortOrder{}.language);
  store64(header + kJet4.header.creationDate, std::bit_cast<std::uint64_t>(kHeaderDate));
  store32(header + 0x98, kUnknown98);
  std::copy(kCreatedBy.begin(), kCreatedBy.end(), header + 0x9c);
  writeCommitMarks(header);
  applyRc4(kHeaderKey, page.subspan(kJet4.header.masked, kJet4.header.maskedSize));
}

/// The map of free pages, in which pages that the file does not have yet are free, and one more
/// that is empty.
void writePageMaps(Pager& pager) {
  DataPageEditor editor(pager.format(), pager.modify(kMapPage), kMapPage);
  editor.initialize(kMapPage);
  editor.add(UsageMap::emptyRow(pager.format()));
  editor.add(UsageMap::emptyRow(pager.format()));
  FreePages free(pager);
  for (PageNumber page = kFirstFreePage; page < 8 * pager.format().inlineMapBytes; ++page) {
    free.add(page);
  }
}

ColumnInfo column(std::string name, ColumnType type) {
  constexpr std::size_t kTextSize = 255;
  constexpr std::size_t kBinarySize = 510;
  const bool isText = type == ColumnType::text;
  const bool isBinary = type == ColumnType::binary;
  return {.name = std::move(name),
          .type = type,
          .size = isText     ? kTextSize
                  : isBinary ? kBinarySize
                             : 0};
}

TableInfo objectsDesign() {
  using enum ColumnType;
  return {.name = "MSysObjects",
          .columns = {column("Id", longInteger), column("ParentId", longInteger),
                      column("Name", text), column("Type", integer), column("DateCreate", dateTime),
                      column("DateUpdate", dateTime), column("Owner", binary),
                      column("Flags", longInteger), column("Database", memo),
                      column("Connect", memo), column("ForeignName", text),
                      column("RmtInfoShort", binary), column("RmtInfoLong", ole), column("Lv", ole),
                      column("LvProp", ole), column("LvModule", ole), column("LvExtra", ole)},
          .indexes = {{.name = "ParentIdName", .columns = {{"ParentId"}, {"Name"}}, .unique = true},
                      {.name = "Id", .columns = {{"Id"}}, .primary = true, .unique = true}}};
}

TableInfo permissionsDesign() {
  using enum ColumnType;
  return {.name = "MSysACEs",
          .columns = {column("ObjectId", longInteger), column("SID", binary),
                      column("ACM", longInteger), column("FInheritable", boolean)},
          .indexes = {{.name = "ObjectId", .columns = {{"ObjectId"}}, .required = true}}};
}

TableInfo queriesDesign() {
  using enum ColumnType;
  return {.name = "MSysQueries",
          .columns = {column("ObjectId", longInteger), column("Attribute", byte),
                      column("Order", binary), column("Name1", text), column("Name2", text),
                      column("Expression", memo), column("Flag", integer),
                      column("LvExtra", longInteger)},
          .indexes = {{.name = "ObjectIdAttribute",
                       .columns = {{"ObjectId"}, {"Attribute"}, {"Order"}},
                       .primary = true,
                       .unique = true}}};
}

TableInfo relationshipsDesign() {
  using enum ColumnType;
  const auto indexOver = [](const std::string& name) {
    return IndexInfo{.name = name, .columns = {{name}}, .ignoreNulls = true};
  };
  return {.name = "MSysRelationships",
          .columns = {column("szRelationship", text), column("grbit", longInteger),
                      column("ccolumn", longInteger), column("icolumn", longInteger),
                      column("szObject", text), column("szColumn", text),
                      column("szReferencedObject", text), column("szReferencedColumn", text)},
          .indexes = {indexOver("szRelationship"), indexOver("szObject"),
                      indexOver("szReferencedObject")}};
}

std::shared_ptr<Table> makeSystemTable(const std::shared_ptr<Pager>& pager, PageNumber page,
                                       const TableInfo& design) {
  auto table = std::make_shared<TableDefinition>(defineTable(design));
  table->page = page;
  table->systemTable = true;
  for (Column& column : table->columns) {
    column.compressible = false;
    column.securityId = column.name == "Owner" || column.name == "SID";
  }
  for (std::size_t i = 0; i < table->realIndexes.size(); ++i) {
    table->realIndexes[i].required = design.indexes[i].required;  // not by being primary
  }
  placeTable(*pager, *table);
  return std::make_shared<Table>(pager, std::move(table));
}

void addPermissions(CatalogWriter& catalog) {
  const Bytes admin = catalog.ids().admin();
  const Bytes users = catalog.ids().users();
  const Bytes creator = catalog.ids().creator();
  for (const std::int32_t table : {kCatalogPage, kPermissionsPage, kQueriesPage}) {
    catalog.addPermission(table, admin, rights::kPermissions, false);
  }
  catalog.addPermission(kRelationshipsPage, admin, rights::kPermissions | rights::kChangeOwner,
                        false);
  for (const std::int32_t table : {kQueriesPage, kRelationshipsPage, kCatalogPage}) {
    catalog.addPermission(table, users, rights::kReadRows, false);
  }
  for (const std::int32_t container : {kTablesContainer, kRelationshipsContainer}) {
    catalog.addPermission(container, creator, rights::kOwn, true);
    catalog.addPermission(container, admin, rights::kPermissions | rights::kCreate, false);
  }
  catalog.addPermission(kTablesContainer, users, rights::kUse, true);
  catalog.addPermission(kRelationshipsContainer, users, rights::kEverything, true);
  catalog.addPermission(kDatabasesContainer, admin, rights::kPermissions, false);
  catalog.addPermission(kDatabaseObject, admin, rights::kPermissions | rights::kOpenDatabase,
                        false);
  catalog.addPermission(kDatabaseObject, users, rights::kOpenDatabase, false);
}

}  // namespace

Bytes emptyDatabase(const FileSettings& settings) {
  Bytes content(kFirstFreePage * kJet4.pageSize);
  writeHeader(std::span(content).first(kJet4.pageSize), settings);
  const std::shared_ptr<Pager> pager = Pager::overMemory(content, "(memory)");
  Transaction transaction(*pager);
  writePageMaps(*pager);
  auto objects = makeSystemTable(pager, kCatalogPage, objectsDesign());
  auto permissions = makeSystemTable(pager, kPermissionsPage, permissionsDesign());
  makeSystemTable(pager, kQueriesPage, queriesDesign());
  makeSystemTable(pager, kRelationshipsPage, relationshipsDesign());
  CatalogWriter catalog(std::move(objects), std::move(permissions), SecurityIds::ofNewFiles());
  for (const CatalogObject& object : fixedObjects()) addFixedObject(catalog, object);
  addPermissions(catalog);
  transaction.commit();
  return content;
}

}  // namespace orv::store::jet
